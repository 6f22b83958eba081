#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/syncManager.h"

namespace tsr::test {

// A Sync Manager and HotSync log that answer as a test has scripted and write every call down, arguments
// included:
//
//   SyncReadRecordById(handle 7, id 5, index 0, attributes 00, category 0, size 0, room 1024)
//   SyncWriteRec(handle 7, id 0, index 0, attributes 00, category 2, size 3, room 1024) 00 01 02
//
// Each function has a queue of answers of its own; one without an answer left succeeds and does nothing.
// Turning byte order isn't written down.
class ScriptedSyncManager {
public:
    template <typename Block>
    using Effect = std::function<void(Block&)>;

    static ScriptedSyncManager& instance();
    void reset();

    void answer(const std::string& function, std::int32_t result);
    void answerRecord(const std::string& function, std::int32_t result, Effect<RawRecordInfo> effect);
    void answerFind(std::int32_t result, Effect<DatabaseInfoBlock> effect = {});
    void answerAppInfo(const std::string& function, std::int32_t result, Effect<AppInfoBlockInfo> effect);
    void answerModule(std::int32_t result, Effect<RemoteModuleBlock> effect);
    void answerPreference(std::int32_t result, Effect<AppPreferenceBlock> effect);

    // A good read of a record: its id, category, attributes and bytes; what doesn't fit is left out, its true
    // size told.
    static Effect<RawRecordInfo> record(std::uint32_t id, std::int16_t category, std::uint8_t attributes,
                                        std::vector<std::uint8_t> data);

    std::vector<std::string> calls;
    std::vector<std::pair<std::string, std::int32_t>> log; // entries of the HotSync log: text, activity code
    std::int32_t logOpenResult = 0;
    std::function<void()> logFault;   // in place of each entry of the log
    std::function<void()> yieldFault; // before SyncYieldCycles answers
    std::function<void()> closeFault; // before HsLogClose answers
    std::uint8_t nextHandle = 7;      // what SyncOpenDB and SyncCreateDB give, counting up
    std::uint16_t osMajor = 4;
    std::uint16_t osMinor = 1;
    std::uint32_t deviceTime = 1012998896; // 2002-02-06 12:34:56

    std::int32_t next(const std::string& function, void* block);

private:
    struct Answer {
        std::int32_t result;
        std::function<void(void*)> effect;
    };
    template <typename Block>
    void add(const std::string& function, std::int32_t result, Effect<Block> effect);

    std::map<std::string, std::deque<Answer>> answers_;
};

} // namespace tsr::test
