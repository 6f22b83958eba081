#include "server/WinsockLibrary.h"

#include "foundation/GeneralError.h"
#include "foundation/Win32Error.h"

namespace tsr {

namespace {

constexpr std::uint16_t version11 = 0x0101;
constexpr std::uint16_t version2 = 0x0002;

SharedWinsockLibrary sharedLibrary(platform::socketLibraryLoader());

// The major number stands in the low byte of a version word. A later minor of 1 will do, any of 2.
bool serves(std::uint16_t version, std::uint16_t wanted) {
    return (version & 0xFF) == (wanted & 0xFF) && version >> 8 >= wanted >> 8;
}

} // namespace

const WinsockLibrary& WinsockLibrary::instance() { return sharedLibrary.instance(); }

WinsockLibrary::WinsockLibrary(platform::ISocketLibraryLoader& loader) : loader_(loader) {
    library_ = load(true);
    if (library_ == nullptr) throw GeneralError(Message::NoWinsock);
    try {
        bindEntries();
    } catch (...) {
        loader_.free(library_);
        throw;
    }
}

WinsockLibrary::~WinsockLibrary() { loader_.free(library_); }

void* WinsockLibrary::load(bool winsock1Only) {
    if (!winsock1Only) {
        if (void* library = loadVersion("WS2_32", version2)) {
            winsock2_ = true;
            return library;
        }
    }
    return loadVersion("WSOCK32", version11);
}

void* WinsockLibrary::loadVersion(const char* name, std::uint16_t wanted) {
    void* library = loader_.load(name);
    if (library == nullptr) return nullptr;
    const auto startUp = reinterpret_cast<platform::StartupFunction*>(loader_.find(library, "WSAStartup"));
    platform::StartupData data{};
    if (startUp != nullptr && startUp(wanted, &data) == 0 && serves(data.version, wanted)) return library;
    loader_.free(library);
    return nullptr;
}

void WinsockLibrary::bindEntries() {
    bindEntry(WSACleanup, "WSACleanup");
    bindEntry(connect, "connect");
    bindEntry(listen, "listen");
    bindEntry(accept, "accept");
    bindEntry(recv, "recv");
    bindEntry(send, "send");
    bindEntry(WSAGetLastError, "WSAGetLastError");
    bindEntry(gethostname, "gethostname");
    bindEntry(getsockname, "getsockname");
    bindEntry(gethostbyname, "gethostbyname");
    bindEntry(getservbyname, "getservbyname");
    bindEntry(inet_addr, "inet_addr");
    bindEntry(htons, "htons");
    bindEntry(htonl, "htonl");
    bindEntry(ntohs, "ntohs");
    bindEntry(setsockopt, "setsockopt");
    bindEntry(bind, "bind");
    bindEntry(WSAAsyncSelect, "WSAAsyncSelect");
    bindEntry(socket, "socket");
    bindEntry(closesocket, "closesocket");
    bindEntry(ioctlsocket, "ioctlsocket");
    bindEntry(shutdown, "shutdown");
    if (!winsock2_) return;
    bindEntry(WSAEventSelect, "WSAEventSelect");
    bindEntry(WSAEnumNetworkEvents, "WSAEnumNetworkEvents");
}

template <typename Function>
void WinsockLibrary::bindEntry(Function*& entry, const char* name) {
    entry = reinterpret_cast<Function*>(loader_.find(library_, name));
    if (entry == nullptr) throw Win32Error("GetProcAddress");
}

const WinsockLibrary& SharedWinsockLibrary::instance() {
    if (const WinsockLibrary* table = table_.load()) return *table;
    const CriticalSectionGuard guard(section_);
    if (table_.load() == nullptr) table_.store(new WinsockLibrary(loader_));
    return *table_.load();
}

} // namespace tsr
