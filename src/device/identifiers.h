#pragma once

#include "device/PalmRecordBuffer.h"
#include "foundation/Dbid.h"
#include "foundation/Unid.h"

namespace tsr {

// The device form of the Notes identities: their words in order, 8 bytes for a Dbid, 16 for a Unid.
Dbid readDbid(PalmRecordBuffer& buffer);
Unid readUnid(PalmRecordBuffer& buffer);
void appendDbid(PalmRecordBuffer& buffer, const Dbid& dbid);
void appendUnid(PalmRecordBuffer& buffer, const Unid& unid);

} // namespace tsr
