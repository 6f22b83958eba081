#pragma once

#include <string>

#include "applications/ApplicationCategories.h"
#include "applications/ItemReplicator.h"
#include "applications/ToDoApplicationTraits.h"

namespace tsr {

// ToDo and the tasks of Notes: a task is one record.
class ToDoReplicator : public ItemReplicator {
public:
    explicit ToDoReplicator(const CountedPtr<PalmProxy>& palm);

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override;
    // The server lists anomalies of tasks, and has no request that takes one: always raises NotImplemented.
    ItemVersion sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                const NotesApplicationRecord& record, std::string& newUnid) override;
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override;
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override { return categories_.appInfoToWrite(); }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;

private:
    ToDoApplicationTraits traits_;
    ApplicationCategories categories_;
};

} // namespace tsr
