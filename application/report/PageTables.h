#pragma once

#include <string>
#include <vector>

#include "application/report/EventLines.h"
#include "application/report/Incidents.h"

namespace Program {

// The parts of the page that are there without its script too, as markup.

// Empty when there is one incident at most: the headline is about that.
std::string incidentList(const std::vector<Incident>& incidents);

std::string eventTable(const std::vector<EventLine>& events);

// The bays of each enclosure in the last frame.
std::string endTable(const Story& story);

}  // namespace Program
