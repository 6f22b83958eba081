#include "platform/socketLibrary.h"

#include <windows.h>

namespace tsr::platform {

namespace {

class SystemLoader : public ISocketLibraryLoader {
public:
    void* load(const char* name) override { return LoadLibraryA(name); }

    LibraryFunction find(void* library, const char* name) override {
        return reinterpret_cast<LibraryFunction>(GetProcAddress(static_cast<HMODULE>(library), name));
    }

    void free(void* library) override { FreeLibrary(static_cast<HMODULE>(library)); }
};

} // namespace

ISocketLibraryLoader& socketLibraryLoader() {
    static SystemLoader loader;
    return loader;
}

} // namespace tsr::platform
