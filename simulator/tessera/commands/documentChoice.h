#pragma once

#include <string>

#include "tessera/Store.h"

namespace tsr {

// The first digits of an identity, which are mostly enough to name a document.
std::string shortId(const Document& document);

// The document of that kind whose identity begins with `id`. Raises TesseraError when there is none or more
// than one; `kindName` and `owner` are for its text.
Document chosenDocument(Store& store, std::int64_t databaseId, const std::string& kind, const std::string& id,
                        const std::string& kindName, const std::string& owner);

} // namespace tsr
