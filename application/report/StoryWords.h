#pragma once

#include <string>
#include <vector>

#include "application/report/Incidents.h"
#include "application/report/Story.h"

namespace Program {

// A story in words, ready to be shown: names from the registry have been made harmless.

// A name on its way into a sentence: nothing in it controls anything, it is of bearable length, and
// the direction of its letters stays its own affair.
std::string shownName(const std::string& name);

// "bay 2", "bays 1 and 3", ascending and each once; empty without any.
std::string bayList(const std::vector<int>& bays);

// "Projects (mirror in Example Storage Two Bay) was degraded from 00:08.000 to 00:22.000: the disk
// in bay 2 failed."
std::string sentenceOf(const Incident& incident);

// What happened, in one sentence.
std::string headlineOf(const Story& story, const std::vector<Incident>& incidents);

// How it ended, in one sentence.
std::string outcomeOf(const Story& story);

}  // namespace Program
