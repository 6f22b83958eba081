#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "foundation/CountedPtr.h"
#include "foundation/Error.h"
#include "foundation/Tag.h"
#include "foundation/TaggedOutputStream.h"
#include "resources/Message.h"

namespace tsr {

// A numbered message with the values of its placeholders:
//
//   throw GeneralError(Message::OddHexLength) << Tag("len") << text.size();
//
// Copies and clones share the text, so that a value that is added to one shows in all.
class GeneralError : public Error {
public:
    explicit GeneralError(Message id);
    GeneralError(Message id, const Error& cause); // keeps a clone of `cause`

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // with the values filled in

    GeneralError& operator<<(const Tag& tag);
    GeneralError& operator<<(const std::string& value);
    GeneralError& operator<<(const char* value);
    GeneralError& operator<<(char value);

    template <typename Integer>
    requires std::is_integral_v<Integer> GeneralError& operator<<(Integer value) {
        *text_ << +value; // in decimal, whatever the width
        return *this;
    }

private:
    CountedPtr<TaggedOutputStringStream> text_;
};

} // namespace tsr
