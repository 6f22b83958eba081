// Every build of the conduit leaves the same bytes: in the databases and preferences of the handheld, on the
// wire and in the HotSync log, and shows its user the same. The one that is linked in here lives through a
// history first, and each of the others through the same.

#include <algorithm>

#include "replication/DatebookHistory.h"
#include "replication/FreeTimeHistory.h"
#include "replication/Histories.h"
#include "replication/InProcessHost.h"
#include "replication/MailHistory.h"
#include "replication/RecordingHost.h"
#include "replication/RemoteHost.h"
#include "replication/conduitHosts.h"

namespace tsr {
namespace {

using test::ConduitHost;
using test::RandomWords;
using test::RecordingHost;
using test::SessionPicture;
using test::SessionRecord;

using Pictures = std::vector<SessionPicture>;

constexpr std::uint32_t callsOfASession = 60; // more or less: behind the last one nothing fails

template <typename Holds>
std::ptrdiff_t count(const Pictures& pictures, Holds holds) {
    return std::count_if(pictures.begin(), pictures.end(), holds);
}

// One of the kinds of histories, with all that goes over the wire noted down.
template <typename Histories>
class Tapped : public Histories {
protected:
    template <typename Live>
    Pictures picturesWith(std::unique_ptr<test::ISessionHost> host, Live live) {
        RecordingHost recording(std::move(host), tap_);
        live();
        return recording.pictures();
    }

    // At least so many of the sessions fail in a call of the handheld.
    template <typename Live>
    void expectSamePictures(Live live, std::ptrdiff_t failures = 0) {
        const Pictures expected = picturesWith(std::make_unique<test::InProcessHost>(), live);
        ASSERT_GT(count(expected, [](const SessionPicture& each) { return !each.wire.empty(); }), 0);
        ASSERT_GE(count(expected, [](const auto& each) { return !each.record.failedCall.empty(); }),
                  failures);
        for (const ConduitHost& host : test::conduitHosts()) {
            SCOPED_TRACE(host.name);
            expectSame(picturesWith(std::make_unique<test::RemoteHost>(host.command), live), expected);
        }
    }

    // Of a history that begins and is edited by itself.
    void runWithFailedCalls(std::uint32_t seed) {
        this->begin(seed);
        RandomWords random(seed);
        failAndMend(*this, random, [&] { this->edit(random); });
    }

    // A life with edits between sessions of which every other one fails.
    template <typename Edit>
    static void failAndMend(test::Replica& replica, RandomWords& random, Edit edit) {
        for (int round = 0; round < 4; ++round) {
            edit();
            replica.hotSyncWithFailedCall(1 + random.below(callsOfASession));
            replica.hotSync();
        }
    }

private:
    // The same for all, so that the handheld is configured alike.
    std::string serverPort() override {
        tap_.setServer(static_cast<std::uint16_t>(std::stoi(this->office->port())));
        return std::to_string(tap_.port());
    }

    static void expectSame(const Pictures& actual, const Pictures& expected) {
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            SCOPED_TRACE("session " + std::to_string(i));
            expectSame(actual[i].record, expected[i].record);
            ASSERT_TRUE(actual[i].wire == expected[i].wire);
            ASSERT_EQ(actual[i].databases, expected[i].databases);
            ASSERT_TRUE(actual[i].preferences == expected[i].preferences);
        }
    }

    static void expectSame(const SessionRecord& actual, const SessionRecord& expected) {
        ASSERT_EQ(actual.result, expected.result);
        ASSERT_EQ(actual.log, expected.log);
        ASSERT_EQ(actual.progress, expected.progress);
        ASSERT_EQ(actual.failedCall, expected.failedCall);
    }

    test::WireTap tap_;
};

class Parity : public Tapped<test::Histories> {};
class DatebookParity : public Tapped<test::DatebookHistory> {};
class MailParity : public Tapped<test::MailHistory> {};
class FreeTimeParity : public Tapped<test::FreeTimeHistory> {};

// A build alone has only the way between two processes to compare.
std::uint32_t seedsOf(std::uint32_t many) { return test::conduitHosts().size() > 1 ? many : many / 8; }

const std::uint32_t seeds = seedsOf(40);
const std::uint32_t failingSeeds = seedsOf(24);

// Does `live` with one seed after the other.
template <typename Live>
auto forSeeds(std::uint32_t last, Live live) {
    return [last, live] {
        for (std::uint32_t seed = 1; seed <= last && !testing::Test::HasFailure(); ++seed) live(seed);
    };
}

TEST_F(Parity, ContactsMemosAndTasksLeaveTheSameBytes) {
    expectSamePictures(forSeeds(seeds, [this](std::uint32_t seed) {
        run({&contacts, &memos, &tasks}, seed);
    }));
}

TEST_F(Parity, ContactsMemosAndTasksLeaveTheSameBytesWhereCallsFail) {
    const auto live = forSeeds(failingSeeds, [this](std::uint32_t seed) {
        for (const test::ItemKind* const kind : test::Histories::Kinds{&contacts, &memos, &tasks}) {
            connectAfresh();
            test::ItemReplica replica(*kind, handheld, office);
            replica.configure(NextReplication::Normal);
            test::History history(replica, 'C');
            RandomWords random(seed);
            failAndMend(replica, random, [&] { history.edit(random); });
        }
    });
    expectSamePictures(live, failingSeeds);
}

TEST_F(DatebookParity, MeetingsLeaveTheSameBytes) {
    expectSamePictures(forSeeds(seeds, [this](std::uint32_t seed) { run(seed); }));
}

TEST_F(DatebookParity, MeetingsLeaveTheSameBytesWhereCallsFail) {
    expectSamePictures(forSeeds(failingSeeds, [this](std::uint32_t seed) { runWithFailedCalls(seed); }),
                       failingSeeds);
}

TEST_F(MailParity, MailLeavesTheSameBytes) {
    expectSamePictures(forSeeds(seeds, [this](std::uint32_t seed) { run(seed); }));
}

TEST_F(MailParity, MailLeavesTheSameBytesWhereCallsFail) {
    expectSamePictures(forSeeds(failingSeeds, [this](std::uint32_t seed) { runWithFailedCalls(seed); }),
                       failingSeeds);
}

TEST_F(FreeTimeParity, FreeTimeLeavesTheSameBytes) {
    expectSamePictures(forSeeds(seeds, [this](std::uint32_t seed) { run(seed); }));
}

TEST_F(FreeTimeParity, FreeTimeLeavesTheSameBytesWhereCallsFail) {
    expectSamePictures(forSeeds(failingSeeds, [this](std::uint32_t seed) { runWithFailedCalls(seed); }),
                       failingSeeds);
}

} // namespace
} // namespace tsr
