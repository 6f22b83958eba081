#include "handheld/ConfigurationDatabase.h"

#include <algorithm>

#include "handheld/HandheldError.h"
#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/knownDatabases.h"

namespace tsr {

namespace {

constexpr std::uint16_t databaseAttributes = 0x40; // as the conduit makes it when it is not there
constexpr std::uint16_t databaseVersion = 1;
constexpr std::size_t bytesBeforeUserName = 6;

bool isConfiguration(const DatabaseHeader& header) {
    return header.creator == vellumCreator && header.type == ConfigurationDatabase::type;
}

} // namespace

ConfigurationDatabase::ConfigurationDatabase(Handheld& handheld) : database_(openOrCreate(handheld)) {
    readConnection();
    readServer();
    writeConnection(); // makes what is not there
    for (const KnownApplication& application : knownApplications)
        readApplication(application.configurationCategory);
}

void ConfigurationDatabase::setConnection(const ConnectionChoice& connection) {
    connection_ = connection;
    writeConnection();
}

void ConfigurationDatabase::setApplication(std::uint8_t category, const ApplicationChoice& choice) {
    applications_[category] = choice;
    RecordWriter record;
    record.number(1, static_cast<std::uint8_t>(choice.type)).number(1, choice.conflictRule == 'C' ? 1 : 2);
    record.number(2, choice.unused).number(2, choice.daysBefore).number(2, choice.daysAfter);
    store(applicationIds_[category], category, record.take());
}

HandheldDatabase& ConfigurationDatabase::openOrCreate(Handheld& handheld) {
    if (HandheldDatabase* database = handheld.find(databaseName)) return *database;
    return handheld.create(databaseName, type, vellumCreator, databaseAttributes, databaseVersion);
}

const HandheldRecord* ConfigurationDatabase::first(std::uint8_t category) const {
    std::size_t index = 0;
    return database_.records().findFrom(
        index, [&](const HandheldRecord& record) { return record.category == category && !record.isGone(); });
}

void ConfigurationDatabase::readConnection() {
    const HandheldRecord* record = first(connectionCategory);
    if (!record) return;
    RecordReader reader(record->data);
    connectionId_ = record->id;
    serverId_ = reader.number(4);
    connection_.byte1 = static_cast<std::uint8_t>(reader.number(1));
    connection_.byte2 = static_cast<std::uint8_t>(reader.number(1));
    connection_.userName = reader.string();
    connection_.password = reader.string();
}

void ConfigurationDatabase::readServer() {
    const HandheldRecord* record = database_.records().find(serverId_);
    if (!record || record->isGone()) {
        serverId_ = 0;
        return;
    }
    RecordReader reader(record->data);
    connection_.serverName = reader.string();
    connection_.serverAddress = reader.string();
    connection_.serverPort = reader.string();
}

void ConfigurationDatabase::readApplication(std::uint8_t category) {
    const HandheldRecord* record = first(category);
    if (!record) {
        setApplication(category, ApplicationChoice());
        return;
    }
    RecordReader reader(record->data);
    const std::uint32_t replication = reader.number(1);
    const std::uint32_t rule = reader.number(1);
    if (replication > static_cast<std::uint8_t>(NextReplication::Slow) || rule < 1 || rule > 2) {
        throw HandheldError("record " + std::to_string(record->id)
                            + " of VellumConfig holds no valid choice");
    }
    ApplicationChoice choice;
    choice.type = static_cast<NextReplication>(replication);
    choice.conflictRule = rule == 1 ? 'C' : 'S';
    choice.unused = static_cast<std::uint16_t>(reader.number(2));
    choice.daysBefore = static_cast<std::uint16_t>(reader.number(2));
    choice.daysAfter = static_cast<std::uint16_t>(reader.number(2));
    applicationIds_[category] = record->id;
    applications_[category] = choice;
}

// The server first, as the connection record names it by its id.
void ConfigurationDatabase::writeConnection() {
    RecordWriter server;
    server.string(connection_.serverName).string(connection_.serverAddress).string(connection_.serverPort);
    store(serverId_, serverCategory, server.take());
    RecordWriter record;
    record.number(4, serverId_).number(1, connection_.byte1).number(1, connection_.byte2);
    record.string(connection_.userName).string(connection_.password);
    store(connectionId_, connectionCategory, record.take());
}

void ConfigurationDatabase::store(std::uint32_t& id, std::uint8_t category, std::vector<std::uint8_t> data) {
    const HandheldRecord* record = database_.records().find(id);
    if (record && record->data == data) return;
    if (record)
        database_.editRecord(id, std::move(data));
    else
        id = database_.addRecord(std::move(data), category);
    if (id == 0) throw HandheldError("VellumConfig is full");
}

std::vector<std::uint8_t> withoutPassword(const HandheldDatabase& database, const HandheldRecord& record) {
    const bool connection =
        isConfiguration(database.header()) && record.category == ConfigurationDatabase::connectionCategory;
    if (!connection || record.data.size() < bytesBeforeUserName) return record.data;
    const auto userNameEnd =
        std::find(record.data.begin() + bytesBeforeUserName, record.data.end(), std::uint8_t{0});
    std::vector<std::uint8_t> data(record.data.begin(), userNameEnd);
    for (char c : std::string("\0********", 9)) data.push_back(static_cast<std::uint8_t>(c));
    data.push_back(0);
    return data;
}

} // namespace tsr
