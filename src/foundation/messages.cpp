#include "foundation/messages.h"

#include "foundation/hexadecimal.h"
#include "platform/stringTable.h"
#include "platform/systemError.h"

namespace tsr {

namespace {

struct SyncResult {
    std::uint32_t code;
    Message text;
};

// Searched from the top. 0 is not in it: success is never described.
constexpr SyncResult syncResults[] = {
    {0x00004011, Message::SyncProtocol},         {0x00004017, Message::SyncInvalidParameter},
    {0x00004010, Message::SyncDesktopLink},      {0x0000400E, Message::SyncDatabaseType},
    {0x0000400A, Message::SyncNoCommunications}, {0x0000400B, Message::SyncDatabaseExists},
    {0x0000400C, Message::SyncDatabaseOpen},     {0x00004004, Message::SyncOpenFailed},
    {0x00004005, Message::SyncNotUsed},          {0x00004018, Message::SyncLimitExceeded},
    {0x00004012, Message::SyncBufferTooSmall},   {0x10004411, Message::SyncCancelledOnDesktop},
    {0x00004016, Message::SyncDesktopMemory},    {0x10006410, Message::SyncConnectionLost},
    {0x00004002, Message::SyncNotUsedEither},    {0x0000400D, Message::SyncNoDatabaseOpen},
    {0x00004003, Message::SyncNotFound},         {0x00004009, Message::SyncReadOnly},
    {0x00004006, Message::SyncRecordBusy},       {0x00004007, Message::SyncRecordDeleted},
    {0x0000400F, Message::SyncInvalidArgument},  {0x10004405, Message::SyncCancelledOnHandheld},
    {0x00004013, Message::SyncHandheldMemory},   {0x00004014, Message::SyncHandheldStorage},
    {0x00004015, Message::SyncHandheldError},    {0x10004403, Message::SyncTooManyOpen},
    {0x00004001, Message::SyncUnknownError},     {0x00004019, Message::SyncNotSupported},
};

} // namespace

std::string loadMessage(std::uint32_t id) {
    std::string text = platform::loadString(id);
    if (text.empty()) return "Unable to find string resource " + std::to_string(id);
    return text;
}

std::string loadMessage(Message id) { return loadMessage(static_cast<std::uint32_t>(id)); }

std::string describeSystemError(std::uint32_t code) {
    std::string text = platform::systemErrorText(code);
    if (text.empty()) return "Win32 error " + std::to_string(code) + " (no description found)";
    return text;
}

std::string describeSyncResult(std::uint32_t code) {
    for (const SyncResult& result : syncResults) {
        if (result.code == code) return loadMessage(result.text);
    }
    return "Unknown conduit sync error: " + toHex(code, 8);
}

} // namespace tsr
