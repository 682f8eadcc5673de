#include "application/report/PageTables.h"

#include <fmt/format.h>

#include "application/Words.h"
#include "application/report/BayBoxes.h"
#include "application/report/Page.h"
#include "application/report/StoryWords.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

// As many as leave room for the bays on the same screen; of more, a reader has to ask for the list.
constexpr std::size_t OpenIncidents = 6;

std::string cell(const std::string& text) { return "<td>" + escapedForPage(text) + "</td>"; }

std::string header(const std::vector<const char*>& columns) {
  std::string row = "<thead><tr>";
  for (const char* column : columns)
    row += fmt::format("<th scope=\"col\">{}</th>", column);
  return row + "</tr></thead>";
}

const char* nameOf(EventLine::Gravity gravity) {
  switch (gravity) {
    case EventLine::Gravity::Good:
      return "good";
    case EventLine::Gravity::Uneasy:
      return "uneasy";
    case EventLine::Gravity::Bad:
      return "bad";
    case EventLine::Gravity::Plain:
      break;
  }
  return "plain";
}

const char* nameOf(EventLine::Mark mark) {
  switch (mark) {
    case EventLine::Mark::New:
      return "new";
    case EventLine::Mark::Now:
      return "now";
    case EventLine::Mark::Gone:
      return "gone";
    case EventLine::Mark::Seen:
      break;
  }
  return "seen";
}

std::string endRow(const Picture& picture, const BayBox& box) {
  std::string row = "<tr>" + cell(shownName(picture.name)) +
                    cell(box.bay == 0 ? "not known" : std::to_string(box.bay));
  if (box.member == nullptr)
    return row + cell("") + cell(box.state) + cell("") + cell("") + "</tr>";
  const std::string state = box.note.empty() ? box.state : box.state + "; " + box.note;
  return row + cell(shownName(shortened(box.member->uuid))) + cell(state) +
         cell(shownName(box.volume->name)) +
         cell(wordFor(box.volume->level) + (" " + wordsFor(box.volume->state))) + "</tr>";
}

}  // namespace

std::string incidentList(const std::vector<Incident>& incidents) {
  if (incidents.size() < 2) return "";
  std::string list = "<ol class=\"incidents\" aria-label=\"All incidents\">\n";
  for (const Incident& incident : incidents) {
    const std::string time = clockText(incident.from);
    list += fmt::format(
        "<li><button type=\"button\" data-time=\"{0}\" aria-label=\"Show {1}\" hidden>{1}</button> "
        "{2}</li>\n",
        incident.from, time, escapedForPage(sentenceOf(incident)));
  }
  list += "</ol>";
  if (incidents.size() <= OpenIncidents) return list;
  return fmt::format("<details><summary>All {} incidents</summary>\n{}</details>", incidents.size(),
                     list);
}

std::string eventTable(const std::vector<EventLine>& events) {
  if (events.empty()) return "<p>There were none.</p>";
  std::string table =
      "<div class=\"rows\" tabindex=\"0\" role=\"region\" "
      "aria-labelledby=\"events-title\"><table id=\"events\">" +
      header({"Time", "", "What happened", "Enclosure"}) + "<tbody>\n";
  for (const EventLine& event : events) {
    table += fmt::format(
        "<tr class=\"{}\" data-time=\"{}\"><td>{}</td><td class=\"mark\">{}</td>"
        "<td class=\"what\">{}</td><td>{}</td></tr>\n",
        nameOf(event.gravity), event.time, clockText(event.time), nameOf(event.mark),
        escapedForPage(event.text), escapedForPage(event.enclosure));
  }
  return table + "</tbody></table></div>";
}

std::string endTable(const Story& story) {
  std::string rows;
  if (!story.frames.empty()) {
    for (const auto& picture : story.frames.back().enclosures) {
      const BayBoxes boxes = boxesOf(*picture);
      for (const BayBox& box : boxes.bays)
        rows += endRow(*picture, box) + "\n";
      for (const BayBox& box : boxes.elsewhere)
        rows += endRow(*picture, box) + "\n";
    }
  }
  if (rows.empty()) return "<p>No disk can be seen.</p>";
  return "<table>" + header({"Enclosure", "Bay", "Disk", "State", "Volume", "Volume is"}) +
         "<tbody>\n" + rows + "</tbody></table>";
}

}  // namespace Program
