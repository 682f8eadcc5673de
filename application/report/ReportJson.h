#pragma once

#include <string>
#include <vector>

#include "application/report/Strips.h"

namespace Program {

// What the page's script draws from, as one JSON object on one line:
//   {"end", "start",           milliseconds: the end of the story, the moment to show first
//    "pictures": [PICTURE...], "frames": [[time, [number of a picture, ...]], ...],
//    "strips": [{"kind", "label", "detail", "runs": [[from, state], ...]}, ...],
//    "log": [[time, level, category, text], ...]}
//   PICTURE: {"title", "uid", "up", "bays": [BOX...], "elsewhere": [BOX...], "volumes": [[name,
//   level,
//    state]...]}
//   BOX: {"bay", "state", ...}: see page.js
// Every text is printable. Nothing in it ends a <script> element, or begins a comment in one.
std::string reportData(const Story& story, Story::Moment start);

}  // namespace Program
