#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/hexadecimal.h"

namespace tsr {
namespace {

constexpr std::size_t bytesOfBlob = 32768; // 64 KiB of digits

std::vector<std::uint8_t> blob() {
    std::vector<std::uint8_t> bytes(bytesOfBlob);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
    return bytes;
}

void binaryToHexOfBlob(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = blob();
    for (auto _ : state) benchmark::DoNotOptimize(binaryToHex(bytes));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytesOfBlob));
}
BENCHMARK(binaryToHexOfBlob)->Name("binaryToHex");

void hexToBinaryOfBlob(benchmark::State& state) {
    const std::string text = binaryToHex(blob());
    std::vector<std::uint8_t> bytes;
    for (auto _ : state) {
        hexToBinary(text, bytes);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytesOfBlob));
}
BENCHMARK(hexToBinaryOfBlob)->Name("hexToBinary");

} // namespace
} // namespace tsr
