#include "model/RAIDLevel.h"

namespace RAIDMonitoring {

namespace {

struct Row {
  const char* text;
  RAIDLevel level;
};
constexpr Row Rows[] = {{"Stripe", LevelStripe}, {"Mirror", LevelMirror}, {"Concat", LevelConcat}};

}  // namespace

void readRAIDLevel(const std::string& name, RAIDLevel& level) {
  for (const Row& row : Rows) {
    if (name == row.text) level = row.level;
  }
}

}  // namespace RAIDMonitoring
