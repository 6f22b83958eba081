#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/AttachedHandheldTest.h"
#include "support/ScriptedServer.h"

namespace tsr::test {

// A test of a whole session: a handheld that is configured for a scripted server.
class SessionTest : public AttachedHandheldTest {
protected:
    static constexpr std::uint32_t ownCreator = 0x54535241; // TSRA

    SessionTest() {
        handheld.clock = 1012998896; // 2002-02-06 12:34:56
        serve(ScriptedServer::usualAnswer);
    }

    // Starts the server that the handheld is configured for, in place of an earlier one.
    void serve(ScriptedServer::Handler handler) {
        server = std::make_unique<ScriptedServer>(std::move(handler));
        handheld.databases.erase("VellumConfig");
        HandheldDatabase& database = handheld.create("VellumConfig", 0x434E4647, ownCreator);
        put(database, 1, 1, "00 00 00 02 00 00 4D 61 78 00 70 77 00"); // server record 2, "Max", "pw"
        std::string port;
        for (const char digit : std::to_string(server->port())) port += " 3" + std::string(1, digit);
        put(database, 2, 6, "00 31 32 37 2E 30 2E 30 2E 31 00" + port + " 00"); // "", "127.0.0.1", the port
    }

    // The application's record, by default of category 7: its next replication type, conflict rule C, a
    // window of today.
    void configureType(int type, std::uint8_t category = 7) {
        HandheldDatabase& database = *handheld.find("VellumConfig");
        database.eraseRecord(3);
        put(database, 3, category, "0" + std::to_string(type) + " 01 00 00 00 00 00 00");
    }

    // The entries of the HotSync log: text and activity code.
    static std::vector<std::pair<std::string, int>> logEntries() {
        std::vector<std::pair<std::string, int>> entries;
        for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index) {
            entries.emplace_back(hotSyncLogText(index), hotSyncLogActivity(index));
        }
        return entries;
    }

    std::unique_ptr<ScriptedServer> server;
};

} // namespace tsr::test
