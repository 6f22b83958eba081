#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/ratios.h"
#include "server/ClientRequest.h"
#include "server/ClientResponse.h"

namespace tsr {
namespace {

constexpr std::size_t bodyBytes = 65536;
constexpr int repetitions = 9;

// Takes what is written without a copy, and gives the same frame again and again.
class FrameSocket final : public IStreamSocket {
public:
    void bind(const ISocketAddress&) override {}
    void connect(const ISocketAddress&) override {}
    std::uint32_t read(std::uint8_t* buffer, std::uint32_t length) override {
        std::memcpy(buffer, frame.data() + position, length);
        position = (position + length) % frame.size();
        return length;
    }
    std::uint32_t write(const std::uint8_t* buffer, std::uint32_t length) override {
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
        return length;
    }

    std::vector<std::uint8_t> frame;
    std::size_t position = 0;
};

// Strings that fill the body: `characters` and a terminator each.
std::vector<std::string> stringsOf(std::int64_t characters) {
    const auto length = static_cast<std::size_t>(characters);
    const std::size_t count = bodyBytes / (2 * (length + 1));
    return std::vector<std::string>(count, std::string(length, 'x'));
}

std::vector<std::uint8_t> responseWith(const std::vector<std::string>& strings) {
    std::string text = "00065576"
                       "    "
                       "0000"
                       "0000"; // 40 and the 65,536 of the body
    for (const std::string& string : strings) text += string + '\0';
    std::vector<std::uint8_t> frame;
    for (const char character : text) {
        frame.push_back(static_cast<std::uint8_t>(character));
        frame.push_back(0);
    }
    return frame;
}

// What a body of that size costs at the least: a copy of its bytes into fresh memory.
void copyOfBody(benchmark::State& state) {
    const std::vector<std::uint8_t> body(bodyBytes, 'x');
    for (auto _ : state) {
        auto* copy = static_cast<std::uint8_t*>(std::malloc(bodyBytes));
        std::memcpy(copy, body.data(), bodyBytes);
        benchmark::DoNotOptimize(copy);
        benchmark::ClobberMemory();
        std::free(copy);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bodyBytes));
}
BENCHMARK(copyOfBody)->Repetitions(repetitions);

// The same with the bytes still in the socket, from which they are read first.
void readAndCopyOfBody(benchmark::State& state) {
    FrameSocket socket;
    socket.frame = responseWith(stringsOf(bodyBytes / 2 - 1));
    for (auto _ : state) {
        std::uint8_t header[40];
        socket.readExact(header, sizeof header);
        auto* body = static_cast<std::uint8_t*>(std::malloc(bodyBytes));
        socket.readExact(body, bodyBytes);
        auto* copy = static_cast<std::uint8_t*>(std::malloc(bodyBytes));
        std::memcpy(copy, body, bodyBytes);
        benchmark::DoNotOptimize(copy);
        benchmark::ClobberMemory();
        std::free(copy);
        std::free(body);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bodyBytes));
}
BENCHMARK(readAndCopyOfBody)->Repetitions(repetitions);

void buildFrame(benchmark::State& state) {
    const std::vector<std::string> strings = stringsOf(state.range(0));
    FrameSocket socket;
    for (auto _ : state) {
        ClientRequest request;
        request.setCode(355);
        for (const std::string& text : strings) request.addString(text);
        request.send(socket);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bodyBytes));
}
// One long text; then many shorter ones, which cost a string each, and are there to be watched.
BENCHMARK(buildFrame)->Arg(32767)->Arg(1023)->Arg(31)->Repetitions(repetitions);

void parseFrame(benchmark::State& state) {
    FrameSocket socket;
    socket.frame = responseWith(stringsOf(state.range(0)));
    for (auto _ : state) {
        ClientResponse response(357);
        response.receive(socket);
        while (!response.atEnd()) benchmark::DoNotOptimize(response.readString());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bodyBytes));
}
BENCHMARK(parseFrame)->Arg(32767)->Arg(1023)->Arg(31)->Repetitions(repetitions);

const bool compared = bench::compare("buildFrame/32767", "copyOfBody", 2)
                   && bench::compare("buildFrame/1023", "copyOfBody")
                   && bench::compare("buildFrame/31", "copyOfBody")
                   && bench::compare("parseFrame/32767", "readAndCopyOfBody", 2)
                   && bench::compare("parseFrame/1023", "readAndCopyOfBody")
                   && bench::compare("parseFrame/31", "readAndCopyOfBody");

} // namespace
} // namespace tsr
