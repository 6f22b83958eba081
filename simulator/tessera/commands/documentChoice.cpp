#include "tessera/commands/documentChoice.h"

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

constexpr std::size_t shortIdDigits = 8;

} // namespace

std::string shortId(const Document& document) { return document.unid.substr(0, shortIdDigits); }

Document chosenDocument(Store& store, std::int64_t databaseId, const std::string& kind, const std::string& id,
                        const std::string& kindName, const std::string& owner) {
    std::string chosen;
    for (const DocumentVersion& version : store.versions(databaseId, kind)) {
        if (!version.unid.starts_with(id)) continue;
        if (!chosen.empty()) {
            throw TesseraError("several " + kindName + "s begin with '" + id + "'; give more digits");
        }
        chosen = version.unid;
    }
    const auto document = store.findDocument(databaseId, chosen);
    if (!document || id.empty()) throw TesseraError("there is no " + kindName + " '" + id + "' of " + owner);
    return *document;
}

} // namespace tsr
