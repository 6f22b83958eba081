#pragma once

#include <string>

namespace tsr {

// How hard a password hash is to work out. Tests take Minimal, which is quick and protects nothing.
enum class PasswordCost { Minimal, Interactive };

// The salted hash of a password, in printable text that holds its own salt and cost.
std::string hashPassword(const std::string& password, PasswordCost cost);

bool passwordMatches(const std::string& hash, const std::string& password);

} // namespace tsr
