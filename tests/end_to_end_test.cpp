// Whole runs of the miner: the golden runs of fixtures/runs.txt on the small
// hand-made sets of fixtures/runs (command lines, malformed files, the
// hand-worked weather set), the banner, an unwritable rule file, and the
// runs on the public data sets against their reference outputs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::ProgramRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::TempDir;

const std::string kFixtures = std::string(SOURCE_DIR) + "/tests/fixtures/";

// The runs of runs.txt: per run its header line with the expected output,
// then each file it must write with the expected text, or must not write.
using GoldenRun = std::vector<std::pair<std::string, std::string>>;

TEST(GoldenRuns, OutputsAndRuleFilesAreReproduced) {
  std::vector<GoldenRun> runs;
  std::istringstream in(ReadFile(kFixtures + "runs.txt"));
  for (std::string line; std::getline(in, line);) {
    const std::string mark = line.substr(0, 3);
    if (mark == "@@ " || mark == "@< ") runs.push_back({{line, ""}});
    else if (mark == "@> " || mark == "@! ") runs.back().push_back({line, ""});
    else if (mark != "@# " && line != "@#") runs.back().back().second += line + "\n";
  }
  ASSERT_GE(runs.size(), 57u);
  for (const GoldenRun& golden : runs) {
    const std::string& header = golden[0].first;
    SCOPED_TRACE(header);
    TempDir dir;
    std::filesystem::copy(kFixtures + "runs", dir.path(), std::filesystem::copy_options::recursive);
    const ProgramRun run = RunProgram("rule", header.substr(std::min<size_t>(5, header.size())), dir.path());
    EXPECT_EQ(run.status, header[3] - '0');
    const std::string output = testing_support::MaskRun(run.output), expected = golden[0].second;
    EXPECT_EQ(header[1] == '<' ? output.substr(0, expected.size()) : output, expected);
    for (size_t i = 1; i < golden.size(); ++i) {
      const std::string file = dir / golden[i].first.substr(3);
      const bool absent = golden[i].first[1] == '!';
      EXPECT_EQ(absent ? std::to_string(FileExists(file)) : ReadFile(file), absent ? "0" : golden[i].second) << file;
    }
  }
}

TEST(ProgramEnds, BannerDateAndUnwritableRuleFile) {
  TempDir dir;
  for (const char* file : {"t.names", "t.data"}) std::filesystem::copy(kFixtures + "runs/" + file, dir / file);
  std::filesystem::create_directory(dir / "trule.csv");  // a folder where the rule file should go
  const ProgramRun run = RunProgram("rule", "-f t", dir.path());
  EXPECT_EQ(run.status, 1);
  // Five tabs, a blank and the date as "Www Mmm dd hh:mm:ss yyyy".
  char day[4], month[4];
  int date, hour, minute, second, year, used = 0;
  const char* shape = "\t\t\t\t\t %3[A-Za-z] %3[A-Za-z] %2d %2d:%2d:%2d %4d\n \tFile Name: t\n%n";
  EXPECT_EQ(std::sscanf(run.output.c_str(), shape, day, month, &date, &hour, &minute, &second, &year, &used), 7);
  EXPECT_EQ(used, 46) << run.output;
  const std::string last = "\n the running time is T \nCan not Open File\n";
  const std::string output = testing_support::MaskRun(run.output);
  ASSERT_GE(output.size(), last.size());
  EXPECT_EQ(output.substr(output.size() - last.size()), last);
}

// A rule file that cannot be written completely is named with the reason,
// where a good run's console would otherwise end.
TEST(ProgramEnds, RuleFileOnAFullDevice) {
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  TempDir dir;
  for (const char* file : {"t.names", "t.data"}) std::filesystem::copy(kFixtures + "runs/" + file, dir / file);
  std::filesystem::create_symlink("/dev/full", dir / "trule.csv");
  const ProgramRun run = RunProgram("rule", "-f t", dir.path());
  EXPECT_EQ(run.status, 1);
  const std::string last = "\n the running time is T \n\nERROR:  cannot write file trule.csv: No space left on device\n";
  const std::string output = testing_support::MaskRun(run.output);
  ASSERT_GE(output.size(), last.size()) << output;
  EXPECT_EQ(output.substr(output.size() - last.size()), last);
}

TEST(SharedDataSets, ReferenceOutputsAreReproduced) {
  const std::string script = testing_support::SharedDir() + "/expected/compare.sh";
  if (!FileExists(script) || !FileExists(testing_support::SharedDir() + "/data/vote.names"))
    GTEST_SKIP() << "the shared data sets are not beside the project";
  TempDir dir;
  const std::string command =
      "bash '" + script + "' '" + std::string(BIN_DIR) + "/rule' > '" + (dir / "log") + "' 2>&1";
  const int status = std::system(command.c_str());
  const std::string log = ReadFile(dir / "log");
  EXPECT_EQ(status, 0) << log;
  ASSERT_FALSE(log.empty());
  std::string last = log.substr(0, log.size() - 1);
  last = last.substr(last.rfind('\n') == std::string::npos ? 0 : last.rfind('\n') + 1);
  EXPECT_EQ(last, "9/9 identical") << log;
}

}  // namespace
