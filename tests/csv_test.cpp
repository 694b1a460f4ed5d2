// The CSV rule file: header lines, the contingency counts, chi-square,
// lift and leverage of every rule, the item names, and its failures.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::MinerTest;
using testing_support::Outcome;
using testing_support::ReadFile;

const std::string kHeader =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, leverage, "
    "target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, att6, value 6\n";

TEST(ChiSquare, PearsonStatisticOfATwoByTwoTable) {
  Outcome out = Capture([] { EXPECT_FLOAT_EQ(ChisquareTest(30, 0, 20, 50), 42.857143f); });
  EXPECT_EQ(out.output, "");
  char text[32];
  std::snprintf(text, sizeof text, "%f", ChisquareTest(30, 0, 20, 50));
  EXPECT_STREQ(text, "42.857143");
  // Symmetric in the two diagonals, zero without association.
  EXPECT_FLOAT_EQ(ChisquareTest(10, 20, 30, 40), ChisquareTest(40, 30, 20, 10));
  EXPECT_FLOAT_EQ(ChisquareTest(5, 5, 5, 5), 0.0f);
  EXPECT_NEAR(ChisquareTest(3, 0, 4, 5), 2.857143f, 1e-5);
}

TEST(ChiSquare, DegenerateTables) {
  float chi = 0;
  Outcome empty = Capture([&chi] { chi = ChisquareTest(0, 0, 0, 0); });
  EXPECT_EQ(chi, 10000.0f);
  EXPECT_EQ(empty.output, "exit 1 \n");

  // The target in every case: no case without it.
  Outcome margin = Capture([&chi] { chi = ChisquareTest(30, 0, 70, 0); });
  EXPECT_EQ(chi, 10000.0f);
  EXPECT_EQ(margin.output, "exit 2 30.000000, 0.000000, 70.000000, 0.000000 \n");
}

// Items: colour red=1 "dark, blue"=2 | size s=3 m=4 | yes=5 no=6.
class CsvTest : public MinerTest {
 protected:
  void SetUp() override {
    MinerTest::SetUp();
    LoadNames("yes, no.\ncolour: red, dark\\, blue.\nsize: s, m.\n");
    MaxData = 100;
    MinConf = 0.75f;
    InitRuleSet();
  }
  static void AddRule(std::vector<int> antecedent, int target, int supp, int antSupp, int targetSupp,
                      float conf) {
    RuleRecord* rule = NewRule(static_cast<int>(antecedent.size()));
    for (size_t i = 0; i < antecedent.size(); ++i) rule->Antecedent[i] = antecedent[i];
    rule->Target = target;
    rule->Supp = supp;
    rule->AntSupp = antSupp;
    rule->TargetSupp = targetSupp;
    rule->Conf = conf;
    rule->Score = conf;
    AddRuleTail(RuleSet->Last, rule);
  }
  Outcome Write(float support = 0.1f) {
    return Capture([this, support] { result_ = Write2CSVfile(File(), support); });
  }
  std::string File() const { return dir_ / "outrule.csv"; }
  int result_ = -1;
};

TEST_F(CsvTest, EmptyRuleSetGivesTheTwoHeaderLines) {
  Outcome out = Write(0.25f);
  EXPECT_EQ(out.status, -1);
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(ReadFile(File()), "confidence, 0.750000, support, 0.250000, RuleNumber, 0, \n" + kHeader);
  EXPECT_EQ(kHeader.size(), 201u);
}

TEST_F(CsvTest, RuleLine) {
  AddRule({1, 3}, 5, 30, 30, 50, 1.0f);
  Outcome out = Write();
  EXPECT_EQ(out.output, "");
  EXPECT_EQ(ReadFile(File()),
            "confidence, 0.750000, support, 0.100000, RuleNumber, 1, \n" + kHeader +
                "1, 30, 0, 20, 50, 30, 50, 1.000000, 42.857143, 2.000000, 0.150000, Class, yes, colour, red, "
                "size, s, \n");
}

TEST_F(CsvTest, SeveralRulesAndOddNames) {
  AddRule({}, 6, 40, 100, 40, 0.4f);          // empty antecedent: ends after the target
  AddRule({2}, 6, 12, 16, 40, 0.75f);         // a name holding a comma, written as it is
  AddRule({1, 4, 2, 3, 1, 4, 2}, 5, 5, 8, 60, 0.625f);  // more items than the header names
  Outcome out = Write();
  // The empty antecedent covers every case: an empty column margin.
  EXPECT_EQ(out.output, "exit 2 40.000000, 60.000000, 0.000000, 0.000000 \n");
  const std::string file = ReadFile(File());
  const std::string rules = file.substr(file.find(kHeader) + kHeader.size());
  EXPECT_EQ(rules,
            "1, 40, 60, 0, 0, 100, 40, 0.400000, 10000.000000, 1.000000, 0.000000, Class, no, \n"
            // a 12 b 4 c 28 d 56: lift 100*12/(16*40) = 1.875, leverage 0.12 - 0.064
            "2, 12, 4, 28, 56, 16, 40, 0.750000, 9.722222, 1.875000, 0.056000, Class, no, colour, dark\\, blue, \n"
            // a 5 b 3 c 55 d 37: lift 500/480, leverage 0.05 - 0.048
            "3, 5, 3, 55, 37, 8, 60, 0.625000, 0.022645, 1.041667, 0.002000, Class, yes, colour, red, size, m, "
            "colour, dark\\, blue, size, s, colour, red, size, m, colour, dark\\, blue, \n");
}

TEST_F(CsvTest, ZeroAntecedentSupportEndsTheExport) {
  AddRule({1}, 5, 10, 20, 50, 0.5f);
  AddRule({3}, 5, 0, 0, 50, 0.0f);
  AddRule({4}, 5, 10, 20, 50, 0.5f);
  Outcome out = Write();
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(out.output, "Devided by zero Write2CSVfile");
  const std::string file = ReadFile(File());
  const std::string rules = file.substr(file.find(kHeader) + kHeader.size());
  EXPECT_EQ(rules.substr(0, 3), "1, ");
  EXPECT_EQ(rules.substr(rules.find('\n') + 1), "2, ");
}

TEST_F(CsvTest, ZeroTargetSupportEndsTheExport) {
  AddRule({1}, 5, 0, 20, 0, 0.0f);
  Outcome out = Write();
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(out.output, "Devided by zero Write2CSVfile");
  EXPECT_EQ(ReadFile(File()), "confidence, 0.750000, support, 0.100000, RuleNumber, 1, \n" + kHeader + "1, ");
}

TEST_F(CsvTest, UnwritableFileIsReported) {
  ASSERT_EQ(mkdir(File().c_str(), 0700), 0);  // a folder where the file should go
  AddRule({1}, 5, 10, 20, 50, 0.5f);
  Outcome out = Write();
  EXPECT_EQ(out.status, -1);
  EXPECT_EQ(out.output, "Can not Open File\n");
  EXPECT_LT(result_, 0);
}

// The export as a whole: every rule line has the header's fixed columns plus
// two per antecedent item, read by an independent CSV parser.
TEST(CsvFile, ColumnsReadBackWithAStandardParser) {
  if (std::system("python3 -c 'import csv' >/dev/null 2>&1") != 0) GTEST_SKIP() << "python3 is absent";
  testing_support::TempDir dir;
  testing_support::WriteFile(dir / "w.names", testing_support::ReadFile(std::string(SOURCE_DIR) +
                                                                         "/tests/fixtures/weather.names"));
  testing_support::WriteFile(dir / "w.data", testing_support::ReadFile(std::string(SOURCE_DIR) +
                                                                        "/tests/fixtures/weather.data"));
  auto run = testing_support::RunProgram("rule", "-f w -s 0.1 -c 0.5", dir.path());
  ASSERT_EQ(run.status, 0);
  const std::string script =
      "import csv, sys\n"
      "rows = list(csv.reader(open(sys.argv[1]), skipinitialspace=True))\n"
      "assert len(rows[0]) == 7 and rows[0][-1] == '', rows[0]\n"
      "assert len(rows[1]) == 25, len(rows[1])\n"
      "assert int(rows[0][5]) == len(rows) - 2 > 0\n"
      "for i, row in enumerate(rows[2:], 1):\n"
      "    assert row[-1] == '' and int(row[0]) == i, row\n"
      "    a, b, c, d, p, t = map(int, row[1:7])\n"
      "    assert a + b + c + d == 12 and p == a + b and t == a + c, row\n"
      "    antecedent = (len(row) - 14) // 2\n"
      "    assert len(row) == 14 + 2 * antecedent and 1 <= antecedent <= 2, row\n"
      "print('ok', len(rows) - 2)\n";
  testing_support::WriteFile(dir / "check.py", script);
  const std::string command = "python3 '" + (dir / "check.py") + "' '" + (dir / "wrule.csv") + "' > '" +
                              (dir / "out") + "' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0) << testing_support::ReadFile(dir / "out");
}

}  // namespace
