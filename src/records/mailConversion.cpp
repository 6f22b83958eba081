#include "records/mailConversion.h"

#include <algorithm>

#include "foundation/GeneralError.h"
#include "foundation/lines.h"
#include "records/InfoBlock.h"

namespace tsr {

namespace {

constexpr char highImportance[] = "1";
constexpr char normalImportance[] = "2";
constexpr char lowImportance[] = "3";

std::uint32_t priorityOf(const std::string& importance) {
    if (importance == highImportance) return PalmMailRecord::High;
    if (importance == lowImportance) return PalmMailRecord::Low;
    return PalmMailRecord::Normal;
}

const char* importanceOf(std::uint32_t priority) {
    if (priority == PalmMailRecord::High) return highImportance;
    if (priority == PalmMailRecord::Low) return lowImportance;
    return normalImportance;
}

// Deliberate: counts from the last character that isn't a line feed, itself included, so that a tail of n
// line feeds gains n + 1, or two where there is none. One of n line feeds alone gains n, and two at least.
std::string withTail(const std::string& body) {
    const std::size_t last = body.find_last_not_of('\n');
    const std::size_t count = last == std::string::npos ? body.size() : body.size() - last;
    return body + std::string(std::max<std::size_t>(2, count), '\n');
}

NotesMailRecord withHeaderOf(const PalmMailRecord& palm) {
    NotesMailRecord notes;
    notes.bcc = lineFeedsToCommas(palm.bcc);
    notes.cc = lineFeedsToCommas(palm.cc);
    notes.from = lineFeedsToCommas(palm.from);
    notes.replyTo = lineFeedsToCommas(palm.replyTo);
    notes.sentTo = lineFeedsToCommas(palm.sentTo);
    notes.to = lineFeedsToCommas(palm.to);
    notes.subject = palm.subject;
    notes.returnReceipt = palm.confirmsRead();
    notes.importance = importanceOf(palm.priority());
    notes.deliveryReport = palm.confirmsDelivery() ? "C" : "N";
    return notes;
}

} // namespace

std::uint8_t mailFolder(const std::string& className) {
    if (className == "Inbox") return PalmMailRecord::inbox;
    if (className == "Drafts") return PalmMailRecord::drafts;
    throw GeneralError(Message::InvalidClassName) << Tag('n') << className;
}

PalmMailRecord toPalmMailRecord(const NotesMailRecord& notes) {
    PalmMailRecord palm;
    palm.bcc = notes.bcc;
    palm.cc = notes.cc;
    palm.from = notes.from;
    palm.replyTo = notes.replyTo;
    palm.sentTo = notes.sentTo;
    palm.subject = notes.subject;
    palm.to = notes.to;
    palm.date = notes.date;
    palm.unid = notes.unid;
    palm.body = notes.noticeBody.empty() ? notes.body : notes.noticeBody;
    palm.setPriority(priorityOf(notes.importance));
    palm.setRead(!notes.unread);
    palm.setCategory(mailFolder(notes.className));
    if (notes.actions.empty()) return palm;
    palm.actions = notes.actions;
    palm.meetingDuration = notes.meetingDuration;
    palm.meetingRoom = notes.meetingRoom;
    palm.meetingDate = notes.meetingDate;
    return palm;
}

NotesMailRecord toNotesMailRecord(const PalmMailRecord& palm) {
    NotesMailRecord notes = withHeaderOf(palm);
    notes.body = withTail(palm.body);
    return notes;
}

NotesMailRecord toOutgoingMail(const PalmMailRecord& palm, const std::string& signature) {
    NotesMailRecord notes = withHeaderOf(palm);
    const ParsedBody parsed = parseInfoBlock(palm.body, palm.to, signature);
    notes.unid = parsed.unid;
    notes.body = withTail(parsed.body);
    return notes;
}

} // namespace tsr
