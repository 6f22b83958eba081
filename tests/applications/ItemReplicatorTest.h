#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/SessionTest.h"
#include "support/testClock.h"

#include "gmock/gmock.h"

namespace tsr::test {

using Strings = std::vector<std::string>;

// What a server answers, by request code.
using Answers = std::map<std::uint32_t, Strings>;

inline const std::string dbidText = "0123456789abcdef";
inline const std::string unidA = "0000000000000000000000000000000a";
inline const std::string unidB = "0000000000000000000000000000000b";
inline const std::string unidC = "0000000000000000000000000000000c";
inline const std::string noDbid = "0000000000000000";
inline const std::string noUnid = "00000000000000000000000000000000";

// Sessions of one application whose items have categories, between a handheld in memory and a scripted
// server. `Concrete` is its replicator.
template <typename Concrete, typename Traits>
class ItemReplicatorTest : public SessionTest {
protected:
    ItemReplicatorTest() {
        setClock(1012998896);
        configureNormal();
        nameCategories({"Unfiled", "Home"});
        palm->setApplication(traits.displayName, traits.appDbCreator, traits.appDbName, traits.appDbType,
                             traits.syncDbCreator, traits.syncDbName, traits.syncDbType);
    }

    void configureNormal() { configureType(2, static_cast<std::uint8_t>(traits.configCategory())); }

    void nameCategories(const Strings& names) {
        std::vector<std::uint8_t> block(2 + 16 * 16);
        for (std::size_t slot = 0; slot < names.size(); ++slot) {
            std::copy(names[slot].begin(), names[slot].end(),
                      block.begin() + static_cast<std::ptrdiff_t>(2 + 16 * slot));
        }
        database.setAppInfo(block);
    }

    std::string categoryName(std::size_t slot) {
        return reinterpret_cast<const char*>(database.appInfo()->data() + 2 + 16 * slot);
    }

    // Answers requests as `answer` says, for the sessions to come.
    void answerBy(ScriptedServer::Handler answer) {
        serve(std::move(answer));
        configureNormal();
    }

    // Answers each request code with its strings, and the usual ones as ever.
    void answerWith(const Answers& answers) {
        answerBy([answers](const WireRequest& request) { return answerOf(answers, request); });
    }

    static WireAnswer answerOf(const Answers& answers, const WireRequest& request) {
        const auto found = answers.find(request.code);
        if (found != answers.end()) return WireAnswer{.strings = found->second};
        return ScriptedServer::usualAnswer(request);
    }

    // One session, and the warnings in the HotSync log between its start and its end.
    Strings run() {
        hotSyncLogClear();
        Concrete(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
        const auto entries = logEntries();
        EXPECT_EQ(entries.front(), std::pair(traits.displayName, 19));
        EXPECT_EQ(entries.back(), std::pair(traits.displayName, 20));
        Strings warnings;
        for (std::size_t index = 1; index + 1 < entries.size(); ++index)
            warnings.push_back(entries[index].first);
        return warnings;
    }

    std::vector<Strings> sent(std::uint32_t code) {
        std::vector<Strings> result;
        for (const WireRequest& request : server->requests()) {
            if (request.code == code) result.push_back(request.strings);
        }
        return result;
    }

    const Traits traits;
    HandheldDatabase& database = handheld.create(traits.appDbName, traits.appDbType, traits.appDbCreator);
    CountedPtr<PalmProxy> palm = makeCounted<PalmProxy>(nullptr);
};

} // namespace tsr::test
