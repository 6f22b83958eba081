#include "host/TraceFile.h"

#include <fstream>
#include <iterator>

namespace tsr::test {

namespace fs = std::filesystem;

TraceFile::TraceFile(const fs::path& path) : path_(path) {
    std::error_code none;
    if (fs::exists(path_, none)) before_ = fs::file_size(path_);
}

std::string TraceFile::take() {
    std::ifstream stream(path_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(before_));
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    stream.close();
    std::error_code kept;
    fs::remove(path_, kept);
    return text;
}

} // namespace tsr::test
