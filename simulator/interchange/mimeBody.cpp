#include "interchange/mimeBody.h"

#include <algorithm>

#include "interchange/InterchangeError.h"
#include "interchange/charset.h"
#include "interchange/htmlText.h"

namespace tsr {

namespace {

constexpr int deepest = 32;
constexpr int mostParts = 1000;

std::string orEmpty(const char* text) { return text == nullptr ? std::string() : text; }

bool isType(GMimeObject* part, const char* type, const char* subtype) {
    return g_mime_content_type_is_type(g_mime_object_get_content_type(part), type, subtype) != 0;
}

std::string contentOf(GMimePart* part) {
    GMimeDataWrapper* const content = g_mime_part_get_content(part);
    if (content == nullptr) return {};
    const Owned<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray* const bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return {reinterpret_cast<const char*>(bytes->data), bytes->len};
}

std::string textOf(GMimePart* part) {
    GMimeObject* const object = GMIME_OBJECT(part);
    const std::string charset = orEmpty(g_mime_object_get_content_type_parameter(object, "charset"));
    const std::string text = toUtf8(contentOf(part), charset);
    return isType(object, "text", "html") ? htmlText(text) : text;
}

bool isText(GMimeObject* part) {
    if (!GMIME_IS_PART(part) || g_mime_part_is_attachment(GMIME_PART(part)) != 0) return false;
    return isType(part, "text", "plain") || isType(part, "text", "html");
}

std::string attachmentName(GMimeObject* part) {
    std::string name =
        GMIME_IS_PART(part) ? orEmpty(g_mime_part_get_filename(GMIME_PART(part))) : std::string();
    if (name.empty())
        name = textOf(GText(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(part))));
    name = toUtf8(name, "");
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    return name;
}

// What a person wants of several forms of the same.
GMimeObject* chosenAlternative(GMimeMultipart* parts) {
    GMimeObject* chosen = nullptr;
    int best = 0;
    for (int i = 0; i < g_mime_multipart_get_count(parts); ++i) {
        GMimeObject* const part = g_mime_multipart_get_part(parts, i);
        const int worth = isType(part, "text", "plain") ? 4
                        : GMIME_IS_MULTIPART(part)      ? 3
                        : isText(part)                  ? 2
                                                        : 1;
        if (worth > best) chosen = part;
        best = std::max(best, worth);
    }
    return chosen;
}

class Body {
public:
    void read(GMimeObject* part, int depth) {
        if (part == nullptr) return;
        if (depth > deepest) throw InterchangeError("its parts lie more than 32 deep in each other");
        if (++parts_ > mostParts) throw InterchangeError("it has more than 1,000 parts");
        if (GMIME_IS_MULTIPART(part))
            readParts(GMIME_MULTIPART(part), depth);
        else if (isText(part))
            add(textOf(GMIME_PART(part)));
        else
            attachments_ += "[attachment: " + attachmentName(part) + "]\n";
    }

    std::string text() const {
        std::string text = text_;
        if (!attachments_.empty()) text += (text.empty() ? "" : "\n\n") + attachments_;
        if (!attachments_.empty()) text.pop_back();
        return text;
    }

private:
    void readParts(GMimeMultipart* parts, int depth) {
        if (isType(GMIME_OBJECT(parts), "multipart", "alternative")) {
            read(chosenAlternative(parts), depth + 1);
            return;
        }
        for (int i = 0; i < g_mime_multipart_get_count(parts); ++i)
            read(g_mime_multipart_get_part(parts, i), depth + 1);
    }

    // The line end of the last line belongs to the file.
    void add(std::string text) {
        std::erase(text, '\r');
        if (text.ends_with('\n')) text.pop_back();
        if (text.empty()) return;
        text_ += (text_.empty() ? "" : "\n\n") + text;
    }

    int parts_ = 0;
    std::string text_;
    std::string attachments_;
};

} // namespace

std::string bodyText(GMimeMessage* message) {
    Body body;
    body.read(g_mime_message_get_mime_part(message), 0);
    return body.text();
}

} // namespace tsr
