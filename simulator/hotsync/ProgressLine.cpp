#include "hotsync/ProgressLine.h"

namespace tsr {

void ProgressLine::show(const std::string& text) {
    if (!terminal_) {
        out_ << "  " << text << std::endl;
        return;
    }
    clear();
    out_ << "  " << text << std::flush;
    shown_ = text.size() + 2;
}

void ProgressLine::clear() {
    if (shown_ == 0) return;
    out_ << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
    shown_ = 0;
}

} // namespace tsr
