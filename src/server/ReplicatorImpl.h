#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/ItemId.h"
#include "foundation/ItemVersion.h"
#include "server/ClientResponse.h"
#include "server/NotesItem.h"
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
                                           const std::string& second, const StringRun& entries);

    // The Memo Pad's form: the body has no place for the two.
    static std::string sendReplicationInfo(ServerConnection& connection, const ServerAccount& account,
                                           std::uint32_t code, const StringRun& entries);

    // Items, in replicatorItems.cpp. A property is one string of name, "=" and value: one for each value, by
    // ascending name, and in the order of the values within a name.

    // Reads the properties up to the end of the body into `item`, in place of what it held, and adds
    // `className` as "#ClassName". The identity is that of the last "UNID" and "DBID"; a `fixedDbid` wins
    // over the latter. Raises InvalidStringPair, NoSequenceNumber, InvalidDbid, InvalidUnid, NotUnsigned.
    static ItemVersion parseItem(ClientResponse& response, NotesItem& item, const std::string& className,
                                 const std::optional<std::string>& fixedDbid = {});

    // Receives one item; `handle` is one of listItemIndices. Raises what parseItem raises.
    static ItemVersion receiveItem(ServerConnection& connection, const std::string& token,
                                   const std::string& className, const std::string& handle,
                                   std::uint32_t code, NotesItem& item);

    // Receives one mail of the database `dbidText`; `handle` is one of listUnidRun, `sizeLimit` the user's
    // preference.
    static ItemVersion receiveMailItem(ServerConnection& connection, const std::string& className,
                                       const std::string& dbidText, const std::string& handle,
                                       std::uint32_t code, std::uint32_t sizeLimit, NotesItem& item);

    // The forms below send `item` under the identity `id`; a new record has the default one and an empty
    // token. They give what the item has become on the server. All raise InvalidDbid, InvalidUnid and
    // NotUnsigned for a bad reply.

    // Sends the device's side of a conflict. `newUnid` is set to the text of the identity that the server has
    // given the item, empty for none: the third of four strings where `replyHasPriorUnid`, which is Address's
    // form, otherwise the identity itself.
    static ItemVersion sendAnomalyItem(ServerConnection& connection, const std::string& token,
                                       std::uint32_t code, const ItemId& id, const NotesItem& item,
                                       bool replyHasPriorUnid, std::string& newUnid);

    static ItemVersion sendAddressItem(ServerConnection& connection, const std::string& token,
                                       const ItemId& id, const NotesItem& item);
    static ItemVersion sendMemoItem(ServerConnection& connection, const std::string& token, const ItemId& id,
                                    const NotesItem& item);
    static ItemVersion sendToDoItem(ServerConnection& connection, const std::string& token, const ItemId& id,
                                    const NotesItem& item);

    // `windowStart` and `windowEnd` as in sendReplicationInfo. The item's "#Differences" goes a second time
    // before the properties, as "0" where it is empty or missing.
    static ItemVersion sendDateBookItem(ServerConnection& connection, const std::string& token,
                                        const ItemId& id, const std::string& windowStart,
                                        const std::string& windowEnd, const NotesItem& item);

    // An `id` without a database is one of the mail database `mailDbidText`.
    static ItemVersion sendMailItem(ServerConnection& connection, const std::string& mailDbidText,
                                    const std::string& className, const ItemId& id, const NotesItem& item);

    // Sends mail to its addressees. `options` are seven characters, `unidText` the item that it answers,
    // zeros for none. What the server answers says nothing.
    static void sendOutgoingMail(ServerConnection& connection, const std::string& mailDbidText,
                                 const std::string& options, const std::string& unidText,
                                 const NotesItem& item);
};

} // namespace tsr
