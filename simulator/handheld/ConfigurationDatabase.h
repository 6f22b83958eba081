#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "handheld/Handheld.h"

namespace tsr {

enum class NextReplication : std::uint8_t { MustChoose, None, Normal, Reset, Clear, Fast, Slow };

// What the user chose for one application.
struct ApplicationChoice {
    NextReplication type = NextReplication::MustChoose;
    char conflictRule = 'C'; // 'C': the handheld's version wins, 'S': that of Notes
    std::uint16_t unused = 0;
    std::uint16_t daysBefore = 7; // of today: the window of the Date Book and of Mail
    std::uint16_t daysAfter = 30;

    bool operator==(const ApplicationChoice&) const = default;
};

struct ConnectionChoice {
    std::uint8_t byte1 = 0; // the device's own
    std::uint8_t byte2 = 0;
    std::string userName; // in Notes; empty asks the server for it
    std::string password;
    std::string serverName;
    std::string serverAddress;
    std::string serverPort;

    bool operator==(const ConnectionChoice&) const = default;
};

// The database "VellumConfig", where the user's choices stand. Its bytes are described in docs/handheld.md.
class ConfigurationDatabase {
public:
    static constexpr const char* databaseName = "VellumConfig";
    static constexpr std::uint32_t type = 0x434E4647; // "CNFG"
    static constexpr std::uint8_t connectionCategory = 1;
    static constexpr std::uint8_t serverCategory = 6;

    // Makes the database with its records if it is not there. Raises HandheldError for records that make no
    // sense.
    explicit ConfigurationDatabase(Handheld& handheld);

    const ConnectionChoice& connection() const { return connection_; }
    void setConnection(const ConnectionChoice& connection);

    // By configuration category, of all known applications.
    const std::map<std::uint8_t, ApplicationChoice>& applications() const { return applications_; }
    void setApplication(std::uint8_t category, const ApplicationChoice& choice);

private:
    static HandheldDatabase& openOrCreate(Handheld& handheld);
    const HandheldRecord* first(std::uint8_t category) const;
    void readConnection();
    void readServer();
    void readApplication(std::uint8_t category);
    void writeConnection();
    void store(std::uint32_t& id, std::uint8_t category, std::vector<std::uint8_t> data);

    HandheldDatabase& database_;
    ConnectionChoice connection_;
    std::uint32_t connectionId_ = 0;
    std::uint32_t serverId_ = 0;
    std::map<std::uint8_t, ApplicationChoice> applications_;
    std::map<std::uint8_t, std::uint32_t> applicationIds_;
};

// The bytes of a connection record with stars for its password; any other record as it is.
std::vector<std::uint8_t> withoutPassword(const HandheldDatabase& database, const HandheldRecord& record);

} // namespace tsr
