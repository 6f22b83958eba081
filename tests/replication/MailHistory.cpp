#include "replication/MailHistory.h"

#include <algorithm>

#include "interchange/mailAddresses.h"
#include "replication/deviceText.h"
#include "tessera/mailDocument.h"

namespace tsr::test {

namespace {

constexpr std::uint8_t inbox = PalmMailRecord::inbox;
constexpr std::uint8_t outbox = PalmMailRecord::outbox;
constexpr std::uint8_t deletedFolder = PalmMailRecord::deleted;
constexpr std::uint8_t filed = 3;
constexpr std::uint8_t drafts = PalmMailRecord::drafts;

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

const std::string filterWord = "mil"; // on the subject, and found in "Milk": the case doesn't count

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

PalmMailRecord randomRecord(RandomWords& random) {
    PalmMailRecord mail;
    mail.subject = toDeviceText(random.word() + random.serial());
    mail.body = toDeviceText(random.linesOfText()) + std::string(random.below(4), '\n');
    mail.setPriority(random.below(3));
    mail.setRead(true); // the mark of a new one doesn't go to Notes before it is changed
    if (random.flag()) mail.to = "Eve";
    if (random.flag()) mail.cc = "Max\nNobody we know";
    return mail;
}

Mail randomMail(RandomWords& random) {
    Mail mail;
    mail.from = "Eve";
    mail.to = {"Max"};
    if (random.flag()) mail.cc = {"Ann", "Bob"};
    mail.subject = random.word() + random.serial();
    mail.body = random.linesOfText();
    mail.date = noon;
    mail.importance = static_cast<int>(1 + random.below(3));
    return mail;
}

} // namespace

void MailHistory::run(std::uint32_t seed) {
    begin(seed);
    RandomWords random(seed);
    for (int round = 0; round < 5 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round) + ", filter " + std::to_string(filter_));
        edit(random);
        replicate(random);
        expectAgreement();
        expectNothingMoves();
    }
}

void MailHistory::begin(std::uint32_t seed) {
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

void MailHistory::edit(RandomWords& random) {
    if (random.below(3) == 0) setFilter(static_cast<Filter>(random.below(4)));
    for (std::uint32_t left = random.below(5); left > 0; --left) editDevice(random);
    for (std::uint32_t left = random.below(5); left > 0; --left) editNotes(random);
}

// Each ends with a clean HotSync.
void MailHistory::replicate(RandomWords& random) {
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

void MailHistory::expectAgreement() {
    expectSameMessages();
    expectNothingIsLost();
    expectPostIsDelivered();
    if (filter_ != SendOnly) unsent_.clear();
}

void MailHistory::expectSameMessages() {
    std::map<std::string, bool> onDevice = messagesOnDevice();
    for (const Document& document : replicatedInNotes()) {
        const Mail mail = toMail(document.properties);
        const auto [line, unread] = messageOf(mail);
        const auto found = onDevice.find(line);
        if (found == onDevice.end()) {
            EXPECT_FALSE(passesFilter(mail)) << line << " isn't on the device";
            continue;
        }
        if (filter_ != SendOnly) {
            EXPECT_EQ(found->second, unread) << line << " unread";
        }
        onDevice.erase(found);
    }
    for (const auto& [line, unread] : onDevice) {
        if (filter_ != SendOnly) ADD_FAILURE() << line << " isn't in Notes";
    }
}

// Without what was filed before Notes knew it, which stays on the device alone.
std::map<std::string, bool> MailHistory::messagesOnDevice() {
    std::set<std::string> inNotes;
    for (const Document& document : replicatedInNotes()) {
        const std::string line = messageOf(toMail(document.properties)).first;
        EXPECT_TRUE(inNotes.insert(line).second) << line << " is there twice";
    }
    std::map<std::string, bool> messages;
    for (const HandheldRecord& record : database().records().all()) {
        if (record.isGone()) continue; // until there is a session for more than sending
        EXPECT_NE(record.category, outbox) << "not sent";
        EXPECT_NE(record.category, deletedFolder) << "not deleted";
        const Message message = messageOf(parsed(record));
        if (record.category == filed && !inNotes.contains(message.first)) continue;
        EXPECT_TRUE(messages.insert(message).second) << message.first << " is there twice";
    }
    return messages;
}

std::vector<Document> MailHistory::replicatedInNotes() {
    std::vector<Document> documents = mailIn(office->store(), max_, inboxFolder);
    for (Document& document : mailIn(office->store(), max_, draftsFolder))
        documents.push_back(std::move(document));
    return documents;
}

void MailHistory::expectNothingIsLost() {
    if (filter_ != SendOnly) alive_.merge(drafted_);
    std::set<std::string> left = alive_;
    for (const char* const folder : {inboxFolder, draftsFolder}) {
        for (const Document& document : mailIn(office->store(), max_, folder))
            left.erase(toMail(document.properties).subject);
    }
    EXPECT_THAT(left, testing::IsEmpty());
}

// To each addressee once, and with the identity of what it answers where that was known.
void MailHistory::expectPostIsDelivered() {
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
    for (const std::string& subject : posted_) EXPECT_EQ(arrived["Eve " + subject], 1U) << subject;
}

void MailHistory::setFilter(Filter filter) {
    filter_ = filter;
    Preference preference;
    preference.data = {filter, 1, 1, 0, 0x0F, 0xA0, 0, 0};
    for (const char letter : filterWord) preference.data.push_back(static_cast<std::uint8_t>(letter));
    preference.data.push_back(0);
    handheld.preferences[{kind().application().creator, 1, true}] = preference;
}

bool MailHistory::passesFilter(const Mail& mail) const {
    switch (filter_) {
    case All: return true;
    case SendOnly: return false;
    case Filtered: return mail.importance == Mail::High || mail.subject.find("Mil") != std::string::npos;
    default: return mail.unread;
    }
}

void MailHistory::editDevice(RandomWords& random) {
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
std::optional<HandheldRecord> MailHistory::chosen(RandomWords& random) {
    std::vector<HandheldRecord> candidates;
    for (const HandheldRecord& record : database().records().all()) {
        if (!record.isGone() && (record.category == inbox || record.category == drafts))
            candidates.push_back(record);
    }
    if (candidates.empty()) return std::nullopt;
    return candidates[random.below(static_cast<std::uint32_t>(candidates.size()))];
}

void MailHistory::addDraft(RandomWords& random) {
    const PalmMailRecord mail = randomRecord(random);
    unsent_.insert(database().addRecord(bytesOf(mail), drafts));
    drafted_.insert(fromDeviceText(mail.subject));
}

void MailHistory::editDraft(RandomWords& random, const HandheldRecord& record, PalmMailRecord mail) {
    mail.body = toDeviceText(random.linesOfText());
    if (random.flag()) mail.to = "Eve\nSomebody else";
    database().editRecord(record.id, bytesOf(mail));
    unsent_.insert(record.id);
}

void MailHistory::compose(RandomWords& random) {
    PalmMailRecord mail = randomRecord(random);
    mail.to = random.flag() ? "Eve" : "Eve\nMax";
    mail.cc.clear();
    mail.setWantsSignature(random.flag());
    post(mail);
}

// With history, so that what is known of the original goes along.
void MailHistory::reply(RandomWords& random, const HandheldRecord& record, const PalmMailRecord& original) {
    if (record.category != inbox) return;
    PalmMailRecord mail;
    mail.subject = "Re: " + toDeviceText(random.word() + random.serial());
    mail.to = "Eve";
    mail.body = "Yes\nEve wrote:\n" + original.body;
    const bool isOfNotice = original.body.find("UNID:") != std::string::npos;
    post(mail);
    answers_[fromDeviceText(mail.subject)] = isOfNotice;
}

void MailHistory::post(const PalmMailRecord& mail) {
    database().addRecord(bytesOf(mail), outbox);
    const std::string subject = fromDeviceText(mail.subject);
    posted_.insert(subject);
}

// A device that starts anew has nothing of what it hasn't sent.
void MailHistory::forgetOutbox() {
    for (const HandheldRecord& record : database().records().all()) {
        if (!record.isGone() && record.category == outbox)
            posted_.erase(fromDeviceText(parsed(record).subject));
    }
}

void MailHistory::editNotes(RandomWords& random) {
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

void MailHistory::arrive(RandomWords& random) {
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

void MailHistory::forget(const std::string& subject) { // who deletes a message wants it to be lost
    alive_.erase(subject);
    drafted_.erase(subject);
}

// Twice in a row: it stays in the Outbox, and both logs tell of it. The server mends itself behind that.
void MailHistory::refuseOutgoingMail() {
    FaultOrders orders;
    orders.refusedSubjects = posted_;
    std::size_t waiting = 0;
    for (const HandheldRecord& record : database().records().all()) waiting += record.category == outbox;
    office->service().orderFaults(orders);
    for (int session = 0; session < 2; ++session) {
        hotSync();
        std::size_t refused = 0;
        for (const std::string& line : log()) refused += line.find("refused by order") != std::string::npos;
        EXPECT_EQ(refused, waiting);
    }
    office->service().orderFaults({});
}

} // namespace tsr::test
