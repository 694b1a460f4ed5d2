// Hostile files given to the programs: each ends with its own message and
// exit status, never with a crash or a sanitizer report (nothing on
// standard error). They are the runs of fixtures/hostile, where the large
// and binary files are made by the run, and in-process reads of files of
// delimiters alone.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

TEST(HostileFiles, RunsOfTheHostileSet) { testing_support::RunArea("hostile", true); }

// No cases or empty ones, and names files that are refused or read, never a
// crash.
using HostileReader = testing_support::MinerTest;

TEST_F(HostileReader, FilesOfDelimitersOnly) {
  const char names[] = "yes, no.\nA: a, d.\nB: b, e.\n";
  for (const std::string& text : {std::string(","), std::string(",,,,,,"), std::string(1000, '\n'),
                                  "|" + std::string(5000, 'x'), std::string("\\"),
                                  std::string(" \t\n\n  | a comment, with: separators\n\t\t\n")}) {
    Load(names, text);
    EXPECT_EQ(Rows(), std::vector<std::vector<int>>(text == ",,,,,," ? 2 : 0, {0, 0, 0, 0})) << text.substr(0, 9);
  }
  for (const char* text : {",", ":", ",,,\n:::\n", ".", "\\", "yes, no.\n:\n", "yes, no.\n: a, b.\n"}) {
    EXPECT_NE(Read(text).status, 0) << text;  // refused (1) or read (-1), never a crash
  }
}

}  // namespace
