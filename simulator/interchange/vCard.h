#pragma once

#include <string>
#include <vector>

#include "interchange/Contact.h"

namespace tsr {

enum class VCardVersion { V3, V4 };

// The contacts of a file of vCards, version 3.0 (RFC 2426) or 4.0 (RFC 6350), in UTF-8. What a Contact has no
// place for is passed over. Raises InterchangeError, which names the line.
//
//   N, ORG, TITLE, ADR, NOTE, CATEGORIES   of the same meaning; FN for a card without N
//   TEL      by its TYPE, the first of these: fax, pager, cell, main-number, home, work; else another
//   EMAIL    email
//   X-CUSTOM1 to X-CUSTOM4                 the custom fields
//   PREF=, TYPE=pref                       the number that is displayed
std::vector<Contact> readVCards(const std::string& text);

std::string vCardText(const std::vector<Contact>& contacts, VCardVersion version);

} // namespace tsr
