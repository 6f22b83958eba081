#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr::test {

// What passes between a test and a program that holds the conduit for it (see conduithost.cpp): each message
// is its size in bytes (4, little-endian) and its fields, where a number takes 8 bytes, little-endian, and a
// text or a file its size and its bytes. A handheld is its settings, its databases and its preferences, in
// the form that they have as files.

constexpr std::uint64_t callsThatWarmUp = 10; // tables that are made on first use stay

// One call of the conduit, or several alike.
struct SessionRequest {
    std::uint32_t creator = 0;
    std::int32_t syncType = 0;
    std::int64_t clock = 0;          // the desktop's, seconds since 1970; it stands still
    std::uint64_t failedCall = 0;    // of the handheld, from 1, that fails with 0x4006; 0 for none
    std::uint64_t repeats = 1;       // each with the same handheld
    std::vector<std::string> faults; // see hostSystem.h
    std::string traceFile; // that the calls write their trace to, beside the conduit; empty for none
    Handheld handheld;
};

struct SessionAnswer {
    std::string error; // why there was no call; the rest is empty then
    std::int32_t result = 0;
    std::vector<std::string> log;      // of the last call, each entry behind the number of its activity
    std::vector<std::string> progress; // likewise
    std::string failedCall;            // as it was made; empty where the session ended before its turn
    std::string trace;                 // of all calls
    std::int64_t handlesLeft = 0;      // by the calls behind those that warm up
    std::int64_t bytesLeft = 0;
    Handheld handheld; // after the last call
};

using MessageBytes = std::vector<std::uint8_t>;

MessageBytes toMessage(const SessionRequest& request);
MessageBytes toMessage(const SessionAnswer& answer);

// Raise std::runtime_error for what is none.
SessionRequest parseRequest(const MessageBytes& message);
SessionAnswer parseAnswer(const MessageBytes& message);

} // namespace tsr::test
