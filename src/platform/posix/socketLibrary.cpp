#include "platform/socketLibrary.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tsr::platform {

namespace {

static_assert(sizeof(sockaddr_in) == sizeof(Ipv4SocketAddress));
static_assert(offsetof(sockaddr_in, sin_port) == offsetof(Ipv4SocketAddress, port));
static_assert(offsetof(sockaddr_in, sin_addr) == offsetof(Ipv4SocketAddress, address));
static_assert(AF_INET == internetFamily && SOCK_STREAM == streamType);

constexpr std::uint16_t version11 = 0x0101;

int descriptor(SocketHandle handle) { return static_cast<int>(handle); }

const sockaddr* native(const void* address) { return static_cast<const sockaddr*>(address); }

int unsupported() {
    errno = EOPNOTSUPP;
    return -1;
}

// A connect that was interrupted goes on by itself; its outcome is known once the socket can be written.
int awaitConnection(int socket) {
    pollfd wanted{socket, POLLOUT, 0};
    while (::poll(&wanted, 1, -1) < 0) {
        if (errno != EINTR) return -1;
    }
    int error = 0;
    socklen_t bytes = sizeof error;
    if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &bytes) != 0) return -1;
    errno = error;
    return error == 0 ? 0 : -1;
}

int startUp(std::uint16_t, StartupData* data) {
    data->version = version11;
    return 0;
}

int cleanUp() { return 0; }

int connectSocket(SocketHandle handle, const void* address, int bytes) {
    const int socket = descriptor(handle);
    if (::connect(socket, native(address), static_cast<socklen_t>(bytes)) == 0) return 0;
    return errno == EINTR ? awaitConnection(socket) : -1;
}

int listenSocket(SocketHandle handle, int backlog) { return ::listen(descriptor(handle), backlog); }

SocketHandle acceptSocket(SocketHandle handle, void* address, int* bytes) {
    socklen_t length = bytes == nullptr ? 0 : static_cast<socklen_t>(*bytes);
    const int socket =
        ::accept(descriptor(handle), static_cast<sockaddr*>(address), bytes ? &length : nullptr);
    if (bytes != nullptr) *bytes = static_cast<int>(length);
    return socket;
}

int receive(SocketHandle handle, char* buffer, int bytes, int flags) {
    ssize_t received = 0;
    do {
        received = ::recv(descriptor(handle), buffer, static_cast<std::size_t>(bytes), flags);
    } while (received < 0 && errno == EINTR);
    return static_cast<int>(received);
}

int sendAll(SocketHandle handle, const char* buffer, int bytes, int flags) {
    int sent = 0;
    do {
        const ssize_t count = ::send(descriptor(handle), buffer + sent,
                                     static_cast<std::size_t>(bytes - sent), flags | MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) return -1;
        sent += static_cast<int>(std::max<ssize_t>(count, 0));
    } while (sent < bytes);
    return sent;
}

int lastSocketError() { return errno; }

int hostName(char* name, int bytes) { return ::gethostname(name, static_cast<std::size_t>(bytes)); }

int socketName(SocketHandle handle, void* address, int* bytes) {
    socklen_t length = static_cast<socklen_t>(*bytes);
    const int result = ::getsockname(descriptor(handle), static_cast<sockaddr*>(address), &length);
    *bytes = static_cast<int>(length);
    return result;
}

HostEntry* hostByName(const char* name) {
    const hostent* found = ::gethostbyname(name);
    if (found == nullptr) return nullptr;
    thread_local HostEntry entry;
    entry = {found->h_name, found->h_aliases, found->h_addrtype, found->h_length, found->h_addr_list};
    return &entry;
}

void* serviceByName(const char* name, const char* protocol) { return ::getservbyname(name, protocol); }

std::uint32_t parseAddress(const char* text) { return ::inet_addr(text); }

std::uint16_t toNetworkShort(std::uint16_t value) { return htons(value); }

std::uint32_t toNetworkLong(std::uint32_t value) { return htonl(value); }

std::uint16_t toHostShort(std::uint16_t value) { return ntohs(value); }

int setOption(SocketHandle handle, int level, int name, const char* value, int bytes) {
    return ::setsockopt(descriptor(handle), level, name, value, static_cast<socklen_t>(bytes));
}

int bindSocket(SocketHandle handle, const void* address, int bytes) {
    return ::bind(descriptor(handle), native(address), static_cast<socklen_t>(bytes));
}

int asyncSelect(SocketHandle, void*, unsigned, long) { return unsupported(); }

SocketHandle openSocket(int family, int type, int protocol) {
    return ::socket(family, type | SOCK_CLOEXEC, protocol);
}

int closeSocket(SocketHandle handle) { return ::close(descriptor(handle)); }

int controlSocket(SocketHandle handle, long command, unsigned long* argument) {
    return ::ioctl(descriptor(handle), static_cast<unsigned long>(command), argument);
}

int shutDown(SocketHandle handle, int how) { return ::shutdown(descriptor(handle), how); }

struct Entry {
    const char* name;
    LibraryFunction function;
};

template <typename Function>
Entry entry(const char* name, Function* function) {
    return {name, reinterpret_cast<LibraryFunction>(function)};
}

const Entry entries[] = {
    entry<StartupFunction>("WSAStartup", startUp),
    entry<CleanupFunction>("WSACleanup", cleanUp),
    entry<ConnectFunction>("connect", connectSocket),
    entry<ListenFunction>("listen", listenSocket),
    entry<AcceptFunction>("accept", acceptSocket),
    entry<ReceiveFunction>("recv", receive),
    entry<SendFunction>("send", sendAll),
    entry<LastErrorFunction>("WSAGetLastError", lastSocketError),
    entry<HostNameFunction>("gethostname", hostName),
    entry<SocketNameFunction>("getsockname", socketName),
    entry<HostByNameFunction>("gethostbyname", hostByName),
    entry<ServiceByNameFunction>("getservbyname", serviceByName),
    entry<ParseAddressFunction>("inet_addr", parseAddress),
    entry<ShortOrderFunction>("htons", toNetworkShort),
    entry<LongOrderFunction>("htonl", toNetworkLong),
    entry<ShortOrderFunction>("ntohs", toHostShort),
    entry<SetOptionFunction>("setsockopt", setOption),
    entry<BindFunction>("bind", bindSocket),
    entry<AsyncSelectFunction>("WSAAsyncSelect", asyncSelect),
    entry<SocketFunction>("socket", openSocket),
    entry<CloseSocketFunction>("closesocket", closeSocket),
    entry<ControlFunction>("ioctlsocket", controlSocket),
    entry<ShutdownFunction>("shutdown", shutDown),
};

// One library stands in this file; its handle is the address of its table.
class BuiltInLoader : public ISocketLibraryLoader {
public:
    void* load(const char* name) override {
        return std::strcmp(name, "WSOCK32") == 0 ? const_cast<Entry*>(entries) : nullptr;
    }

    LibraryFunction find(void*, const char* name) override {
        for (const Entry& candidate : entries) {
            if (std::strcmp(candidate.name, name) == 0) return candidate.function;
        }
        errno = ENOSYS;
        return nullptr;
    }

    void free(void*) override {}
};

} // namespace

ISocketLibraryLoader& socketLibraryLoader() {
    static BuiltInLoader loader;
    return loader;
}

} // namespace tsr::platform
