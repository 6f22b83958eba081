#include "hotsync/Traffic.h"

#include <algorithm>
#include <set>

#include "device/fourCharacterCode.h"
#include "hotsync/SyncPicture.h"

namespace tsr {

namespace {

constexpr std::uint32_t ownCreator = fourCharacterCode("TSRA");
constexpr std::uint8_t weekCategory = 4;

const HandheldDatabase* findDatabase(const Handheld& handheld, std::uint32_t creator, std::uint32_t type) {
    for (const auto& [name, database] : handheld.databases) {
        if (database.header().creator == creator && database.header().type == type) return &database;
    }
    return nullptr;
}

// The application's record with this id that the user still has; null when there is none.
const HandheldRecord* findLive(const HandheldDatabase* database, std::uint32_t uid) {
    if (database == nullptr) return nullptr;
    const HandheldRecord* record = database->records().find(uid);
    return record == nullptr || (record->attributes & HandheldRecord::deleted) != 0 ? nullptr : record;
}

bool isSame(const HandheldRecord* before, const HandheldRecord* after) {
    if (before == nullptr || after == nullptr) return before == after;
    return before->data == after->data && before->category == after->category;
}

// The application's records and the items of its sync database on one side of the session.
struct Side {
    Side(const HotSyncApplication& application, const Handheld& handheld)
        : records(findDatabase(handheld, application.creator, application.type)) {
        const HandheldDatabase* sync = findDatabase(handheld, ownCreator, application.syncType);
        if (sync != nullptr) picture = SyncPicture(*sync);
        for (const auto& [unid, item] : picture.items) known.insert(item.uids.begin(), item.uids.end());
    }

    bool hasAnyLive(const SyncPicture::Item& item) const {
        return std::any_of(item.uids.begin(), item.uids.end(),
                           [this](std::uint32_t uid) { return findLive(records, uid) != nullptr; });
    }

    bool knowsAny(const SyncPicture::Item& item) const {
        return std::any_of(item.uids.begin(), item.uids.end(),
                           [this](std::uint32_t uid) { return known.count(uid) != 0; });
    }

    const HandheldDatabase* records;
    SyncPicture picture;
    std::set<std::uint32_t> known; // the device records of all items
};

void countNewItem(Traffic& traffic, const SyncPicture::Item& item, const Side& before) {
    if (before.knowsAny(item)) {
        ++traffic.toNotes.changed; // the same record under a new identity: Notes keeps both versions
    } else if (before.hasAnyLive(item)) {
        ++traffic.toNotes.added;
    } else {
        ++traffic.toHandheld.added;
    }
}

void countKeptItem(Traffic& traffic, const SyncPicture::Item& was, const SyncPicture::Item& is,
                   const Side& before, const Side& after) {
    std::set<std::uint32_t> uids(was.uids.begin(), was.uids.end());
    uids.insert(is.uids.begin(), is.uids.end());
    const bool same = std::all_of(uids.begin(), uids.end(), [&](std::uint32_t uid) {
        return isSame(findLive(before.records, uid), findLive(after.records, uid));
    });
    if (!same) {
        ++traffic.toHandheld.changed;
    } else if (was.sequenceNumber != is.sequenceNumber) {
        ++traffic.toNotes.changed;
    }
}

Traffic itemTraffic(const Side& before, const Side& after) {
    Traffic traffic;
    for (const auto& [unid, item] : after.picture.items) {
        const auto was = before.picture.items.find(unid);
        if (was == before.picture.items.end()) {
            countNewItem(traffic, item, before);
        } else {
            countKeptItem(traffic, was->second, item, before, after);
        }
    }
    for (const auto& [unid, item] : before.picture.items) {
        if (after.picture.items.count(unid) != 0 || after.knowsAny(item)) continue;
        ++(before.hasAnyLive(item) ? traffic.toHandheld.deleted : traffic.toNotes.deleted);
    }
    return traffic;
}

// The free-time search writes weeks, and has no items.
Traffic weekTraffic(const HandheldDatabase* before, const HandheldDatabase* after) {
    Traffic traffic;
    if (after != nullptr) {
        after->records().forEach([&](const HandheldRecord& week) {
            if (week.category != weekCategory) return;
            const HandheldRecord* was = findLive(before, week.id);
            if (was == nullptr) {
                ++traffic.toHandheld.added;
            } else if (!isSame(was, &week)) {
                ++traffic.toHandheld.changed;
            }
        });
    }
    if (before != nullptr) {
        before->records().forEach([&](const HandheldRecord& week) {
            if (week.category == weekCategory && findLive(after, week.id) == nullptr)
                ++traffic.toHandheld.deleted;
        });
    }
    return traffic;
}

std::string countsText(const Traffic::Counts& counts) {
    return std::to_string(counts.added) + " new, " + std::to_string(counts.changed) + " changed, "
         + std::to_string(counts.deleted) + " deleted";
}

} // namespace

std::string Traffic::text() const {
    return "to Notes " + countsText(toNotes) + "; to the handheld " + countsText(toHandheld);
}

Traffic trafficOf(const HotSyncApplication& application, const Handheld& before, const Handheld& after) {
    const Side from(application, before);
    const Side to(application, after);
    return application.syncType == 0 ? weekTraffic(from.records, to.records) : itemTraffic(from, to);
}

} // namespace tsr
