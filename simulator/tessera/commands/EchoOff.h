#pragma once

namespace tsr {

// While it lives, a terminal at the standard input does not show what is typed.
class EchoOff {
public:
    EchoOff();
    ~EchoOff();
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    bool isOff_ = false;
};

} // namespace tsr
