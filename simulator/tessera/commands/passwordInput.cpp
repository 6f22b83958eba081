#include "tessera/commands/passwordInput.h"

#include <cstdlib>
#include <fstream>
#include <istream>
#include <ostream>

#include "terminal/HiddenTyping.h"
#include "tessera/TesseraError.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

constexpr std::size_t maxPasswordBytes = 1000;

std::string firstLine(std::istream& in) {
    std::string line;
    std::getline(in, line);
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

std::string passwordOfFile(const std::string& file) {
    std::ifstream in(file);
    if (!in) throw TesseraError("cannot read the password file '" + file + "'");
    return firstLine(in);
}

std::string typedPassword(const std::string& prompt, std::istream& in, std::ostream& err) {
    err << prompt << std::flush;
    const HiddenTyping hidden;
    const std::string password = firstLine(in);
    err << "\n";
    return password;
}

std::string anyPassword(const std::string& file, const std::string& prompt, std::istream& in,
                        std::ostream& err) {
    if (!file.empty()) return passwordOfFile(file);
    if (const char* variable = std::getenv("TESSERA_PASSWORD")) return variable;
    return typedPassword(prompt, in, err);
}

} // namespace

std::string readPassword(const std::string& file, const std::string& prompt, std::istream& in,
                         std::ostream& err) {
    const std::string password = anyPassword(file, prompt, in, err);
    if (password.empty()) throw TesseraError("a user needs a password");
    if (password.size() > maxPasswordBytes) throw TesseraError("the password is too long");
    if (!isPlainText(password)) throw TesseraError("the password has characters that cannot be sent");
    return password;
}

} // namespace tsr
