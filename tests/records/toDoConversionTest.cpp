#include "records/toDoConversion.h"

#include "foundation/lines.h"
#include "records/recordBytes.h"
#include "support/RandomText.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(ToDoConversion, TakesATaskToTheHandheld) {
    NotesToDoRecord notes;
    notes.subject = "Lunch";
    notes.body = "food";
    notes.hasDueDate = true;
    notes.dueDate = Date(2002, 3, 4);
    notes.completed = true;
    notes.isPrivate = true;
    notes.priority = 3;
    notes.categories = {"Home"};
    const PalmToDoRecord palm = toPalmToDoRecord(notes);
    EXPECT_EQ(palm.description(), "Lunch");
    EXPECT_EQ(palm.note(), "food");
    EXPECT_TRUE(palm.hasDueDate());
    EXPECT_EQ(palm.dueDate(), Date(2002, 3, 4));
    EXPECT_TRUE(palm.completed());
    EXPECT_TRUE(palm.isPrivate());
    EXPECT_EQ(palm.priority(), 3);
    EXPECT_EQ(palm.category(), 0);
    EXPECT_FALSE(palm.archived());
}

TEST(ToDoConversion, TakesATaskToNotes) {
    PalmToDoRecord palm;
    palm.setDescription("Lunch");
    palm.setNote("food");
    palm.setDueDate(Date(2002, 3, 4));
    palm.setCompleted(true);
    palm.setPrivate(true);
    palm.setPriority(2);
    palm.setCategory(3);
    const NotesToDoRecord notes = toNotesToDoRecord(palm);
    EXPECT_EQ(notes.subject, "Lunch");
    EXPECT_EQ(notes.body, "food");
    EXPECT_TRUE(notes.hasDueDate);
    EXPECT_EQ(notes.dueDate, Date(2002, 3, 4));
    EXPECT_TRUE(notes.completed);
    EXPECT_TRUE(notes.isPrivate);
    EXPECT_EQ(notes.priority, 2);
    EXPECT_TRUE(notes.categories.empty());
}

TEST(ToDoConversion, ATaskWithoutADueDateHasNoneOnTheOtherSide) {
    EXPECT_FALSE(toPalmToDoRecord(NotesToDoRecord()).hasDueDate());
    EXPECT_FALSE(toNotesToDoRecord(PalmToDoRecord()).hasDueDate);
}

TEST(ToDoConversion, KeepsThePrioritiesThatBothSidesKnow) {
    const struct {
        std::int32_t priority;
        std::int32_t onDevice;
        std::int32_t inNotes;
    } rows[] = {
        {1, 1, 1},  {2, 2, 2},   {3, 3, 3},   {4, 5, 99},   {5, 5, 99},
        {0, 5, 99}, {-1, 5, 99}, {99, 5, 99}, {127, 5, 99},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.priority);
        NotesToDoRecord notes;
        notes.priority = row.priority;
        EXPECT_EQ(toPalmToDoRecord(notes).priority(), row.onDevice);
        PalmToDoRecord palm;
        palm.setPriority(row.priority);
        EXPECT_EQ(toNotesToDoRecord(palm).priority, row.inNotes);
    }
    PalmToDoRecord four;
    four.setPriority(4);
    EXPECT_EQ(toPalmToDoRecord(toNotesToDoRecord(four)).priority(), 5);
}

// From Notes to the bytes of the handheld, and back.
TEST(ToDoConversion, ARoundKeepsATask) {
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::RandomText random(seed);
        NotesToDoRecord notes;
        notes.subject = random.text(40);
        notes.body = normalizeLineEnds(random.text(200));
        notes.hasDueDate = random.flag();
        if (notes.hasDueDate)
            notes.dueDate = Date(1993 + random.below(39), 1 + random.below(12), 1 + random.below(28));
        notes.completed = random.flag();
        notes.isPrivate = random.flag();
        const std::int32_t priorities[] = {1, 2, 3, 99};
        notes.priority = priorities[random.below(4)];
        PalmRecordBuffer buffer;
        const std::uint16_t crc = toPalmToDoRecord(notes).write(buffer);
        const PalmToDoRecord palm(buffer, false);
        EXPECT_EQ(palm.crc(), crc);
        NotesItem expected;
        NotesItem item;
        notes.addTo(expected, TimeZone());
        toNotesToDoRecord(palm).addTo(item, TimeZone());
        EXPECT_EQ(item, expected);
    }
}

} // namespace
} // namespace tsr
