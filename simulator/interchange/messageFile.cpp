#include "interchange/messageFile.h"

#include <algorithm>

#include "interchange/InterchangeError.h"
#include "interchange/charset.h"
#include "interchange/gmimeObjects.h"
#include "interchange/mailAddresses.h"
#include "interchange/mimeBody.h"

namespace tsr {

namespace {

using Importance = MailMessage::Importance;

constexpr std::size_t mostBytes = 32 << 20;
constexpr std::ptrdiff_t mostLines = 500000; // each may be a header or a part, with memory of its own
constexpr std::size_t mostHeaderBytes = 1 << 20;
constexpr std::size_t longestLine = 998; // of RFC 5322, without its end
constexpr char domainOfNames[] = "tessera.invalid";

struct DateDeleter {
    void operator()(GDateTime* date) const { g_date_time_unref(date); }
};
using Date = std::unique_ptr<GDateTime, DateDeleter>;

struct ZoneDeleter {
    void operator()(GTimeZone* zone) const { g_time_zone_unref(zone); }
};
using Zone = std::unique_ptr<GTimeZone, ZoneDeleter>;

struct FormatDeleter {
    void operator()(GMimeFormatOptions* options) const { g_mime_format_options_free(options); }
};
using Format = std::unique_ptr<GMimeFormatOptions, FormatDeleter>;

// One line of a header: what would end it, or act on a terminal, is a blank.
std::string headerText(const char* text) {
    std::string line = toUtf8(text == nullptr ? std::string() : std::string(text), "");
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; },
        ' ');
    return line;
}

std::string headerText(const std::string& text) { return headerText(text.c_str()); }

void checkSize(const std::string& text) {
    if (text.size() > mostBytes) throw InterchangeError("a message has at most 32 MiB");
    if (std::count(text.begin(), text.end(), '\n') > mostLines)
        throw InterchangeError("a message has at most 500,000 lines");
    const std::size_t end = std::min(text.find("\n\n"), text.find("\n\r\n"));
    if (std::min(end, text.size()) > mostHeaderBytes)
        throw InterchangeError("its header is longer than 1 MiB");
}

Owned<GMimeMessage> parsed(const std::string& text) {
    startGMime();
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(text.data(), text.size()));
    const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    Owned<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
    if (!message) throw InterchangeError("this is no mail message");
    return message;
}

std::string header(GMimeMessage* message, const char* name) {
    return headerText(g_mime_object_get_header(GMIME_OBJECT(message), name));
}

void requireHeader(GMimeMessage* message) {
    for (const char* name : {"From", "To", "Cc", "Bcc", "Subject", "Date"}) {
        if (g_mime_object_get_header(GMIME_OBJECT(message), name) != nullptr) return;
    }
    throw InterchangeError("this is no mail message: it has no From, To, Subject or Date");
}

std::string addressText(InternetAddress* address) {
    const std::string name = headerText(internet_address_get_name(address));
    const std::string internet =
        headerText(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address)));
    if (internet.ends_with(std::string("@") + domainOfNames) && !name.empty()) return name;
    return headerText(textOf(GText(internet_address_to_string(address, nullptr, 0))));
}

// The members of a group stand for it.
void collectAddresses(InternetAddressList* list, std::vector<std::string>& addresses) {
    for (int i = 0; list != nullptr && i < internet_address_list_length(list); ++i) {
        InternetAddress* const address = internet_address_list_get_address(list, i);
        if (INTERNET_ADDRESS_IS_GROUP(address))
            collectAddresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), addresses);
        else
            addresses.push_back(addressText(address));
    }
}

std::vector<std::string> addresses(GMimeMessage* message, GMimeAddressType type) {
    std::vector<std::string> found;
    collectAddresses(g_mime_message_get_addresses(message, type), found);
    return found;
}

void readDate(GMimeMessage* message, MailMessage& mail) {
    GDateTime* const date = g_mime_message_get_date(message);
    if (date == nullptr) return;
    mail.date = g_date_time_to_unix(date);
    mail.zoneMinutes = static_cast<std::int32_t>(g_date_time_get_utc_offset(date) / G_TIME_SPAN_MINUTE);
}

Importance importanceOf(GMimeMessage* message) {
    std::string word = header(message, "Importance");
    std::transform(word.begin(), word.end(), word.begin(), [](char c) { return g_ascii_tolower(c); });
    if (word.empty()) word = header(message, "X-Priority").substr(0, 1);
    if (word == "high" || word == "1" || word == "2") return Importance::High;
    if (word == "low" || word == "4" || word == "5") return Importance::Low;
    return Importance::Normal;
}

std::string answeredId(GMimeMessage* message) {
    const std::string ids = header(message, "In-Reply-To");
    const std::size_t begin = ids.find('<');
    const std::size_t end = ids.find('>', begin);
    if (begin == std::string::npos || end == std::string::npos) return {};
    return ids.substr(begin + 1, end - begin - 1);
}

// The name in small letters, with dots between its words.
std::string localPart(const std::string& name) {
    std::string local;
    for (const char c : name) {
        if (g_ascii_isalnum(c))
            local += g_ascii_tolower(c);
        else if (!local.empty() && local.back() != '.')
            local += '.';
    }
    while (local.ends_with('.')) local.pop_back();
    return local.empty() ? "name" : local;
}

void addAddress(InternetAddressList* list, const std::string& text) {
    const std::string line = headerText(text);
    if (line.find('@') != std::string::npos) {
        const Owned<InternetAddressList> typed(internet_address_list_parse(nullptr, line.c_str()));
        if (typed && internet_address_list_length(typed.get()) > 0) {
            internet_address_list_append(list, typed.get());
            return;
        }
    }
    const Owned<InternetAddress> name(
        internet_address_mailbox_new(line.c_str(), (localPart(line) + "@" + domainOfNames).c_str()));
    internet_address_list_add(list, name.get());
}

void setAddresses(GMimeMessage* message, GMimeAddressType type, const std::vector<std::string>& texts) {
    InternetAddressList* const list = g_mime_message_get_addresses(message, type);
    for (const std::string& text : texts) addAddress(list, text);
}

void setDate(GMimeMessage* message, const MailMessage& mail) {
    if (!mail.date) return;
    const Date utc(g_date_time_new_from_unix_utc(*mail.date));
    const Zone zone(g_time_zone_new_offset(mail.zoneMinutes * 60));
    const Date date(utc ? g_date_time_to_timezone(utc.get(), zone.get()) : nullptr);
    if (date) g_mime_message_set_date(message, date.get()); // none outside the years 1 to 9999
}

bool isMessageId(const std::string& id) {
    return !id.empty() && std::all_of(id.begin(), id.end(), [](char c) {
        return g_ascii_isgraph(c) && c != '<' && c != '>';
    });
}

void setHeader(GMimeMessage* message, const char* name, const std::string& value) {
    g_mime_object_set_header(GMIME_OBJECT(message), name, value.c_str(), nullptr);
}

void setHeaders(GMimeMessage* message, const MailMessage& mail) {
    if (!mail.from.empty()) setAddresses(message, GMIME_ADDRESS_TYPE_FROM, {mail.from});
    setAddresses(message, GMIME_ADDRESS_TYPE_REPLY_TO, mail.replyTo);
    setAddresses(message, GMIME_ADDRESS_TYPE_TO, mail.to);
    setAddresses(message, GMIME_ADDRESS_TYPE_CC, mail.cc);
    setAddresses(message, GMIME_ADDRESS_TYPE_BCC, mail.bcc);
    g_mime_message_set_subject(message, headerText(mail.subject).c_str(), "UTF-8");
    setDate(message, mail);
    if (isMessageId(mail.id)) g_mime_message_set_message_id(message, mail.id.c_str());
    if (isMessageId(mail.inReplyTo)) setHeader(message, "In-Reply-To", "<" + mail.inReplyTo + ">");
    if (mail.importance != Importance::Normal)
        setHeader(message, "Importance", mail.importance == Importance::High ? "high" : "low");
    setHeader(message, "Status", mail.isRead ? "RO" : "O");
}

bool isPlain(const std::string& body) {
    std::size_t line = 0;
    for (const char c : body) {
        line = c == '\n' ? 0 : line + 1;
        if (line > longestLine || (!g_ascii_isprint(c) && c != '\n' && c != '\t')) return false;
    }
    return true;
}

Owned<GMimePart> textPart(const std::string& body) {
    const bool plain = isPlain(body);
    const std::string lines = body.empty() ? body : body + "\n";
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(lines.data(), lines.size()));
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    Owned<GMimePart> part(g_mime_part_new_with_type("text", "plain"));
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(part.get()), "charset",
                                             plain ? "us-ascii" : "utf-8");
    g_mime_part_set_content(part.get(), content.get());
    g_mime_part_set_content_encoding(part.get(), plain ? GMIME_CONTENT_ENCODING_7BIT
                                                       : GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    return part;
}

} // namespace

MailMessage readMessage(const std::string& text) {
    checkSize(text);
    const Owned<GMimeMessage> owned = parsed(text);
    GMimeMessage* const message = owned.get();
    requireHeader(message);
    MailMessage mail;
    mail.from = joinedAddresses(addresses(message, GMIME_ADDRESS_TYPE_FROM), ", ");
    mail.replyTo = addresses(message, GMIME_ADDRESS_TYPE_REPLY_TO);
    mail.to = addresses(message, GMIME_ADDRESS_TYPE_TO);
    mail.cc = addresses(message, GMIME_ADDRESS_TYPE_CC);
    mail.bcc = addresses(message, GMIME_ADDRESS_TYPE_BCC);
    mail.subject = headerText(g_mime_message_get_subject(message));
    readDate(message, mail);
    mail.id = headerText(g_mime_message_get_message_id(message));
    mail.inReplyTo = answeredId(message);
    mail.importance = importanceOf(message);
    mail.isRead = header(message, "Status").find('R') != std::string::npos;
    mail.body = bodyText(message);
    return mail;
}

std::string messageText(const MailMessage& mail) {
    startGMime();
    const Owned<GMimeMessage> message(g_mime_message_new(0));
    setHeaders(message.get(), mail);
    const Owned<GMimePart> part = textPart(mail.body);
    g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(part.get()));
    const Format format(g_mime_format_options_new());
    g_mime_format_options_set_newline_format(format.get(), GMIME_NEWLINE_FORMAT_DOS);
    return textOf(GText(g_mime_object_to_string(GMIME_OBJECT(message.get()), format.get())));
}

} // namespace tsr
