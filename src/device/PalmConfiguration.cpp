#include "device/PalmConfiguration.h"

#include <limits>

#include "device/ReplicationType.h"
#include "device/deviceStatus.h"
#include "foundation/Date.h"
#include "foundation/DateTime.h"
#include "foundation/GeneralError.h"
#include "foundation/epochs.h"
#include "foundation/numbers.h"
#include "foundation/utcNow.h"

namespace tsr {

namespace {

constexpr std::int16_t connectionCategory = 1;
constexpr std::int16_t serverCategory = 6;
constexpr std::uint32_t unknownDays = std::numeric_limits<std::uint32_t>::max();

void requireEnd(const PalmRecordBuffer& buffer) {
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

// The day of `moment` in `zone`, in seconds since 1993.
std::uint32_t dayOf(const TimeStamp& moment, const TimeZone& zone) {
    const Date day = DateTime(moment, zone).date();
    return toSeconds1993(static_cast<std::uint32_t>((day - Date(1970, 1, 1)).seconds()));
}

TimeInterval days(std::uint32_t count) { return TimeInterval::fromDays(static_cast<std::int32_t>(count)); }

} // namespace

PalmConfiguration::PalmConfiguration(PalmDatabase& database, std::int16_t category)
    : buffer_(new PalmRecordBuffer), replicationType_(static_cast<std::int32_t>(ReplicationType::Normal)),
      startDays_(unknownDays), endDays_(unknownDays) {
    std::int16_t inProgress = connectionCategory;
    try {
        readRecords(database, category, inProgress);
    } catch (const Error& error) {
        throw GeneralError(Message::ConfigurationUnreadable, error) << Tag('n') << inProgress;
    } catch (...) {
        throw GeneralError(Message::ConfigurationUnreadable, GeneralError(Message::UnknownException))
            << Tag('n') << inProgress;
    }
    deviceTime_ = toSeconds1993(deviceClock());
}

void PalmConfiguration::readRecords(PalmDatabase& database, std::int16_t category, std::int16_t& inProgress) {
    if (!database.readFirstInCategory(*buffer_, connectionCategory))
        throw GeneralError(Message::RecordMissing);
    readConnectionRecord();
    inProgress =
        serverCategory; // and stays so: a fault in the application record is told as one of this category
    readServerRecord(database);
    if (category == 0) return;
    hasApplicationRecord_ = database.readFirstInCategory(*buffer_, category);
    if (hasApplicationRecord_) {
        readApplicationRecord();
    } else {
        conflictRule_ = "C";
        startDays_ = 0;
        endDays_ = 0;
    }
}

void PalmConfiguration::readConnectionRecord() {
    connectionRecordId_ = buffer_->recordId();
    serverRecordId_ = buffer_->readDword();
    connectionByte1_ = buffer_->readByte();
    connectionByte2_ = buffer_->readByte();
    userName_ = buffer_->readString();
    password_ = buffer_->readString();
    requireEnd(*buffer_);
}

void PalmConfiguration::readServerRecord(PalmDatabase& database) {
    PalmRecordBuffer server;
    database.readRecordById(server, serverRecordId_);
    server.readString();
    serverAddress_ = server.readString();
    serverPort_ = server.readString();
    requireEnd(server);
}

void PalmConfiguration::readApplicationRecord() {
    replicationType_ = buffer_->readByte();
    if (replicationType_ > static_cast<std::int32_t>(ReplicationType::Slow)) {
        throw GeneralError(Message::InvalidReplicationType) << Tag('t') << replicationType_;
    }
    const std::uint8_t resolution = buffer_->readByte();
    if (resolution != 1 && resolution != 2) {
        throw GeneralError(Message::InvalidConflictRule) << Tag('t') << resolution;
    }
    conflictRule_ = resolution == 1 ? "C" : "S";
    buffer_->readWord();
    startDays_ = buffer_->readWord();
    endDays_ = buffer_->readWord();
}

std::string PalmConfiguration::deviceTimeText() const { return toDecimal(deviceTime_); }

std::uint32_t PalmConfiguration::startLimit(const TimeZone& zone) const {
    if (startDays_ == unknownDays) throw GeneralError(Message::NoStartDate);
    TimeStamp moment = utcNow();
    moment -= days(startDays_);
    return dayOf(moment, zone);
}

std::uint32_t PalmConfiguration::endLimit(const TimeZone& zone) const {
    if (endDays_ == unknownDays) throw GeneralError(Message::NoEndDate);
    TimeStamp moment = utcNow();
    moment += days(endDays_);
    return dayOf(moment, zone);
}

void PalmConfiguration::writeConnectionRecord(PalmDatabase& database) const {
    try {
        PalmRecordBuffer record;
        record.setCategoryId(connectionCategory);
        record.setRecordId(connectionRecordId_);
        record.appendDword(serverRecordId_);
        record.appendByte(connectionByte1_);
        record.appendByte(connectionByte2_);
        record.appendString(userName_);
        record.appendString(password_);
        database.writeRecord(record);
    } catch (const Error& error) {
        throw GeneralError(Message::WriteUserNameFailed, error);
    } catch (...) {
        throw GeneralError(Message::WriteUserNameFailed, GeneralError(Message::UnknownException));
    }
}

void PalmConfiguration::resetType(PalmDatabase& database) {
    if (!hasApplicationRecord_) return;
    buffer_->putByte(static_cast<std::uint8_t>(ReplicationType::Normal), 0);
    database.writeRecord(*buffer_);
}

} // namespace tsr
