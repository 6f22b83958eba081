#include <cstddef>
#include <deque>
#include <string>

#include "handheld/logControl.h"
#include "platform/hotSyncLog.h"

// The functions of the HotSync log library, and those that look into it.

namespace {

constexpr std::int32_t refused = -1;

struct Entry {
    std::string text;
    std::int32_t activity;
};

struct Log {
    std::deque<Entry> entries; // which stay in place as others are added
    int opened = 0;
    std::int32_t openFault = 0;
};

// Never destroyed: a caller may come back as the process ends.
Log& hotSyncLog() {
    static auto* const log = new Log;
    return *log;
}

} // namespace

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL HsLogOpen() {
    if (hotSyncLog().openFault != 0) return hotSyncLog().openFault;
    ++hotSyncLog().opened;
    return 0;
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL HsLogClose() {
    if (hotSyncLog().opened == 0) return refused;
    --hotSyncLog().opened;
    return 0;
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL HsLogAddEntry(const char* text, std::int32_t activity,
                                                        std::int32_t) {
    if (hotSyncLog().opened == 0 || !text) return refused;
    try {
        hotSyncLog().entries.push_back({text, activity});
        return 0;
    } catch (...) {
        return refused;
    }
}

std::uint64_t hotSyncLogCount() { return hotSyncLog().entries.size(); }

const char* hotSyncLogText(std::uint64_t index) {
    if (index >= hotSyncLogCount()) return nullptr;
    return hotSyncLog().entries[static_cast<std::size_t>(index)].text.c_str();
}

std::int32_t hotSyncLogActivity(std::uint64_t index) {
    return index < hotSyncLogCount() ? hotSyncLog().entries[static_cast<std::size_t>(index)].activity : -1;
}

void hotSyncLogClear() { hotSyncLog().entries.clear(); }

std::int32_t hotSyncLogIsOpen() { return hotSyncLog().opened > 0 ? 1 : 0; }

void hotSyncLogFailOpen(std::int32_t code) { hotSyncLog().openFault = code; }
