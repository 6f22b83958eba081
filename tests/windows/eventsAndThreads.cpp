// Events and threads over those of Windows. Prints what is wrong, and nothing where all is well.

#include <cstdio>

#include "foundation/Event.h"
#include "foundation/KeepAliveRunnable.h"
#include "foundation/Thread.h"
#include "foundation/Win32Error.h"

namespace tsr {
namespace {

constexpr std::uint32_t invalidHandle = 6; // ERROR_INVALID_HANDLE

int failures = 0;

void expect(bool holds, const char* what) {
    if (holds) return;
    std::printf("%s\n", what);
    ++failures;
}

struct Body : Runnable {
    std::uint32_t run() override {
        started.set();
        mayEnd.wait(platform::infinitely);
        ended = true;
        return 17;
    }

    Event started{true};
    Event mayEnd{true};
    bool ended = false;
};

void tryEvents() {
    Event manual(true);
    expect(!manual.wait(0), "an event starts set");
    manual.set();
    expect(manual.wait(0) && manual.wait(0), "an event with manual reset doesn't stay set");
    Event automatic(false);
    automatic.set();
    expect(automatic.wait(0) && !automatic.wait(0), "an event without manual reset stays set");
}

void tryCopies() {
    Event event(true);
    { const Event copy = event; } // NOLINT(performance-unnecessary-copy-initialization)
    try {
        event.set();
        expect(false, "an event is open behind the end of its copy");
    } catch (const Win32Error& error) {
        expect(error.functionName() == "SetEvent" && error.code() == invalidHandle,
               "the failure of a closed event is another one");
    }
}

void tryThreads() {
    Body body;
    Thread thread(body);
    expect(body.started.wait(platform::infinitely) && !body.ended, "a thread doesn't run beside its starter");
    body.mayEnd.set();
    thread.join();
    thread.join();
    expect(body.ended, "a thread that was joined hasn't ended");
}

// Without a handheld attached, to serve its link does nothing.
void tryKeepAlive() {
    KeepAliveRunnable stopped;
    stopped.stop().set();
    expect(stopped.run() == 0 && stopped.beats() == 0, "a stopped keep-alive works");
    KeepAliveRunnable keepAlive;
    Thread thread(keepAlive);
    keepAlive.stop().set();
    thread.join();
}

} // namespace
} // namespace tsr

int main() {
    tsr::tryEvents();
    tsr::tryCopies();
    tsr::tryThreads();
    tsr::tryKeepAlive();
    return tsr::failures == 0 ? 0 : 1;
}
