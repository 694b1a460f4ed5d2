// rule-show: reading rule files back (hostile names, damaged files), the
// filters of the rules shown, the escaping of the text formats, and whole
// runs of the program on the rules the miner finds in a small set.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "show/formats.h"
#include "show/html.h"
#include "base/staged_file.h"
#include "show/rulefile.h"
#include "show/select.h"
#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

const char kHeader[] =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, leverage, "
    "target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, att6, value 6\n";

// A rule line as the miner writes it; names are given as written.
std::string RuleLine(int index, int a, int b, int c, int d, double lift, double chi,
                     const std::vector<std::string>& names) {
  std::string line = std::to_string(index) + ", " + std::to_string(a) + ", " + std::to_string(b) + ", " +
                     std::to_string(c) + ", " + std::to_string(d) + ", " + std::to_string(a + b) + ", " +
                     std::to_string(a + c) + ", " + show::Fixed(double(a) / (a + b)) + ", " + show::Fixed(chi) +
                     ", " + show::Fixed(lift) + ", 0.010000, ";
  for (const std::string& name : names) line += name + ", ";
  return line + "\n";
}

std::string RuleText(const std::vector<std::string>& lines) {
  std::string text = "confidence, 0.800000, support, 0.100000, RuleNumber, " + std::to_string(lines.size()) +
                     ", \n" + kHeader;
  for (const std::string& line : lines) text += line;
  return text;
}

show::RuleFile Parse(const std::string& text) {
  show::RuleFile file;
  file.path = "t.csv";
  show::ReadError error;
  EXPECT_TRUE(show::ParseRuleFile(text, file, error)) << error.Message();
  return file;
}

std::string ParseError(const std::string& text) {
  show::RuleFile file;
  file.path = "t.csv";
  show::ReadError error;
  EXPECT_FALSE(show::ParseRuleFile(text, file, error));
  return error.Message();
}

TEST(ShowRuleFile, NamesHoldingSeparatorsQuotesAndMarkupReadAsWritten) {
  const show::RuleFile file = Parse(RuleText({
      RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"Class", "go", "a=b", "{x}", "q\"", "'s,", "w", "</script>"}),
      RuleLine(2, 3, 1, 3, 3, 1.1, 0.4, {"t", ",", "x y", " lead"}),
  }));
  ASSERT_EQ(file.rules.size(), 2u);
  const show::Rule& first = file.rules[0];
  EXPECT_EQ(first.target.attribute, "Class");
  EXPECT_EQ(first.target.value, "go");
  ASSERT_EQ(first.antecedent.size(), 3u);
  EXPECT_EQ(first.antecedent[0].attribute, "a=b");
  EXPECT_EQ(first.antecedent[0].value, "{x}");
  EXPECT_EQ(first.antecedent[1].attribute, "q\"");
  EXPECT_EQ(first.antecedent[1].value, "'s,");  // a comma ends a name only with the blank after it
  EXPECT_EQ(first.antecedent[2].value, "</script>");
  EXPECT_EQ(first.a + first.b + first.c + first.d, 10);
  EXPECT_DOUBLE_EQ(first.lift, 1.5);
  EXPECT_EQ(file.rules[1].target.value, ",");
  EXPECT_EQ(file.rules[1].antecedent[0].value, " lead");
  EXPECT_EQ(file.Cases(), 10);
  EXPECT_DOUBLE_EQ(file.confidence, 0.8);

  // An empty rule set is two header lines; a CRLF copy reads the same.
  EXPECT_TRUE(Parse(RuleText({})).rules.empty());
  std::string crlf = RuleText({RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"t", "v", "x", "y"})});
  for (size_t at = 0; (at = crlf.find('\n', at)) != std::string::npos; at += 2) crlf.insert(at, "\r");
  EXPECT_EQ(Parse(crlf).rules[0].antecedent[0].value, "y");
}

TEST(ShowRuleFile, DamagedFilesNameTheLine) {
  const std::string good = RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"t", "v", "x", "y"});
  EXPECT_EQ(ParseError(""), "t.csv:1: the file is empty; the first line of a rule file expected");
  EXPECT_EQ(ParseError("index, a\n"),
            "t.csv:1: \"confidence, C, support, S, RuleNumber, N, \" expected: this is no rule file of the miner");
  EXPECT_EQ(ParseError("confidence, 0.8, support, 0.1, RuleNumber, 0, \nindex, a\n"),
            "t.csv:2: the column names of a rule file expected");
  // Cut short: inside a rule, after a whole rule, at a separator.
  const std::string text = RuleText({good, RuleLine(2, 3, 1, 3, 3, 1.1, 0.4, {"t", "w", "x", "y"})});
  EXPECT_EQ(ParseError(text.substr(0, text.size() - 8)), "t.csv:4: the last line has no line end: the file is cut short");
  EXPECT_EQ(ParseError(text.substr(0, text.find("2, 3, 1"))), "t.csv:4: rule 2 of 2 expected; the file ends");
  EXPECT_EQ(ParseError(RuleText({"1, 4, 0, 2, 4, 4, 6, 1.000000, 3.2\n"})),
            "t.csv:3: every field of a rule is followed by \", \": the line is cut short");
  // Wrong fields.
  EXPECT_EQ(ParseError(RuleText({RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"t", "v", "x"})})),
            "t.csv:3: rule 1 has an attribute without a value (a name holding \", \"?)");
  EXPECT_EQ(ParseError(RuleText({RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"t"})})),
            "t.csv:3: rule 1 has 12 fields; eleven numbers, a target attribute and value expected");
  std::string line = good;
  line.replace(line.find("1.500000"), 8, "lots");
  EXPECT_EQ(ParseError(RuleText({line})), "t.csv:3: the lift of rule 1 expected, found \"lots\"");
  line = good;
  line.replace(line.find("3.200000"), 8, "nan");
  EXPECT_EQ(ParseError(RuleText({line})), "t.csv:3: the chi-square of rule 1 expected, found \"nan\"");
  EXPECT_EQ(ParseError(RuleText({"1, 4, 0, 2, 4, 5, 6, 1.0, 1.0, 1.0, 0.0, t, v, \n"})),
            "t.csv:3: the counts of rule 1 do not fit together (sup(P) = a + b > 0 and sup[C] = a + c > 0 expected)");
  EXPECT_EQ(ParseError(RuleText({good, RuleLine(3, 3, 1, 3, 3, 1.1, 0.4, {"t", "w"})})),
            "t.csv:4: rule 2 expected, found index \"3\"");
  EXPECT_EQ(ParseError(RuleText({good, RuleLine(2, 3, 1, 3, 4, 1.1, 0.4, {"t", "w"})})),
            "t.csv:4: rule 2 counts 11 cases, the rules before it 10");
  EXPECT_EQ(ParseError(RuleText({good, "1, -4, 0, 2, 4, 4, 6, 1.0, 1.0, 1.0, 0.0, t, v, \n"})),
            "t.csv:4: the count sup(Pc) of rule 2 expected, found \"-4\"");
  std::string extra = RuleText({good}) + RuleLine(2, 3, 1, 3, 3, 1.1, 0.4, {"t", "w"});
  EXPECT_EQ(ParseError(extra), "t.csv:4: the first line announces 1 rules, here is one more");

  TempDir dir;
  show::RuleFile file;
  show::ReadError error;
  EXPECT_FALSE(show::ReadRuleFile(dir.path(), file, error));
  EXPECT_EQ(error.Message(), dir.path() + ": cannot read the rule file: Is a directory");
}

// Rules of ten cases: 1 and 3 trivial (target in every case, antecedent in
// every case), the rest ordinary with ties.
show::RuleFile Ranked() {
  return Parse(RuleText({
      RuleLine(1, 6, 0, 4, 0, 1.0, 10000, {"season", "summer", "wind", "calm"}),
      RuleLine(2, 3, 0, 2, 5, 2.0, 4.3, {"Class", "go", "outlook", "sunny"}),
      RuleLine(3, 7, 3, 0, 0, 1.0, 10000, {"Class", "go", "all", "yes"}),
      RuleLine(4, 2, 1, 1, 6, 2.5, 2.9, {"wind", "a=b", "Class", "stay", "x", "y"}),
      RuleLine(5, 3, 0, 2, 5, 2.0, 4.3, {"outlook", "sunny", "wind", "calm"}),
  }));
}

std::vector<long> Order(const show::RuleFile& file, const show::Selection& selection,
                        const std::string& className = "") {
  show::Naming naming{className};
  std::vector<long> indices;
  for (const show::Rule* rule : show::Select(file, selection, naming)) indices.push_back(rule->index);
  return indices;
}

TEST(ShowSelect, FiltersOnMeasuresTargetsAndItems) {
  const show::RuleFile file = Ranked();
  show::Selection s;
  s.minLift = 2.0;  // a bound is met by a value equal to it
  EXPECT_EQ(Order(file, s), (std::vector<long>{2, 4, 5}));
  s.minConfidence = 0.9;
  EXPECT_EQ(Order(file, s), (std::vector<long>{2, 5}));
  s = {};
  s.minSupport = 0.3;  // a / N
  EXPECT_EQ(Order(file, s), (std::vector<long>{2, 5, 1, 3}));
  s = {};
  s.target = "Class";
  EXPECT_EQ(Order(file, s), (std::vector<long>{2, 3}));
  EXPECT_EQ(Order(file, s, "decision"), (std::vector<long>{2, 3}));  // the file's name still works
  s.target = "decision=go";
  EXPECT_EQ(Order(file, s, "decision"), (std::vector<long>{2, 3}));
  EXPECT_TRUE(Order(file, s).empty());
  s = {};
  s.contains = {"wind"};  // antecedent or target
  EXPECT_EQ(Order(file, s), (std::vector<long>{4, 5, 1}));
  s.contains = {"wind=calm", "outlook=sunny"};
  EXPECT_EQ(Order(file, s), (std::vector<long>{5}));
  s.contains = {"wind=a=b"};  // '=' inside a name
  EXPECT_EQ(Order(file, s), (std::vector<long>{4}));
  s.contains = {"wind=a"};
  EXPECT_TRUE(Order(file, s).empty());
}

TEST(ShowFormats, JsonAndCsvEscaping) {
  EXPECT_EQ(show::JsonString("a\"b\\c\n\t\x01\x7f"), "\"a\\\"b\\\\c\\n\\t\\u0001\\u007f\"");
  EXPECT_EQ(show::JsonString("caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80"), "\"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\"");
  // Bytes that are no UTF-8 (Latin-1, a cut sequence, an overlong form, a
  // surrogate) become escaped Latin-1 characters.
  EXPECT_EQ(show::JsonString("caf\xe9"), "\"caf\\u00e9\"");
  EXPECT_EQ(show::JsonString("\xe2\x82"), "\"\\u00e2\\u0082\"");
  EXPECT_EQ(show::JsonString("\xc0\xaf"), "\"\\u00c0\\u00af\"");
  EXPECT_EQ(show::JsonString("\xed\xa0\x80"), "\"\\u00ed\\u00a0\\u0080\"");
  EXPECT_EQ(show::JsonString("</script>&"), "\"</script>&\"");
  EXPECT_EQ(show::JsonString("</script><!--&\xe2\x80\xa8", true), "\"\\u003c/script\\u003e\\u003c!--\\u0026\\u2028\"");
  EXPECT_EQ(show::CsvQuoted("a \"b\", c"), "\"a \"\"b\"\", c\"");
}

TEST(ShowHtml, HostileNamesNeverLeaveTheDataBlock) {
  const show::RuleFile file = Parse(RuleText({
      RuleLine(1, 4, 0, 2, 4, 1.5, 3.2, {"</script><script>alert(1)</script>", "<!--", "x", "</SCRIPT >"}),
  }));
  show::RuleFile named = file;
  named.path = "<b>&.csv";
  show::Naming naming;
  const std::vector<const show::Rule*> rules = {&named.rules[0]};
  const std::string data = show::ReportData(named, rules, naming);
  EXPECT_EQ(data.find('<'), std::string::npos) << data;
  EXPECT_NE(data.find("\\u003c/script\\u003e\\u003cscript\\u003ealert(1)"), std::string::npos);
  const std::string page = show::HtmlReport(named, rules, naming);
  size_t ends = 0;
  for (size_t at = 0; (at = page.find("</script", at)) != std::string::npos; ++at) ++ends;
  EXPECT_EQ(ends, 2u);  // the data block's and the program's own
  EXPECT_NE(page.find("<title>Rules of &lt;b&gt;&amp;.csv</title>"), std::string::npos);
  EXPECT_EQ(page.find("http"), page.find("http://www.w3.org/2000/svg"));  // nothing fetched
}

TEST(ShowOutput, ReplacesOnlyAWholeFile) {
  TempDir dir;
  std::string reason;
  WriteFile(dir / "r.html", "old");
  {
    PendingFile pending;
    ASSERT_TRUE(pending.Write(dir / "r.html", "new", reason)) << reason;
    EXPECT_EQ(ReadFile(dir / "r.html"), "old");
  }  // never committed: the temporary file goes, the old file stays
  EXPECT_EQ(ReadFile(dir / "r.html"), "old");
  ASSERT_TRUE(WriteFileReplacing(dir / "r.html", "new", reason)) << reason;
  EXPECT_EQ(ReadFile(dir / "r.html"), "new");
  EXPECT_FALSE(WriteFileReplacing(dir / "no/r.html", "x", reason));
  EXPECT_EQ(reason, "No such file or directory");
  EXPECT_FALSE(WriteFileReplacing(dir.path(), "x", reason));
  EXPECT_EQ(reason, "Is a directory");
  EXPECT_EQ(testing_support::RunProgram("sh", "ls -a | grep -c tmp-", dir.path()).output, "0\n");
}

// The program on the miner's rules of the trip set: each format compared
// with the expected text, the errors and the command line.
TEST(ShowProgram, FormatsFiltersAndErrors) { testing_support::RunArea("show"); }

}  // namespace
