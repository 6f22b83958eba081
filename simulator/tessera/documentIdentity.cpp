#include "tessera/documentIdentity.h"

#include <array>

#include <sodium.h>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

constexpr std::size_t dbidBytes = 8;
constexpr std::size_t unidBytes = 16;
constexpr std::size_t seedBytes = 32;

std::string hexText(const unsigned char* data, std::size_t size) {
    std::string text(2 * size + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), data, size);
    text.pop_back();
    return text;
}

std::string hashOf(const std::string& input, std::size_t bytes) {
    std::array<unsigned char, crypto_generichash_BYTES> hash{};
    crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char*>(input.data()),
                       input.size(), nullptr, 0);
    return hexText(hash.data(), bytes);
}

std::string drawn(const std::string& seed, std::int64_t number, std::size_t bytes) {
    return hashOf(seed + " " + std::to_string(number), bytes);
}

} // namespace

std::string randomSeed() {
    if (sodium_init() < 0) throw TesseraError("the cryptography library cannot start");
    std::array<unsigned char, seedBytes> seed{};
    randombytes_buf(seed.data(), seed.size());
    return hexText(seed.data(), seed.size());
}

std::string drawnDbid(const std::string& seed, std::int64_t number) { return drawn(seed, number, dbidBytes); }

std::string drawnUnid(const std::string& seed, std::int64_t number) { return drawn(seed, number, unidBytes); }

// No name holds "=" and no text a NUL, so that the properties could be read back from what is hashed.
std::string contentDigest(const Properties& properties) {
    std::string content;
    for (const auto& [name, values] : properties) {
        for (const std::string& value : values)
            content.append(name).append("=").append(value).push_back('\0');
    }
    return hashOf(content, crypto_generichash_BYTES);
}

} // namespace tsr
