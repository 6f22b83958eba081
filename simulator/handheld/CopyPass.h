#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// One pass of the copy from a sync database to its application database: moves pending records, at most as
// many as fit into the time of one call, fills the holes that fixup records name for them, and removes what
// is done. The bytes are described in docs/handheld.md.
//
// A copied record is clean: it came from Notes, and has no news for it.
class CopyPass {
public:
    static constexpr std::size_t recordsInOnePass = 500;

    CopyPass(HandheldDatabase& application, HandheldDatabase& sync)
        : application_(application), sync_(sync) {}

    // False when a record of the sync database cannot be used: it is too short, names a hole outside its
    // block, or has no place in the application database. It and what is behind it stay as they are.
    bool run();

    bool isLast() const { return last_; }
    std::uint32_t unusableRecord() const { return unusableRecord_; } // id in the sync database

private:
    bool checkFixups();
    bool copyRecords();
    bool copyRecord(const HandheldRecord& pending);
    void fillHoles();
    bool namesCopied(const HandheldRecord& fixups) const;
    void fillHoles(const HandheldRecord& fixups);

    HandheldDatabase& application_;
    HandheldDatabase& sync_;
    std::map<std::uint32_t, std::uint32_t> copied_; // from the id of a pending record to that of its copy
    bool last_ = false;
    std::uint32_t unusableRecord_ = 0;
};

} // namespace tsr
