// The README's walk-through as a user runs it: a CSV file with a header,
// quoted fields, numeric and text columns and awkward city names goes
// through rule-import, rule, rule-show and rule-show --html, and the page
// renders in a real browser (skipped when Debian's chromium is absent).
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::ProgramRun;
using testing_support::RunProgram;

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The indented command lines of the README's walk-through, comments cut.
std::vector<std::string> WalkthroughCommands() {
  const std::string readme = testing_support::ReadFile(std::string(SOURCE_DIR) + "/README.md");
  const size_t section = readme.find("\n## From a CSV file to rules: a walk-through\n");
  std::vector<std::string> commands;
  if (section == std::string::npos) return commands;
  std::istringstream in(readme.substr(section + 1));
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line) && line.rfind("## ", 0) != 0) {
    if (line.rfind("    ", 0) != 0) {
      if (!commands.empty()) break;  // the first indented block only
      continue;
    }
    std::string command = line.substr(4, line.find(" #") == std::string::npos ? std::string::npos : line.find(" #") - 4);
    while (!command.empty() && command.back() == ' ') command.pop_back();
    commands.push_back(command);
  }
  return commands;
}

// Each command as the README writes it, run from the top of a copy of the
// examples with the built programs on the path.
TEST(Walkthrough, FromACsvFileToRulesAPersonReadsAndAPage) {
  testing_support::TempDir dir;
  ASSERT_EQ(RunProgram("sh", "mkdir examples", dir.path()).status, 0);
  testing_support::WriteFile(dir / "examples/trips.csv",
                             testing_support::ReadFile(std::string(SOURCE_DIR) + "/examples/trips.csv"));
  const std::vector<std::string> commands = WalkthroughCommands();
  ASSERT_EQ(commands, (std::vector<std::string>{"rule-import --ignore trip examples/trips.csv trips",
                                                "rule -f trips -s 0.1 -c 0.8", "rule-show --top 10 --sort lift -f trips",
                                                "rule-show --target 'would go again' -f trips",
                                                "rule-show --html trips.html -f trips"}));
  std::vector<ProgramRun> runs;
  for (const std::string& command : commands) runs.push_back(RunProgram("sh", command, dir.path()));

  const ProgramRun& imported = runs[0];
  ASSERT_EQ(imported.status, 0) << imported.output << imported.errors;
  EXPECT_NE(imported.output.find("60 rows, 9 columns"), std::string::npos) << imported.output;
  EXPECT_NE(imported.output.find("column 3, age: numeric, cut into"), std::string::npos);
  const std::string names = testing_support::ReadFile(dir / "trips.names");
  EXPECT_EQ(names.rfind("| class attribute: would go again\n", 0), 0u) << names;

  const ProgramRun& mined = runs[1];
  ASSERT_EQ(mined.status, 0) << mined.output;
  EXPECT_NE(mined.output.find("MaxData = 60, Attribute = 9, Used attributes 8 \n"), std::string::npos)
      << mined.output;

  // Ten rules by lift, highest first, the cities spelt so that they stay one
  // name each; the class is named by its column.
  const ProgramRun& shown = runs[2];
  ASSERT_EQ(shown.status, 0) << shown.output << shown.errors;
  const std::vector<std::string> lines = Lines(shown.output);
  ASSERT_EQ(lines.size(), 12u) << shown.output;
  EXPECT_NE(lines[0].find("60 cases"), std::string::npos);
  double previous = 1e9;
  for (size_t i = 2; i < lines.size(); ++i) {
    std::istringstream fields(lines[i]);
    std::string index, support, count;
    double confidence = 0, lift = 0;
    fields >> index >> support >> count >> confidence >> lift;
    EXPECT_LE(lift, previous) << lines[i];
    previous = lift;
  }
  EXPECT_NE(shown.output.find("destination city=New York\xE2\x80\x9A NY"), std::string::npos);
  const ProgramRun& classRules = runs[3];
  ASSERT_EQ(classRules.status, 0) << classRules.output << classRules.errors;
  EXPECT_NE(classRules.output.find("=> {would go again="), std::string::npos) << classRules.output;

  ASSERT_EQ(runs[4].status, 0) << runs[4].errors;
  const std::string chromium = "/usr/bin/chromium";
  if (!testing_support::FileExists(chromium)) GTEST_SKIP() << "chromium is not installed";
  const ProgramRun page = RunProgram("sh",
                                     "timeout 120 " + chromium + " --headless --disable-gpu --no-sandbox --user-data-dir='" +
                                         (dir / "profile") + "' --dump-dom 'file://" + (dir / "trips.html") +
                                         "' 2>/dev/null",
                                     dir.path());
  ASSERT_EQ(page.status, 0) << page.errors;
  const size_t rules = Count(testing_support::ReadFile(dir / "tripsrule.csv"), "\n") - 2;
  EXPECT_EQ(Count(page.output, "<tr class=\"rule"), rules);
  EXPECT_EQ(Count(page.output, "<circle class=\"point\""), rules);
  EXPECT_GT(Count(page.output, "<circle class=\"cell\""), 0u);
}

}  // namespace
