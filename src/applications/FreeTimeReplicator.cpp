#include "applications/FreeTimeReplicator.h"

#include <algorithm>

#include "foundation/GeneralError.h"
#include "foundation/deviceDate.h"
#include "foundation/epochs.h"
#include "foundation/internalError.h"
#include "foundation/numbers.h"
#include "server/ClientRequest.h"
#include "server/ClientResponse.h"
#include "server/commands.h"

namespace tsr {

namespace {

constexpr std::int16_t searchCategory = 1;
constexpr std::int16_t crcCategory = 2;
constexpr std::int16_t userCategory = 3;
constexpr std::int16_t weekCategory = 4;

constexpr std::size_t mostWeeksAtOnce = 255; // their count is one byte

// A user's weeks, as one run of at most 255 or as several: a reader takes runs of the same user together.
void appendWeeks(PalmRecordBuffer& buffer, std::uint32_t userId, const FreeTimeUser& user) {
    std::size_t left = user.weeks.size();
    std::size_t inRun = 0;
    for (const auto& [start, week] : user.weeks) {
        if (inRun == 0) {
            inRun = std::min(left, mostWeeksAtOnce);
            buffer.append24(userId);
            buffer.appendByte(static_cast<std::uint8_t>(inRun));
        }
        buffer.appendWord(packDate(start));
        buffer.append24(week.recordId);
        buffer.appendWord(static_cast<std::uint16_t>(week.crc));
        --inRun;
        --left;
    }
}

GeneralError unreachable(int line) { return internalError("FreeTimeReplicator", line); }

} // namespace

FreeTimeReplicator::FreeTimeReplicator(const CountedPtr<PalmProxy>& palm) : Replicator(traits_, palm) {}

PalmRecordGroup FreeTimeReplicator::convertToPalm(const NotesApplicationRecord&, bool&) {
    throw unreachable(__LINE__);
}

CountedPtr<NotesApplicationRecord> FreeTimeReplicator::convertToNotes(const PalmRecordGroup&, bool, int) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::fetchAnomalies(const std::string&, std::vector<ItemId>&) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::fetchDeletedInNotes(const std::string&, std::vector<ItemId>&) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::fetchWantedItems(const std::string&, std::vector<ItemId>&) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::receiveItem(const std::string&, const std::string&, const std::string&, NotesItem&,
                                     ItemVersion&) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::listItemsToReceive(const std::string&, std::vector<std::string>&) {
    throw unreachable(__LINE__);
}

ItemVersion FreeTimeReplicator::sendAnomalyItem(const std::string&, const ItemId&,
                                                const NotesApplicationRecord&, std::string&) {
    throw unreachable(__LINE__);
}

ItemVersion FreeTimeReplicator::sendItem(const std::string&, const std::string&, const ItemId&,
                                         const NotesApplicationRecord&) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::sendDeletionList(const std::vector<ItemId>&, std::vector<ItemId>&) {
    throw unreachable(__LINE__);
}

std::string FreeTimeReplicator::sendReplicationInfo(const std::string&, const StringRun&) {
    throw unreachable(__LINE__);
}

CountedPtr<NotesApplicationRecord> FreeTimeReplicator::makeNotesRecord(const NotesItem&) {
    throw unreachable(__LINE__);
}

Replicator::Record FreeTimeReplicator::makePalmRecord(PalmRecordBuffer&, bool) {
    throw unreachable(__LINE__);
}

void FreeTimeReplicator::preReplicate() {
    PalmRecordBuffer buffer;
    readUsers(buffer);
    readSearchConfiguration(buffer);
    readCrcRecord(buffer);
    for (auto& [userId, user] : users_) {
        try {
            updateUser(userId, user);
        } catch (const Error& error) {
            logErrorChain(GeneralError(Message::FreeTimeFailed, error) << Tag('u') << user.name);
        } catch (...) {
            logErrorChain(GeneralError(Message::FreeTimeFailed, GeneralError(Message::UnknownException))
                          << Tag('u') << user.name);
        }
    }
    writeCrcRecord();
}

void FreeTimeReplicator::readUsers(PalmRecordBuffer& buffer) {
    for (bool more = palm().readFirstInCategory(buffer, userCategory); more;
         more = palm().readNextInCategory(buffer)) {
        if (buffer.isDeleted()) continue; // waits for the device to drop it, and has no bytes
        buffer.readByte();
        users_[buffer.recordId()].name = buffer.readString();
    }
}

void FreeTimeReplicator::readSearchConfiguration(PalmRecordBuffer& buffer) {
    if (!palm().readFirstInCategory(buffer, searchCategory))
        throw GeneralError(Message::NoFreeTimeConfiguration);
    searchLength_ = buffer.readWord();
    buffer.readByte();
    if (palm().readNextInCategory(buffer)) throw GeneralError(Message::MultipleFreeTimeConfigurations);
}

void FreeTimeReplicator::readCrcRecord(PalmRecordBuffer& buffer) {
    if (!palm().readFirstInCategory(buffer, crcCategory)) {
        deleteAllWeeks(buffer);
        return;
    }
    const std::uint32_t recordId = buffer.recordId();
    parseCrcRecord(buffer);
    if (palm().readNextInCategory(buffer)) throw GeneralError(Message::MultipleFreeTimeCrcRecords);
    palm().deleteRecord(recordId);
}

void FreeTimeReplicator::parseCrcRecord(PalmRecordBuffer& buffer) {
    buffer.readByte();
    while (!buffer.atEnd()) {
        FreeTimeUser& user = users_[buffer.read24()]; // a user that is unknown by now has an empty name
        for (std::uint32_t left = buffer.readByte(); left > 0; --left) {
            FreeTimeWeek week;
            week.start = unpackDate(buffer.readWord());
            week.recordId = buffer.read24();
            week.crc = buffer.readWord();
            user.weeks[week.start] = week;
        }
    }
}

// Without a CRC record nobody knows what the week records stand for. Deleting would disturb the walk, so that
// the ids come first.
void FreeTimeReplicator::deleteAllWeeks(PalmRecordBuffer& buffer) {
    std::vector<std::uint32_t> ids;
    for (bool more = palm().readFirstInCategory(buffer, weekCategory); more;
         more = palm().readNextInCategory(buffer)) {
        ids.push_back(buffer.recordId());
    }
    for (const std::uint32_t id : ids) palm().deleteRecord(id);
}

void FreeTimeReplicator::updateUser(std::uint32_t userId, FreeTimeUser& user) {
    if (!user.name.empty()) requestFreeTime(user);
    writeWeeks(userId, user);
}

void FreeTimeReplicator::requestFreeTime(FreeTimeUser& user) {
    ClientRequest request;
    request.setCode(findFreeTimeCommand);
    request.addString(toDecimal(searchLength_));
    request.addString(user.name);
    const CountedPtr<ClientResponse> response = server().exchange(request);
    while (!response->atEnd()) {
        const std::string startText = response->readString();
        const std::string lengthText = response->readString();
        const DateTime start(TimeStamp(1, toSeconds1970(parseUnsigned(startText))), timeZone());
        const std::uint32_t minutes = parseUnsigned(lengthText);
        user.addFreeTime(start, minutes);
        log() << "Free time: " << start << " for " << minutes << " minutes\n";
    }
}

void FreeTimeReplicator::writeWeeks(std::uint32_t userId, FreeTimeUser& user) {
    while (!user.weeks.empty()
           && user.weeks.begin()->first < user.earliest) { // past, or all when there was no answer
        const std::uint32_t recordId = user.weeks.begin()->second.recordId;
        if (recordId != 0) palm().deleteRecord(recordId);
        user.weeks.erase(user.weeks.begin());
    }
    for (auto& [start, week] : user.weeks) writeWeek(userId, week);
}

void FreeTimeReplicator::writeWeek(std::uint32_t userId, FreeTimeWeek& week) {
    PalmRecordBuffer buffer;
    buffer.setCategoryId(weekCategory);
    week.writeTo(buffer, userId);
    const std::uint16_t crc = buffer.crc(0);
    if (week.recordId != 0 && week.crc == crc) return;
    week.recordId = palm().writeRecord(week.recordId, buffer);
    week.crc = crc;
}

void FreeTimeReplicator::writeCrcRecord() {
    PalmRecordBuffer buffer;
    buffer.setCategoryId(crcCategory);
    buffer.appendByte(0);
    for (const auto& [userId, user] : users_) appendWeeks(buffer, userId, user);
    palm().writeRecord(0, buffer);
}

} // namespace tsr
