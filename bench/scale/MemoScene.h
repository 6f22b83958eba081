#pragma once

#include <cstddef>
#include <cstdint>

#include "bench/scale/StoreFile.h"
#include "handheld/Handheld.h"
#include "tessera/Store.h"
#include "tessera/TcpServer.h"
#include "tessera/TesseraService.h"

namespace tsr::bench {

// A handheld in memory and a server over a store in a file, as servers have it, ready for their first
// HotSync. All of it is made up of the same bytes each time, but for the port of the server.
class MemoScene {
public:
    enum class Place { Handheld, Notes };

    // With all the memos on one side. Takes the place of the handheld that is attached.
    MemoScene(std::size_t memos, Place place);
    MemoScene(const MemoScene&) = delete;
    MemoScene& operator=(const MemoScene&) = delete;
    ~MemoScene();

    void attach();         // this handheld, in place of another
    void hotSync();        // raises std::runtime_error for a session that isn't a good one
    void requireSettled(); // raises std::runtime_error unless both sides have all memos

    std::uint16_t port() const { return server_.port(); }
    bool hasSameRecords(const MemoScene& other) const; // on the handheld

private:
    void addToHandheld();
    void addToNotes();
    void configure();

    std::size_t memos_;
    StoreFile file_;
    Store store_;
    TesseraService service_;
    TcpServer server_;
    std::int64_t journal_ = 0;
    Handheld handheld_;
};

} // namespace tsr::bench
