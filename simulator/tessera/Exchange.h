#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tessera/DateWindow.h"
#include "tessera/DocumentVersion.h"
#include "tessera/ItemName.h"

namespace tsr {

// What becomes of an item that was changed on both sides.
enum class ConflictRule {
    KeepHandheld, // its version replaces that of Notes
    KeepBoth,     // Notes keeps its version, and that of the handheld becomes a new document
    KeepCopy      // the same, for an application that has no requests for it
};

// An item as the handheld lists it.
struct KnownItem {
    ItemName name;
    std::uint32_t sequence = 0; // of the document when it was last exchanged, 0 for an item that was reset
    bool modified = false;      // since then, on the handheld
};

// What is to move between one database and a handheld. What changes meanwhile is the next exchange's.
struct Exchange {
    std::vector<ItemName> wanted{};       // from the handheld
    std::vector<ItemName> anomalies{};    // also from the handheld, to become new documents
    std::vector<ItemName> deleted{};      // in Notes
    std::vector<std::string> toReceive{}; // Unids; documents with an anomaly join once that has come
    std::unordered_map<std::string, std::uint32_t> guarded{}; // Unid to the only version that may be replaced
    std::vector<bool> anomalyOutstanding{};                   // in the order of `anomalies`
    std::unordered_set<std::string> copied{}; // Unids of those wanted whose version becomes a new document
    std::unordered_map<std::string, std::uint32_t> modified{}; // Unid to the version that the handheld knows
    DateWindow window{};                                       // of an application whose items have dates
};

// Whether the handheld's number, of which it keeps 16 bits, is that of the document.
bool isCurrent(std::uint32_t known, std::uint32_t sequence);

// Works out what the handheld that knows `known` and the documents of the database `dbid` are missing from
// each other. An item listed twice counts once. A document that takes no part is neither received nor wanted,
// and it isn't deleted either. Everything to receive keeps the order of the documents, the
// rest that of the list. Only rules that keep versions of Notes guard them.
Exchange compare(const std::vector<KnownItem>& known, const std::string& dbid,
                 const std::vector<DocumentVersion>& documents, ConflictRule rule);

} // namespace tsr
