#pragma once

#include <cstdint>
#include <string>

#include "device/PalmDatabase.h"
#include "device/PalmRecordBuffer.h"
#include "foundation/CountedPtr.h"
#include "foundation/TimeZone.h"

namespace tsr {

// What the user has set up on the handheld, as the database "VellumConfig" holds it. Integers are big-endian,
// strings end with a NUL.
//
//   connection record, the first of category 1        application record, the first of the application's
//   category
//     4  id of the server record                        1  next replication type, 0 to 6
//     1  kept and written back unchanged                1  conflict resolution: 1 is "C", 2 is "S"
//     1  likewise                                       2  not used
//     n  Notes user name, may be empty                  2  days before today that the date window starts
//     n  Notes password                                 2  days after today that it ends
//                                                       what follows is ignored
//   server record, read by its id
//     n  name, not used
//     n  address, a host name or dotted
//     n  TCP port in decimal
class PalmConfiguration {
public:
    // Reads the connection and the server record, and that of `category` unless it is 0. Raises
    // ConfigurationUnreadable over the cause, or what reading the device's clock raises.
    PalmConfiguration(PalmDatabase& database, std::int16_t category);

    std::int32_t replicationType() const { return replicationType_; } // a ReplicationType
    bool hasUserName() const { return !userName_.empty(); }
    void setUserName(const std::string& name) { userName_ = name; }
    std::string userName() const { return userName_; }
    std::string password() const { return password_; }
    std::string serverAddress() const { return serverAddress_; }
    std::string serverPort() const { return serverPort_; }
    std::string conflictRule() const { return conflictRule_; } // "C", "S", or empty where none was asked for
    std::string deviceTimeText() const; // the handheld's clock, seconds since 1993, in decimal

    // The first and the last day of the date window, whole days counted from today in `zone`, in seconds
    // since 1993; a day before 1993 wraps. Raise NoStartDate and NoEndDate where no application record was
    // asked for.
    std::uint32_t startLimit(const TimeZone& zone) const;
    std::uint32_t endLimit(const TimeZone& zone) const;

    // Writes the connection record back, with the user name as it is now. Raises WriteUserNameFailed over the
    // cause.
    void writeConnectionRecord(PalmDatabase& database) const;

    // Makes `Normal` the next replication type: what is set up for one session holds for one. Does nothing
    // where the handheld has no application record.
    void resetType(PalmDatabase& database);

private:
    void readRecords(PalmDatabase& database, std::int16_t category, std::int16_t& inProgress);
    void readConnectionRecord();
    void readServerRecord(PalmDatabase& database);
    void readApplicationRecord();

    CountedPtr<PalmRecordBuffer> buffer_; // the record that was read last, but for the server record
    bool hasApplicationRecord_ = false;
    std::uint32_t connectionRecordId_ = 0;
    std::uint32_t serverRecordId_ = 0;
    std::uint8_t connectionByte1_ = 0;
    std::uint8_t connectionByte2_ = 0;
    std::string userName_;
    std::string password_;
    std::string serverAddress_;
    std::string serverPort_;
    std::int32_t replicationType_;
    std::string conflictRule_;
    std::uint32_t startDays_;
    std::uint32_t endDays_;
    std::uint32_t deviceTime_ = 0; // seconds since 1993
};

} // namespace tsr
