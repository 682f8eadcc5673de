#include "tests/archive/XMLWriter.h"

#include <cstdio>
#include <type_traits>

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::Number;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

namespace {

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string element(const char* name, const std::string& text) {
  return std::string("<") + name + ">" + text + "</" + name + ">";
}

std::string keyElement(const std::string& key) { return element("key", escaped(key)); }

std::string base64(const Data& data) {
  const char* const digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < data.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 3; ++j)
      group = group << 8U | (i + j < data.size() ? data[i + j] : 0U);
    for (std::size_t j = 0; j < 4; ++j) {
      text += i + j > data.size() ? '=' : digits[group >> (18 - 6 * j) & 63U];
    }
  }
  return text;
}

std::string write(const PropertyValue& value);

std::string items(const Dictionary& dictionary) {
  std::string text;
  for (const auto& [key, value] : dictionary)
    text += keyElement(key) + write(value);
  return text;
}

std::string integer(std::uint64_t bits) {
  return element("integer", std::to_string(static_cast<std::int64_t>(bits)));
}

struct Writer {
  std::string operator()(bool value) const { return value ? "<true/>" : "<false/>"; }
  std::string operator()(const Number& value) const { return integer(value.bits); }
  std::string operator()(double value) const {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    return element("real", text);
  }
  std::string operator()(const std::string& value) const {
    return element("string", escaped(value));
  }
  std::string operator()(const Data& value) const { return element("data", base64(value)); }
  std::string operator()(const Array& value) const {
    std::string text;
    for (const PropertyValue& part : value)
      text += write(part);
    return element("array", text);
  }
  std::string operator()(const Dictionary& value) const { return element("dict", items(value)); }
  std::string operator()(Opaque) const { return element("date", "2020-02-02T02:02:02Z"); }
};

std::string write(const PropertyValue& value) { return std::visit(Writer(), value.variant()); }

std::string writeEntry(const RegistryContent& content, std::size_t place) {
  const auto& [id, description, children, parents] = content.entries[place];
  std::string text = keyElement("IOObjectClass") + write(description.className) +
                     keyElement("IORegistryEntryName") +
                     write(description.name.value_or(description.className)) +
                     items(description.properties) + keyElement("IORegistryEntryID") + integer(id);
  if (!description.location.empty()) {
    text += keyElement("IORegistryEntryLocation") + write(description.location);
  }
  if (!description.inheritance.empty()) {
    Array classes;
    for (const std::string& name : description.inheritance)
      classes.emplace_back(name);
    text += keyElement("IOObjectInheritance") + write(classes);
  }
  if (description.state) text += keyElement("IOServiceState") + integer(*description.state);
  if (!children.empty()) {
    std::string entries;
    for (const std::size_t child : children)
      entries += writeEntry(content, child);
    text += keyElement("IORegistryEntryChildren") + element("array", entries);
  }
  return element("dict", text);
}

}  // namespace

std::string writeXML(const RegistryContent& content) { return writeEntry(content, 0); }
