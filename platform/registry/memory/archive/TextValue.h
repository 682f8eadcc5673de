#pragma once

#include <string_view>

#include "platform/registry/memory/PropertyValue.h"
#include "platform/registry/memory/archive/MemoryBudget.h"

namespace MemoryRegistry {

// The value of a property, as the text of ioreg has it behind `"key" = `. Where strings hold
// quotes, which nothing escapes, the first one ends a string that what follows allows to. What
// ioreg prints as nothing is a value that can't be read.
//
// Throws UnreadableText when the text is no such value, Refusal when it is nested too deeply or
// takes more than the budget.
PropertyValue readTextValue(std::string_view text, MemoryBudget& budget);

// Takes what a string of that length needs beside its object.
void takeText(MemoryBudget& budget, std::size_t size);

}  // namespace MemoryRegistry
