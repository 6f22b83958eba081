#include "tessera/Exchange.h"

#include <string_view>
#include <unordered_map>

namespace tsr {

namespace {

void settleConflict(const ItemName& name, ConflictRule rule, Exchange& exchange) {
    if (rule == ConflictRule::KeepHandheld) exchange.wanted.push_back(name);
    if (rule == ConflictRule::KeepBoth) exchange.anomalies.push_back(name);
    if (rule == ConflictRule::KeepCopy) {
        exchange.wanted.push_back(name);
        exchange.copied.insert(name.unid);
    }
}

} // namespace

// No document has a number whose low 16 bits are 0, so that 0 is always a reset.
bool isCurrent(std::uint32_t known, std::uint32_t sequence) {
    return known != 0 && (known & 0xFFFF) == (sequence & 0xFFFF);
}

Exchange compare(const std::vector<KnownItem>& known, const std::string& dbid,
                 const std::vector<DocumentVersion>& documents, ConflictRule rule) {
    std::unordered_map<std::string_view, std::size_t> indices;
    indices.reserve(documents.size());
    for (std::size_t i = 0; i < documents.size(); ++i) indices.emplace(documents[i].unid, i);

    Exchange exchange;
    std::vector<bool> listed(documents.size());
    std::vector<bool> toReceive;
    for (const DocumentVersion& document : documents) toReceive.push_back(document.takesPart);
    for (const KnownItem& item : known) {
        const auto found = indices.find(item.name.unid);
        if (item.name.dbid != dbid || found == indices.end()) {
            exchange.deleted.push_back(item.name);
            continue;
        }
        const std::size_t index = found->second;
        if (listed[index]) continue;
        listed[index] = true;
        // What the handheld has changed may have come from outside into the window.
        if (!documents[index].takesPart && !item.modified) continue;
        const bool changedInNotes = !isCurrent(item.sequence, documents[index].sequence);
        toReceive[index] = changedInNotes && !item.modified;
        if (item.modified) exchange.modified.emplace(item.name.unid, item.sequence);
        if (item.modified && changedInNotes) {
            settleConflict(item.name, rule, exchange);
        } else if (item.modified) {
            exchange.wanted.push_back(item.name);
            if (rule != ConflictRule::KeepHandheld) {
                exchange.guarded.emplace(item.name.unid, documents[index].sequence);
            }
        }
    }
    for (std::size_t i = 0; i < documents.size(); ++i) {
        if (toReceive[i]) exchange.toReceive.push_back(documents[i].unid);
    }
    exchange.anomalyOutstanding.assign(exchange.anomalies.size(), true);
    return exchange;
}

} // namespace tsr
