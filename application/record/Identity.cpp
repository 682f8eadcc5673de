#include "application/record/Identity.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>

namespace Program {
namespace {

enum class Match { Whole, Part };

struct Rule {
  std::string_view word;  // of a key in lower case, letters and digits alone
  Match match;
  Identity identity;
};

// The first one that fits counts.
constexpr Rule rules[] = {
    {"appleraidcontenthint", Match::Whole, Identity::Fixed},
    {"appleraidlevelname", Match::Whole, Identity::Fixed},
    {"appleraidmemberstatus", Match::Whole, Identity::Fixed},
    {"appleraidsetstatus", Match::Whole, Identity::Fixed},
    {"cfbundleidentifier", Match::Whole, Identity::Fixed},
    {"compatible", Match::Whole, Identity::Fixed},
    {"content", Match::Whole, Identity::Fixed},
    {"contenthint", Match::Whole, Identity::Fixed},
    {"devicemodelname", Match::Whole, Identity::Fixed},
    {"devicevendorname", Match::Whole, Identity::Fixed},
    {"ioclass", Match::Whole, Identity::Fixed},
    {"ioclassnameoverride", Match::Whole, Identity::Fixed},
    {"iomatchcategory", Match::Whole, Identity::Fixed},
    {"ioname", Match::Whole, Identity::Fixed},
    {"ionamematch", Match::Whole, Identity::Fixed},
    {"ionamematched", Match::Whole, Identity::Fixed},
    {"ioproviderclass", Match::Whole, Identity::Fixed},
    {"iouserclientclass", Match::Whole, Identity::Fixed},
    {"model", Match::Whole, Identity::Fixed},
    {"name", Match::Whole, Identity::Fixed},

    {"currentnetwork", Match::Part, Identity::Secret},
    {"edid", Match::Part, Identity::Secret},
    {"fmmmobileme", Match::Part, Identity::Secret},
    {"imagepath", Match::Part, Identity::Secret},
    {"multicastaddress", Match::Part, Identity::Secret},
    {"password", Match::Part, Identity::Secret},
    {"preferrednetworks", Match::Part, Identity::Secret},

    {"bluetoothdeviceaddress", Match::Part, Identity::Address},
    {"bssid", Match::Part, Identity::Address},
    {"btaddress", Match::Part, Identity::Address},
    {"deviceaddress", Match::Whole, Identity::Address},
    {"hardwareaddress", Match::Part, Identity::Address},
    {"macaddress", Match::Part, Identity::Address},

    {"dieid", Match::Whole, Identity::Serial},
    {"ecid", Match::Whole, Identity::Serial},
    {"eui64", Match::Part, Identity::Serial},
    {"iccid", Match::Whole, Identity::Serial},
    {"imei", Match::Whole, Identity::Serial},
    {"meid", Match::Whole, Identity::Serial},
    {"nguid", Match::Part, Identity::Serial},
    {"serial", Match::Whole, Identity::Serial},
    {"serialno", Match::Whole, Identity::Serial},
    {"serialnumber", Match::Part, Identity::Serial},
    {"udid", Match::Whole, Identity::Serial},
    {"uniquechipid", Match::Part, Identity::Serial},
    {"uniquedeviceid", Match::Part, Identity::Serial},
    {"worldwidename", Match::Part, Identity::Serial},
    {"wwn", Match::Whole, Identity::Serial},

    {"appleraidsetname", Match::Whole, Identity::Name},
    {"comapplecorestoragelvfamilyname", Match::Whole, Identity::Name},
    {"comapplecorestoragelvgname", Match::Whole, Identity::Name},
    {"comapplecorestoragelvname", Match::Whole, Identity::Name},
    {"computername", Match::Part, Identity::Name},
    {"fullname", Match::Whole, Identity::Name},
    {"hostname", Match::Part, Identity::Name},
    {"ssid", Match::Part, Identity::Name},
    {"usernamekey", Match::Part, Identity::Name},
    {"volumename", Match::Part, Identity::Name},

    {"guid", Match::Part, Identity::UUID},
    {"uuid", Match::Part, Identity::UUID},
};

std::string plain(std::string_view key) {
  std::string letters;
  for (const char c : key) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte)) letters += static_cast<char>(std::tolower(byte));
  }
  return letters;
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool isTrue(const RecordedEntry& entry, const char* key) {
  const auto property = entry.properties.find(key);
  return property != entry.properties.end() && *property == true;
}

// Named after its maker, not by its owner.
bool isWholeDisk(const RecordedEntry& entry) {
  return isTrue(entry, "Whole") && !isTrue(entry, "RAID") && endsWith(entry.name, " Media");
}

}  // namespace

Identity identityOf(std::string_view key) {
  const std::string word = plain(key);
  const auto* const rule =
      std::find_if(std::begin(rules), std::end(rules), [&word](const Rule& candidate) {
        return candidate.match == Match::Whole ? word == candidate.word
                                               : word.find(candidate.word) != std::string::npos;
      });
  return rule != std::end(rules) ? rule->identity : Identity::None;
}

bool holdsSecrets(const RecordedEntry& entry) {
  return std::any_of(
      entry.inheritance.begin(), entry.inheritance.end(),
      [](const std::string& name) { return name.find("NVRAM") != std::string::npos; });
}

bool hasGivenName(const RecordedEntry& entry) {
  if (namesAPerson(entry.name)) return true;
  return entry.derivesFrom("IOMedia") && entry.name != entry.className &&
         entry.name != "EFI System Partition" && !isWholeDisk(entry);
}

bool namesAPerson(std::string_view text) {
  return text.find("'s ") != std::string_view::npos ||
         text.find("\u2019s ") != std::string_view::npos;
}

}  // namespace Program
