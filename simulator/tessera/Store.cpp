#include "tessera/Store.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "tessera/Memo.h"
#include "tessera/TesseraError.h"
#include "tessera/contactDocument.h"
#include "tessera/documentIdentity.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

constexpr std::int64_t schemaVersion = 2;

constexpr const char* schema = R"(
CREATE TABLE identity (
    seed TEXT NOT NULL,
    next INTEGER NOT NULL
);
CREATE TABLE user (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL UNIQUE COLLATE NOCASE,
    password_hash TEXT NOT NULL,
    zone_name TEXT NOT NULL,
    zone_rule TEXT NOT NULL,
    work_start INTEGER NOT NULL,
    work_end INTEGER NOT NULL,
    work_days INTEGER NOT NULL,
    is_default INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE database (
    id INTEGER PRIMARY KEY,
    user_id INTEGER NOT NULL REFERENCES user(id) ON DELETE CASCADE,
    dbid TEXT NOT NULL UNIQUE,
    kind TEXT NOT NULL,
    title TEXT NOT NULL,
    UNIQUE (user_id, kind)
);
CREATE TABLE document (
    id INTEGER PRIMARY KEY,
    database_id INTEGER NOT NULL REFERENCES database(id) ON DELETE CASCADE,
    unid TEXT NOT NULL,
    sequence INTEGER NOT NULL,
    kind TEXT NOT NULL,
    UNIQUE (database_id, unid)
);
CREATE INDEX document_kind ON document (database_id, kind);
CREATE TABLE property (
    document_id INTEGER NOT NULL REFERENCES document(id) ON DELETE CASCADE,
    name TEXT NOT NULL,
    position INTEGER NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (document_id, name, position)
) WITHOUT ROWID;
CREATE TABLE deletion (
    id INTEGER PRIMARY KEY,
    database_id INTEGER NOT NULL REFERENCES database(id) ON DELETE CASCADE,
    unid TEXT NOT NULL,
    kind TEXT NOT NULL,
    UNIQUE (database_id, unid)
);
CREATE TABLE unconfirmed (
    database_id INTEGER NOT NULL REFERENCES database(id) ON DELETE CASCADE,
    kind TEXT NOT NULL,
    digest TEXT NOT NULL,
    unid TEXT NOT NULL,
    PRIMARY KEY (database_id, kind, digest, unid)
) WITHOUT ROWID;
CREATE INDEX unconfirmed_unid ON unconfirmed (database_id, unid);
)";

constexpr const char* userColumns =
    "SELECT id, name, zone_name, zone_rule, work_start, work_end, work_days FROM user ";

const std::string seedInMemory(64, '0');

// Bit 0 is Monday.
std::int64_t dayMask(const WorkingHours& hours) {
    std::int64_t mask = 0;
    for (std::size_t day = 0; day < hours.days.size(); ++day) {
        if (hours.days[day]) mask |= std::int64_t{1} << day;
    }
    return mask;
}

User readUser(const SqliteStatement& row) {
    User user;
    user.id = row.integer(0);
    user.name = row.text(1);
    user.zoneName = row.text(2);
    user.zone = ZoneRule(row.text(3));
    user.hours.startMinute = static_cast<int>(row.integer(4));
    user.hours.endMinute = static_cast<int>(row.integer(5));
    for (std::size_t day = 0; day < user.hours.days.size(); ++day) {
        user.hours.days[day] = (row.integer(6) >> day & 1) != 0;
    }
    return user;
}

void checkProperties(const Properties& properties) {
    for (const auto& [name, values] : properties) {
        if (name.empty() || name.find('=') != std::string::npos) {
            throw TesseraError("'" + name + "' cannot be the name of a property");
        }
        for (const std::string& value : values) {
            if (value.find('\0') != std::string::npos)
                throw TesseraError("a value of '" + name + "' holds a NUL");
            toUtf16(value); // raises for bytes that could not be sent
        }
        toUtf16(name);
    }
}

// Makes `file` when it isn't there; the password hashes in it are nobody else's to try. SQLite tells what is
// wrong with a file that can't be made.
const std::string& forTheOwnerAlone(const std::string& file) {
    if (std::filesystem::exists(file)) return file;
    std::ofstream(file).close();
    std::error_code ignored;
    std::filesystem::permissions(
        file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, ignored);
    return file;
}

std::vector<std::string> texts(SqliteStatement& statement) {
    std::vector<std::string> texts;
    while (statement.step()) texts.push_back(statement.text(0));
    return texts;
}

[[noreturn]] void raiseNoDocument(const std::string& unid) {
    throw TesseraError("there is no document " + unid);
}

} // namespace

Store::Store(const std::string& file) : Store(forTheOwnerAlone(file), randomSeed()) {}

Store Store::inMemory() { return Store(":memory:", seedInMemory); }

Store::Store(const std::string& file, const std::string& seed) : database_(file) {
    database_.execute("PRAGMA foreign_keys = ON");
    if (version() != schemaVersion) {
        SqliteTransaction transaction(database_);
        if (version() == 0) createTables(seed); // unless another program has just done so
        if (version() != schemaVersion)
            throw TesseraError("'" + file + "' was written by another version of this program");
        transaction.commit();
    }
    // A replication is thousands of transactions: they needn't wait for the disk one by one, and a power cut
    // takes the last of them whole.
    database_.execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
}

void Store::createTables(const std::string& seed) {
    if (database_.statement("SELECT 1 FROM sqlite_master").step()) {
        throw TesseraError("the file is a database of another program");
    }
    database_.execute(schema);
    database_.statement("INSERT INTO identity VALUES (?, 1)").bind(seed).run();
    database_.execute("PRAGMA user_version = " + std::to_string(schemaVersion));
}

std::int64_t Store::version() {
    SqliteStatement statement = database_.statement("PRAGMA user_version");
    statement.step();
    return statement.integer(0);
}

void Store::addUser(const User& user, const std::string& passwordHash) {
    checkUser(user);
    SqliteTransaction transaction(database_);
    if (findUser(user.name)) throw TesseraError("there is a user '" + user.name + "' already");
    database_
        .statement(
            "INSERT INTO user (name, password_hash, zone_name, zone_rule, work_start, work_end, work_days) "
            "VALUES (?, ?, ?, ?, ?, ?, ?)")
        .bind(user.name)
        .bind(passwordHash)
        .bind(user.zoneName)
        .bind(user.zone.text())
        .bind(user.hours.startMinute)
        .bind(user.hours.endMinute)
        .bind(dayMask(user.hours))
        .run();
    const std::int64_t userId = database_.lastRowId();
    addDatabase(userId, mailDatabaseKind, "Mail of " + user.name);
    addDatabase(userId, journalKind, "Journal of " + user.name);
    transaction.commit();
}

void Store::addDatabase(std::int64_t userId, const std::string& kind, const std::string& title) {
    database_.statement("INSERT INTO database (user_id, dbid, kind, title) VALUES (?, ?, ?, ?)")
        .bind(userId)
        .bind(drawnDbid(seed(), nextIdentity()))
        .bind(kind)
        .bind(title)
        .run();
}

void Store::changeUser(const User& user) {
    checkUser(user);
    SqliteTransaction transaction(database_);
    const std::optional<User> namesake = findUser(user.name);
    if (namesake && namesake->id != user.id)
        throw TesseraError("there is a user '" + user.name + "' already");
    database_
        .statement("UPDATE user SET name = ?, zone_name = ?, zone_rule = ?, work_start = ?, work_end = ?, "
                   "work_days = ? WHERE id = ?")
        .bind(user.name)
        .bind(user.zoneName)
        .bind(user.zone.text())
        .bind(user.hours.startMinute)
        .bind(user.hours.endMinute)
        .bind(dayMask(user.hours))
        .bind(user.id)
        .run();
    transaction.commit();
}

void Store::changePassword(std::int64_t userId, const std::string& passwordHash) {
    database_.statement("UPDATE user SET password_hash = ? WHERE id = ?")
        .bind(passwordHash)
        .bind(userId)
        .run();
}

void Store::setDefaultUser(std::int64_t userId) {
    database_.statement("UPDATE user SET is_default = (id = ?)").bind(userId).run();
}

void Store::deleteUser(std::int64_t userId) {
    database_.statement("DELETE FROM user WHERE id = ?").bind(userId).run();
}

std::optional<User> Store::findUser(const std::string& name) {
    SqliteStatement statement = database_.statement(std::string(userColumns) + "WHERE name = ?");
    statement.bind(name);
    if (!statement.step()) return std::nullopt;
    return readUser(statement);
}

std::optional<User> Store::findUser(std::int64_t userId) {
    SqliteStatement statement = database_.statement(std::string(userColumns) + "WHERE id = ?");
    statement.bind(userId);
    if (!statement.step()) return std::nullopt;
    return readUser(statement);
}

std::optional<User> Store::defaultUser() {
    SqliteStatement statement = database_.statement(
        std::string(userColumns) + "WHERE is_default = 1 OR (SELECT count(*) FROM user) = 1");
    if (!statement.step()) return std::nullopt;
    return readUser(statement);
}

std::vector<User> Store::users() {
    SqliteStatement statement = database_.statement(std::string(userColumns) + "ORDER BY name");
    std::vector<User> users;
    while (statement.step()) users.push_back(readUser(statement));
    return users;
}

std::string Store::passwordHash(std::int64_t userId) {
    SqliteStatement statement = database_.statement("SELECT password_hash FROM user WHERE id = ?");
    statement.bind(userId);
    if (!statement.step()) throw TesseraError("the user is no longer there");
    return statement.text(0);
}

UserDatabase Store::database(std::int64_t userId, const std::string& kind) {
    SqliteStatement statement =
        database_.statement("SELECT id, dbid, title FROM database WHERE user_id = ? AND kind = ?");
    statement.bind(userId).bind(kind);
    if (statement.step()) return {statement.integer(0), statement.text(1), statement.text(2)};
    if (kind != contactsKind) throw TesseraError("the user has no database for '" + kind + "'");
    addContacts(userId);
    return database(userId, kind);
}

void Store::addContacts(std::int64_t userId) {
    SqliteTransaction transaction(database_);
    const std::optional<User> user = findUser(userId);
    if (!user) throw TesseraError("there is no such user");
    addDatabase(userId, contactsKind, "Contacts of " + user->name);
    transaction.commit();
}

Document Store::addDocument(std::int64_t databaseId, const std::string& kind, const Properties& properties) {
    checkProperties(properties);
    SqliteTransaction transaction(database_);
    const Document document{drawnUnid(seed(), nextIdentity()), 1, kind, properties};
    database_.statement("INSERT INTO document (database_id, unid, sequence, kind) VALUES (?, ?, ?, ?)")
        .bind(databaseId)
        .bind(document.unid)
        .bind(document.sequence)
        .bind(kind)
        .run();
    writeProperties(database_.lastRowId(), properties);
    transaction.commit();
    return document;
}

Document Store::addUnconfirmed(std::int64_t databaseId, const std::string& kind, const Properties& properties,
                               const Properties& besides) {
    SqliteTransaction transaction(database_);
    Properties all = properties;
    for (const auto& [name, values] : besides) all[name] = values;
    const Document document = addDocument(databaseId, kind, all);
    database_.statement("INSERT INTO unconfirmed VALUES (?, ?, ?, ?)")
        .bind(databaseId)
        .bind(kind)
        .bind(contentDigest(properties))
        .bind(document.unid)
        .run();
    transaction.commit();
    return document;
}

std::vector<std::string> Store::unconfirmed(std::int64_t databaseId, const std::string& kind) {
    SqliteStatement statement =
        database_.statement("SELECT unid FROM unconfirmed WHERE database_id = ? AND kind = ?");
    statement.bind(databaseId).bind(kind);
    return texts(statement);
}

std::vector<std::string> Store::unconfirmed(std::int64_t databaseId, const std::string& kind,
                                            const Properties& properties) {
    SqliteStatement statement =
        database_.statement("SELECT unid FROM unconfirmed WHERE database_id = ? AND kind = ? AND digest = ?");
    statement.bind(databaseId).bind(kind).bind(contentDigest(properties));
    return texts(statement);
}

void Store::confirm(std::int64_t databaseId, const std::string& unid) {
    database_.statement("DELETE FROM unconfirmed WHERE database_id = ? AND unid = ?")
        .bind(databaseId)
        .bind(unid)
        .run();
}

Document Store::changeDocument(std::int64_t databaseId, const std::string& unid,
                               const Properties& properties) {
    checkProperties(properties);
    SqliteTransaction transaction(database_);
    SqliteStatement change =
        database_.statement("UPDATE document SET sequence = sequence + 1 + ((sequence + 1) % 65536 = 0) "
                            "WHERE database_id = ? AND unid = ? RETURNING id");
    change.bind(databaseId).bind(unid);
    if (!change.step()) raiseNoDocument(unid);
    const std::int64_t documentId = change.integer(0);
    change.run();
    database_.statement("DELETE FROM property WHERE document_id = ?").bind(documentId).run();
    writeProperties(documentId, properties);
    const std::optional<Document> changed = findDocument(databaseId, unid);
    transaction.commit();
    return *changed;
}

void Store::annotateDocument(std::int64_t databaseId, const std::string& unid, const std::string& name,
                             const std::string& value) {
    checkProperties({{name, {value}}});
    SqliteTransaction transaction(database_);
    SqliteStatement find = database_.statement("SELECT id FROM document WHERE database_id = ? AND unid = ?");
    find.bind(databaseId).bind(unid);
    if (!find.step()) raiseNoDocument(unid);
    const std::int64_t documentId = find.integer(0);
    database_.statement("DELETE FROM property WHERE document_id = ? AND name = ?")
        .bind(documentId)
        .bind(name)
        .run();
    if (!value.empty()) writeProperties(documentId, {{name, {value}}});
    transaction.commit();
}

void Store::deleteDocument(std::int64_t databaseId, const std::string& unid) {
    SqliteTransaction transaction(database_);
    database_
        .statement("INSERT INTO deletion (database_id, unid, kind) "
                   "SELECT database_id, unid, kind FROM document WHERE database_id = ? AND unid = ?")
        .bind(databaseId)
        .bind(unid)
        .run();
    if (database_.changedRows() == 0) raiseNoDocument(unid);
    database_.statement("DELETE FROM document WHERE database_id = ? AND unid = ?")
        .bind(databaseId)
        .bind(unid)
        .run();
    confirm(databaseId, unid);
    transaction.commit();
}

std::optional<Document> Store::findDocument(std::int64_t databaseId, const std::string& unid) {
    SqliteStatement statement =
        database_.statement("SELECT id, sequence, kind FROM document WHERE database_id = ? AND unid = ?");
    statement.bind(databaseId).bind(unid);
    if (!statement.step()) return std::nullopt;
    return Document{unid, static_cast<std::uint32_t>(statement.integer(1)), statement.text(2),
                    properties(statement.integer(0))};
}

std::vector<Document> Store::documents(std::int64_t databaseId, const std::string& kind) {
    SqliteStatement statement = database_.statement(
        "SELECT id, unid, sequence FROM document WHERE database_id = ? AND kind = ? ORDER BY id");
    statement.bind(databaseId).bind(kind);
    std::vector<Document> documents;
    while (statement.step()) {
        documents.push_back({statement.text(1), static_cast<std::uint32_t>(statement.integer(2)), kind,
                             properties(statement.integer(0))});
    }
    return documents;
}

std::vector<Document> Store::documents(std::int64_t databaseId, const std::string& kind,
                                       const std::set<std::string>& names) {
    std::string places;
    for (std::size_t i = 0; i < names.size(); ++i) places += i == 0 ? "?" : ", ?";
    SqliteStatement statement = database_.statement(
        "SELECT document.id, unid, sequence, name, value FROM document LEFT JOIN property "
        "ON property.document_id = document.id AND name IN ("
        + places + ") WHERE database_id = ? AND kind = ? ORDER BY document.id, name, position");
    for (const std::string& name : names) statement.bind(name);
    statement.bind(databaseId).bind(kind);
    std::vector<Document> documents;
    std::int64_t lastId = 0;
    while (statement.step()) {
        if (documents.empty() || statement.integer(0) != lastId) {
            lastId = statement.integer(0);
            documents.push_back(
                {statement.text(1), static_cast<std::uint32_t>(statement.integer(2)), kind, {}});
        }
        const std::string name = statement.text(3); // empty where the document has none of them
        if (!name.empty()) documents.back().properties[name].push_back(statement.text(4));
    }
    return documents;
}

std::vector<DocumentVersion> Store::versions(std::int64_t databaseId, const std::string& kind) {
    SqliteStatement statement = database_.statement(
        "SELECT unid, sequence FROM document WHERE database_id = ? AND kind = ? ORDER BY id");
    statement.bind(databaseId).bind(kind);
    std::vector<DocumentVersion> versions;
    while (statement.step()) {
        versions.push_back({statement.text(0), static_cast<std::uint32_t>(statement.integer(1))});
    }
    return versions;
}

std::vector<std::string> Store::deletedUnids(std::int64_t databaseId) {
    SqliteStatement statement =
        database_.statement("SELECT unid FROM deletion WHERE database_id = ? ORDER BY id");
    statement.bind(databaseId);
    return texts(statement);
}

std::int64_t Store::nextIdentity() {
    SqliteStatement statement = database_.statement("UPDATE identity SET next = next + 1 RETURNING next - 1");
    statement.step();
    const std::int64_t number = statement.integer(0);
    statement.run();
    return number;
}

std::string Store::seed() {
    SqliteStatement statement = database_.statement("SELECT seed FROM identity");
    statement.step();
    return statement.text(0);
}

Properties Store::properties(std::int64_t documentId) {
    SqliteStatement statement =
        database_.statement("SELECT name, value FROM property WHERE document_id = ? ORDER BY name, position");
    statement.bind(documentId);
    Properties properties;
    while (statement.step()) properties[statement.text(0)].push_back(statement.text(1));
    return properties;
}

void Store::writeProperties(std::int64_t documentId, const Properties& properties) {
    for (const auto& [name, values] : properties) {
        std::int64_t position = 0;
        for (const std::string& value : values) {
            database_.statement("INSERT INTO property VALUES (?, ?, ?, ?)")
                .bind(documentId)
                .bind(name)
                .bind(position++)
                .bind(value)
                .run();
        }
    }
}

} // namespace tsr
