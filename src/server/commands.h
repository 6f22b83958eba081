#pragma once

#include <cstdint>

namespace tsr {

// The command codes of the protocol. The server routes on the code alone, and so each application has its own
// for what is otherwise the same request.

constexpr std::uint32_t authenticateCommand = 1;
constexpr std::uint32_t findUserNameCommand = 3;
constexpr std::uint32_t getTimeZoneCommand = 7;
constexpr std::uint32_t closeCommand = 19;
constexpr std::uint32_t findFreeTimeCommand = 122;
constexpr std::uint32_t getSessionErrorsCommand = 200;
constexpr std::uint32_t findMailDatabaseCommand = 324;

// The requests of one application; 0 where it has none.
struct ApplicationCommands {
    std::uint32_t sendReplicationInfo = 0;
    std::uint32_t countAnomalies = 0;
    std::uint32_t fetchAnomalies = 0;
    std::uint32_t countDeleted = 0; // items deleted in Notes
    std::uint32_t fetchDeleted = 0;
    std::uint32_t countWanted = 0; // items wanted from the device
    std::uint32_t fetchWanted = 0;
    std::uint32_t countToReceive = 0;
    std::uint32_t listToReceive = 0;
    std::uint32_t receiveItem = 0;
    std::uint32_t sendAnomaly = 0;
    std::uint32_t sendItem = 0;
    std::uint32_t sendDeletions = 0;
    std::uint32_t sendOutgoingMail = 0;
};

constexpr ApplicationCommands addressCommands{
    .sendReplicationInfo = 34,
    .countAnomalies = 186,
    .fetchAnomalies = 187,
    .countDeleted = 181,
    .fetchDeleted = 182,
    .countWanted = 183,
    .fetchWanted = 184,
    .countToReceive = 185,
    .receiveItem = 188,
    .sendAnomaly = 190,
    .sendItem = 33,
    .sendDeletions = 191,
};

constexpr ApplicationCommands dateBookCommands{
    .sendReplicationInfo = 80,
    .countAnomalies = 90,
    .fetchAnomalies = 91,
    .countDeleted = 92,
    .fetchDeleted = 93,
    .countWanted = 94,
    .fetchWanted = 95,
    .countToReceive = 88,
    .receiveItem = 98,
    .sendAnomaly = 96,
    .sendItem = 99,
    .sendDeletions = 89,
};

constexpr ApplicationCommands memoCommands{
    .sendReplicationInfo = 350,
    .countAnomalies = 359,
    .fetchAnomalies = 360,
    .countDeleted = 351,
    .fetchDeleted = 352,
    .countWanted = 353,
    .fetchWanted = 354,
    .countToReceive = 356,
    .receiveItem = 357,
    .sendAnomaly = 361,
    .sendItem = 355,
    .sendDeletions = 358,
};

constexpr ApplicationCommands toDoCommands{
    .sendReplicationInfo = 172,
    .countAnomalies = 170,
    .fetchAnomalies = 169,
    .countDeleted = 162,
    .fetchDeleted = 161,
    .countWanted = 165,
    .fetchWanted = 164,
    .countToReceive = 168,
    .receiveItem = 177,
    .sendItem = 176,
    .sendDeletions = 174,
};

constexpr ApplicationCommands mailCommands{
    .sendReplicationInfo = 308,
    .fetchDeleted = 311,
    .fetchWanted = 310,
    .listToReceive = 312,
    .receiveItem = 317,
    .sendItem = 316,
    .sendDeletions = 305,
    .sendOutgoingMail = 318,
};

} // namespace tsr
