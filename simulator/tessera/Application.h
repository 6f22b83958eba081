#pragma once

#include <cstddef>
#include <span>

#include "server/commands.h"
#include "tessera/DateWindow.h"
#include "tessera/Differences.h"
#include "tessera/Document.h"
#include "tessera/ZoneRule.h"

namespace tsr {

// What tells the replication requests of one handheld application from those of another.
struct Application {
    const char* databaseKind; // where its documents are kept: one database a user
    const char* documentKind; // and what they are called there
    ApplicationCommands commands;
    // The document that a version of the handheld makes of the one that it was given, which is empty for a
    // new one.
    Properties (*adopt)(const Properties& kept, const Properties& sent) = nullptr;
    std::size_t infoStrings = 0;    // of the replication information, between the rule and the known items
    std::size_t itemStrings = 0;    // of an item sent, between its identity and its properties
    bool countsDeletions = false;   // the answer to the deletions begins with their number
    bool tellsReplacedUnid = false; // the answer to an anomaly names the replaced identity before the new one

    // Of an application whose items have dates, null otherwise: whether a document takes part in a
    // replication of these days, in the zone of its owner, and what its properties are for it. The days are
    // the application's two strings of the replication information.
    bool (*takesPart)(const Properties& kept, const DateWindow& window, const ZoneRule& zone) = nullptr;
    Properties (*given)(const Properties& kept, const DateWindow& window) = nullptr;
    // What the handheld's differences make of a document; null where it sends none.
    Differences (*differ)(const Properties& kept, const Properties& sent, const ZoneRule& zone,
                          bool notesPrevails) = nullptr;
};

// Those that are served, besides mail, whose requests have forms of their own.
std::span<const Application> applications();

} // namespace tsr
