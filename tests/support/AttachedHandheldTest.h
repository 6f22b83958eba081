#pragma once

#include <string>
#include <vector>

#include "device/PalmProxy.h"
#include "handheld/Handheld.h"
#include "handheld/logControl.h"
#include "handheld/syncControl.h"
#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr::test {

// A test with a handheld in memory behind the Sync Manager.
class AttachedHandheldTest : public testing::Test {
protected:
    AttachedHandheldTest() {
        handheldDetach();
        handheldAttach(&handheld);
        hotSyncLogClear();
    }
    ~AttachedHandheldTest() override { handheldDetach(); }

    // Puts a record with clean attributes into a database.
    static void put(HandheldDatabase& database, std::uint32_t id, std::uint8_t category,
                    const std::string& pairs, std::uint8_t attributes = 0) {
        HandheldRecord record;
        record.id = id;
        record.category = category;
        record.attributes = attributes;
        record.data = bytes(pairs);
        ASSERT_TRUE(database.putRecord(record));
    }

    // "7/2: 00 09" for the record 7 of category 2, in index order, ids in hexadecimal.
    static std::vector<std::string> contents(const HandheldDatabase& database) {
        std::vector<std::string> lines;
        for (const HandheldRecord& record : database.records().all()) {
            char head[32];
            std::snprintf(head, sizeof head, "%X/%u: ", record.id, unsigned{record.category});
            lines.push_back(head + hexText(record.data));
        }
        return lines;
    }

    // The texts of the HotSync log.
    static std::vector<std::string> logTexts() {
        std::vector<std::string> texts;
        for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index)
            texts.emplace_back(hotSyncLogText(index));
        return texts;
    }

    Handheld handheld;
};

} // namespace tsr::test
