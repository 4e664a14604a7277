// SPDX-License-Identifier: Apache-2.0
// The scenarios that docs/bench-engine.md shows, so that the tests try what the manual says.
#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace ventrik::bench {

struct WorkedScenario {
  std::string title;  // of the section that it stands in
  std::string text;
};

// Every indented block that begins with a brace, within the chapter "Scenarios".
inline std::vector<WorkedScenario> WorkedScenarios() {
  std::ifstream manual(VENTRIK_SOURCE_DIR "/docs/bench-engine.md");
  std::vector<WorkedScenario> found;
  std::string title;
  bool isInChapter = false;
  bool isInBlock = false;
  for (std::string line; std::getline(manual, line);) {
    if (line.compare(0, 3, "## ") == 0) isInChapter = line == "## Scenarios";
    if (line.compare(0, 4, "### ") == 0) title = line.substr(4);
    if (isInChapter && !isInBlock && line.compare(0, 5, "    {") == 0) {
      isInBlock = true;
      found.push_back({title, ""});
    }
    isInBlock = isInBlock && line.compare(0, 4, "    ") == 0;
    if (isInBlock) found.back().text += line.substr(4) + "\n";
  }
  return found;
}

// The one of that section; empty if there is none.
inline std::string WorkedScenarioOf(const std::string& title) {
  for (const WorkedScenario& scenario : WorkedScenarios()) {
    if (scenario.title == title) return scenario.text;
  }
  return {};
}

}  // namespace ventrik::bench
