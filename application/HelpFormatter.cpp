#include "application/HelpFormatter.h"

#include <algorithm>

namespace Program {

std::string HelpFormatter::make_group(std::string group, bool positional,
                                      std::vector<const CLI::Option*> options) const {
  const bool shown = std::count(options.begin(), options.end(), &_shared) > 0;
  if (!positional && !shown) options.push_back(&_shared);
  return CLI::Formatter::make_group(std::move(group), positional, std::move(options));
}

}  // namespace Program
