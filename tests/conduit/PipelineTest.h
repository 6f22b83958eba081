#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "conduit/Replicator.h"
#include "foundation/GeneralError.h"
#include "foundation/signals.h"
#include "records/PalmDummyRecord.h"
#include "support/SessionTest.h"
#include "support/stringsOf.h"
#include "support/testClock.h"

#include "gmock/gmock.h"

namespace tsr::test {

inline const std::string pipelineDbid = "0123456789abcdef";

inline ItemId pipelineItem(std::uint32_t number) {
    char unid[33];
    std::snprintf(unid, sizeof unid, "%032x", number);
    return ItemId(pipelineDbid, unid);
}

inline std::string itemNumber(const ItemId& item) { return std::to_string(item.unid().words()[3]); }

struct PipelineTraits : ApplicationTraits {
    PipelineTraits() {
        displayName = "Test";
        appDbName = "TestDB";
        appDbCreator = 0x74657374;
        appDbType = 0x44415441;
        syncDbName = "TestSync";
        syncDbCreator = 0x54535241;
        syncDbType = 0x54455354;
    }
    std::int16_t configCategory() const override { return 7; }
};

// A text that ends with a NUL. Its user data is 5 where the record is secret on the device, otherwise 0.
class ThingRecord : public PalmApplicationRecord {
public:
    ThingRecord(std::string text, std::uint8_t category, std::uint8_t userData)
        : PalmApplicationRecord(false), text_(std::move(text)), category_(category), userData_(userData) {}
    ThingRecord(PalmRecordBuffer& buffer, bool archived)
        : PalmApplicationRecord(buffer, archived), text_(buffer.readString()),
          category_(static_cast<std::uint8_t>(buffer.categoryId())),
          userData_((buffer.attributes() & 0x10) != 0 ? 5 : 0) {}

    std::uint8_t category() const override { return category_; }
    std::string description() const override { return text_; }
    std::uint16_t write(PalmRecordBuffer& buffer) const override {
        if (text_ == "unwritable") throw GeneralError(Message::BufferLengthExceeded);
        const std::size_t start = buffer.size();
        buffer.appendString(text_);
        buffer.setCategoryId(category_);
        return buffer.crc(start);
    }
    std::uint8_t syncEntryUserData() const override { return userData_; }

private:
    std::string text_;
    std::uint8_t category_;
    std::uint8_t userData_;
};

// In Notes a thing is the list of its records: "0=Milk 7=Bread", "gone" for one that was deleted.
struct NotesThing : NotesApplicationRecord {
    void addTo(NotesItem&, const TimeZone&) const override {}
    std::string description() const override { return text; }

    std::string text;
    NotesItem item;
};

struct ThingPart {
    std::uint32_t tag;
    std::string text;
    std::uint8_t category = 0;
    std::uint8_t userData = 0;
};

// A thing that Notes offers.
struct Offer {
    ItemVersion version;
    std::vector<ThingPart> parts;
    bool resendWanted = false;
    std::string failAt{}; // "receive", "make" or "convert"
};

// What a test's server says, and what it is told: one event a request that changes something.
struct PipelineScript {
    std::vector<std::string> classes = {"Things"};
    std::map<std::string, std::uint8_t> categories; // of the classes that have one
    bool sendsWantedInFull = false;
    std::vector<ItemId> anomalies;
    std::vector<ItemId> wanted;
    std::vector<ItemId> deletedInNotes;
    std::vector<Offer> offers;
    bool keepsDeletions = false;                     // the server deletes nothing
    std::uint32_t nextItem = 1;                      // for new items
    std::map<std::string, std::uint32_t> newUnids{}; // of anomalies, by the number of the item
    std::string badUnid{};                           // of every anomaly
    std::function<void(const std::string&)> onSend = [](const std::string&) {};
    std::function<void()> beforeRewrite = [] {};
    std::vector<std::string> events;
};

class PipelineReplicator : public Replicator {
public:
    PipelineReplicator(PipelineScript& script, const CountedPtr<PalmProxy>& palm)
        : Replicator(traits_, palm), script_(script) {}

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override {
        const Offer& offer = script_.offers.at(std::stoul(static_cast<const NotesThing&>(record).text));
        if (offer.failAt == "convert") throw GeneralError(Message::InvalidArgument);
        resendWanted = offer.resendWanted;
        PalmRecordGroup group;
        for (const ThingPart& part : offer.parts)
            group.set(part.tag, makeCounted<ThingRecord>(part.text, part.category, part.userData));
        return group;
    }
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int) override {
        CountedPtr<NotesThing> thing(new NotesThing);
        for (const auto& [tag, member] : group) {
            if (dynamic_cast<const PalmDummyRecord*>(member.get()) != nullptr) throw BadPalmRecord();
            if (!thing->text.empty()) thing->text += ' ';
            thing->text += std::to_string(tag) + '=' + (member ? member->description() : "gone")
                         + (member && member->archived() ? " archived" : "");
        }
        if (wasModified) thing->text += " (whole)";
        return thing;
    }
    void fetchAnomalies(const std::string&, std::vector<ItemId>& out) override { out = script_.anomalies; }
    void fetchDeletedInNotes(const std::string&, std::vector<ItemId>& out) override {
        out = script_.deletedInNotes;
    }
    void fetchWantedItems(const std::string&, std::vector<ItemId>& out) override { out = script_.wanted; }
    void receiveItem(const std::string&, const std::string&, const std::string& handle, NotesItem& item,
                     ItemVersion& version) override {
        const Offer& offer = script_.offers.at(std::stoul(handle));
        if (offer.failAt == "receive") throw GeneralError(Message::InvalidArgument);
        version = offer.version;
        addValue(item, "handle", handle);
    }
    void listItemsToReceive(const std::string&, std::vector<std::string>& handles) override {
        for (std::size_t i = 0; i < script_.offers.size(); ++i) handles.push_back(std::to_string(i));
    }
    ItemVersion sendAnomalyItem(const std::string&, const ItemId& itemId,
                                const NotesApplicationRecord& record, std::string& newUnid) override {
        note("anomaly " + itemNumber(itemId) + ": " + record.description());
        newUnid = script_.badUnid;
        const auto found = script_.newUnids.find(itemNumber(itemId));
        if (found == script_.newUnids.end()) return ItemVersion(itemId, 50);
        newUnid = pipelineItem(found->second).unidText();
        return ItemVersion(pipelineItem(found->second), 50);
    }
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override {
        if (itemId == ItemId()) {
            note("new " + record.description() + (token.empty() ? "" : " with a token"));
            return ItemVersion(pipelineItem(script_.nextItem++), 1);
        }
        note("item " + itemNumber(itemId) + ": " + record.description() + (token == className ? "" : "?"));
        return ItemVersion(itemId, 40);
    }
    void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) override {
        std::string event = "deletions";
        for (const ItemId& item : items) event += ' ' + itemNumber(item);
        note(event);
        if (!script_.keepsDeletions) deleted = items;
    }
    // "info 1:4 2:7+" for the item 1 at its version 4, and 2 at 7 and modified.
    std::string sendReplicationInfo(const std::string& className, const StringRun& run) override {
        const std::vector<std::string> entries = test::stringsOf(run);
        std::string event = "info";
        for (std::size_t i = 0; i < entries.size(); i += 4) {
            event += ' ' + itemNumber(ItemId(entries[i], entries[i + 1])) + ':' + entries[i + 2];
            if (entries[i + 3] != entries[i + 2]) event += '+';
        }
        note(event);
        return className;
    }
    bool categoryOfClass(const std::string& className, std::uint8_t& category) override {
        const auto found = script_.categories.find(className);
        if (found == script_.categories.end()) return false;
        category = found->second;
        return true;
    }
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override {
        script_.beforeRewrite();
        return nullptr;
    }
    std::vector<std::string> classNames() override { return script_.classes; }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override {
        CountedPtr<NotesThing> thing(new NotesThing);
        thing->text = firstValue(item, "handle");
        if (script_.offers.at(std::stoul(thing->text)).failAt == "make")
            throw GeneralError(Message::InvalidArgument);
        return thing;
    }
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override {
        return makeCounted<ThingRecord>(buffer, archived);
    }
    bool sendsWantedInFull() const override { return script_.sendsWantedInFull; }

private:
    void note(const std::string& event) {
        script_.events.push_back(event);
        script_.onSend(event);
    }

    PipelineTraits traits_;
    PipelineScript& script_;
};

// Sessions of things between a handheld in memory and a script.
class PipelineTest : public SessionTest {
protected:
    PipelineTest() {
        setClock(1012998896);
        configureType(2);
    }

    static constexpr int normal = 2;
    static constexpr int reset = 3;
    static constexpr int slow = 6;

    // Runs one session and gives its events. `type` is the configured one.
    std::vector<std::string> run(int type = normal) {
        configureType(type);
        hotSyncLogClear();
        handheldRestartCount();
        script.events.clear();
        PipelineReplicator(script, makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
        handheldMend();
        return script.events;
    }

    // The warnings of the last session; the last line is "aborted" where it was.
    static std::vector<std::string> warnings() {
        std::vector<std::string> lines;
        for (const auto& [text, activity] : logEntries()) {
            if (activity == 22) lines.push_back(text);
            if (activity == 21) lines.emplace_back("aborted");
        }
        return lines;
    }

    static std::vector<std::uint8_t> textBytes(const std::string& text) {
        return {text.c_str(), text.c_str() + text.size() + 1};
    }

    std::uint32_t add(const std::string& text, std::uint8_t category = 0) {
        return database.addRecord(textBytes(text), category);
    }

    void edit(std::uint32_t id, const std::string& text) {
        ASSERT_TRUE(database.editRecord(id, textBytes(text)));
    }

    // Changes a record's first character without anybody noticing.
    void scratch(std::uint32_t id) { ASSERT_TRUE(database.patchRecord(id, 0, {'#'})); }

    // "1/0 Milk" for the record 1 of category 0, in index order.
    std::vector<std::string> things() const {
        std::vector<std::string> lines;
        for (const HandheldRecord& record : database.records().all()) {
            const std::string text(record.data.begin(), record.data.end());
            lines.push_back(std::to_string(record.id) + '/' + std::to_string(record.category) + ' '
                            + text.c_str());
        }
        return lines;
    }

    // The records of one category of the sync database, as bytes.
    std::vector<std::string> stateRecords(std::uint8_t category) {
        std::vector<std::string> lines;
        for (const HandheldRecord& record : handheld.find("TestSync")->records().all()) {
            if (record.category == category) lines.push_back(hexText(record.data));
        }
        return lines;
    }

    // Brings item 1, the records 1, 2 and 3 with the tags 0, 7 and 9, to the handheld.
    void haveGroup(bool resendWanted = false) {
        script.offers = {{.version = ItemVersion(pipelineItem(1), 4),
                          .parts = {{0, "Main"}, {7, "Seven"}, {9, "Nine"}},
                          .resendWanted = resendWanted}};
        run();
        script.offers.clear();
        script.nextItem = 2;
        ASSERT_THAT(things(), testing::ElementsAre("1/0 Main", "2/0 Seven", "3/0 Nine"));
    }

    PipelineScript script;
    HandheldDatabase& database = handheld.create("TestDB", 0x44415441, 0x74657374);
};

} // namespace tsr::test
