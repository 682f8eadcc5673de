#include "application/report/ReportJson.h"

#include <algorithm>
#include <map>

#include "application/Words.h"
#include "application/json/Json.h"
#include "application/report/BayBoxes.h"
#include "application/report/StoryWords.h"
#include "application/text/TextCharacters.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

// Without the characters that mean something to a page's parser, all of which can only stand within
// strings. Everything but ASCII is escaped anyway.
std::string embeddable(const Json& json) {
  std::string text;
  for (const char c : json.dump(-1, ' ', true, Json::error_handler_t::replace)) {
    switch (c) {
      case '<':
        text += "\\u003c";
        break;
      case '>':
        text += "\\u003e";
        break;
      case '&':
        text += "\\u0026";
        break;
      default:
        text += c;
    }
  }
  return text;
}

Json toJson(const BayBox& box) {
  Json json{{"bay", box.bay}, {"state", box.state}};
  if (box.volume != nullptr) {
    json["disk"] = shownName(shortened(box.member->uuid));
    json["uuid"] = shownName(box.member->uuid);
    json["volume"] = shownName(box.volume->name);
    json["condition"] = wordFor(box.volume->level) + (" " + wordsFor(box.volume->state));
  }
  if (!box.note.empty()) json["note"] = box.note;
  return json;
}

Json toJson(const std::vector<BayBox>& boxes) {
  Json json = Json::array();
  for (const BayBox& box : boxes)
    json.push_back(toJson(box));
  return json;
}

Json toJson(const Picture& picture) {
  Json volumes = Json::array();
  for (const PicturedVolume& volume : picture.volumes)
    volumes.push_back({shownName(volume.name), wordFor(volume.level), wordsFor(volume.state)});
  const BayBoxes boxes = boxesOf(picture);
  return Json{{"title", shownName(picture.name)},
              {"uid", hexadecimal(picture.uid)},
              {"up", picture.up},
              {"bays", toJson(boxes.bays)},
              {"elsewhere", toJson(boxes.elsewhere)},
              {"volumes", std::move(volumes)}};
}

// Each picture once, however often it comes back.
class Album {
 public:
  std::size_t numberOf(const std::shared_ptr<const Picture>& picture) {
    const auto known = _byAddress.find(picture.get());
    if (known != _byAddress.end()) return known->second;
    Json json = toJson(*picture);
    const auto [place, isNew] = _byText.emplace(json.dump(), _pictures.size());
    if (isNew) _pictures.push_back(std::move(json));
    _byAddress[picture.get()] = place->second;
    return place->second;
  }

  Json pictures() { return std::move(_pictures); }

 private:
  std::map<const Picture*, std::size_t> _byAddress;
  std::map<std::string, std::size_t> _byText;
  Json _pictures = Json::array();
};

const char* nameOf(Strip::Kind kind) {
  switch (kind) {
    case Strip::Kind::Enclosure:
      return "enclosure";
    case Strip::Kind::Volume:
      return "volume";
    case Strip::Kind::Member:
      break;
  }
  return "member";
}

Json stripsToJson(const Story& story) {
  Json strips = Json::array();
  for (const Strip& strip : stripsOf(story)) {
    Json runs = Json::array();
    for (const Strip::Run& run : strip.runs)
      runs.push_back({run.from, run.state});
    strips.push_back(Json{{"kind", nameOf(strip.kind)},
                          {"label", shownName(strip.label)},
                          {"detail", shownName(strip.detail)},
                          {"runs", std::move(runs)}});
  }
  return strips;
}

Json logToJson(const Story& story) {
  Json log = Json::array();
  for (const Story::LogLine& line : story.log) {
    log.push_back({line.time, Pelago::nameOf(line.level),
                   printable(line.category, Charset::Unicode),
                   printable(line.text, Charset::Unicode)});
  }
  return log;
}

}  // namespace

std::string reportData(const Story& story, Story::Moment start) {
  Album album;
  Json frames = Json::array();
  for (const Story::Frame& frame : story.frames) {
    Json numbers = Json::array();
    for (const auto& picture : frame.enclosures)
      numbers.push_back(album.numberOf(picture));
    frames.push_back({frame.time, std::move(numbers)});
  }
  return embeddable(Json{{"end", story.end},
                         {"start", start},
                         {"pictures", album.pictures()},
                         {"frames", std::move(frames)},
                         {"strips", stripsToJson(story)},
                         {"log", logToJson(story)}});
}

}  // namespace Program
