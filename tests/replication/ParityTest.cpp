// Every build of the conduit leaves the same bytes: in the databases of the handheld, on the wire and in the
// HotSync log. The one that is linked in here lives through a history first, and each of the others through
// the same.

#include "replication/DatebookHistory.h"
#include "replication/Histories.h"
#include "replication/InProcessHost.h"
#include "replication/MailHistory.h"
#include "replication/RecordingHost.h"
#include "replication/RemoteHost.h"
#include "replication/conduitHosts.h"

namespace tsr {
namespace {

using test::ConduitHost;
using test::RecordingHost;
using test::SessionPicture;

using Pictures = std::vector<SessionPicture>;

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

    template <typename Live>
    void expectSamePictures(Live live) {
        const Pictures expected = picturesWith(std::make_unique<test::InProcessHost>(), live);
        ASSERT_FALSE(expected.empty());
        for (const ConduitHost& host : test::conduitHosts()) {
            SCOPED_TRACE(host.name);
            expectSame(picturesWith(std::make_unique<test::RemoteHost>(host.command), live), expected);
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
            ASSERT_EQ(actual[i].log, expected[i].log);
            ASSERT_FALSE(expected[i].wire.empty());
            ASSERT_TRUE(actual[i].wire == expected[i].wire);
            ASSERT_EQ(actual[i].databases, expected[i].databases);
        }
    }

    test::WireTap tap_;
};

class Parity : public Tapped<test::Histories> {};
class DatebookParity : public Tapped<test::DatebookHistory> {};
class MailParity : public Tapped<test::MailHistory> {};

constexpr std::uint32_t seeds = 40;

TEST_F(Parity, ContactsMemosAndTasksLeaveTheSameBytes) {
    expectSamePictures([this] {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed)
            run({&contacts, &memos, &tasks}, seed);
    });
}

TEST_F(DatebookParity, MeetingsLeaveTheSameBytes) {
    expectSamePictures([this] {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) run(seed);
    });
}

TEST_F(MailParity, MailLeavesTheSameBytes) {
    expectSamePictures([this] {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) run(seed);
    });
}

} // namespace
} // namespace tsr
