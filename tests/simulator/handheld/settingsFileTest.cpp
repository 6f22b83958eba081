#include "handheld/settingsFile.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"

namespace tsr {
namespace {

TEST(SettingsFile, GoesBothWays) {
    Handheld handheld;
    handheld.systemVersion = {3, 5};
    handheld.apiVersion = {2, 1};
    handheld.clock = 1012998896;
    handheld.userName = "Pat \"P\" Lee";
    Handheld back;
    readSettings(settingsText(handheld), back);
    EXPECT_EQ(back, handheld);
}

TEST(SettingsFile, KnowsTheClockOfTheMachine) {
    Handheld handheld;
    handheld.clock.reset();
    Handheld back;
    readSettings(settingsText(handheld), back);
    EXPECT_FALSE(back.clock.has_value());
}

TEST(SettingsFile, RefusesWhatItCannotUse) {
    const char* const rows[] = {
        "",
        "{}",
        "[1]",
        R"({"systemVersion":"4","apiVersion":"2.3","clock":0,"userName":""})",
        R"({"systemVersion":"4.1","apiVersion":"2.x","clock":0,"userName":""})",
        R"({"systemVersion":4.1,"apiVersion":"2.3","clock":0,"userName":""})",
        R"({"systemVersion":"4.1","apiVersion":"2.3","clock":-1,"userName":""})",
        R"({"systemVersion":"4.1","apiVersion":"2.3","clock":4294967296,"userName":""})", // above 32 bits
        R"({"systemVersion":"4.1","apiVersion":"2.3","clock":"soon","userName":""})",
        R"({"systemVersion":"4.1","apiVersion":"2.3","clock":0,"userName":7})",
    };
    for (const char* text : rows) {
        SCOPED_TRACE(text);
        Handheld handheld;
        EXPECT_THROW(readSettings(text, handheld), HandheldError);
    }
}

} // namespace
} // namespace tsr
