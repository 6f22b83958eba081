#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "bench/ratios.h"
#include "device/PalmRecordBuffer.h"
#include "device/crc16.h"

namespace tsr {
namespace {

constexpr int repetitions = 9;

std::vector<std::uint8_t> record(std::size_t bytes) {
    std::vector<std::uint8_t> data(bytes);
    for (std::size_t i = 0; i < bytes; ++i) data[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    return data;
}

void countBytes(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * state.range(0)); }

// Every record of a database is summed in a slow sync: the largest that there is, and a usual one.
void crc(benchmark::State& state) {
    const auto data = record(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(crc16(data.data(), data.size()));
    countBytes(state);
}
BENCHMARK(crc)->Arg(65535)->Arg(200)->Repetitions(repetitions);

void copyOfRecord(benchmark::State& state) {
    const auto data = record(static_cast<std::size_t>(state.range(0)));
    std::vector<std::uint8_t> copy(data.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), data.data(), data.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    countBytes(state);
}
BENCHMARK(copyOfRecord)->Arg(200)->Arg(32768)->Repetitions(repetitions);

// A record of words and double words by turns, 8 bytes for each four fields.
void writeFields(benchmark::State& state) {
    const std::int64_t bytes = state.range(0);
    PalmRecordBuffer buffer;
    for (auto _ : state) {
        buffer.clear();
        for (std::int64_t at = 0; at + 8 <= bytes; at += 8) {
            buffer.appendDword(static_cast<std::uint32_t>(at));
            buffer.appendWord(1);
            buffer.appendByte(2);
            buffer.appendByte(3);
        }
        benchmark::DoNotOptimize(buffer.data());
    }
    countBytes(state);
}
BENCHMARK(writeFields)->Arg(200)->Arg(32768)->Repetitions(repetitions);

void readFields(benchmark::State& state) {
    const auto data = record(static_cast<std::size_t>(state.range(0)));
    PalmRecordBuffer buffer;
    buffer.appendBytes(data.data(), data.size());
    for (auto _ : state) {
        buffer.resetCursor();
        buffer.position(); // binds, so that there is something left
        while (!buffer.atEnd()) {
            benchmark::DoNotOptimize(buffer.readDword());
            benchmark::DoNotOptimize(buffer.readWord());
            benchmark::DoNotOptimize(buffer.readByte());
            benchmark::DoNotOptimize(buffer.readByte());
        }
    }
    countBytes(state);
}
BENCHMARK(readFields)->Arg(200)->Arg(32768)->Repetitions(repetitions);

const bool compared = bench::requireRate("crc/65535", 65535, 300) && bench::requireRate("crc/200", 200)
                   && bench::compare("writeFields/200", "copyOfRecord/200")
                   && bench::compare("writeFields/32768", "copyOfRecord/32768")
                   && bench::compare("readFields/200", "copyOfRecord/200")
                   && bench::compare("readFields/32768", "copyOfRecord/32768");

} // namespace
} // namespace tsr
