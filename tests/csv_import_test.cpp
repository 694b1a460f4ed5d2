// Importing a table: libcsv's records and their line numbers, the spelling
// of hostile names, the round trip through the project's own names and data
// readers, and the errors (whole runs are in fixtures/import).
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "miner_fixture.h"
#include "tabular/csv_import.h"

namespace {

using namespace tabular;
using Strings = std::vector<std::string>;

std::vector<CsvRecord> Parse(const std::string& text, char delimiter, bool* closed = nullptr,
                             long* openLine = nullptr) {
  std::vector<CsvRecord> records;
  long line = 0;
  const bool ok = ParseCsv(text, delimiter, 0, &records, &line);
  if (closed) *closed = ok;
  if (openLine) *openLine = line;
  return records;
}

TEST(CsvRecords, QuotingLineBreaksAndTheLineEachRecordStartsOn) {
  const std::string text =
      "a,b,c\r\n"
      "\n"
      "  plain  ,\"New York, NY\",\"say \"\"hi\"\"\"\n"
      "x,\"two\nlines\",\n"
      "last,,\"\"";  // no line end at the end of the file
  const std::vector<CsvRecord> records = Parse(text, ',');
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[0].Fields, (Strings{"a", "b", "c"}));
  EXPECT_EQ(records[1].Fields, (Strings{"plain", "New York, NY", "say \"hi\""}));
  EXPECT_EQ(records[2].Fields, (Strings{"x", "two\nlines", ""}));
  EXPECT_EQ(records[3].Fields, (Strings{"last", "", ""}));
  EXPECT_EQ(records[0].Line, 1);
  EXPECT_EQ(records[1].Line, 3);  // the empty line 2 is skipped
  EXPECT_EQ(records[2].Line, 4);
  EXPECT_EQ(records[3].Line, 6);  // after the record spanning lines 4 and 5

  bool closed = true;
  long openLine = 0;
  Parse("a,b\n1,2\n3,\"open\n\nto the end\n", ',', &closed, &openLine);
  EXPECT_FALSE(closed);
  EXPECT_EQ(openLine, 3);

  // With a tab delimiter, tabs separate fields and are not blanks to drop.
  EXPECT_EQ(Parse("a\t\tc\n", '\t').front().Fields, (Strings{"a", "", "c"}));
}

TEST(Spelling, UnknownsNumbersAndKeywords) {
  for (const char* unknown : {"", "  ", "NA", "?", " ? ", "\tNA\n"}) EXPECT_TRUE(IsUnknownField(unknown)) << unknown;
  for (const char* known : {"na", "??", "N A", "0", "-"}) EXPECT_FALSE(IsUnknownField(known)) << known;
  float x = 0;
  EXPECT_TRUE(ParseNumber(" -1.5e2 ", &x));
  EXPECT_EQ(x, -150.0f);
  for (const char* text : {"1,5", "12abc", "inf", "nan", "1e40", "", "."}) EXPECT_FALSE(ParseNumber(text, &x)) << text;
  EXPECT_TRUE(IsKeywordValue("ignore"));
  EXPECT_TRUE(IsKeywordValue("discrete 5"));
  EXPECT_FALSE(IsKeywordValue("Ignore"));
}

TEST(Spelling, LookAlikesBlanksAndCollisions) {
  EXPECT_EQ(SpellName("plain name"), "plain name");
  EXPECT_EQ(SpellName("1.5"), "1.5");
  EXPECT_EQ(SpellName("St. Louis"), "St\u2024 Louis");
  EXPECT_EQ(SpellName("Inc."), "Inc\u2024");
  EXPECT_EQ(SpellName("New York, NY"), "New York\u201A NY");
  EXPECT_EQ(SpellName("a:b|c\\d"), "a\u2236b\u00A6c\u29F5d");
  EXPECT_EQ(SpellName("\"quoted\""), "\u201Dquoted\u201D");
  EXPECT_EQ(SpellName("  two\n lines\t "), "two lines");
  EXPECT_EQ(SpellName(std::string("nul\0byte", 8)), "nul\uFFFDbyte");

  // Names that need no respelling keep their text, whatever their order;
  // the others take the next free suffix.
  EXPECT_EQ(AssignSpellings({"a b", "a  b", "a\tb", "a b~2"}), (Strings{"a b", "a b~3", "a b~4", "a b~2"}));
  EXPECT_EQ(AssignSpellings({"x,y", "x\u201Ay"}), (Strings{"x\u201Ay~2", "x\u201Ay"}));
  EXPECT_EQ(AssignSpellings({"Class", "Class~2", "other"}, {"Class"}), (Strings{"Class~3", "Class~2", "other"}));
}

std::string Quote(const std::string& field) {
  std::string out = "\"";
  for (char c : field) out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

std::string Table(const std::vector<Strings>& rows, char delimiter = ',') {
  std::string text;
  for (const Strings& row : rows) {
    for (size_t c = 0; c < row.size(); ++c) text += (c ? std::string(1, delimiter) : "") + Quote(row[c]);
    text += "\n";
  }
  return text;
}

ImportResult Import(const std::string& text, const ImportOptions& options = {}) {
  ImportResult result;
  std::string error;
  EXPECT_TRUE(ImportTable(text, options, &result, &error)) << error;
  return result;
}

std::string ImportError(const std::string& text, const ImportOptions& options = {}) {
  ImportResult result;
  std::string error;
  EXPECT_FALSE(ImportTable(text, options, &result, &error));
  return error;
}

using RoundTripTest = testing_support::MinerTest;

// Hostile values and column names, written as names and data files and read
// back by the miner's own readers: every distinct value is one item of its
// own, every field the item intended, the unknowns item 0.
TEST_F(RoundTripTest, HostileValuesComeBackAsTheIntendedItems) {
  const Strings hostile = {
      "ignore",  "St. Louis", "New York, NY", "a:b",       "x|y",         "|comment", "back\\slash", "trail\\",
      "Inc.",    "dots...",   "a. .",         "  lead  ",  "lead",        "two  blanks", "two blanks", "tab\there",
      "say \"q\"", "Z\xC3\xBCrich", "line\nbreak", "cr\r\nlf", ".,",       "\\,",       "%s%n",       "1.5",
      "continuous", "?",      "NA",           "",          std::string("nul\0x", 5), "discrete 3", "a\u2024"};
  std::vector<Strings> rows = {{"odd: name.", "Class", "odd: name.", "the\nclass"}};
  for (size_t i = 0; i < hostile.size(); ++i) {
    rows.push_back({hostile[i], hostile[(i * 7) % hostile.size()], "k" + std::to_string(i % 3),
                    i % 4 == 0 ? "c, 1" : (i % 4 == 1 ? "c. 2" : "c|3")});
  }
  const ImportResult result = Import(Table(rows));
  ASSERT_EQ(result.Columns.size(), 4u);
  EXPECT_EQ(result.Columns[0].Kind, ColumnKind::kCategorical);
  ASSERT_EQ(result.ClassColumn, 3);

  const std::string names = NamesFileText(result);
  EXPECT_EQ(names.rfind("| class attribute: the class\n", 0), 0u) << names;
  WriteNames(names);
  WriteData(DataFileText(result));
  Status status = GetNames(data, Stem(), errors);
  if (status.ok()) status = GetData(data, ".data", errors);
  const testing_support::Outcome read = Settle(status);
  ASSERT_EQ(read.status, -1) << read.output;
  ASSERT_EQ(read.output, "");
  ASSERT_EQ(data.MaxData, static_cast<int>(hostile.size()));
  ASSERT_EQ(data.MaxAtt, 4);
  // Distinct column names, none "Class", none with a comma or colon.
  std::set<std::string> attributeNames(data.AttName.begin(), data.AttName.end() - 1);
  EXPECT_EQ(attributeNames.size(), 3u);
  EXPECT_FALSE(attributeNames.count("Class"));
  EXPECT_EQ(data.ClassName.size(), 3u);

  for (int a = 0; a < 4; ++a) {
    const ImportedColumn& column = result.Columns[a];
    std::map<std::string, int> codeOfRaw;
    std::set<int> codes;
    for (int r = 0; r < data.MaxData; ++r) {
      const std::string& raw = rows[r + 1][a];
      const int code = data.DataSpace[r][a];
      if (IsUnknownField(raw)) {
        EXPECT_EQ(code, 0) << "row " << r << " column " << a;
        continue;
      }
      ASSERT_NE(code, 0) << "row " << r << " column " << a << ": " << raw;
      EXPECT_EQ(data.ItemRecord[code]->ValueName, column.Values[column.Codes[r]]);
      EXPECT_EQ(data.ItemRecord[code]->ValueName.find(','), std::string::npos);
      auto known = codeOfRaw.emplace(raw, code);
      EXPECT_EQ(known.first->second, code) << raw;  // one raw value, one item
      codes.insert(code);
    }
    EXPECT_EQ(codes.size(), codeOfRaw.size()) << "column " << a;  // distinct values stay distinct
    EXPECT_EQ(data.MaxAttVal[a], static_cast<int>(codeOfRaw.size())) << "column " << a;
  }
}

TEST(ImportErrors, OneLineNamingWhatIsWrong) {
  EXPECT_EQ(ImportError("a,b,c\n1,\"x\ny\",2\n3,4\n5,6,7\n"), "line 4: 2 fields, but the header has 3");
  EXPECT_EQ(ImportError("a,b\n1,\"open\n"), "line 2: a quoted field is still open at the end of the file");
  EXPECT_EQ(ImportError("just one\nvalue\n"),
            "no delimiter (comma, semicolon, tab or bar) gives more than one column");
  ImportOptions semicolon;
  semicolon.Delimiter = ';';
  EXPECT_EQ(ImportError("a,b\n1,2\n", semicolon), "the delimiter ';' gives only one column");
  EXPECT_EQ(ImportError(""), "no delimiter (comma, semicolon, tab or bar) gives more than one column");
  EXPECT_EQ(ImportError("a,b\n1,?\n2,NA\n"), "the class column \"b\" holds no known value");
  ImportOptions options;
  options.ClassColumn = "nope";
  EXPECT_EQ(ImportError("a,b\n1,2\n", options), "no column \"nope\" for the class");
  options.ClassColumn = "3";
  EXPECT_EQ(ImportError("a,b\n1,2\n", options), "no column \"3\" for the class");
  options.ClassColumn = "a";
  options.Ignore = {"b,1"};
  EXPECT_EQ(ImportError("a,b\n1,2\n", options), "the class column \"1\" cannot be ignored");
}

TEST(ImportColumns, RepeatedHeadersKeywordsAndEmptyColumns) {
  const ImportResult result = Import(
      "\xEF\xBB\xBFv,empty,,cls\n"
      "ignore,,x,yes\n"
      "v,empty,,cls\n"
      "continuous,NA,y,yes\n"
      "v,empty,,cls\n"
      "red,,x,yes\n");
  EXPECT_EQ(result.Rows, 3);
  EXPECT_EQ(result.RepeatedHeaders, 2);
  EXPECT_EQ(result.FirstRepeatedLine, 3);
  EXPECT_EQ(result.Columns[0].Header, "v");  // the byte order mark is dropped
  // A keyword never comes first in a value list.
  EXPECT_EQ(result.Columns[0].Values, (Strings{"red", "ignore", "continuous"}));
  EXPECT_EQ(result.Columns[0].Codes, (std::vector<int>{1, 2, 0}));
  EXPECT_EQ(result.Columns[1].Kind, ColumnKind::kNoKnownValue);
  EXPECT_EQ(result.Columns[2].Name, "column 3");

  // Every value a keyword: the first is respelled. Classes are no keywords.
  const ImportResult keywords = Import("v,c\nignore,ignore\ndiscrete,b\n");
  EXPECT_EQ(keywords.Columns[0].Values, (Strings{"Ignore", "discrete"}));
  EXPECT_EQ(keywords.Columns[1].Values, (Strings{"ignore", "b"}));
  ASSERT_EQ(keywords.Columns[0].Respelled.size(), 1u);
  EXPECT_EQ(keywords.Columns[0].Respelled[0].From, "ignore");

  testing_support::TempDir dir;
  std::string error;
  EXPECT_FALSE(WriteFilePair(dir / "no/x.names", "n", dir / "no/x.data", "d", &error));
  EXPECT_EQ(error, "cannot write " + (dir / "no/x.names") + ": No such file or directory");
}

// A shared data set with continuous attributes, as a table: its numeric
// columns get the intervals rule-discretise gives the same values.
TEST(ImportShared, NumericColumnsAreCutAsTheDiscretiserCutsThem) {
  const std::string shared = testing_support::SharedDir() + "/data/";
  if (!testing_support::FileExists(shared + "iris.data")) GTEST_SKIP() << "no shared data";
  testing_support::TempDir dir;
  const std::string data = testing_support::ReadFile(shared + "iris.data");
  testing_support::WriteFile(dir / "iris.data", data);
  testing_support::WriteFile(dir / "iris.names", testing_support::ReadFile(shared + "iris.names"));
  testing_support::WriteFile(dir / "iris.csv", "sepal-length,sepal-width,petal-length,petal-width,class\n" + data);
  ASSERT_EQ(testing_support::RunProgram("rule-discretise", "-f iris -s 0.05 -o cut", dir.path()).status, 0);
  const testing_support::ProgramRun run =
      testing_support::RunProgram("rule-import", "-s 0.05 iris.csv imported", dir.path());
  ASSERT_EQ(run.status, 0) << run.output << run.errors;
  auto attributeLines = [](const std::string& text) {
    Strings lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
      if (line.rfind("sepal", 0) == 0 || line.rfind("petal", 0) == 0) lines.push_back(line);
    return lines;
  };
  const Strings cut = attributeLines(testing_support::ReadFile(dir / "cut.names"));
  EXPECT_EQ(cut.size(), 4u);
  EXPECT_EQ(attributeLines(testing_support::ReadFile(dir / "imported.names")), cut);
}

}  // namespace
