#pragma once

#include <string>
#include <vector>

#include "server/StringRun.h"

namespace tsr::test {

inline std::vector<std::string> stringsOf(const StringRun& run) {
    std::vector<std::string> strings;
    const char* const end = run.bytes().data() + run.bytes().size();
    for (const char* text = run.bytes().data(); text != end; text += strings.back().size() + 1)
        strings.emplace_back(text);
    return strings;
}

} // namespace tsr::test
