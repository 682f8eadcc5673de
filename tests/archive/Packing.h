#pragma once

#include <string>

// The bytes as gzip data of one member.
std::string packed(const std::string& bytes);
