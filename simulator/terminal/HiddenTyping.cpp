#include "terminal/HiddenTyping.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace tsr {

#ifdef _WIN32

HiddenTyping::HiddenTyping() {
    const HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
    changed_ =
        GetConsoleMode(console, &before_) && SetConsoleMode(console, before_ & ~DWORD{ENABLE_ECHO_INPUT});
}

HiddenTyping::~HiddenTyping() {
    if (changed_) SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), before_);
}

#else

HiddenTyping::HiddenTyping() {
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0) return;
    before_ = settings.c_lflag;
    settings.c_lflag &= ~tcflag_t{ECHO};
    changed_ = tcsetattr(STDIN_FILENO, TCSANOW, &settings) == 0;
}

HiddenTyping::~HiddenTyping() {
    termios settings{};
    if (!changed_ || tcgetattr(STDIN_FILENO, &settings) != 0) return;
    settings.c_lflag = static_cast<tcflag_t>(before_);
    tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

#endif

} // namespace tsr
