#pragma once

#include <string>

#include "platform/registry/memory/RegistryContent.h"

// The content as ioreg prints it: an entry in full under each of its parents.
std::string writeXML(const MemoryRegistry::RegistryContent& content);
