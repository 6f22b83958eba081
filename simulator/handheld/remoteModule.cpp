#include "handheld/remoteModule.h"

#include <algorithm>
#include <string>

#include "handheld/CopyPass.h"
#include "handheld/syncResult.h"

namespace tsr {

namespace {

constexpr std::uint32_t moduleCreator = 0x54535241; // "TSRA"
constexpr std::uint32_t moduleType = 0x6170706C;    // "appl"
constexpr std::uint16_t callFunction = 0x8000;
constexpr std::size_t parameterStrings = 5;

// Bytes behind the last NUL are a string that lost its end, and make the whole unusable: empty.
std::vector<std::string> stringsOf(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::string> strings;
    auto begin = bytes.begin();
    while (begin != bytes.end()) {
        auto end = std::find(begin, bytes.end(), std::uint8_t{0});
        if (end == bytes.end()) return {};
        strings.emplace_back(begin, end);
        begin = end + 1;
    }
    return strings;
}

RemoteModuleAnswer answer(const std::string& first, const std::string& second) {
    RemoteModuleAnswer answer;
    for (const std::string* text : {&first, &second}) {
        answer.result.insert(answer.result.end(), text->begin(), text->end());
        answer.result.push_back(0);
    }
    return answer;
}

RemoteModuleAnswer refusal(std::int32_t code) { return {static_cast<std::uint32_t>(code), {}}; }

RemoteModuleAnswer copyPending(HandheldDatabase& application, HandheldDatabase& sync) {
    CopyPass pass(application, sync);
    if (!pass.run()) return answer("1", std::to_string(pass.unusableRecord()));
    return answer("0", pass.isLast() ? "17" : "0");
}

} // namespace

bool isRemoteModule(std::uint32_t creator, std::uint32_t type) {
    return creator == moduleCreator && type == moduleType;
}

RemoteModuleAnswer runRemoteModule(Handheld& handheld, std::uint16_t actionCode,
                                   const std::vector<std::uint8_t>& parameter) {
    if (actionCode != callFunction) return refusal(syncResult::notSupported);
    const std::vector<std::string> strings = stringsOf(parameter);
    if (strings.size() != parameterStrings) return refusal(syncResult::badParameter);
    if (strings[0] != "6") return refusal(syncResult::notSupported);
    HandheldDatabase* application = handheld.find(strings[3]);
    HandheldDatabase* sync = handheld.find(strings[4]);
    if (!application || !sync) return refusal(syncResult::notFound);
    return copyPending(*application, *sync);
}

} // namespace tsr
