#pragma once

#include <cstddef>

#include "tessera/Document.h"

namespace tsr {

// A message as it crosses the wire.

// The properties that a handheld is given: the texts of addresses with ", " between them, the read mark as
// "0" or "1", and no more than `limit` characters of a body. See bodyCut.h.
Properties givenMail(const Properties& message, std::size_t limit);

// The document that `sent`, a version of the handheld, makes of `kept`, the one that it was given; of an
// empty document for a new one. The handheld speaks for From, ReplyTo, Subject, Body, To, Cc and Bcc alone,
// and not for the body of a notice, which has the handheld's own lines behind it.
Properties adoptMail(const Properties& kept, const Properties& sent);

} // namespace tsr
