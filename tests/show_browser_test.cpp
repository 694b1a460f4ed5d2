// The HTML report of rule-show opened in a real browser: headless Chromium
// runs the page's script and dumps the document it builds, and the table
// rows, the scatter plot's points and the matrix's circles are counted.
// Skipped when Debian's chromium is not installed.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "test_support.h"

namespace {

using testing_support::RunProgram;
using testing_support::TempDir;

const char kChromium[] = "/usr/bin/chromium";

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

class ShowBrowser : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!testing_support::FileExists(kChromium)) GTEST_SKIP() << "chromium is not installed";
    const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/show/";
    for (const char* name : {"trip.names", "trip.data"})
      testing_support::WriteFile(dir_ / name, testing_support::ReadFile(fixtures + name));
    ASSERT_EQ(RunProgram("rule", "-f trip -s 0.1 -c 0.6", dir_.path()).status, 0);
  }

  // The document of the page after its script ran; address is what follows
  // the file name (a #view).
  std::string Dom(const std::string& page, const std::string& address = "") {
    const std::string command = "timeout 120 " + std::string(kChromium) +
                                " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking"
                                " --disable-component-update --disable-sync --user-data-dir='" + (dir_ / "profile") +
                                "' --dump-dom 'file://" + (dir_ / page) + address + "' 2>/dev/null";
    const testing_support::ProgramRun run = RunProgram("sh", command, dir_.path());
    EXPECT_EQ(run.status, 0) << run.errors;
    return run.output;
  }

  TempDir dir_;
};

TEST_F(ShowBrowser, TableScatterPlotAndMatrixAreDrawn) {
  ASSERT_EQ(RunProgram("rule-show", "--html trip.html -f trip", dir_.path()).status, 0);
  const std::string dom = Dom("trip.html");
  ASSERT_NE(dom.find("<tbody id=\"rows\">"), std::string::npos) << dom.substr(0, 2000);
  EXPECT_EQ(Count(dom, "<tr class=\"rule"), 33u);
  EXPECT_EQ(Count(dom, "<tr class=\"rule trivial\""), 9u);
  EXPECT_EQ(Count(dom, "<circle class=\"point\""), 33u);
  // 27 antecedents, six of them with two rules: the 20 largest hold 26.
  EXPECT_EQ(Count(dom, "<circle class=\"cell\""), 26u);
  EXPECT_NE(dom.find("The 20 of 27 antecedents with most rules."), std::string::npos);
  // The trivial rules come last; first is the lowest other index.
  EXPECT_NE(dom.find("<tbody id=\"rows\"><tr class=\"rule\"><td class=\"num\">10</td>"), std::string::npos);
  EXPECT_NE(dom.find("16 cases, 33 rules in the file"), std::string::npos);
  // The hostile value is text of the page, its script never ran.
  EXPECT_NE(dom.find("<title>Rules of triprule.csv</title>"), std::string::npos);
  EXPECT_EQ(dom.find("pwned</title>"), std::string::npos);
  EXPECT_NE(dom.find("mood{x}=&lt;/script&gt;&lt;script&gt;document.title='pwned'&lt;/script&gt;"), std::string::npos);
  EXPECT_EQ(Count(dom, "<script"), 2u);
}

TEST_F(ShowBrowser, SortAndFiltersOfThePage) {
  ASSERT_EQ(RunProgram("rule-show", "--html trip.html -f trip", dir_.path()).status, 0);
  // Sorted by lift (ties in file order), the words "rainy" in the rule.
  std::string dom = Dom("trip.html", "#sort=lift&filter=rainy");
  EXPECT_EQ(Count(dom, "<tr class=\"rule"), 11u);
  EXPECT_EQ(Count(dom, "<circle class=\"point\""), 11u);
  EXPECT_NE(dom.find("<tbody id=\"rows\"><tr class=\"rule\"><td class=\"num\">21</td>"), std::string::npos);
  EXPECT_NE(dom.find("<th data-key=\"lift\" class=\"sorted-desc\">"), std::string::npos);
  dom = Dom("trip.html", "#min-confidence=0.9&min-lift=2&min-support=0.2");
  EXPECT_EQ(Count(dom, "<tr class=\"rule"), 2u);
  // A page of the rules rule-show selected: the target's filter.
  ASSERT_EQ(RunProgram("rule-show", "--html stay.html --target decision=stay -f trip", dir_.path()).status, 0);
  dom = Dom("stay.html");
  EXPECT_EQ(Count(dom, "<tr class=\"rule"), 3u);
  EXPECT_EQ(Count(dom, "<circle class=\"cell\""), 3u);
}

// Half a million rules: the page opens, shows one page of the table, a
// density view in place of the points and a bounded matrix.
TEST_F(ShowBrowser, HalfAMillionRulesArePagedAndBinned) {
  const long rules = 500000, cases = 1000;
  std::string text = "confidence, 0.500000, support, 0.010000, RuleNumber, " + std::to_string(rules) + ", \n" +
                     "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, "
                     "leverage, target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, "
                     "att6, value 6\n";
  char line[256];
  for (long i = 1; i <= rules; ++i) {
    const long a = 10 + i % 290, b = i % 7 * (a / 14), c = i % 301, d = cases - a - b - c;
    const double n = cases, lift = n * a / ((a + b) * (a + c)), leverage = a / n - (a + b) * (a + c) / (n * n);
    const double chi = n * (a * d - b * c) * static_cast<double>(a * d - b * c) / ((a + b) * (c + d) * (a + c) * (b + d));
    std::snprintf(line, sizeof line, "%ld, %ld, %ld, %ld, %ld, %ld, %ld, %.6f, %.6f, %.6f, %.6f, t%ld, v, x%ld, v, y%ld, v, \n",
                  i, a, b, c, d, a + b, a + c, static_cast<double>(a) / (a + b), chi, lift, leverage, i % 40,
                  i % 997, i % 13);
    text += line;
  }
  testing_support::WriteFile(dir_ / "bigrule.csv", text);
  const testing_support::ProgramRun page = RunProgram("rule-show", "--html big.html bigrule.csv", dir_.path());
  ASSERT_EQ(page.status, 0) << page.output << page.errors;
  const std::string dom = Dom("big.html", "#sort=lift&page=3");
  EXPECT_EQ(Count(dom, "<tr class=\"rule"), 100u);
  EXPECT_NE(dom.find("500000 of 500000 rules pass the filters; rules 201 to 300 shown (page 3 of 5000)."),
            std::string::npos);
  EXPECT_EQ(Count(dom, "<circle class=\"point\""), 0u);
  EXPECT_GT(Count(dom, "<rect class=\"bin\""), 10u);
  EXPECT_NE(dom.find("Density: the 500000 rules that pass the filters"), std::string::npos);
  const size_t cells = Count(dom, "<circle class=\"cell\"");
  EXPECT_GT(cells, 0u);
  EXPECT_LE(cells, 400u);
  EXPECT_NE(dom.find("The 20 of "), std::string::npos);
}

}  // namespace
