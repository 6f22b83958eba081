#include "device/remoteModule.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include "device/fourCharacterCode.h"
#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "platform/syncManager.h"

namespace tsr {

namespace {

constexpr std::size_t resultRoom = 100;      // bytes
constexpr std::size_t largestResult = 65535; // bytes

std::vector<std::uint8_t> packed(const std::vector<std::string>& arguments) {
    std::vector<std::uint8_t> parameter;
    for (const std::string& argument : arguments) {
        parameter.insert(parameter.end(), argument.begin(), argument.end());
        parameter.push_back(0);
    }
    return parameter;
}

std::vector<std::string> unpacked(const std::vector<std::uint8_t>& result) {
    std::vector<std::string> strings;
    for (auto start = result.begin(); start != result.end();) {
        const auto nul = std::find(start, result.end(), 0);
        if (nul == result.end()) throw GeneralError(Message::MissingNul);
        strings.emplace_back(start, nul);
        start = nul + 1;
    }
    return strings;
}

} // namespace

std::vector<std::string> callRemoteModule(const std::vector<std::string>& arguments) {
    std::vector<std::uint8_t> parameter = packed(arguments);
    std::vector<std::uint8_t> result(resultRoom);
    RemoteModuleBlock block{};
    block.creator = fourCharacterCode("TSRA");
    block.type = fourCharacterCode("appl");
    block.actionCode = 0x8000;
    block.parameterSize = static_cast<std::uint32_t>(parameter.size());
    block.parameter = parameter.data();
    block.resultBufferSize = static_cast<std::uint32_t>(result.size());
    block.resultBuffer = result.data();
    if (const std::int32_t code = SyncCallRemoteModule(&block); code != 0) {
        throw PalmSyncApiError(static_cast<std::uint32_t>(code), "SyncCallRemoteModule");
    }
    if (block.resultCode != 0)
        throw GeneralError(Message::RemoteModuleFailed) << Tag('r') << block.resultCode;
    if (block.resultSize > largestResult) throw std::bad_alloc();
    result.resize(block.resultSize);
    return unpacked(result);
}

} // namespace tsr
