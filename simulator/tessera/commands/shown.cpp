#include "tessera/commands/shown.h"

#include "tessera/unicode.h"

namespace tsr {

namespace {

std::string shown(const std::string& text, const std::u16string& allowed) {
    std::u16string units = toUtf16(text);
    for (char16_t& unit : units) {
        const bool acts = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
        if (acts && allowed.find(unit) == std::u16string::npos) unit = u'?';
    }
    return toUtf8(units);
}

} // namespace

std::string shownLine(const std::string& text) { return shown(text, u""); }

std::string shownText(const std::string& text) { return shown(text, u"\n\t"); }

} // namespace tsr
