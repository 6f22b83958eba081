#include <memory>
#include <ostream>

#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/handheldText.h"
#include "handheld/commands/recordFields.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/forms/fieldText.h"
#include "handheld/mailFolders.h"

namespace tsr {

namespace {

struct ReplyOptions {
    std::string record; // id
    std::string body;
    std::vector<std::string> fields; // "name=value"
};

std::string replySubject(const std::string& subject) {
    return subject.starts_with("Re:") ? subject : "Re: " + subject;
}

// The quoted part begins with the address that the answer goes to: there the conduit cuts the answer to a
// Notes item, which it knows by the information block at the end of what is quoted. So the block is quoted
// too.
std::string quotedBody(const std::string& to, const std::string& body) {
    std::string quoted = to + " wrote:\n> ";
    for (const char c : body) {
        quoted += c;
        if (c == '\n') quoted += "> ";
    }
    return quoted;
}

FieldValues replyTo(const FieldValues& original, const std::string& body) {
    std::string to = fieldValue(original, "replyTo");
    if (to.empty()) to = fieldValue(original, "from");
    if (to.empty()) throw HandheldError("the message tells nobody to answer to");
    FieldValues reply;
    reply["to"] = to;
    reply["subject"] = replySubject(fieldValue(original, "subject"));
    reply["body"] = body + "\n\n" + quotedBody(to, fieldValue(original, "body"));
    return reply;
}

void reply(CommandLine& line, Handheld& handheld, const ReplyOptions& options) {
    HandheldDatabase& database = findDatabase(handheld, mailDatabase);
    const HandheldRecord& original = liveRecord(database, options.record);
    const RecordForm& form = *recordForm(mailDatabase);
    FieldValues values = replyTo(form.read(original.data), toHandheldText(options.body));
    setFields(form, options.fields, values);
    const std::uint32_t id = database.addRecord(formedRecord(form, values), mailOutbox);
    if (id == 0) throw HandheldError("the database is full");
    line.out << id << "\n";
}

} // namespace

void addReplyCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "reply", "Answer a message: put a reply that quotes it into the Outbox, and print its id",
        "0x000001 --body \"At noon, then.\" priority=high");
    auto options = std::make_shared<ReplyOptions>();
    command.add_option("ID", options->record, "The message")->required();
    command.add_option("--body", options->body, "The answer")->required();
    command.add_option("FIELD", options->fields,
                       "Further fields as NAME=VALUE, such as cc=, signature=yes or subject=");
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) { reply(line, folder.handheld(), *options); });
        };
    });
}

} // namespace tsr
