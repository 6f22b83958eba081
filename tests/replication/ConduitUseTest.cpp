// What calls of the conduit leave behind in the process of the HotSync manager: nothing.

#include "replication/MemoItems.h"
#include "replication/RemoteHost.h"
#include "replication/ReplicationTest.h"
#include "replication/conduitHosts.h"

namespace tsr {
namespace {

using test::ConduitHost;
using test::RemoteHost;
using test::SessionAnswer;
using test::SessionRequest;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

class ConduitUse : public test::ApplicationTest<test::MemoItems> {
protected:
    static constexpr std::uint64_t calls = 1010; // the first ten make what stays

    // Each sends a changed memo, which takes the place of the server's, and receives a new one.
    SessionRequest manyCalls() {
        const std::uint32_t milk = database().addRecord(text("Milk"));
        sync();
        database().editRecord(milk, text("Cream"));
        addToNotes({{"Subject", {"Lunch"}}});
        SessionRequest request;
        request.creator = kind().application().creator;
        request.clock = test::noon;
        request.repeats = calls;
        request.handheld = handheld;
        return request;
    }

    static std::vector<std::uint8_t> text(const std::string& line) {
        return {line.c_str(), line.c_str() + line.size() + 1};
    }

    static void expectNothingLeft(const SessionAnswer& answer) {
        EXPECT_EQ(answer.handlesLeft, 0);
        EXPECT_LT(answer.bytesLeft, 1000); // less than a byte for each call
    }
};

TEST_F(ConduitUse, AThousandCallsLeaveNothingBehind) {
    for (const ConduitHost& host : test::conduitHosts()) {
        SCOPED_TRACE(host.name);
        startAfresh();
        const SessionAnswer answer = RemoteHost(host.command).ask(manyCalls());
        EXPECT_EQ(answer.result, 0);
        EXPECT_THAT(answer.log, ElementsAre("19 Memo Pad", "20 Memo Pad"));
        EXPECT_EQ(answer.handheld.find("MemoDB")->records().size(), 2U);
        expectNothingLeft(answer);
    }
}

TEST_F(ConduitUse, AThousandCallsWithoutAServerLeaveNothingBehind) {
    for (const ConduitHost& host : test::conduitHosts()) {
        SCOPED_TRACE(host.name);
        startAfresh();
        const SessionRequest request = manyCalls();
        office.reset(); // nobody listens at its port any longer
        const SessionAnswer answer = RemoteHost(host.command).ask(request);
        EXPECT_EQ(answer.result, 0);
        EXPECT_THAT(answer.log, Contains(EndsWith("** Unable to connect to Tessera Services.")));
        expectNothingLeft(answer);
    }
}

TEST_F(ConduitUse, ACallThatFailsOnTheHandheldLeavesNothingBehind) {
    for (const ConduitHost& host : test::conduitHosts()) {
        SCOPED_TRACE(host.name);
        startAfresh();
        SessionRequest request = manyCalls();
        request.failedCall = 20;
        const SessionAnswer answer = RemoteHost(host.command).ask(request);
        EXPECT_NE(answer.failedCall, "");
        expectNothingLeft(answer);
    }
}

TEST_F(ConduitUse, AnUnknownApplicationIsRefused) {
    for (const ConduitHost& host : test::conduitHosts()) {
        SCOPED_TRACE(host.name);
        startAfresh();
        SessionRequest request = manyCalls();
        request.creator = 0;
        const SessionAnswer answer = RemoteHost(host.command).ask(request);
        EXPECT_EQ(answer.result, -1);
        EXPECT_TRUE(answer.log.empty());
        expectNothingLeft(answer);
    }
}

} // namespace
} // namespace tsr
