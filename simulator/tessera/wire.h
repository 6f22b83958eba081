#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tessera/Request.h"
#include "tessera/Response.h"

namespace tsr {

// The server's side of the frames. Everything is text in 16-bit units, least significant byte first; numbers
// are decimal with zeros before them.
//
//   request   offset  bytes  field
//             0       16     length of the frame in bytes, these 24 included
//             16      8      command code
//             24             body: strings, each ends with a zero unit
//
//   response  0       16     length of the frame in bytes
//             16      8      command code of the request
//             24      8      result code
//             32      8      length of the message in units
//             40             message without an end mark, then the body

inline constexpr std::size_t requestHeaderBytes = 24;
inline constexpr std::size_t responseHeaderBytes = 40;

// The most that the eight digits of a length can say. A replication list of 65,535 items takes about 16 MiB.
// Somebody who hasn't authenticated needs no more than his name and password.
inline constexpr std::size_t maxFrameBytes = 99'999'999;
inline constexpr std::size_t maxStrangerRequestBytes = std::size_t{64} * 1024;

// Messages are cut here; their length has four digits in the header.
inline constexpr std::size_t maxMessageUnits = 512;

struct RequestHeader {
    std::uint32_t code = 0;
    std::size_t bodyBytes = 0;
};

// Stricter than the client's own reader of headers: a field holds digits and nothing else. Raises
// RequestRefused with BadFrame for anything else, for a length below 24 and for one above `maxBytes`.
RequestHeader parseRequestHeader(std::span<const std::uint8_t, requestHeaderBytes> bytes,
                                 std::size_t maxBytes);

// The strings of a body, in UTF-8. Raises RequestRefused with BadRequest for half a unit, a last string
// without its end mark and units that aren't text.
std::vector<std::string> parseBody(std::span<const std::uint8_t> bytes);

// The frame of `response`. One that would pass the eight digits of its length becomes a TooLarge response.
std::vector<std::uint8_t> toFrame(const Response& response);

} // namespace tsr
