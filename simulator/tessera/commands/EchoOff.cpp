#include "tessera/commands/EchoOff.h"

#include <termios.h>
#include <unistd.h>

namespace tsr {

EchoOff::EchoOff() {
    termios settings{};
    if (::tcgetattr(STDIN_FILENO, &settings) != 0 || (settings.c_lflag & ECHO) == 0) return;
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    isOff_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings) == 0;
}

EchoOff::~EchoOff() {
    termios settings{};
    if (!isOff_ || ::tcgetattr(STDIN_FILENO, &settings) != 0) return;
    settings.c_lflag |= ECHO;
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
}

} // namespace tsr
