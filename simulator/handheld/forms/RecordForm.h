#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace tsr {

// A field that a form does not have, or a value that it cannot take; the text is one line for the user.
class FieldError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// By name, in the handheld's own characters, one byte each. A field without a value is not there.
using FieldValues = std::map<std::string, std::string>;

// How one of the handheld's applications shows its records to the user: as fields with names and texts. The
// bytes of the records are described in docs/handheld.md.
class RecordForm {
public:
    virtual ~RecordForm() = default;

    virtual std::vector<std::string> fields() const = 0; // in the order in which the user sees them

    // Raises HandheldError when the record ends too early.
    virtual FieldValues read(const std::vector<std::uint8_t>& record) const = 0;

    // Fields that are not there take the application's defaults. Raises FieldError; names are checked by
    // checkNames.
    virtual std::vector<std::uint8_t> write(const FieldValues& values) const = 0;

    void
    checkNames(const FieldValues& values) const; // raises FieldError for a field that the form does not have

protected:
    RecordForm() = default;
};

// Of a database by its name; null when it belongs to no application that we know.
const RecordForm* recordForm(const std::string& database);

} // namespace tsr
