#pragma once

namespace tsr {

// While it lives, a terminal does not show what is typed.
class HiddenTyping {
public:
    HiddenTyping();
    ~HiddenTyping();
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

private:
    bool changed_ = false;
    unsigned long before_ = 0;
};

} // namespace tsr
