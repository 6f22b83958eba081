#include "tessera/hexadecimalText.h"

#include <cstdint>
#include <vector>

#include "foundation/Error.h"
#include "foundation/hexadecimal.h"
#include "tessera/TesseraError.h"
#include "tessera/unicode.h"

namespace tsr {

std::string toHexadecimalText(const std::string& utf8) {
    std::vector<std::uint8_t> bytes;
    for (const char16_t unit : toUtf16(utf8)) {
        if (unit > 0xFF) throw TesseraError("handhelds don't have all characters of this text");
        bytes.push_back(static_cast<std::uint8_t>(unit));
    }
    return binaryToHex(bytes);
}

std::string fromHexadecimalText(const std::string& digits) {
    std::vector<std::uint8_t> bytes;
    try {
        hexToBinary(digits, bytes);
    } catch (const Error&) {
        return "";
    }
    return toUtf8(std::u16string(bytes.begin(), bytes.end()));
}

} // namespace tsr
