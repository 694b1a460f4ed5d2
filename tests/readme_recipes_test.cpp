// The README's pandas and R recipes, run as written: every ```python and
// ```r block between "<!-- recipes: begin" and "<!-- recipes: end -->" is
// run in a folder holding picnicrule.csv and picnic-rules.csv, made from the
// trip set (names with quotes, '=', '{' and markup) by rule and rule-show.
// Each block must load its frame with every rule and the first rule's
// fields as the files hold them. Skipped where pandas or Rscript is missing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::ProgramRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

struct Block {
  std::string language, code;
};

std::vector<Block> RecipeBlocks() {
  const std::string readme = ReadFile(std::string(SOURCE_DIR) + "/README.md");
  std::vector<Block> blocks;
  for (size_t at = 0; (at = readme.find("<!-- recipes: begin", at)) != std::string::npos;) {
    const size_t end = readme.find("<!-- recipes: end -->", at);
    if (end == std::string::npos) break;
    const std::string section = readme.substr(at, end - at);
    for (size_t open = 0; (open = section.find("```", open)) != std::string::npos;) {
      const size_t lineEnd = section.find('\n', open);
      const size_t close = section.find("\n```", lineEnd);
      if (lineEnd == std::string::npos || close == std::string::npos) break;
      blocks.push_back({section.substr(open + 3, lineEnd - open - 3), section.substr(lineEnd + 1, close - lineEnd)});
      open = close + 4;
    }
    at = end;
  }
  return blocks;
}

// Printed after each block: per frame the block made, its name, the number
// of rows and its first row's first 13 fields.
const char kPythonCheck[] =
    "for name in ('rules', 'shown'):\n"
    "    if name in globals():\n"
    "        frame = globals()[name]\n"
    "        print(name, len(frame), '|'.join(str(v) for v in frame.iloc[0, :13].tolist()))\n";
const char kRCheck[] =
    "for (name in intersect(c('rules', 'shown'), ls())) {\n"
    "  frame <- get(name)\n"
    "  cat(name, nrow(frame), paste(sapply(frame[1, 1:13], as.character), collapse = '|'), '\\n', sep = ' ')\n"
    "}\n";

// The rule file's first rule is trivial (season holds in every case); the
// first rule rule-show lists is the first other one, a quoted name in it.
const char kRules[] =
    "rules 33 1|7|0|9|0|7|16|1.0|10000.0|1.0|0.0|season|summer\n";
const char kRulesR[] = "rules 33 1|7|0|9|0|7|16|1|10000|1|0|season|summer \n";
const char kShown[] =
    "shown 33 10|wind=\"strong\", mood{x}=a=b|outlook=sunny|0.125|1.0|2.285714|0.070312|2.938776|False|2|0|5|9\n";
const char kShownR[] =
    "shown 33 10|wind=\"strong\", mood{x}=a=b|outlook=sunny|0.125|1|2.285714|0.070312|2.938776|FALSE|2|0|5|9 \n";

class ReadmeRecipes : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/show/";
    WriteFile(dir_ / "picnic.names", ReadFile(fixtures + "trip.names"));
    WriteFile(dir_ / "picnic.data", ReadFile(fixtures + "trip.data"));
    ASSERT_EQ(RunProgram("rule", "-f picnic -s 0.1 -c 0.6", dir_.path()).status, 0);
    ASSERT_EQ(RunProgram("rule-show", "--format csv -f picnic -o picnic-rules.csv", dir_.path()).status, 0);
    blocks_ = RecipeBlocks();
  }

  // Runs each block of the language with the check appended; the outputs.
  std::vector<std::string> Run(const std::string& language, const std::string& interpreter,
                               const std::string& check, const std::string& suffix) {
    std::vector<std::string> outputs;
    for (const Block& block : blocks_) {
      if (block.language != language) continue;
      const std::string script = dir_ / ("recipe" + std::to_string(outputs.size()) + suffix);
      WriteFile(script, block.code + check);
      const ProgramRun run = RunProgram("sh", interpreter + " '" + script + "'", dir_.path());
      EXPECT_EQ(run.status, 0) << block.code << run.errors;
      outputs.push_back(run.output);
    }
    return outputs;
  }

  TempDir dir_;
  std::vector<Block> blocks_;
};

TEST_F(ReadmeRecipes, PandasLoadsTheRuleFileAndTheCsvListing) {
  std::string python;
  for (const char* candidate : {"python3", "/usr/bin/python3"})
    if (python.empty() && RunProgram("sh", std::string(candidate) + " -c 'import pandas'", dir_.path()).status == 0)
      python = candidate;
  if (python.empty()) GTEST_SKIP() << "pandas is not installed";
  EXPECT_EQ(Run("python", python, kPythonCheck, ".py"), (std::vector<std::string>{kRules, kShown}));
}

TEST_F(ReadmeRecipes, RLoadsTheRuleFileAndTheCsvListing) {
  if (RunProgram("sh", "command -v Rscript", dir_.path()).status != 0) GTEST_SKIP() << "Rscript is not installed";
  EXPECT_EQ(Run("r", "Rscript --vanilla", kRCheck, ".R"), (std::vector<std::string>{kRulesR, kShownR}));
}

}  // namespace
