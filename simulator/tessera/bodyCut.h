#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tsr {

// A long text as a handheld is given it: so many of its 16-bit units as it has asked for, and behind them
// the line
//
//   ----- 5321 more characters are in Notes -----
//
// What comes back with this line is the beginning of the text.

// `text` itself where it isn't longer than `limit`. A pair of surrogates and a line end stay whole.
std::string cutText(const std::string& text, std::size_t limit);

// The text that `sent` makes of `whole`, of which the sender has the beginning: the end that the line speaks
// of takes its place, and what the sender has written behind the line, line feeds alone not, stays behind
// that. Empty without the line.
std::optional<std::string> completedText(const std::string& sent, const std::string& whole);

} // namespace tsr
