#include "records/toDoConversion.h"

namespace tsr {

namespace {

constexpr std::int32_t lowestOnDevice = 5;
constexpr std::int32_t noneInNotes = 99;

std::int32_t sharedPriority(std::int32_t priority, std::int32_t otherwise) {
    return priority >= 1 && priority <= 3 ? priority : otherwise;
}

} // namespace

PalmToDoRecord toPalmToDoRecord(const NotesToDoRecord& notes) {
    PalmToDoRecord palm;
    palm.setDescription(notes.subject);
    palm.setNote(notes.body);
    if (notes.hasDueDate) palm.setDueDate(notes.dueDate);
    palm.setCompleted(notes.completed);
    palm.setPrivate(notes.isPrivate);
    palm.setPriority(sharedPriority(notes.priority, lowestOnDevice));
    return palm;
}

NotesToDoRecord toNotesToDoRecord(const PalmToDoRecord& palm) {
    NotesToDoRecord notes;
    notes.subject = palm.description();
    notes.body = palm.note();
    notes.hasDueDate = palm.hasDueDate();
    notes.dueDate = palm.dueDate();
    notes.completed = palm.completed();
    notes.isPrivate = palm.isPrivate();
    notes.priority = sharedPriority(palm.priority(), noneInNotes);
    return notes;
}

} // namespace tsr
