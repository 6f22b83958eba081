#pragma once

#include <atomic>

#include "platform/socketLibrary.h"
#include "server/CriticalSection.h"

namespace tsr {

// The socket functions, bound at run time so that the conduit loads on a machine without networking and only
// fails when it connects. The whole interface is bound, although we call but a part of it: a library that
// lacks a name is not the one that we know.
class WinsockLibrary {
public:
    // The one table of the process, made on first use. Safe to call from any thread. Raises NoWinsock where
    // there is no library, Win32Error where it lacks a name; the next call then tries again.
    static const WinsockLibrary& instance();

    explicit WinsockLibrary(platform::ISocketLibraryLoader& loader);
    WinsockLibrary(const WinsockLibrary&) = delete;
    WinsockLibrary& operator=(const WinsockLibrary&) = delete;
    ~WinsockLibrary(); // frees the library; WSACleanup is never called

    platform::CleanupFunction* WSACleanup = nullptr;
    platform::ConnectFunction* connect = nullptr;
    platform::ListenFunction* listen = nullptr;
    platform::AcceptFunction* accept = nullptr;
    platform::ReceiveFunction* recv = nullptr;
    platform::SendFunction* send = nullptr;
    platform::LastErrorFunction* WSAGetLastError = nullptr;
    platform::HostNameFunction* gethostname = nullptr;
    platform::SocketNameFunction* getsockname = nullptr;
    platform::HostByNameFunction* gethostbyname = nullptr;
    platform::ServiceByNameFunction* getservbyname = nullptr;
    platform::ParseAddressFunction* inet_addr = nullptr;
    platform::ShortOrderFunction* htons = nullptr;
    platform::LongOrderFunction* htonl = nullptr;
    platform::ShortOrderFunction* ntohs = nullptr;
    platform::SetOptionFunction* setsockopt = nullptr;
    platform::BindFunction* bind = nullptr;
    platform::AsyncSelectFunction* WSAAsyncSelect = nullptr;
    platform::SocketFunction* socket = nullptr;
    platform::CloseSocketFunction* closesocket = nullptr;
    platform::ControlFunction* ioctlsocket = nullptr;
    platform::ShutdownFunction* shutdown = nullptr;
    platform::EventSelectFunction* WSAEventSelect = nullptr;      // only with WinSock 2
    platform::EnumEventsFunction* WSAEnumNetworkEvents = nullptr; // only with WinSock 2

    bool winsock2() const { return winsock2_; }

private:
    void* load(bool winsock1Only);
    void* loadVersion(const char* name, std::uint16_t wanted);
    void bindEntries();
    template <typename Function>
    void bindEntry(Function*& entry, const char* name);

    platform::ISocketLibraryLoader& loader_;
    void* library_ = nullptr;
    bool winsock2_ = false;
};

// A table that is made when it is first asked for. `loader` outlives it.
class SharedWinsockLibrary {
public:
    explicit SharedWinsockLibrary(platform::ISocketLibraryLoader& loader) : loader_(loader) {}
    SharedWinsockLibrary(const SharedWinsockLibrary&) = delete;
    SharedWinsockLibrary& operator=(const SharedWinsockLibrary&) = delete;
    ~SharedWinsockLibrary() { delete table_.load(); }

    const WinsockLibrary& instance();

private:
    platform::ISocketLibraryLoader& loader_;
    CriticalSection section_;
    std::atomic<WinsockLibrary*> table_ = nullptr;
};

} // namespace tsr
