#pragma once

#include <string>

#include "foundation/TimeZone.h"
#include "server/NotesItem.h"

namespace tsr {

// One record in the form that Notes has it: its fields come from the properties of an item and go into one.
class NotesApplicationRecord {
public:
    virtual ~NotesApplicationRecord() = default;

    virtual void addTo(NotesItem& item,
                       const TimeZone& timeZone) const = 0; // adds its properties to an empty item
    virtual std::string description() const = 0;            // by which messages name the record
};

} // namespace tsr
