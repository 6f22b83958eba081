#include <benchmark/benchmark.h>

#include <string>

#include "bench/ratios.h"
#include "records/PalmAddressRecord.h"
#include "records/PalmMailRecord.h"
#include "records/PalmMemoRecord.h"
#include "records/PalmToDoRecord.h"

// The records of the handheld, from bytes and to bytes: a slow sync parses each record of a database, and a
// first one writes each.

namespace tsr {
namespace {

constexpr int repetitions = 9;

// Eight fields, three of them phones.
PalmAddressRecord contact() {
    PalmAddressRecord record;
    record.lastName = "Mustermann";
    record.firstName = "Alexandra";
    record.company = "Example Trading Company";
    record.addPhones(WorkPhone, {"+49 30 1234567"});
    record.addPhones(MobilePhone, {"+49 170 1234567"});
    record.addPhones(EmailPhone, {"alexandra@example.com"});
    record.city = "Berlin";
    record.note = "Met at the fair in spring";
    record.setDisplayLabel(MobilePhone);
    return record;
}

PalmToDoRecord task() {
    PalmToDoRecord record;
    record.setDueDate(Date(2002, 3, 4));
    record.setPriority(2);
    record.setDescription("Send the offer to the customer");
    record.setNote("With the prices of this year");
    return record;
}

// 100 bytes with its NUL.
PalmMemoRecord memo() {
    PalmMemoRecord record;
    record.setText("Shopping\n" + std::string(90, 'a'));
    return record;
}

// 500 bytes: 6 before the texts, eight NULs and a last byte.
PalmMailRecord mail() {
    PalmMailRecord record;
    record.date = DateTime(2002, 3, 4, 9, 30, 0);
    record.subject = "The offer that you asked for";
    record.from = "Alexandra Mustermann/Example";
    record.to = "Max Mustermann/Example";
    record.cc = "Sales/Example";
    record.body = std::string(500 - 15 - 91, 'a');
    record.setRead(true);
    return record;
}

template <typename Record>
void parse(benchmark::State& state, const Record& record) {
    PalmRecordBuffer buffer;
    record.write(buffer);
    for (auto _ : state) {
        buffer.resetCursor();
        benchmark::DoNotOptimize(Record(buffer, false));
    }
    state.SetItemsProcessed(state.iterations());
}

template <typename Record>
void write(benchmark::State& state, const Record& record) {
    PalmRecordBuffer buffer;
    for (auto _ : state) {
        buffer.clear();
        benchmark::DoNotOptimize(record.write(buffer));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

void parseContact(benchmark::State& state) { parse(state, contact()); }
void writeContact(benchmark::State& state) { write(state, contact()); }
void parseTask(benchmark::State& state) { parse(state, task()); }
void writeTask(benchmark::State& state) { write(state, task()); }
void parseMemo(benchmark::State& state) { parse(state, memo()); }
void writeMemo(benchmark::State& state) { write(state, memo()); }
void parseMail(benchmark::State& state) { parse(state, mail()); }
void writeMail(benchmark::State& state) { write(state, mail()); }
BENCHMARK(parseContact)->Repetitions(repetitions);
BENCHMARK(writeContact)->Repetitions(repetitions);
BENCHMARK(parseTask)->Repetitions(repetitions);
BENCHMARK(writeTask)->Repetitions(repetitions);
BENCHMARK(parseMemo)->Repetitions(repetitions);
BENCHMARK(writeMemo)->Repetitions(repetitions);
BENCHMARK(parseMail)->Repetitions(repetitions);
BENCHMARK(writeMail)->Repetitions(repetitions);

const bool compared = bench::requireRecords("parseContact", 1) && bench::requireRecords("writeContact", 1)
                   && bench::requireRecords("parseTask", 1) && bench::requireRecords("writeTask", 1)
                   && bench::requireRecords("parseMemo", 1) && bench::requireRecords("writeMemo", 1)
                   && bench::requireRecords("parseMail", 1) && bench::requireRecords("writeMail", 1);

} // namespace
} // namespace tsr
