#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "bench/scale/StoreFile.h"
#include "handheld/Handheld.h"
#include "handheld/knownDatabases.h"
#include "tessera/Store.h"
#include "tessera/TcpServer.h"
#include "tessera/TesseraService.h"

namespace tsr::bench {

// A handheld in memory and a server over a store in a file, as servers have it, ready for their first HotSync
// of one application. All of it is made up of the same bytes each time, but for the port of the server.
class Scene {
public:
    enum class Place { Handheld, Notes };

    static constexpr std::int64_t noon = 1012998896; // on 2002-02-06, the clock of all

    virtual ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    void attach();         // this handheld, in place of another
    void hotSync();        // raises std::runtime_error for a session that isn't a good one
    void requireSettled(); // raises std::runtime_error unless both sides have all items

    std::uint16_t port() const { return server_.port(); }
    bool hasSameRecords(const Scene& other) const; // on the handheld

protected:
    // Takes the place of the handheld that is attached. `title` is the application's in the HotSync log.
    Scene(std::size_t items, const KnownApplication& application, const char* title, const char* syncDatabase,
          const char* databaseKind, const char* documentKind);

    void fill(Place place); // as the last step of a constructor
    virtual void addToHandheld(HandheldDatabase& database, std::size_t number) = 0;
    virtual Properties document(std::size_t number) = 0;

private:
    void configure();
    void addToNotes();

    std::size_t items_;
    const KnownApplication& application_;
    const char* title_;
    const char* syncDatabase_;
    const char* databaseKind_;
    const char* documentKind_;
    StoreFile file_;
    Store store_;
    TesseraService service_;
    TcpServer server_;
    std::int64_t databaseId_ = 0;
    Handheld handheld_;
};

} // namespace tsr::bench
