#include "interchange/charset.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

TEST(Charset, BecomesUtf8) {
    using namespace std::string_literals;
    const struct {
        std::string bytes;
        const char* charset;
        const char* text;
    } rows[] = {
        {"abc", "", "abc"},
        {"\xE4", "ISO-8859-1", "\xC3\xA4"},
        {"\x80", "windows-1252", "\xE2\x82\xAC"},
        {"\xC4", "koi8-r", "\xD0\xB4"},
        {"\xC3\xA4", "utf-8", "\xC3\xA4"},
        {"a\0b\0"s, "utf-16le", "ab"},
        {"\xC3\xA4", "us-ascii", "\xC3\xA4"},    // a lie: it is UTF-8
        {"\xE4", "utf-8", "\xC3\xA4"},           // a lie: it is windows-1252
        {"\x80", "no-such-set", "\xE2\x82\xAC"}, //
        {"\x81\xE4", "", "\xC2\x81\xC3\xA4"},    // 0x81 is none of windows-1252
        {"a\0b"s, "", "ab"},
        {"a\0b"s, "utf-8", "ab"},
    };
    for (const auto& row : rows) EXPECT_EQ(toUtf8(row.bytes, row.charset), row.text) << row.charset;
}

} // namespace
} // namespace tsr
