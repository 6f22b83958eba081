#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tsr {

// Leaves fresh elements as they are: they are written right away.
template <typename T>
class UnfilledAllocator : public std::allocator<T> {
public:
    template <typename U>
    struct rebind {
        using other = UnfilledAllocator<U>;
    };

    template <typename U>
    void construct(U* element) noexcept {
        ::new (static_cast<void*>(element)) U;
    }
    template <typename U, typename... Arguments>
    void construct(U* element, Arguments&&... arguments) {
        ::new (static_cast<void*>(element)) U(std::forward<Arguments>(arguments)...);
    }
};

// Bytes as they cross the wire. A resize leaves the new ones unwritten.
using WireBytes = std::vector<std::uint8_t, UnfilledAllocator<std::uint8_t>>;

// Adds `count` bytes at the end, unwritten, and returns where they begin. Memory at least doubles.
std::uint8_t* extend(WireBytes& bytes, std::size_t count);

// Text on the wire is a run of 16-bit units, least significant byte first. A narrow byte is the unit of equal
// value, whatever locale the process runs in; a unit above 0xFF has no narrow form.
constexpr std::size_t unitBytes = 2;

// Appends `text` without a terminator.
void appendWide(WireBytes& bytes, const char* text, std::size_t length);

// The narrow text of `units` units. One that has no narrow form becomes forty-nine question marks.
std::string narrowText(const std::uint8_t* wide, std::size_t units);

// Sets `text` to the narrow text of the units before the first zero unit, and returns their count; all of
// `units` where there is none.
std::size_t narrowUntilZero(const std::uint8_t* wide, std::size_t units, std::string& text);

} // namespace tsr
