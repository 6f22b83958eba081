#include "server/WinsockLibrary.h"

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "foundation/Win32Error.h"
#include "platform/systemError.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

constexpr std::uint32_t functionNotFound = 38; // ENOSYS
const char noWinsock[] = "Unable to find an appropriate version of WinSock.";

const std::vector<std::string> boundNames = {
    "WSACleanup",      "connect",     "listen",      "accept",        "recv",          "send",
    "WSAGetLastError", "gethostname", "getsockname", "gethostbyname", "getservbyname", "inet_addr",
    "htons",           "htonl",       "ntohs",       "setsockopt",    "bind",          "WSAAsyncSelect",
    "socket",          "closesocket", "ioctlsocket", "shutdown",
};

int startUpResult = 0;
std::uint16_t offeredVersion = 0x0101;
std::vector<std::uint16_t> askedVersions;

int startUp(std::uint16_t version, platform::StartupData* data) {
    askedVersions.push_back(version);
    data->version = offeredVersion;
    return startUpResult;
}

void anyFunction() {}

// A loader with one library, which lacks the names in `missing`.
class ScriptedLoader : public platform::ISocketLibraryLoader {
public:
    ScriptedLoader() {
        startUpResult = 0;
        offeredVersion = 0x0101;
        askedVersions.clear();
    }

    void* load(const char* name) override {
        asked.push_back(name);
        if (!present) return nullptr;
        ++loaded;
        return this;
    }

    platform::LibraryFunction find(void* library, const char* name) override {
        EXPECT_EQ(library, this);
        found.push_back(name);
        if (std::find(missing.begin(), missing.end(), name) != missing.end()) {
            platform::setLastError(functionNotFound);
            return nullptr;
        }
        if (std::string(name) == "WSAStartup") return reinterpret_cast<platform::LibraryFunction>(&startUp);
        return anyFunction;
    }

    void free(void* library) override {
        EXPECT_EQ(library, this);
        ++freed;
    }

    bool present = true;
    std::vector<std::string> missing;
    std::vector<std::string> asked;
    std::vector<std::string> found;
    int loaded = 0;
    int freed = 0;
};

TEST(WinsockLibrary, BindsTheWholeInterfaceInOrder) {
    ScriptedLoader loader;
    {
        const WinsockLibrary library(loader);
        EXPECT_FALSE(library.winsock2());
        EXPECT_NE(library.connect, nullptr);
        EXPECT_NE(library.shutdown, nullptr);
        EXPECT_EQ(library.WSAEventSelect, nullptr);
        EXPECT_EQ(library.WSAEnumNetworkEvents, nullptr);
        EXPECT_EQ(loader.freed, 0);
    }
    EXPECT_EQ(loader.asked, std::vector<std::string>{"WSOCK32"}); // never the second version
    EXPECT_EQ(askedVersions, std::vector<std::uint16_t>{0x0101});
    std::vector<std::string> names = {"WSAStartup"};
    names.insert(names.end(), boundNames.begin(), boundNames.end());
    EXPECT_EQ(loader.found, names);
    EXPECT_EQ(loader.freed, 1);
}

TEST(WinsockLibrary, NeedsTheLibrary) {
    ScriptedLoader loader;
    loader.present = false;
    EXPECT_EQ(test::textRaisedBy([&] { WinsockLibrary library(loader); }), noWinsock);
    EXPECT_EQ(loader.freed, 0);
}

TEST(WinsockLibrary, NeedsItToStartUp) {
    ScriptedLoader loader;
    loader.missing = {"WSAStartup"};
    EXPECT_EQ(test::textRaisedBy([&] { WinsockLibrary library(loader); }), noWinsock);
    loader.missing.clear();
    startUpResult = 10091;
    EXPECT_EQ(test::textRaisedBy([&] { WinsockLibrary library(loader); }), noWinsock);
    EXPECT_EQ(loader.freed, 2);
}

TEST(WinsockLibrary, NeedsVersionOneOne) {
    ScriptedLoader loader;
    const std::uint16_t versions[] = {0x0001, 0x0102, 0x0002, 0x0000}; // 1.0, 2.1, 2.0, none
    for (const std::uint16_t version : versions) {
        offeredVersion = version;
        EXPECT_EQ(test::textRaisedBy([&] { WinsockLibrary library(loader); }), noWinsock) << version;
    }
    offeredVersion = 0x0201; // 1.2
    const WinsockLibrary library(loader);
    EXPECT_EQ(loader.loaded - loader.freed, 1);
}

TEST(WinsockLibrary, NeedsEveryName) {
    for (const std::string& name : boundNames) {
        ScriptedLoader loader;
        loader.missing = {name};
        try {
            const WinsockLibrary library(loader);
            ADD_FAILURE() << name;
        } catch (const Win32Error& error) {
            EXPECT_EQ(error.functionName(), "GetProcAddress") << name;
            EXPECT_EQ(error.code(), functionNotFound);
        }
        EXPECT_EQ(loader.found.back(), name);
        EXPECT_EQ(loader.freed, 1);
    }
}

TEST(SharedWinsockLibrary, IsMadeOnFirstUse) {
    ScriptedLoader loader;
    {
        SharedWinsockLibrary shared(loader);
        EXPECT_EQ(loader.loaded, 0);
        const WinsockLibrary& first = shared.instance();
        EXPECT_EQ(&shared.instance(), &first);
        EXPECT_EQ(loader.loaded, 1);
    }
    EXPECT_EQ(loader.freed, 1);
}

TEST(SharedWinsockLibrary, TriesAgainAfterAFailure) {
    ScriptedLoader loader;
    SharedWinsockLibrary shared(loader);
    loader.present = false;
    EXPECT_EQ(test::textRaisedBy([&] { shared.instance(); }), noWinsock);
    loader.present = true;
    loader.missing = {"WSAAsyncSelect"};
    EXPECT_THROW(shared.instance(), Win32Error);
    loader.missing.clear();
    EXPECT_NE(shared.instance().send, nullptr);
    EXPECT_EQ(loader.loaded, 2);
    EXPECT_EQ(loader.freed, 1);
}

TEST(SharedWinsockLibrary, IsMadeOnceByManyThreads) {
    ScriptedLoader loader;
    SharedWinsockLibrary shared(loader);
    std::vector<std::thread> threads;
    std::vector<const WinsockLibrary*> tables(8);
    for (auto& table : tables) threads.emplace_back([&shared, &table] { table = &shared.instance(); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(std::count(tables.begin(), tables.end(), tables.front()), 8);
    EXPECT_EQ(loader.loaded, 1);
}

TEST(WinsockLibraryInstance, IsTheSystemsAndAlwaysTheSame) {
    const WinsockLibrary& library = WinsockLibrary::instance();
    EXPECT_EQ(&WinsockLibrary::instance(), &library);
    EXPECT_FALSE(library.winsock2());
    EXPECT_EQ(library.ntohs(library.htons(0x1234)), 0x1234);
    EXPECT_EQ(library.inet_addr("255.255.255.255"), 0xFFFFFFFFu);
}

TEST(SocketLibraryLoader, HasOneLibraryAndNothingElse) {
    platform::ISocketLibraryLoader& loader = platform::socketLibraryLoader();
    EXPECT_EQ(loader.load("WS2_32"), nullptr);
    void* library = loader.load("WSOCK32");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(loader.find(library, "WSAEventSelect"), nullptr);
    EXPECT_EQ(platform::lastError(), functionNotFound);
    loader.free(library);
}

} // namespace
} // namespace tsr
