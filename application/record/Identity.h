#pragma once

#include <string_view>

#include "application/record/RegistryLook.h"

namespace Program {

// What a property says of whose machine this is, as its key tells.
enum class Identity {
  None,     // nothing that the key tells
  Fixed,    // a word of a fixed vocabulary, whatever else is called like that
  Serial,   // the number of one piece of hardware
  Name,     // a name that somebody has given
  UUID,     // as text anywhere; by this key also as bytes
  Address,  // of a network interface
  Secret,   // nobody's business, and of no use to a reader
};

Identity identityOf(std::string_view key);

// The variables of the firmware: network passwords and tokens are among them.
bool holdsSecrets(const RecordedEntry& entry);

// Whether somebody has named the entry: volumes and partitions are.
bool hasGivenName(const RecordedEntry& entry);

// "Anna's Computer"
bool namesAPerson(std::string_view text);

}  // namespace Program
