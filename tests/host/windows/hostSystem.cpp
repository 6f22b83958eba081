#include "host/hostSystem.h"

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <io.h>

#include <windows.h>

namespace tsr::test {

namespace {

constexpr char conduitName[] = "TsrConduit.dll";
constexpr std::int64_t unitsPerSecond = 10000000; // of 100 ns
constexpr std::int64_t from1601To1970 = 11644473600 * unitsPerSecond;

std::int64_t conduitTime = 0;
std::string missingFunction;

// Stand-ins for what the conduit calls.

void WINAPI conduitSystemTime(SYSTEMTIME* time) {
    const auto units = static_cast<std::uint64_t>(from1601To1970 + conduitTime * unitsPerSecond);
    FILETIME file{};
    file.dwLowDateTime = static_cast<DWORD>(units);
    file.dwHighDateTime = static_cast<DWORD>(units >> 32);
    FileTimeToSystemTime(&file, time);
}

HMODULE WINAPI noLibrary(const char*) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

FARPROC WINAPI allButTheMissing(HMODULE module, const char* name) {
    if (name != missingFunction) return GetProcAddress(module, name);
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
}

// The top bit tells that a key is down, the lowest one that it was. Other keys are the other way round.
constexpr auto isDown = static_cast<SHORT>(0x8000);
constexpr SHORT wasDown = 1;

SHORT WINAPI controlIsDown(int key) { return key == VK_CONTROL ? isDown : wasDown; }
SHORT WINAPI controlIsUp(int key) { return key == VK_CONTROL ? wasDown : isDown; }

int WINAPI noString(HINSTANCE, UINT, char*, int) { return 0; }

// The conduit as it lies in memory.
class LoadedImage {
public:
    explicit LoadedImage(const char* name) : base_(reinterpret_cast<std::uint8_t*>(GetModuleHandleA(name))) {
        if (base_ == nullptr) throw std::runtime_error(std::string(name) + " isn't loaded");
    }

    // Lets the image call `replacement` where it calls `function` of `library`.
    void replace(const char* library, const char* function, void* replacement) {
        for (const IMAGE_IMPORT_DESCRIPTOR* imports = firstImports(); imports->Name != 0; ++imports) {
            if (_stricmp(at<char>(imports->Name), library) != 0) continue;
            if (replaceIn(*imports, function, replacement)) return;
        }
        throw std::runtime_error(std::string(function) + " of " + library + " isn't imported");
    }

private:
    template <typename Type>
    Type* at(DWORD offset) const {
        return reinterpret_cast<Type*>(base_ + offset);
    }

    const IMAGE_IMPORT_DESCRIPTOR* firstImports() const {
        const auto* const dos = at<IMAGE_DOS_HEADER>(0);
        const auto* const headers = at<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        return at<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
    }

    bool replaceIn(const IMAGE_IMPORT_DESCRIPTOR& imports, const char* function, void* replacement) {
        const auto* name = at<IMAGE_THUNK_DATA>(imports.OriginalFirstThunk);
        auto* address = at<IMAGE_THUNK_DATA>(imports.FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            if (std::strcmp(at<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name, function) != 0) continue;
            DWORD before = 0;
            VirtualProtect(address, sizeof *address, PAGE_READWRITE, &before);
            address->u1.Function = reinterpret_cast<DWORD>(replacement);
            VirtualProtect(address, sizeof *address, before, &before);
            return true;
        }
        return false;
    }

    std::uint8_t* base_;
};

template <typename Function>
void replaceInConduit(const char* library, const char* function, Function* replacement) {
    LoadedImage(conduitName).replace(library, function, reinterpret_cast<void*>(replacement));
}

// Wine doesn't count them: GetProcessHandleCount answers 0. They are small multiples of 4.
std::int64_t openHandles() {
    constexpr std::uintptr_t handleEnd = 0x8000;
    std::int64_t count = 0;
    DWORD flags = 0;
    for (std::uintptr_t handle = 4; handle < handleEnd; handle += 4)
        count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE;
    return count;
}

std::int64_t busyBytes(HANDLE heap) {
    std::int64_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heap);
    return bytes;
}

} // namespace

void useBinaryStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}

void setConduitClock(std::int64_t secondsSince1970) {
    conduitTime = secondsSince1970;
    replaceInConduit("KERNEL32.dll", "GetSystemTime", conduitSystemTime);
}

void traceConduit(bool on) {
    replaceInConduit("USER32.dll", "GetAsyncKeyState", on ? controlIsDown : controlIsUp);
}

std::filesystem::path conduitFolder() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    return std::filesystem::path(path).parent_path();
}

void orderConduitFault(const std::string& fault) {
    const std::string functionFault = "no-function ";
    if (fault == "no-networking") {
        replaceInConduit("KERNEL32.dll", "LoadLibraryA", noLibrary);
    } else if (fault == "no-strings") {
        replaceInConduit("USER32.dll", "LoadStringA", noString);
    } else if (fault.starts_with(functionFault)) {
        missingFunction = fault.substr(functionFault.size());
        replaceInConduit("KERNEL32.dll", "GetProcAddress", allButTheMissing);
    } else {
        throw std::runtime_error("no fault is known here as " + fault);
    }
}

ProcessUse processUse() {
    ProcessUse use;
    use.handles = openHandles();
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (const HANDLE heap : heaps) use.bytes += busyBytes(heap);
    return use;
}

} // namespace tsr::test
