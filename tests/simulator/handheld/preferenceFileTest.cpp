#include "handheld/preferenceFile.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;

TEST(PreferenceFile, GoesBothWays) {
    const PreferenceKey key{fourCharacterCode("mail"), 3, true};
    const Preference preference{0x0102, {'M', 0}};
    EXPECT_EQ(preferenceFileName(key), "mail-3-saved");
    EXPECT_EQ(preferenceFile(preference), bytes("01 02 4D 00")); // version, "M", NUL
    EXPECT_EQ(readPreferenceFile("mail-3-saved", bytes("01 02 4D 00")), std::pair(key, preference));
}

TEST(PreferenceFile, KeepsCreatorsWithOddCharacters) {
    const PreferenceKey key{fourCharacterCode("a-/ "), 65535, false};
    EXPECT_EQ(preferenceFileName(key), "a%2D%2F%20-65535-unsaved");
    EXPECT_EQ(readPreferenceFile(preferenceFileName(key), {0, 1}).first, key);
}

TEST(PreferenceFile, RefusesOtherNames) {
    const char* const rows[] = {"",
                                "mail",
                                "mail-1",
                                "mail-1-",
                                "mail-x-saved",
                                "mail-65536-saved",
                                "mai-1-saved",
                                "mail--saved",
                                "mail-1-saved.bak",
                                "mail-1 -saved"};
    for (const char* name : rows) {
        SCOPED_TRACE(name);
        EXPECT_THROW(readPreferenceFile(name, {0, 1}), HandheldError);
    }
}

TEST(PreferenceFile, RefusesContentOfImpossibleSize) {
    EXPECT_THROW(readPreferenceFile("mail-1-saved", {0}), HandheldError);
    EXPECT_EQ(readPreferenceFile("mail-1-saved", std::vector<std::uint8_t>(65537)).second.data.size(),
              65535U);
    EXPECT_THROW(readPreferenceFile("mail-1-saved", std::vector<std::uint8_t>(65538)), HandheldError);
}

} // namespace
} // namespace tsr
