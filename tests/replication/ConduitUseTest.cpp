// What calls of the conduit leave behind in the process of the HotSync manager: nothing.

#include "handheld/forms/DatebookForm.h"
#include "handheld/forms/MailForm.h"
#include "replication/ContactItems.h"
#include "replication/FreeTimeItems.h"
#include "replication/MailItems.h"
#include "replication/MeetingItems.h"
#include "replication/MemoItems.h"
#include "replication/RemoteHost.h"
#include "replication/ReplicationTest.h"
#include "replication/TaskItems.h"
#include "replication/conduitHosts.h"

namespace tsr {
namespace {

using test::ConduitHost;
using test::RandomWords;
using test::RemoteHost;
using test::Replica;
using test::SessionAnswer;
using test::SessionRequest;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::SizeIs;

constexpr std::uint64_t thousand = 1000 + test::callsThatWarmUp;
constexpr std::uint64_t hundreds = 200 + test::callsThatWarmUp;

const test::ContactItems contacts;
const test::MeetingItems meetings;
const test::MailItems mail;
const test::MemoItems memos;
const test::TaskItems tasks;
const test::FreeTimeItems freeTime;

class ConduitUse : public test::ReplicationTest {
protected:
    // A handheld and an office with an item of each application. That of the handheld has changed since then,
    // and Notes has a new one.
    void startAfresh() {
        connectAfresh();
        office->addUser("Ann");
        for (const test::ItemKind* const kind :
             std::initializer_list<const test::ItemKind*>{&contacts, &memos, &tasks})
            addItems(*kind);
        addMeetings();
        addMail();
        FreeTimeDatabase::create(handheld);
        FreeTimeDatabase(handheld).add("Ann");
    }

    // Each finds the handheld as it is now: its item takes the place of the server's, and it receives the
    // other one.
    SessionRequest calls(const test::ReplicatedKind& kind, std::uint64_t count) const {
        SessionRequest request;
        request.creator = kind.application().creator;
        request.clock = test::noon;
        request.repeats = count;
        request.handheld = handheld;
        return request;
    }

    static void expectNothingLeft(const SessionAnswer& answer, const SessionRequest& request) {
        EXPECT_EQ(answer.handlesLeft, 0);
        EXPECT_LT(
            answer.bytesLeft,
            static_cast<std::int64_t>(request.repeats - test::callsThatWarmUp)); // less than one for each
    }

    template <typename Work>
    void forHosts(Work work) {
        for (const ConduitHost& host : test::conduitHosts()) {
            SCOPED_TRACE(host.name);
            startAfresh();
            RemoteHost remote(host.command);
            work(remote);
        }
    }

private:
    Replica replicaOf(const test::ReplicatedKind& kind) {
        Replica replica(kind, handheld, office);
        replica.configure(NextReplication::Normal);
        return replica;
    }

    void addItems(const test::ItemKind& kind) {
        Replica replica = replicaOf(kind);
        RandomWords random(1);
        const HandheldRecord record = kind.randomRecord(random);
        const std::uint32_t id = replica.database().addRecord(record.data);
        replica.sync();
        replica.database().editRecord(id, kind.edited(random, record).data);
        Properties properties;
        kind.rewrite(random, properties);
        replica.addToNotes(properties);
    }

    void addMeetings() {
        Replica replica = replicaOf(meetings);
        FieldValues fields{
            {"description", "Lunch"}, {"date", "2002-02-07"}, {"start", "12:00"}, {"end", "13:00"}};
        const std::uint32_t id = replica.database().addRecord(DatebookForm().write(fields));
        replica.sync();
        fields["description"] = "Dinner";
        replica.database().editRecord(id, DatebookForm().write(fields));
        Meeting meeting;
        meeting.subject = "Staff";
        meeting.start = test::noon;
        replica.addToNotes(toProperties(meeting));
    }

    // And one that is sent.
    void addMail() {
        constexpr std::uint8_t outbox = 1;
        constexpr std::uint8_t drafts = 4;
        Replica replica = replicaOf(mail);
        FieldValues fields{
            {"subject", "Milk"}, {"to", "Ann"}, {"body", "Two"}, {"date", "2002-02-06"}, {"read", "yes"}};
        const std::uint32_t id = replica.database().addRecord(MailForm().write(fields), drafts);
        replica.sync();
        fields["body"] = "Three";
        replica.database().editRecord(id, MailForm().write(fields));
        replica.database().addRecord(MailForm().write(fields), outbox);
        Mail message;
        message.from = "Ann";
        message.to = {"Max"};
        message.subject = "Tea";
        message.date = test::noon;
        deliver(office->store(), office->userId(), message);
    }
};

TEST_F(ConduitUse, ManyCallsOfAnApplicationLeaveNothingBehind) {
    struct Row {
        const test::ReplicatedKind& kind;
        std::uint64_t count;
        std::size_t records; // afterwards
    };
    // Of free time the configuration, Ann, three weeks and their checksums.
    const Row rows[] = {{memos, thousand, 2}, {contacts, hundreds, 2}, {meetings, hundreds, 2},
                        {mail, hundreds, 2},  {tasks, hundreds, 2},    {freeTime, hundreds, 6}};
    forHosts([&](RemoteHost& host) {
        for (const auto& [kind, count, records] : rows) {
            SCOPED_TRACE(kind.title());
            const SessionRequest request = calls(kind, count);
            const SessionAnswer answer = host.ask(request);
            EXPECT_EQ(answer.result, 0);
            const std::string title = kind.title();
            EXPECT_THAT(answer.log, ElementsAre("19 " + title, "20 " + title));
            EXPECT_THAT(answer.handheld.find(kind.application().database)->records().all(), SizeIs(records));
            expectNothingLeft(answer, request);
        }
    });
}

TEST_F(ConduitUse, AThousandCallsWithoutAServerLeaveNothingBehind) {
    forHosts([&](RemoteHost& host) {
        const SessionRequest request = calls(memos, thousand);
        office.reset(); // nobody listens at its port any longer
        const SessionAnswer answer = host.ask(request);
        EXPECT_EQ(answer.result, 0);
        EXPECT_THAT(answer.log, Contains(EndsWith("** Unable to connect to Tessera Services.")));
        expectNothingLeft(answer, request);
    });
}

TEST_F(ConduitUse, CallsThatFailOnTheHandheldLeaveNothingBehind) {
    struct Row {
        const test::ReplicatedKind& kind;
        std::vector<std::uint64_t> numbers;
    };
    const Row rows[] = {
        {memos, {1, 10, 20, 30, 40}}, // from the version of the handheld to the copy
        {mail, {25, 35}},
        {meetings, {25, 35}},
        {freeTime, {12, 20}},
    };
    forHosts([&](RemoteHost& host) {
        for (const auto& [kind, numbers] : rows) {
            for (const std::uint64_t number : numbers) {
                SCOPED_TRACE(testing::Message() << kind.title() << ' ' << number);
                SessionRequest request = calls(kind, hundreds);
                request.failedCall = number;
                const SessionAnswer answer = host.ask(request);
                EXPECT_NE(answer.failedCall, "");
                expectNothingLeft(answer, request);
            }
        }
    });
}

TEST_F(ConduitUse, CallsWithATraceLeaveNothingBehind) {
    forHosts([&](RemoteHost& host) {
        SessionRequest request = calls(memos, hundreds);
        request.traceFile = "TsrMemoPad.log";
        const SessionAnswer answer = host.ask(request);
        EXPECT_THAT(answer.trace, testing::HasSubstr("2.4.2.0")); // of the version record
        expectNothingLeft(answer, request);
    });
}

TEST_F(ConduitUse, AnUnknownApplicationIsRefused) {
    forHosts([&](RemoteHost& host) {
        SessionRequest request = calls(memos, thousand);
        request.creator = 0;
        const SessionAnswer answer = host.ask(request);
        EXPECT_EQ(answer.result, -1);
        EXPECT_TRUE(answer.log.empty());
        expectNothingLeft(answer, request);
    });
}

} // namespace
} // namespace tsr
