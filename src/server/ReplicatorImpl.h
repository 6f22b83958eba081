#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/ItemId.h"
#include "server/ServerAccount.h"
#include "server/ServerConnection.h"

namespace tsr {

// The forms that the requests of the applications have in common. All raise what an exchange raises; a bad
// identifier in a list raises InvalidDbid or InvalidUnid. `token` is the replication token of the class: it
// comes from sendReplicationInfo, and only the server knows what it means.
class ReplicatorImpl {
public:
    // Raises NotUnsigned, std::bad_alloc for a count above what 24-bit ids can tell apart.
    static std::uint32_t countItems(ServerConnection& connection, const std::string& token,
                                    std::uint32_t code);

    // Appends the items of a list to `ids`. The whole list is asked for, also one of no items.
    static void fetchItemIds(ServerConnection& connection, const std::string& token, std::uint32_t countCode,
                             std::uint32_t fetchCode, std::vector<ItemId>& ids);

    // Sets `indices` to "0", "1" and so on: the handles of the items to receive.
    static void listItemIndices(ServerConnection& connection, const std::string& token, std::uint32_t code,
                                std::vector<std::string>& indices);

    // Appends the items of Mail's lists to `ids`: they have their database in common.
    static void fetchUnidRun(ServerConnection& connection, std::uint32_t code, const std::string& token,
                             const std::string& dbidText, std::vector<ItemId>& ids);

    // Sets `handles` to the Unid texts of such a list: the handles of the mail to receive.
    static void listUnidRun(ServerConnection& connection, const std::string& token,
                            const std::string& dbidText, std::uint32_t code,
                            std::vector<std::string>& handles);

    // Asks for `ids` to be deleted in Notes, and appends those that were to `deleted`. `expectCount`: the
    // reply begins with a count, which only the server's Address handler sends.
    static void sendDeletions(ServerConnection& connection, std::uint32_t code, bool expectCount,
                              const std::vector<ItemId>& ids, std::vector<ItemId>& deleted);

    // The same for mail: `ids` are of the database `dbidText`.
    static void sendMailDeletions(ServerConnection& connection, std::uint32_t code,
                                  const std::string& dbidText, const std::vector<ItemId>& ids,
                                  std::vector<ItemId>& deleted);

    // `entries` has four strings for each known record: Dbid text, Unid text, sequence number, and that
    // number again, plus one for a record that was changed on the device. Returns the token. For the Date
    // Book `first` and `second` are the window's start and end in decimal, for the others they are empty.
    static std::string sendReplicationInfo(ServerConnection& connection, const ServerAccount& account,
                                           std::uint32_t code, const std::string& first,
                                           const std::string& second,
                                           const std::vector<std::string>& entries);

    // The Memo Pad's form: the body has no place for the two.
    static std::string sendReplicationInfo(ServerConnection& connection, const ServerAccount& account,
                                           std::uint32_t code, const std::vector<std::string>& entries);
};

} // namespace tsr
