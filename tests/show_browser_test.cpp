// The HTML report of rule-show opened in a real browser: headless Chromium
// runs the page's script and dumps the document it builds, and the table
// rows, the scatter plot's points and the matrix's circles are counted.
// Skipped when Debian's chromium is not installed.
#include <gtest/gtest.h>

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
                                " --headless --disable-gpu --no-sandbox --user-data-dir='" + (dir_ / "profile") +
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

}  // namespace
