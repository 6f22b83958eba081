#pragma once

#include <cstdint>
#include <vector>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// The Palm database file format, big-endian throughout:
//
//   offset  size   field
//   0       32     name, ends with a NUL
//   32      2      attributes
//   34      2      version
//   36      4      creation time, seconds since 1904
//   40      4      modification time
//   44      4      backup time
//   48      4      modification number
//   52      4      offset of the application info block, 0 for none
//   56      4      offset of the sort info block, 0 for none
//   60      4      type
//   64      4      creator
//   68      4      unique id seed
//   72      4      next record list, always 0
//   76      2      number of records
//   78      8 each offset of the data (4), attributes (1), id (3)
//           2      gap, by custom
//
// and then the blocks and the records' data, each of which ends where the next one starts. The attributes of
// a record are 0x80 deleted, 0x40 dirty, 0x20 busy, 0x10 secret, and its category in the low four bits. An
// archived record is one that is marked deleted and still has its data.

// True for a file of resources, which has the same header and another list.
bool isResourceFile(const std::vector<std::uint8_t>& file);

// Raises HandheldError for a damaged file, and for one of resources. Ids that are 0, as in files that were
// made on a desktop, are given out as the handheld does when it installs a file; the database is then
// unsaved, otherwise saved.
HandheldDatabase parsePdb(const std::vector<std::uint8_t>& file);

// A database that came from a file and was not changed gives the bytes of that file.
std::vector<std::uint8_t> toPdb(const HandheldDatabase& database);

} // namespace tsr
