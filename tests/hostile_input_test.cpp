// Hostile files given to the programs: each ends with its own message and
// exit status, never with a crash or a sanitizer report (nothing on
// standard error).
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

using Outcome = testing_support::ProgramRun;

Outcome RunIn(const std::string& dir, const std::string& program, const std::string& args) {
  return testing_support::RunProgram(program, args, dir);
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

#define EXPECT_ENDS(run, expectedStatus, tail)                  \
  do {                                                          \
    EXPECT_EQ((run).status, expectedStatus) << (run).output;    \
    EXPECT_TRUE(EndsWith((run).output, tail)) << (run).output;  \
    EXPECT_EQ((run).errors, "");                                \
  } while (0)

const char kNames[] = "yes, no.\nA: a, d.\nB: b, e.\n";
const char kWeatherNames[] = "play, stay.\nday: ignore.\noutlook: sunny, overcast, rain.\nwindy: yes, no.\n";
const char kWeatherData[] =
    "d01,sunny,yes,stay\nd02,sunny,yes,stay\nd03,sunny,no,stay\nd04,sunny,no,play\n"
    "d05,overcast,yes,play\nd06,overcast,no,play\nd07,rain,yes,stay\nd08,rain,no,play\n"
    "d09,?,no,play\n";
const char kCsvHeader[] =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, "
    "leverage, target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, "
    "att6, value 6\n";

// A names file of `items` items: two classes and attributes of up to 1,000
// values, with 40 cases that use three values of each attribute.
void WriteManyItems(const std::string& stem, int items) {
  std::string names = "yes, no.\n";
  int left = items - 2;
  int attributes = 0;
  for (; left > 0; ++attributes) {
    const int values = left < 1000 ? left : 1000;
    names += "a" + std::to_string(attributes) + ": ";
    for (int v = 0; v < values; ++v) names += "v" + std::to_string(v) + (v + 1 < values ? ", " : ".\n");
    left -= values;
  }
  std::string data;
  for (int i = 0; i < 40; ++i) {
    for (int a = 0; a < attributes; ++a) data += "v" + std::to_string((i * 7 + a) % 3) + ",";
    data += i % 2 ? "yes\n" : "no\n";
  }
  WriteFile(stem + ".names", names);
  WriteFile(stem + ".data", data);
}

TEST(HostileFiles, BinaryNamesFileReachesTheErrorLimit) {
  TempDir dir;
  // Bytes of a fixed generator, and the miner's own executable.
  std::string bytes;
  std::uint32_t state = 12345;
  for (int i = 0; i < 65536; ++i) {
    state = state * 1103515245u + 12345u;
    bytes.push_back(static_cast<char>(state >> 24));
  }
  WriteFile(dir / "noise.names", bytes);
  WriteFile(dir / "noise.data", "a,b,yes\n");
  WriteFile(dir / "exe.names", ReadFile(std::string(BIN_DIR) + "/rule"));
  WriteFile(dir / "exe.data", "a,b,yes\n");
  for (const char* stem : {"noise", "exe"}) {
    SCOPED_TRACE(stem);
    EXPECT_ENDS(RunIn(dir.path(), "rule", std::string("-f ") + stem), 1, "\nError limit exceeded\n");
    EXPECT_ENDS(RunIn(dir.path(), "rule-discretise", std::string("-f ") + stem + " -o out"), 1,
                "\nError limit exceeded\n");
    EXPECT_FALSE(FileExists(dir / (std::string(stem) + "rule.csv")));
  }
}

TEST(HostileFiles, TenMillionFieldsOnOneLine) {
  TempDir dir;
  WriteFile(dir / "x.names", kNames);
  // 3,333,333 cases of three fields, and one field left over.
  std::string line;
  line.reserve(10000000u * 3);
  for (int c = 0; c < 3333333; ++c) line += c % 2 ? "a,b,yes," : "d,e,no,";
  line += "a\n";
  WriteFile(dir / "x.data", line);
  const Outcome run = RunIn(dir.path(), "rule", "-f x -s 0.1 -c 0.9");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("MaxData = 3333333, Attribute = 3, Used attributes 3 \n"), std::string::npos)
      << run.output;
  EXPECT_EQ(run.errors, "");
  EXPECT_TRUE(FileExists(dir / "xrule.csv"));
}

TEST(HostileFiles, DataOfSeparatorsOnly) {
  TempDir dir;
  WriteFile(dir / "x.names", kNames);
  // Every comma and colon ends an empty field: 200,000 cases of unknowns.
  std::string separators;
  for (int i = 0; i < 300000; ++i) separators += ",:\n";
  WriteFile(dir / "x.data", separators);
  Outcome run = RunIn(dir.path(), "rule", "-f x");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("MaxData = 200000, Attribute = 3, Used attributes 3 \n"
                            "The first layer tree size is 0 \n"),
            std::string::npos)
      << run.output;
  EXPECT_EQ(ReadFile(dir / "xrule.csv"),
            std::string("confidence, 0.999999, support, 0.100000, RuleNumber, 0, \n") + kCsvHeader);

  // Blanks, tabs, line ends and comments hold no field at all.
  WriteFile(dir / "x.data", " \t\n\n  | a comment, with: separators\n\t\t\n");
  run = RunIn(dir.path(), "rule", "-f x");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("MaxData = 0, Attribute = 3, Used attributes 3 \n"), std::string::npos);
  EXPECT_EQ(run.errors, "");
}

// 32,767 items is the most a 16-bit data space codes: mined as any other
// data set (the pair table is a large zero-filled block of which only the
// pages of pairs that occur are touched); one item more is refused before
// the data file is read.
TEST(HostileFiles, ThirtyTwoThousandSevenHundredSixtySevenItemsAndOneMore) {
  TempDir dir;
  WriteManyItems(dir / "most", 32767);
  Outcome run = RunIn(dir.path(), "rule", "-f most -s 0.1");
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("MaxData = 40, Attribute = 34, Used attributes 34 \n"
                            "The first layer tree size is 101 \n"),
            std::string::npos)
      << run.output;
  EXPECT_EQ(run.errors, "");
  EXPECT_TRUE(FileExists(dir / "mostrule.csv"));

  WriteManyItems(dir / "over", 32768);
  run = RunIn(dir.path(), "rule", "-f over -s 0.1");
  EXPECT_ENDS(run, 1, "\nERROR:  over.names declares 32768 items; at most 32767 can be coded\n");
  EXPECT_EQ(run.output.find("MaxData"), std::string::npos);
}

// Names and values are printed as text, whatever printf directives they hold.
TEST(HostileFiles, PrintfDirectivesInNamesPrintAsText) {
  TempDir dir;
  WriteFile(dir / "p.names", "%s%n, %d%p.\n%n%s: %x%x, %%n, %s.\nw%n: continuous.\n");
  WriteFile(dir / "p.data", "%x%x,1,%s%n\n%x%x,2,%s%n\n%%n,3,%d%p\n%s,4,%d%p\n%x%x,5,%s%n\n");
  Outcome cut = RunIn(dir.path(), "rule-discretise", "-f p -s 0 -o c");
  EXPECT_EQ(cut.status, 0);
  EXPECT_NE(cut.output.find("w%n: 5 intervals\n"), std::string::npos) << cut.output;
  EXPECT_EQ(ReadFile(dir / "c.names").substr(ReadFile(dir / "c.names").find("%s%n")),
            "%s%n, %d%p.\n\n%n%s: %x%x, %%n, %s.\nw%n: 1.00..1.50, 1.50..2.50, 2.50..3.50, 3.50..4.50, 4.50..5.50.\n");

  Outcome mined = RunIn(dir.path(), "rule", "-f c -s 0.2 -c 0.5 -x 1");
  EXPECT_EQ(mined.status, 0);
  EXPECT_EQ(mined.errors, "");
  EXPECT_NE(ReadFile(dir / "crule.csv").find(", %n%s, %x%x, w%n, 1.00..1.50, \n"), std::string::npos);

  Outcome trained = RunIn(dir.path(), "rule-classify", "train -f c -s 0.2 -c 0.5 -o c.rules");
  EXPECT_EQ(trained.status, 0);
  EXPECT_NE(trained.output.find("   1: %n%s = %x%x -> %s%n  (support 3, confidence 1.0000)\n"), std::string::npos)
      << trained.output;
  EXPECT_EQ(trained.errors, "");
}

// Rule files whose fields are negative, huge, or do not fit the names file
// are refused by rule-classify test with one line saying why, status 1.
TEST(HostileFiles, RuleFilesThatDoNotFit) {
  TempDir dir;
  WriteFile(dir / "w.names", kWeatherNames);
  WriteFile(dir / "w.data", kWeatherData);
  struct Case {
    const char* file;
    const char* message;
  };
  const Case cases[] = {
      {"0.5, 0.1, 4, 0.0, -3 0 ", "does not fit w.names: it declares -3 rules but holds 0\n"},
      {"0.5, 0.1, 4, 0.0, 2147483647 0 1 1.0 3 1 2 0 ",
       "does not fit w.names: it declares 2147483647 rules but holds 1\n"},
      {"0.5, 0.1, 4, 0.0, 2 0 1 1.0 3 1 2 0 ", "does not fit w.names: it declares 2 rules but holds 1\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 -2 1.0 3 1 2 0 ", "h.rules: a non-negative antecedent length of rule 1 expected\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 2147483647 1.0 3 1 2 0 ",
       "h.rules: an antecedent length the file can hold of rule 1 expected\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 99999999999 1.0 3 1 2 0 ", "h.rules: the antecedent length of rule 1 expected\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 1 1.0 3 1 99 0 ",
       "does not fit w.names: rule 1 has item code 99, but the attribute values run from 1 to 5\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 1 1.0 3 1 -4 0 ",
       "does not fit w.names: rule 1 has item code -4, but the attribute values run from 1 to 5\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 1 1.0 3 1 2 5 ",
       "does not fit w.names: rule 1 has target 5, but the class indexes run from 0 to 1\n"},
      {"0.5, 0.1, 4, 0.0, 1 -9 1 1.0 3 1 2 0 ",
       "does not fit w.names: the default class -9 is no class index from -1 to 1\n"},
      {"0.5, 0.1, 4, 0.0, 1 0 1 1.0 3 1 2 ", "h.rules: the target of rule 1 expected\n"},
      {"0.5 0.1 4 0.0 0 -1 ", "h.rules: the confidence threshold followed by a comma expected\n"},
      {"", "h.rules: the confidence threshold followed by a comma expected\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    WriteFile(dir / "h.rules", c.file);
    EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "test -f w -R h.rules"), 1, c.message);
  }

  // Counts that are only reported may be anything.
  WriteFile(dir / "h.rules", "0.5, 0.1, 4, 0.0, 1 0 1 nan -5 -1 2 0 ");
  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "test -f w -R h.rules"), 0, "\n default accuracy = 33.33 %\n");
}

// A rule file trained on another data set is refused when its item codes or
// classes do not fit the names file; when they happen to fit, nothing tells
// the two apart and the rules are tested as they are.
TEST(HostileFiles, RuleFileOfAnotherDataSet) {
  TempDir dir;
  WriteFile(dir / "w.names", kWeatherNames);
  WriteFile(dir / "w.data", kWeatherData);
  const std::string picnic = std::string(SOURCE_DIR) + "/examples/picnic";
  WriteFile(dir / "p.names", ReadFile(picnic + ".names"));
  WriteFile(dir / "p.data", ReadFile(picnic + ".data"));
  ASSERT_EQ(RunIn(dir.path(), "rule-classify", "train -f p -o p.rules").status, 0);
  ASSERT_EQ(RunIn(dir.path(), "rule-classify", "train -f w -s 0.1 -c 0.5 -o w.rules").status, 0);

  const Outcome foreign = RunIn(dir.path(), "rule-classify", "test -f w -R p.rules");
  EXPECT_EQ(foreign.status, 1);
  EXPECT_NE(foreign.output.find("\nERROR:  rule file p.rules does not fit w.names: rule 1 has item code "),
            std::string::npos)
      << foreign.output;
  EXPECT_EQ(foreign.errors, "");

  const Outcome fitting = RunIn(dir.path(), "rule-classify", "test -f p -R w.rules");
  EXPECT_EQ(fitting.status, 0) << fitting.output;
  EXPECT_NE(fitting.output.find(" testing on p with 40 instances \n"), std::string::npos);
  EXPECT_EQ(fitting.errors, "");
}

// Output files that cannot be written: a folder in the way, a link into a
// folder that does not exist, a path under a regular file, and /proc (which
// even root cannot write new files into).
TEST(HostileFiles, OutputPathsThatCannotBeWritten) {
  TempDir dir;
  WriteFile(dir / "w.names", kWeatherNames);
  WriteFile(dir / "w.data", kWeatherData);
  ASSERT_EQ(mkdir((dir / "wrule.csv").c_str(), 0755), 0);
  EXPECT_ENDS(RunIn(dir.path(), "rule", "-f w"), 1, " \nCan not Open File\n");
  ASSERT_EQ(rmdir((dir / "wrule.csv").c_str()), 0);
  for (const std::string target : {"/nonexistent-folder/w.csv", "w.names/w.csv", "/proc/w.csv"}) {
    SCOPED_TRACE(target);
    ASSERT_EQ(symlink(target.c_str(), (dir / "wrule.csv").c_str()), 0);
    const Outcome run = RunIn(dir.path(), "rule", "-f w");
    EXPECT_ENDS(run, 1, " \nCan not Open File\n");
    ASSERT_EQ(unlink((dir / "wrule.csv").c_str()), 0);
  }

  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "train -f w -o no-folder/w.rules"), 1,
              "Can not Open File\nrule-classify train: cannot write the rule file no-folder/w.rules\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "train -f w -o w.names/w.rules"), 1,
              "Can not Open File\nrule-classify train: cannot write the rule file w.names/w.rules\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "train -f w -o /proc/w.rules"), 1,
              "Can not Open File\nrule-classify train: cannot write the rule file /proc/w.rules\n");

  EXPECT_ENDS(RunIn(dir.path(), "rule-discretise", "-f w -o no-folder/c"), 1,
              "rule-discretise: cannot write no-folder/c.names: No such file or directory\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-discretise", "-f w -o w.names/c"), 1,
              "rule-discretise: cannot write w.names/c.names: Not a directory\n");
  EXPECT_FALSE(FileExists(dir / "no-folder"));
}

// A stem naming a folder, and names or data "files" that are folders, are
// input files that cannot be opened.
TEST(HostileFiles, StemsAndInputFilesThatAreFolders) {
  TempDir dir;
  ASSERT_EQ(mkdir((dir / "sub").c_str(), 0755), 0);
  EXPECT_ENDS(RunIn(dir.path(), "rule", "-f sub"), 1, "\nERROR:  cannot open file sub.names\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule", "-f sub/"), 1, "\nERROR:  cannot open file sub/.names\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-analyse", "-f sub"), 1, "\nERROR:  cannot open file sub.names\n");

  ASSERT_EQ(mkdir((dir / "n.names").c_str(), 0755), 0);
  WriteFile(dir / "n.data", kWeatherData);
  EXPECT_ENDS(RunIn(dir.path(), "rule", "-f n"), 1, "\nERROR:  cannot open file n.names\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-discretise", "-f n -o out"), 1, "\nERROR:  cannot open file n.names\n");

  WriteFile(dir / "d.names", kWeatherNames);
  ASSERT_EQ(mkdir((dir / "d.data").c_str(), 0755), 0);
  EXPECT_ENDS(RunIn(dir.path(), "rule", "-f d"), 1, "\nERROR:  cannot open file d.data\n");
  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "train -f d -o d.rules"), 1, "\nERROR:  cannot open file d.data\n");
  EXPECT_FALSE(FileExists(dir / "drule.csv"));

  // A rule file that is a folder.
  WriteFile(dir / "w.names", kWeatherNames);
  WriteFile(dir / "w.data", kWeatherData);
  ASSERT_EQ(mkdir((dir / "r.rules").c_str(), 0755), 0);
  EXPECT_ENDS(RunIn(dir.path(), "rule-classify", "test -f w -R r.rules"), 1,
              "Can not Open File\nrule-classify test: cannot open the rule file r.rules\n");
}

}  // namespace
