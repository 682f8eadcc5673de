#include "application/report/Page.h"

#include <fmt/format.h>

#include <set>
#include <stdexcept>

#include "application/Version.h"
#include "application/report/EventLines.h"
#include "application/report/Incidents.h"
#include "application/report/PageParts.h"
#include "application/report/PageTables.h"
#include "application/report/Ranks.h"
#include "application/report/ReportJson.h"
#include "application/report/StoryWords.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

std::string part(std::string_view name) {
  for (std::size_t number = 0; number < PagePartCount; ++number)
    if (PagePart[number].name == name) return textOf(PagePart[number]);
  throw std::logic_error("the page lacks a part");
}

struct Counts {
  std::set<std::uint64_t> enclosures;
  std::set<std::string> volumes;
};

Counts countsOf(const Story& story) {
  Counts counts;
  for (const Story::Frame& frame : story.frames) {
    for (const auto& picture : frame.enclosures) {
      counts.enclosures.insert(picture->uid);
      for (const PicturedVolume& volume : picture->volumes)
        counts.volumes.insert(volume.uuid);
    }
  }
  return counts;
}

std::string factsOf(const Story& story, const std::string& recording) {
  const Counts counts = countsOf(story);
  return fmt::format("{} · {} long · enclosures: {} · volumes: {}", shownName(recording),
                     clockText(story.end), counts.enclosures.size(), counts.volumes.size());
}

const char* gravityOf(const Incident* worst) {
  if (worst == nullptr) return "good";
  return rankOf(*worst) > rankOf(RAIDMonitoring::VolumeDegraded) || !worst->to ? "bad" : "uneasy";
}

const char* verdictOf(const Incident* worst) {
  if (worst == nullptr) return "No incident";
  return worst->to ? "Over by the end" : "Not over at the end";
}

}  // namespace

std::string escapedForPage(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string filledIn(const std::string& pageTemplate,
                     const std::map<std::string, std::string>& texts) {
  std::string page;
  std::size_t place = 0;
  for (;;) {
    const std::size_t open = pageTemplate.find("{{", place);
    const std::size_t close = pageTemplate.find("}}", open);
    if (open == std::string::npos || close == std::string::npos) {
      return page.append(pageTemplate, place, std::string::npos);
    }
    const auto text = texts.find(pageTemplate.substr(open + 2, close - open - 2));
    if (text == texts.end()) throw std::logic_error("the page lacks a text");
    page.append(pageTemplate, place, open - place);
    page += text->second;
    place = close + 2;
  }
}

std::string reportPage(const Story& story, const std::string& recording) {
  const std::vector<Incident> incidents = incidentsOf(story);
  const Incident* worst = worstOf(incidents);
  const std::string headline = escapedForPage(headlineOf(story, incidents));
  return filledIn(part("page.html"),
                  {{"policy", part("page.policy")},
                   {"style", part("page.css")},
                   {"script", part("page.js")},
                   {"program", "raidmonitor " RAIDMONITOR_VERSION},
                   {"title", headline},
                   {"headline", headline},
                   {"gravity", gravityOf(worst)},
                   {"verdict", verdictOf(worst)},
                   {"outcome", escapedForPage(outcomeOf(story))},
                   {"facts", escapedForPage(factsOf(story, recording))},
                   {"incidents", incidentList(incidents)},
                   {"events", eventTable(eventLinesOf(story))},
                   {"end", endTable(story)},
                   {"data", reportData(story, worst == nullptr ? story.end : worst->from)}});
}

}  // namespace Program
