// Random edits of a user's mail on both sides over many HotSyncs of every type, under every filter, and in
// both directions between users of one server.

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "interchange/mailAddresses.h"
#include "records/PalmMailRecord.h"
#include "replication/MailItems.h"
#include "replication/ReplicationTest.h"
#include "replication/deviceText.h"
#include "tessera/mailDocument.h"

namespace tsr {
namespace {

using test::fromDeviceText;
using test::RandomWords;
using test::Strings;
using test::toDeviceText;

constexpr std::uint8_t inbox = PalmMailRecord::inbox;
constexpr std::uint8_t outbox = PalmMailRecord::outbox;
constexpr std::uint8_t deletedFolder = PalmMailRecord::deleted;
constexpr std::uint8_t filed = 3;
constexpr std::uint8_t drafts = PalmMailRecord::drafts;

enum Filter : std::uint8_t { All, SendOnly, Filtered, UnreadOnly };

PalmMailRecord parsed(const HandheldRecord& record) {
    PalmRecordBuffer buffer;
    buffer.appendBytes(record.data.data(), record.data.size());
    buffer.setCategoryId(record.category);
    return PalmMailRecord(buffer, false);
}

std::vector<std::uint8_t> bytesOf(const PalmMailRecord& mail) {
    PalmRecordBuffer buffer;
    mail.write(buffer);
    return {buffer.data(), buffer.data() + buffer.size()};
}

// What a user reads of a body: neither the information behind it nor the line feeds at its end, of which a
// draft gets more each time that it goes to Notes.
std::string readable(std::string body) {
    const auto block = body.find("\n\n\n\n\n\n----- Vellum Info -----");
    if (block != std::string::npos) body.erase(block);
    const auto last = body.find_last_not_of('\n');
    body.erase(last == std::string::npos ? 0 : last + 1);
    return body;
}

std::string addresses(const std::string& text) {
    std::string line;
    for (const std::string& address : dividedAddresses(text)) line += '<' + address + '>';
    return line;
}

std::string addresses(const Strings& list) {
    std::string line;
    for (const std::string& address : list) line += '<' + address + '>';
    return line;
}

// "subject | to | cc | body", and whether it is unread. The handheld doesn't send the importance of a draft.
using Message = std::pair<std::string, bool>;

Message messageOf(const PalmMailRecord& mail) {
    return {fromDeviceText(mail.subject + " | " + addresses(mail.to) + " | " + addresses(mail.cc) + " | "
                           + readable(mail.body)),
            !mail.isRead()};
}

Message messageOf(const Mail& mail) {
    const std::string& body = mail.notice ? mail.notice->body : mail.body;
    return {mail.subject + " | " + addresses(mail.to) + " | " + addresses(mail.cc) + " | " + readable(body),
            mail.unread};
}

class MailHistory : public test::ApplicationTest<test::MailItems, test::Replica> {
protected:
    void begin(std::uint32_t seed) {
        rule_ = seed % 2 == 0 ? 'C' : 'S';
        connectAfresh();
        User other;
        other.name = "Eve";
        office->store().addUser(other, hashPassword("pw", PasswordCost::Minimal));
        max_ = office->userId();
        eve_ = office->store().findUser("Eve")->id;
        setFilter(All);
        configure(NextReplication::Normal, rule_);
        posted_.clear();
        answers_.clear();
        unsent_.clear();
        drafted_.clear();
        alive_.clear();
    }

    void edit(RandomWords& random) {
        if (random.below(3) == 0) setFilter(static_cast<Filter>(random.below(4)));
        for (std::uint32_t left = random.below(5); left > 0; --left) editDevice(random);
        for (std::uint32_t left = random.below(5); left > 0; --left) editNotes(random);
    }

    // Each ends with a clean HotSync.
    void replicate(RandomWords& random) {
        switch (random.below(10)) {
        case 0: sync(true); return;
        case 1: configure(NextReplication::Slow, rule_); break;
        case 2: configure(NextReplication::Fast, rule_); break;
        case 3: // what wasn't sent before a reset is lost, but for new drafts
            configure(NextReplication::Reset, rule_);
            sync();
            configure(NextReplication::Slow, rule_);
            break;
        case 4:                                      // the device starts anew
            if (filter_ == SendOnly) setFilter(All); // or it would do so in each session that follows
            configure(NextReplication::Clear, rule_);
            forgetOutbox();
            drafted_.clear();
            hotSync();
            startApplication();
            break;
        case 5: refuseOutgoingMail(); break;
        default: break;
        }
        sync();
    }

    void expectAgreement() {
        SCOPED_TRACE("filter " + std::to_string(filter_));
        std::multimap<std::string, bool> onDevice;
        std::set<std::string> onDeviceAlone; // it may: what was filed before Notes knew it
        for (const HandheldRecord& record : database().records().all()) {
            if (record.isGone()) continue; // until there is a session for more than sending
            EXPECT_NE(record.category, outbox) << "not sent";
            EXPECT_NE(record.category, deletedFolder) << "not deleted";
            const PalmMailRecord mail = parsed(record);
            onDevice.insert(messageOf(mail));
            if (record.category == filed) onDeviceAlone.insert(messageOf(mail).first);
        }
        std::set<std::string> seen;
        for (const char* const folder : {inboxFolder, draftsFolder}) {
            for (const Document& document : mailIn(office->store(), max_, folder)) {
                const Mail mail = toMail(document.properties);
                const Message message = messageOf(mail);
                EXPECT_TRUE(seen.insert(message.first).second) << message.first << " is there twice";
                const auto found = onDevice.find(message.first);
                if (found == onDevice.end()) {
                    EXPECT_FALSE(passesFilter(mail)) << message.first << " isn't on the device";
                    continue;
                }
                if (filter_ != SendOnly) {
                    EXPECT_EQ(found->second, message.second) << message.first << " unread";
                }
                onDevice.erase(found);
            }
        }
        for (const auto& [line, unread] : onDevice) {
            if (filter_ == SendOnly || onDeviceAlone.contains(line)) continue;
            ADD_FAILURE() << line << " isn't in Notes";
        }
        expectNothingIsLost();
        expectPostIsDelivered();
        if (filter_ != SendOnly) unsent_.clear();
    }

private:
    void setFilter(Filter filter) {
        filter_ = filter;
        Preference preference;
        preference.data = {filter, 1, 1, 0, 0x0F, 0xA0, 0, 0};
        for (const char letter : filterWord()) preference.data.push_back(static_cast<std::uint8_t>(letter));
        preference.data.push_back(0);
        handheld.preferences[{kind().application().creator, 1, true}] = preference;
    }

    static std::string filterWord() { return "mil"; } // of "Milk": the case doesn't count

    bool passesFilter(const Mail& mail) const {
        switch (filter_) {
        case All: return true;
        case SendOnly: return false;
        case Filtered: return mail.importance == Mail::High || mail.subject.find("Mil") != std::string::npos;
        default: return mail.unread;
        }
    }

    void editDevice(RandomWords& random) {
        const std::uint32_t what = random.below(10);
        if (what == 0) return addDraft(random);
        if (what == 1) return compose(random);
        const std::optional<HandheldRecord> record = chosen(random);
        if (!record) return addDraft(random);
        PalmMailRecord mail = parsed(*record);
        switch (what) {
        case 2:
        case 3: return reply(random, *record, mail);
        case 4:
        case 5:
            if (record->category == drafts) return editDraft(random, *record, mail);
            [[fallthrough]];
        case 6:
            if (unsent_.contains(record->id)) return;
            mail.setRead(!mail.isRead());
            database().editRecord(record->id, bytesOf(mail));
            return;
        case 7:
            // A session for sending alone empties the folder, and Notes never hears of it.
            if (filter_ == SendOnly) return;
            forget(fromDeviceText(mail.subject));
            database().moveRecord(record->id, deletedFolder);
            return;
        case 8: // where a change would wait until the message comes back into its folder
            if (!unsent_.contains(record->id)) database().moveRecord(record->id, filed);
            return;
        default: forget(fromDeviceText(mail.subject)); database().deleteRecord(record->id);
        }
    }

    // One in a folder that replicates.
    std::optional<HandheldRecord> chosen(RandomWords& random) {
        std::vector<HandheldRecord> candidates;
        for (const HandheldRecord& record : database().records().all()) {
            if (!record.isGone() && (record.category == inbox || record.category == drafts))
                candidates.push_back(record);
        }
        if (candidates.empty()) return std::nullopt;
        return candidates[random.below(static_cast<std::uint32_t>(candidates.size()))];
    }

    static PalmMailRecord randomRecord(RandomWords& random) {
        PalmMailRecord mail;
        mail.subject = toDeviceText(random.word() + random.serial());
        mail.body = toDeviceText(random.linesOfText()) + std::string(random.below(4), '\n');
        mail.setPriority(random.below(3));
        mail.setRead(true); // the mark of a new one doesn't go to Notes before it is changed
        if (random.flag()) mail.to = "Eve";
        if (random.flag()) mail.cc = "Max\nNobody we know";
        return mail;
    }

    void addDraft(RandomWords& random) {
        const PalmMailRecord mail = randomRecord(random);
        unsent_.insert(database().addRecord(bytesOf(mail), drafts));
        drafted_.insert(fromDeviceText(mail.subject));
    }

    void editDraft(RandomWords& random, const HandheldRecord& record, PalmMailRecord mail) {
        mail.body = toDeviceText(random.linesOfText());
        if (random.flag()) mail.to = "Eve\nSomebody else";
        database().editRecord(record.id, bytesOf(mail));
        unsent_.insert(record.id);
    }

    void compose(RandomWords& random) {
        PalmMailRecord mail = randomRecord(random);
        mail.to = random.flag() ? "Eve" : "Eve\nMax";
        mail.cc.clear();
        mail.setWantsSignature(random.flag());
        post(mail);
    }

    // With history, so that what is known of the original goes along.
    void reply(RandomWords& random, const HandheldRecord& record, const PalmMailRecord& original) {
        if (record.category != inbox) return;
        PalmMailRecord mail;
        mail.subject = "Re: " + toDeviceText(random.word() + random.serial());
        mail.to = "Eve";
        mail.body = "Yes\nEve wrote:\n" + original.body;
        const bool isOfNotice = original.body.find("UNID:") != std::string::npos;
        post(mail);
        answers_[fromDeviceText(mail.subject)] = isOfNotice;
    }

    void post(const PalmMailRecord& mail) {
        database().addRecord(bytesOf(mail), outbox);
        const std::string subject = fromDeviceText(mail.subject);
        posted_[subject] = mail.to.find("Max") == std::string::npos ? Strings{"Eve"} : Strings{"Eve", "Max"};
    }

    // A device that starts anew has nothing of what it hasn't sent.
    void forgetOutbox() {
        for (const HandheldRecord& record : database().records().all()) {
            if (!record.isGone() && record.category == outbox)
                posted_.erase(fromDeviceText(parsed(record).subject));
        }
    }

    void editNotes(RandomWords& random) {
        std::vector<Document> documents = mailIn(office->store(), max_, inboxFolder);
        const std::vector<Document> inDrafts = mailIn(office->store(), max_, draftsFolder);
        documents.insert(documents.end(), inDrafts.begin(), inDrafts.end());
        const std::uint32_t what = documents.empty() ? 0 : random.below(8);
        if (what <= 2) return arrive(random);
        if (what == 3) {
            const Mail mail = randomMail(random);
            saveDraft(office->store(), max_, mail);
            alive_.insert(mail.subject);
            return;
        }
        Document document = documents[random.below(static_cast<std::uint32_t>(documents.size()))];
        Mail mail = toMail(document.properties);
        if (what <= 5) {
            markUnread(office->store(), max_, document.unid, !mail.unread);
        } else if (what == 6) {
            forget(mail.subject);
            removeFromNotes(document);
        } else {
            mail.body = random.linesOfText();
            setMail(document.properties, mail);
            replaceInNotes(document);
        }
    }

    Mail randomMail(RandomWords& random) const {
        Mail mail;
        mail.from = "Eve";
        mail.to = {"Max"};
        if (random.flag()) mail.cc = {"Ann", "Bob"};
        mail.subject = random.word() + random.serial();
        mail.body = random.linesOfText();
        mail.date = test::noon;
        mail.importance = static_cast<int>(1 + random.below(3));
        return mail;
    }

    void arrive(RandomWords& random) {
        Mail mail = randomMail(random);
        if (random.below(3) == 0) {
            mail.notice = MeetingNotice{.body = "You are invited to " + random.word() + random.serial(),
                                        .actions = {"Accept", "Decline"},
                                        .room = "Small room",
                                        .minutes = 45};
        }
        deliver(office->store(), max_, mail);
        alive_.insert(mail.subject);
    }

    void forget(const std::string& subject) { // who deletes a message wants it to be lost
        alive_.erase(subject);
        drafted_.erase(subject);
    }

    void expectNothingIsLost() {
        if (filter_ != SendOnly) alive_.merge(drafted_);
        std::set<std::string> left = alive_;
        for (const char* const folder : {inboxFolder, draftsFolder}) {
            for (const Document& document : mailIn(office->store(), max_, folder))
                left.erase(toMail(document.properties).subject);
        }
        EXPECT_THAT(left, testing::IsEmpty());
    }

    // Twice in a row: it stays in the Outbox, and both logs tell of it. The server mends itself behind that.
    void refuseOutgoingMail() {
        FaultOrders orders;
        for (const auto& [subject, names] : posted_) orders.refusedSubjects.insert(subject);
        std::size_t waiting = 0;
        for (const HandheldRecord& record : database().records().all()) waiting += record.category == outbox;
        office->service().orderFaults(orders);
        for (int session = 0; session < 2; ++session) {
            hotSync();
            std::size_t refused = 0;
            for (const std::string& line : log())
                refused += line.find("refused by order") != std::string::npos;
            EXPECT_EQ(refused, waiting);
        }
        office->service().orderFaults({});
    }

    // To each addressee once, and with the identity of what it answers where that was known.
    void expectPostIsDelivered() {
        std::map<std::string, std::uint32_t> arrived;
        for (const auto& [name, id] : {std::pair("Eve", eve_), std::pair("Max", max_)}) {
            for (const Document& document : mailIn(office->store(), id, inboxFolder)) {
                const Mail mail = toMail(document.properties);
                if (!posted_.contains(mail.subject)) continue;
                EXPECT_EQ(++arrived[name + (' ' + mail.subject)], 1U) << mail.subject << " arrived twice";
                if (name == std::string("Eve") && answers_.contains(mail.subject)) {
                    EXPECT_EQ(!mail.answers.empty(), answers_.at(mail.subject)) << mail.subject;
                }
            }
        }
        for (const auto& [subject, names] : posted_) EXPECT_EQ(arrived["Eve " + subject], 1U) << subject;
    }

    char rule_ = 'C';
    Filter filter_ = All;
    std::int64_t max_ = 0;
    std::int64_t eve_ = 0;
    std::map<std::string, Strings> posted_; // from subject to addressees
    std::map<std::string, bool> answers_;   // from subject of a reply to whether it knows what it answers
    std::set<std::string> drafted_;         // subjects of new drafts of the device, and
    std::set<std::string> alive_;           // of what Notes had, but for what somebody deleted
    std::set<std::uint32_t> unsent_;        // ids of drafts that are new or changed
};

TEST_F(MailHistory, MailConverges) {
    for (std::uint32_t seed = 1; seed <= 400 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        begin(seed);
        RandomWords random(seed);
        for (int round = 0; round < 5 && !HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            edit(random);
            replicate(random);
            expectAgreement();
            expectNothingMoves();
        }
    }
}

} // namespace
} // namespace tsr
