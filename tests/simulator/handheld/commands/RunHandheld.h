#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "handheld/HandheldFolder.h"
#include "handheld/commands/runHandheld.h"
#include "simulator/handheld/TemporaryFolder.h"

namespace tsr {

// Commands on a handheld in a folder that the test has to itself.
class RunHandheld : public testing::Test {
public:
    using Words = std::vector<std::string>;

protected:
    std::string folder() const { return (temporary_.path() / "palm").string(); }
    std::string file(const char* name) const { return (temporary_.path() / name).string(); }

    int run(Words words, const std::string& typed = {}) {
        out_.str({});
        err_.str({});
        words.insert(words.begin(), folder());
        std::istringstream in(typed);
        return runHandheld(words, in, out_, err_);
    }

    void init() { ASSERT_EQ(run({"init", "--clock", "2002-02-06T12:34:56"}), 0) << err_.str(); }

    void expectRefused(const Words& words, int status) {
        SCOPED_TRACE(testing::PrintToString(words));
        const Handheld before = HandheldFolder::open(folder()).handheld();
        EXPECT_EQ(run(words), status);
        EXPECT_THAT(err_.str(), testing::MatchesRegex("handheld: [^\n]+\n"));
        EXPECT_THAT(out_.str(), testing::IsEmpty());
        EXPECT_EQ(HandheldFolder::open(folder()).handheld(), before);
    }

    std::vector<HandheldRecord> memos() {
        return HandheldFolder::open(folder()).handheld().find("MemoDB")->records().all();
    }
    nlohmann::json json() const { return nlohmann::json::parse(out_.str()); }

    TemporaryFolder temporary_;
    std::ostringstream out_;
    std::ostringstream err_;
};

} // namespace tsr
