// The CSV rule file: its numbers exactly as printf writes them, the lines of
// hand-made rules, and the export a zero count ends (pandas and R read whole
// files in readme_recipes_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "miner_fixture.h"
#include "output/csv.h"

namespace {

using testing_support::AddRule;
using testing_support::Outcome;
using testing_support::ReadFile;

const std::string kHeader =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, leverage, "
    "target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, att6, value 6\n";

// The numbers of a rule line are formatted without printf: they must read
// exactly as "%f" prints them, the rounding of halves (ties to even on the
// exact binary value) and the sign of negative values near 0 included.
TEST(CsvNumbers, SixDecimalsAsPrintfWritesThem) {
  std::vector<float> values = {0.0f, -0.0f, 1.0f, 0.5f, 1e-45f, 4.9e-7f, 5e-7f, -5e-7f, 16777215.0f, 16777216.0f,
                               3.4e38f, -1e30f, 10000.0f, 0.8f, 0.999999f};
  for (int k = 0; k < 4096; ++k)
    for (int shift = 7; shift <= 26; ++shift) values.push_back(std::ldexp(static_cast<float>(k), -shift));  // halves
  unsigned state = 12345;
  for (int i = 0; i < 200000; ++i) {
    state = state * 1103515245u + 12345u;
    const unsigned bits = (state >> 1) ^ (static_cast<unsigned>(i) << 31);
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) values.push_back(value);
    values.push_back(static_cast<float>(state % 20000001) / 1000000.0f - 10.0f);
  }
  for (float value : values) {
    char expected[80], got[80];
    std::snprintf(expected, sizeof expected, "%f", static_cast<double>(value));
    *FormatFixed(got, value) = '\0';
    ASSERT_STREQ(got, expected) << std::hexfloat << value;
  }
}

// Items: colour red=1 "dark, blue"=2 | size s=3 m=4 | yes=5 no=6.
class CsvTest : public testing_support::MinerTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(Read("yes, no.\ncolour: red, dark\\, blue.\nsize: s, m.\n").status, -1);
    data.MaxData = 100;
    InitRuleSet(run.Rules);
  }
  Outcome Write(float support = 0.1f) {
    const Status status = Write2CSVfile(File(), support, 0.75f, run.Rules, data, out.file());
    result_ = status.ok() ? 0 : status.exit_status();
    return Settle(status);
  }
  std::string File() const { return dir_ / "outrule.csv"; }
  std::string Head(int rules, const char* support = "0.100000") const {
    return "confidence, 0.750000, support, " + std::string(support) + ", RuleNumber, " + std::to_string(rules) +
           ", \n" + kHeader;
  }
  int result_ = -1;
};

TEST_F(CsvTest, RuleLines) {
  EXPECT_EQ(Write(0.25f).output, "");
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(ReadFile(File()), Head(0, "0.250000"));
  AddRule(run.Rules, {1, 3}, 5, 30, 1.0f, 30, 50);
  AddRule(run.Rules, {}, 6, 40, 0.4f, 100, 40);     // empty antecedent: an empty column margin
  AddRule(run.Rules, {2}, 6, 12, 0.75f, 16, 40);    // a name holding a comma, written as it is
  AddRule(run.Rules, {1, 4, 2, 3, 1, 4, 2}, 5, 5, 0.625f, 8, 60);  // more items than the header names
  EXPECT_EQ(Write().output, "exit 2 40.000000, 60.000000, 0.000000, 0.000000 \n");
  // Rule 1 is the chi-square example: a 30 b 0 c 20 d 50. Rule 3: a 12 b 4
  // c 28 d 56, lift 100*12/(16*40) = 1.875, leverage 0.12 - 0.064. Rule 4:
  // a 5 b 3 c 55 d 37, lift 500/480, leverage 0.05 - 0.048.
  EXPECT_EQ(ReadFile(File()), Head(4) + ReadFile(std::string(SOURCE_DIR) + "/tests/fixtures/csv_rules.txt"));
}

TEST_F(CsvTest, ZeroSupportEndsTheExport) {
  AddRule(run.Rules, {1}, 5, 10, 0.5f, 20, 50);
  AddRule(run.Rules, {3}, 5, 0, 0.0f, 0, 50);  // no antecedent support
  AddRule(run.Rules, {4}, 5, 10, 0.5f, 20, 50);
  Outcome written = Write();
  EXPECT_EQ(written.status, 0);
  EXPECT_EQ(written.output, "Devided by zero Write2CSVfile");
  const std::string file = ReadFile(File());
  EXPECT_EQ(file.substr(file.rfind('\n')), "\n2, ");
  SetUp();
  AddRule(run.Rules, {1}, 5, 0, 0.0f, 20, 0);  // no target support
  written = Write();
  EXPECT_EQ(written.status, 0);
  EXPECT_EQ(written.output, "Devided by zero Write2CSVfile");
  EXPECT_EQ(ReadFile(File()), Head(1) + "1, ");
}

}  // namespace
