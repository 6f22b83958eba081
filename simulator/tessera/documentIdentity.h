#pragma once

#include <cstdint>
#include <string>

#include "tessera/Document.h"

namespace tsr {

// The identities of one store are drawn in a row from its seed, so that equal stores that live through the
// same steps hold the same identities, and two stores with seeds of their own never do.
std::string randomSeed(); // 64 hexadecimal digits

std::string drawnDbid(const std::string& seed, std::int64_t number); // 16 hexadecimal digits
std::string drawnUnid(const std::string& seed, std::int64_t number); // 32 hexadecimal digits

// Equal for equal properties only, in hexadecimal digits.
std::string contentDigest(const Properties& properties);

} // namespace tsr
