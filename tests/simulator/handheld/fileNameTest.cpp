#include "handheld/fileName.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"

namespace tsr {
namespace {

TEST(FileName, EscapesWhatAFileSystemMayRefuse) {
    const std::pair<const char*, const char*> rows[] = {
        {"MemoDB", "MemoDB"},       {"Memo_DB 2.1", "Memo_DB 2.1"},
        {"..", "%2E%2E"}, // would leave the folder
        {".hidden", "%2Ehidden"},   {"a/b\\c:d", "a%2Fb%5Cc%3Ad"},
        {"100%", "100%25"},         {"Graffiti-ShortCuts", "Graffiti%2DShortCuts"},
        {" blank ", "%20blank%20"}, {"\xE9t\xE9", "%E9t%E9"},
    };
    for (const auto& [name, fileName] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(toFileName(name), fileName);
        EXPECT_EQ(fromFileName(fileName), name);
    }
}

TEST(FileName, RefusesAPercentSignWithoutTwoDigits) {
    for (const char* text : {"%", "a%2", "%zz", "%2z"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(fromFileName(text), HandheldError);
    }
}

} // namespace
} // namespace tsr
