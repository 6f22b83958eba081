#pragma once

#include "interchange/Contact.h"
#include "tessera/Document.h"

namespace tsr {

// A contact is kept as a document of the kind "contact" in its owner's address book with the properties of
// the handheld's Address application:
//
//   LastName, FirstName, Company, Address, City, State, Zip, Country, Custom1 to Custom4, Body (the note)
//   Title          one value a line
//   Work, Home, Fax, Other, Email, Main, Pager, Mobile   one value a number
//   PalmListed     letters of the kinds of numbers that the handheld has: WHFOEmPM in the order above; not
//                  there until it has sent the contact
//   PalmPreferred  the letter of the number that it shows
//   Category       the names of its categories
inline constexpr char contactKind[] = "contact";
inline constexpr char contactsKind[] = "contacts"; // of the database

Contact toContact(const Properties& properties);

// Sets the properties that a Contact knows and leaves the others. A PalmListed that is there takes up the
// kinds that the handheld has room for, as it is to be given the contact anew.
void setContact(Properties& properties, const Contact& contact);

// The document that `sent`, a version of the handheld, makes of `kept`, the one that it was given; of an
// empty document for a new one. The handheld speaks for the properties above alone. Of the numbers it sends
// those kinds that it lists. Another kind was deleted there if it had reached the handheld, which has room
// for five, and otherwise stays: also when there is room for it now, which the handheld takes no notice of
// until it is given the contact anew.
Properties adoptContact(const Properties& kept, const Properties& sent);

} // namespace tsr
