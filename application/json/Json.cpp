#include "application/json/Json.h"

namespace Program {
namespace {

std::string scalar(const Json& value) {
  return value.dump(-1, ' ', true, Json::error_handler_t::replace);
}

void append(std::string& out, const Json& value) {
  if (!value.is_structured()) {
    out += scalar(value);
    return;
  }
  const bool object = value.is_object();
  out += object ? '{' : '[';
  bool first = true;
  for (const auto& item : value.items()) {
    if (!first) out += ", ";
    first = false;
    if (object) out += scalar(item.key()) + ": ";
    append(out, item.value());
  }
  out += object ? '}' : ']';
}

}  // namespace

std::string written(const Json& value) {
  std::string out;
  append(out, value);
  return out;
}

}  // namespace Program
