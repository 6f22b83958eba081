#pragma once

#include <cstdint>

// The socket library, which is bound at run time: the plain C functions of its interface and the way to find
// them. Addresses cross it as Ipv4SocketAddress.

#ifdef _WIN32
#define TSR_SOCKET_CALL __stdcall
#else
#define TSR_SOCKET_CALL
#endif

namespace tsr::platform {

using SocketHandle = std::intptr_t; // -1 stands for none

constexpr SocketHandle noSocket = -1;
constexpr int internetFamily = 2;
constexpr int streamType = 1;

// The system's structure for an IPv4 address.
struct Ipv4SocketAddress {
    std::uint16_t family = 0;
    std::uint16_t port = 0;    // network order
    std::uint32_t address = 0; // network order
    std::uint8_t zero[8] = {};
};
static_assert(sizeof(Ipv4SocketAddress) == 16);

// What gethostbyname answers with. It belongs to the library and lasts until the next call.
struct HostEntry {
#ifdef _WIN32
    using Number = short;
#else
    using Number = int;
#endif
    char* name;
    char** aliases;
    Number addressType;
    Number addressBytes;
    char** addresses; // ends with a null pointer
};

// What WSAStartup fills in. The version has the major number in its low byte.
struct StartupData {
    std::uint16_t version;
    std::uint8_t unread[510];
};

extern "C" {

using StartupFunction = int TSR_SOCKET_CALL(std::uint16_t version, StartupData* data);
using CleanupFunction = int TSR_SOCKET_CALL();
using ConnectFunction = int TSR_SOCKET_CALL(SocketHandle, const void* address, int bytes);
using ListenFunction = int TSR_SOCKET_CALL(SocketHandle, int backlog);
using AcceptFunction = SocketHandle TSR_SOCKET_CALL(SocketHandle, void* address, int* bytes);
using ReceiveFunction = int TSR_SOCKET_CALL(SocketHandle, char* buffer, int bytes, int flags);
using SendFunction = int TSR_SOCKET_CALL(SocketHandle, const char* buffer, int bytes, int flags);
using LastErrorFunction = int TSR_SOCKET_CALL();
using HostNameFunction = int TSR_SOCKET_CALL(char* name, int bytes);
using SocketNameFunction = int TSR_SOCKET_CALL(SocketHandle, void* address, int* bytes);
using HostByNameFunction = HostEntry* TSR_SOCKET_CALL(const char* name);
using ServiceByNameFunction = void* TSR_SOCKET_CALL(const char* name, const char* protocol);
using ParseAddressFunction = std::uint32_t TSR_SOCKET_CALL(const char* text);
using ShortOrderFunction = std::uint16_t TSR_SOCKET_CALL(std::uint16_t value);
using LongOrderFunction = std::uint32_t TSR_SOCKET_CALL(std::uint32_t value);
using SetOptionFunction = int TSR_SOCKET_CALL(SocketHandle, int level, int name, const char* value,
                                              int bytes);
using BindFunction = int TSR_SOCKET_CALL(SocketHandle, const void* address, int bytes);
using AsyncSelectFunction = int TSR_SOCKET_CALL(SocketHandle, void* window, unsigned message, long events);
using SocketFunction = SocketHandle TSR_SOCKET_CALL(int family, int type, int protocol);
using CloseSocketFunction = int TSR_SOCKET_CALL(SocketHandle);
using ControlFunction = int TSR_SOCKET_CALL(SocketHandle, long command, unsigned long* argument);
using ShutdownFunction = int TSR_SOCKET_CALL(SocketHandle, int how);
using EventSelectFunction = int TSR_SOCKET_CALL(SocketHandle, void* event, long events);
using EnumEventsFunction = int TSR_SOCKET_CALL(SocketHandle, void* event, void* events);

} // extern "C"

// Any of the functions above, before it has its type back.
using LibraryFunction = void (*)();

// Finds libraries and what is in them.
class ISocketLibraryLoader {
public:
    virtual ~ISocketLibraryLoader() = default;

    virtual void* load(const char* name) = 0;                          // null where there is none
    virtual LibraryFunction find(void* library, const char* name) = 0; // null, with lastError() set, likewise
    virtual void free(void* library) = 0;
};

// The system's own. On POSIX "WSOCK32" is a table over the system's calls, in which an interrupted call is
// taken up again, a send goes on until every byte is out, and a closed connection raises no signal.
ISocketLibraryLoader& socketLibraryLoader();

} // namespace tsr::platform
