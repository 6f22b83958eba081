#pragma once

#include <gmime/gmime.h>
#include <memory>
#include <string>

namespace tsr {

// The library's objects, held by their scope, for the files that read and write mail.
struct GObjectDeleter {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Owned = std::unique_ptr<T, GObjectDeleter>;

struct GTextDeleter {
    void operator()(char* text) const { g_free(text); }
};
using GText = std::unique_ptr<char, GTextDeleter>;

inline std::string textOf(const GText& text) { return text ? std::string(text.get()) : std::string(); }

// Before the first use of it.
inline void startGMime() {
    static const bool started = (g_mime_init(), true);
    static_cast<void>(started);
}

} // namespace tsr
