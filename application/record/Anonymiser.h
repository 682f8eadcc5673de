#pragma once

#include <string>
#include <string_view>

#include "application/record/RegistryLook.h"
#include "application/record/StandIns.h"
#include "application/record/TextSearch.h"

namespace Program {

// Takes out of what was found in a registry whose it is: serial numbers, names of volumes,
// computers, users and networks, UUIDs, hardware addresses, the numbers of Thunderbolt devices.
// Stand-ins take their places, the same for the same original in every look, wherever it stands: in
// texts, in paths, in data. Everything that the monitor reads keeps its sense, so that the same
// story is told of other names, with every disk in its bay.
class Anonymiser {
 public:
  RegistryLook disguised(RegistryLook look);

 private:
  using Value = nlohmann::json;

  // First everything that identifies is found, so that it is known wherever it stands.
  void collect(const RecordedEntry& entry);
  void collect(std::string_view key, const Value& value);
  void collectText(std::string_view key, const std::string& text);
  void collectData(std::string_view key, const Value::binary_t& data);
  void collectHomes(const std::string& text);
  void indexTexts();
  void addDigits(const std::string& digits, const std::string& standIn);

  void disguise(RecordedEntry& entry);
  Value disguised(std::string_view key, const Value& value);
  Value disguisedText(std::string_view key, const std::string& text);
  Value disguisedData(std::string_view key, const Value::binary_t& data);
  Value disguisedNumber(std::string_view key, const Value& number);
  std::string rewritten(std::string text);
  void rewriteUUIDs(std::string& text);
  void rewriteAddresses(std::string& text);

  StandIns _standIns;
  TextSearch _inTexts{TextSearch::Where::Words};
  TextSearch _inData{TextSearch::Where::Anywhere};
};

}  // namespace Program
