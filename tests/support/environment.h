#pragma once

#include <cstdlib>
#include <string>

namespace tsr::test {

// Sets an environment variable for as long as this object lives.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            wasSet_ = true;
            old_ = old;
        }
        setenv(name, value.c_str(), 1);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() {
        if (wasSet_) {
            setenv(name_, old_.c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

private:
    const char* name_;
    bool wasSet_ = false;
    std::string old_;
};

} // namespace tsr::test
