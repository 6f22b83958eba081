#include "tessera/passwords.h"

#include <sodium.h>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

void startSodium() {
    if (sodium_init() < 0) throw TesseraError("the cryptography library cannot start");
}

} // namespace

std::string hashPassword(const std::string& password, PasswordCost cost) {
    startSodium();
    const bool minimal = cost == PasswordCost::Minimal;
    char hash[crypto_pwhash_STRBYTES];
    const int failed =
        crypto_pwhash_str(hash, password.data(), password.size(),
                          minimal ? crypto_pwhash_OPSLIMIT_MIN : crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          minimal ? crypto_pwhash_MEMLIMIT_MIN : crypto_pwhash_MEMLIMIT_INTERACTIVE);
    if (failed != 0) throw TesseraError("the password cannot be hashed for want of memory");
    return hash;
}

bool passwordMatches(const std::string& hash, const std::string& password) {
    startSodium();
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

} // namespace tsr
