#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tsr {

// What the conduit has to remember of a Notes item and the device has no field for. It stands at the end of a
// text that the user sees, behind blank lines, and comes back with the text:
//
//   six line feeds
//   ----- Vellum Info -----
//   key:value;                    by ascending key, and for each key in the order of adding
//   ----- End Vellum Info -----
//
// Every line ends with a line feed.
class InfoBlock {
public:
    void setActions(std::vector<std::string> actions) { actions_ = std::move(actions); } // not rendered
    const std::vector<std::string>& actions() const { return actions_; }
    void addValue(const std::string& key, const std::string& value); // an empty value is ignored

    std::string render(const std::string& text) const; // the text with the block behind it

private:
    std::vector<std::string> actions_;
    std::map<std::string, std::vector<std::string>> values_;
};

// A mail body as it goes to Notes, and the Unid text of the item that it answers, empty for none.
struct ParsedBody {
    std::string body;
    std::string unid;
};

// Reads the block of a body that comes from the device. A reply ends where the text that it quotes begins,
// with `quoteMark`; the block stands behind that. Any other body gets the signature, if there is one, at its
// end or before the quoted text. The block itself is left where it is.
ParsedBody parseInfoBlock(const std::string& text, const std::string& quoteMark,
                          const std::string& signature);

} // namespace tsr
