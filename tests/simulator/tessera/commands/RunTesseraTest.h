#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/Store.h"
#include "tessera/commands/runTessera.h"
#include "tessera/passwords.h"

namespace tsr {

// Commands on a store in a file that the test has to itself.
class RunTesseraTest : public ::testing::Test {
protected:
    void SetUp() override {
        ::unsetenv("TESSERA_PASSWORD");
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    int run(std::vector<std::string> arguments, const std::string& input = "") {
        arguments.insert(arguments.begin(), file);
        std::istringstream in(input);
        std::ostringstream outStream;
        std::ostringstream errStream;
        const int status = runTessera(arguments, in, outStream, errStream);
        out = outStream.str();
        err = errStream.str();
        return status;
    }

    void expectFailure(int status, const std::vector<std::string>& arguments, const std::string& message) {
        EXPECT_EQ(run(arguments), status) << message;
        EXPECT_THAT(err, ::testing::HasSubstr(message));
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1);
        EXPECT_EQ(out, "");
    }

    // Past the command, whose password hashes take their time.
    void addUser(const std::string& name, const std::string& zone = "CET-1CEST,M3.5.0,M10.5.0/3") {
        User user;
        user.name = name;
        user.zoneName = zone;
        user.zone = ZoneRule(zone);
        Store(file).addUser(user, hashPassword("secret", PasswordCost::Minimal));
    }

    std::string addMeeting(const std::string& user, const std::string& start, const std::string& subject) {
        EXPECT_EQ(run({"add", "meeting", "--user", user, "--start", start, "--subject", subject}), 0) << err;
        return out.substr(std::string("added meeting ").size(), 8);
    }

    std::string addMemo(std::vector<std::string> arguments, const std::string& input = "") {
        arguments.insert(arguments.begin(), {"add", "memo", "--user", "Ann"});
        EXPECT_EQ(run(arguments, input), 0) << err;
        return out.substr(std::string("added memo ").size(), 8);
    }

    std::string writeFile(const std::string& name, const std::string& text) const {
        std::ofstream(folder + "/" + name) << text;
        return folder + "/" + name;
    }

    const std::string folder = ::testing::TempDir() + "runTesseraTest."
                             + ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name()
                             + "." + ::testing::UnitTest::GetInstance()->current_test_info()->name();
    const std::string file = folder + "/office.db";
    std::string out;
    std::string err;
};

} // namespace tsr
