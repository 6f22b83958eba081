#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "tessera/Document.h"
#include "tessera/FormulaNode.h"

namespace tsr {

// Chooses messages by their properties. FormulaNode.h has its grammar. A field is the property of that name;
// those that every message may have are known in upper and lower case, and SendTo, CopyTo, BlindCopyTo and
// PostedDate are To, Cc, Bcc and Date. A field that isn't there is an empty text, and of several values it is
// enough when one fits. "=" and @Contains tell upper from lower case.
class SelectionFormula {
public:
    // Raises RequestRefused for what cannot be read.
    explicit SelectionFormula(const std::string& text);

    // Raises RequestRefused when all messages up to this one take too long.
    bool selects(const Properties& message);

    const std::set<std::string>& fields() const { return fields_; } // of the properties that it looks at

private:
    FormulaNode root_;
    std::set<std::string> fields_;
    std::uint64_t work_ = 0; // up to now, about as many bytes
};

} // namespace tsr
