#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace tsr::test {

// The file that sessions write their trace to. It may hold those of others, and another program may have it
// open meanwhile.
class TraceFile {
public:
    explicit TraceFile(const std::filesystem::path& path);

    std::string take(); // what was written since then; afterwards the file is gone, where the system lets it

private:
    std::filesystem::path path_;
    std::uintmax_t before_ = 0;
};

} // namespace tsr::test
