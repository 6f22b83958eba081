#include "applications/ToDoReplicator.h"

#include "applications/singleRecord.h"
#include "records/toDoConversion.h"
#include "server/commands.h"

namespace tsr {

ToDoReplicator::ToDoReplicator(const CountedPtr<PalmProxy>& palm)
    : ItemReplicator(traits_, toDoCommands, "ToDo items", palm), categories_(palm, log()) {}

PalmRecordGroup ToDoReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    resendWanted = false;
    const auto& notes = static_cast<const NotesToDoRecord&>(record); // made by makeNotesRecord
    PalmToDoRecord palm = toPalmToDoRecord(notes);
    palm.setCategory(categories_.category(notes.categories, ApplicationCategories::EmptyNames::Take));
    return groupOf(palm);
}

CountedPtr<NotesApplicationRecord> ToDoReplicator::convertToNotes(const PalmRecordGroup& group, bool, int) {
    const auto& palm = singleRecord<PalmToDoRecord>(group);
    const auto notes = makeCounted<NotesToDoRecord>(toNotesToDoRecord(palm));
    notes->categories = categories_.names(palm.category());
    return notes;
}

ItemVersion ToDoReplicator::sendAnomalyItem(const std::string&, const ItemId&, const NotesApplicationRecord&,
                                            std::string&) {
    throw GeneralError(Message::NotImplemented);
}

ItemVersion ToDoReplicator::sendItem(const std::string&, const std::string& token, const ItemId& itemId,
                                     const NotesApplicationRecord& record) {
    return sendToDoItem(server(), token, itemId, itemOf(record));
}

CountedPtr<NotesApplicationRecord> ToDoReplicator::makeNotesRecord(const NotesItem& item) {
    return makeCounted<NotesToDoRecord>(item, timeZone());
}

Replicator::Record ToDoReplicator::makePalmRecord(PalmRecordBuffer& buffer, bool archived) {
    return makeCounted<PalmToDoRecord>(buffer, archived);
}

} // namespace tsr
