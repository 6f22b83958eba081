#pragma once

#include <cctype>
#include <map>
#include <streambuf>
#include <string>

#include "foundation/TimeZone.h"
#include "foundation/logTime.h"

namespace tsr {

// Collects a line with placeholders, then pairs of tag and value, and sends the finished line to its target.
//
//   "#t There are $n $i to send", Tag 'n', "3", Tag 'i', "items", line feed
//
// "$name" stands for the value under that name, or "???" when there is none; "#t" for the time of day, and
// "#" with any other name for nothing. A name is the run of letters and digits behind the mark. Values are
// not searched for marks, and stay for later lines. A line feed ends the line, and so does the byte 1, which
// sends no line feed: also one inside a value, and what follows is then the text of the next line.
template <typename Char>
class TaggedStreambuf : public std::basic_streambuf<Char> {
    using Base = std::basic_streambuf<Char>;
    using Traits = typename Base::traits_type;
    using Text = std::basic_string<Char>;

public:
    static constexpr Char lineFeed = 10;
    static constexpr Char endOfText = 1;

    // `target` is not owned and outlives this buffer.
    explicit TaggedStreambuf(Base* target) : target_(target), localZone_(zoneOfLogs()) {}

    // What follows, up to the next tag or the end of the line, is the value of the placeholder `name`.
    void setTag(const Text& name) {
        if (!currentTag_.empty()) values_[currentTag_] = currentValue_;
        currentTag_ = name;
        currentValue_.clear();
        mode_ = Mode::Value;
    }

protected:
    // There is no put area, so that every character comes here.
    typename Base::int_type overflow(typename Base::int_type c) override {
        if (Traits::eq_int_type(c, Traits::eof())) return Traits::not_eof(c);
        const Char character = Traits::to_char_type(c);
        if (character == lineFeed || character == endOfText) {
            endLine(character == lineFeed);
        } else {
            (mode_ == Mode::Text ? line_ : currentValue_).push_back(character);
        }
        return c;
    }

    int sync() override { return target_->pubsync(); }

private:
    enum class Mode { Text, Value };

    void endLine(bool withLineFeed) {
        setTag(Text());
        const Text finished = substituted();
        line_.clear();
        mode_ = Mode::Text;
        target_->sputn(finished.data(), static_cast<std::streamsize>(finished.size()));
        if (withLineFeed) target_->sputc(lineFeed);
    }

    Text substituted() const {
        static constexpr Char marks[] = {'$', '#', 0};
        Text result;
        std::size_t position = 0;
        for (;;) {
            const std::size_t mark = line_.find_first_of(marks, position);
            result.append(line_, position, mark - position);
            if (mark == Text::npos) return result;
            position = endOfName(mark + 1);
            const Text name = line_.substr(mark + 1, position - mark - 1);
            result += line_[mark] == '#' ? variable(name) : value(name);
        }
    }

    std::size_t endOfName(std::size_t position) const {
        while (position < line_.size() && std::isalnum(static_cast<unsigned char>(line_[position])) != 0)
            ++position;
        return position;
    }

    Text variable(const Text& name) const {
        if (name != Text(1, 't')) return Text();
        const std::string time = timeOfDayText(localZone_);
        return Text(time.begin(), time.end());
    }

    Text value(const Text& name) const {
        const auto found = values_.find(name);
        return found == values_.end() ? Text(3, '?') : found->second;
    }

    Base* target_;
    Mode mode_ = Mode::Text;
    Text line_;
    Text currentTag_;
    Text currentValue_;
    std::map<Text, Text> values_;
    TimeZone localZone_;
};

} // namespace tsr
