#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "records/PalmMailRecord.h"
#include "replication/MailItems.h"
#include "replication/ReplicationTest.h"
#include "tessera/Mail.h"

namespace tsr::test {

// Random edits of a user's mail on both sides over many HotSyncs of every type, under every filter, and mail
// that he sends to another user of the server. A history is what its seed makes of it.
class MailHistory : public ApplicationTest<MailItems, Replica> {
protected:
    void run(std::uint32_t seed);

    // What it is made of.
    void begin(std::uint32_t seed);
    void edit(RandomWords& random);

private:
    enum Filter : std::uint8_t { All, SendOnly, Filtered, UnreadOnly };

    void replicate(RandomWords& random); // to a clean HotSync, after which both sides agree

    void expectAgreement();
    void expectSameMessages();
    std::map<std::string, bool> messagesOnDevice(); // from line to whether it is unread
    std::vector<Document> replicatedInNotes();
    void expectNothingIsLost();
    void expectPostIsDelivered();

    void setFilter(Filter filter);
    bool passesFilter(const Mail& mail) const;

    void editDevice(RandomWords& random);
    std::optional<HandheldRecord> chosen(RandomWords& random);
    void addDraft(RandomWords& random);
    void editDraft(RandomWords& random, const HandheldRecord& record, PalmMailRecord mail);
    void compose(RandomWords& random);
    void reply(RandomWords& random, const HandheldRecord& record, const PalmMailRecord& original);
    void post(const PalmMailRecord& mail);
    void forgetOutbox();
    void editNotes(RandomWords& random);
    void arrive(RandomWords& random);
    void forget(const std::string& subject);
    void refuseOutgoingMail();

    char rule_ = 'C';
    Filter filter_ = All;
    std::int64_t max_ = 0;
    std::int64_t eve_ = 0;
    std::set<std::string> posted_;        // subjects of what was sent to Eve
    std::map<std::string, bool> answers_; // from subject of a reply to whether it knows what it answers
    std::set<std::string> drafted_;       // subjects of new drafts of the device, and
    std::set<std::string> alive_;         // of what Notes had, but for what somebody deleted
    std::set<std::uint32_t> unsent_;      // ids of drafts that are new or changed
};

} // namespace tsr::test
