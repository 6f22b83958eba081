#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tessera/Document.h"
#include "tessera/DocumentVersion.h"
#include "tessera/SqliteDatabase.h"
#include "tessera/SqliteTransaction.h"
#include "tessera/User.h"
#include "tessera/UserDatabase.h"

namespace tsr {

// Everything that a server keeps, in one SQLite file; docs/tessera.md has its tables. Each operation happens
// whole or not at all. Every failure is a TesseraError, and then nothing is changed. Not for two threads at
// once.
class Store {
public:
    explicit Store(const std::string& file); // made when it isn't there
    static Store inMemory();                 // a fresh one; its identities are always the same

    // Makes several operations one.
    SqliteTransaction transaction() { return SqliteTransaction(database_); }

    // Users. A new one comes with an empty mail file and journal; an address book is made as it is needed
    // first. The default user is the one whose name the server gives to a device without one: the user marked
    // so, or the only user that there is.
    void addUser(const User& user, const std::string& passwordHash);
    void changeUser(const User& user); // by its id
    void changePassword(std::int64_t userId, const std::string& passwordHash);
    void setDefaultUser(std::int64_t userId);
    void deleteUser(std::int64_t userId); // with all that is his
    std::optional<User> findUser(const std::string& name);
    std::optional<User> findUser(std::int64_t userId);
    std::optional<User> defaultUser();
    std::vector<User> users(); // by name
    std::string passwordHash(std::int64_t userId);

    UserDatabase database(std::int64_t userId, const std::string& kind);
    UserDatabase mailDatabase(std::int64_t userId) { return database(userId, mailDatabaseKind); }

    // Documents. A deleted one leaves a deletion record.
    Document addDocument(std::int64_t databaseId, const std::string& kind, const Properties& properties);

    // A document that a handheld has sent. It isn't confirmed until the handheld has noted its identity: what
    // loses the answer sends the same once more.
    // Of `besides` it doesn't speak: what the server has added.
    Document addUnconfirmed(std::int64_t databaseId, const std::string& kind, const Properties& properties,
                            const Properties& besides = {});
    std::vector<std::string> unconfirmed(std::int64_t databaseId, const std::string& kind);
    std::vector<std::string> unconfirmed(std::int64_t databaseId, const std::string& kind,
                                         const Properties& properties); // those that were sent like this
    void confirm(std::int64_t databaseId, const std::string& unid);

    Document changeDocument(std::int64_t databaseId, const std::string& unid, const Properties& properties);
    // Sets one property, or takes it away where `value` is empty, and leaves the sequence number: what isn't
    // a version of its own.
    void annotateDocument(std::int64_t databaseId, const std::string& unid, const std::string& name,
                          const std::string& value);
    void deleteDocument(std::int64_t databaseId, const std::string& unid);
    std::optional<Document> findDocument(std::int64_t databaseId, const std::string& unid);
    std::vector<Document> documents(std::int64_t databaseId, const std::string& kind); // oldest first
    // With these properties alone. No text of a long document is read that isn't one of them.
    std::vector<Document> documents(std::int64_t databaseId, const std::string& kind,
                                    const std::set<std::string>& names);
    std::vector<DocumentVersion> versions(std::int64_t databaseId, const std::string& kind); // the same
    std::vector<std::string> deletedUnids(std::int64_t databaseId); // in the order of deletion

private:
    Store(const std::string& file, const std::string& seed);

    void addDatabase(std::int64_t userId, const std::string& kind, const std::string& title);
    void addContacts(std::int64_t userId);
    void createTables(const std::string& seed);
    std::int64_t version();
    std::int64_t nextIdentity();
    std::string seed();
    Properties properties(std::int64_t documentId);
    void writeProperties(std::int64_t documentId, const Properties& properties);

    SqliteDatabase database_;
};

} // namespace tsr
