// From a table in a CSV or TSV file with a header row to a names/data pair
// that the miner reads: the records as read, the spelling of every name so
// that the names tokenizer reads it back as one item and the rule file keeps
// it in one field, the kind of every column, and the two files written.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "base/spelling.h"

namespace tabular {

// ---- Reading the table ----

// One record of the table and the line of the file it starts on.
struct CsvRecord {
  std::vector<std::string> Fields;
  long Line = 0;
};

// Splits text into records (RFC 4180 quoting: a quoted field may hold the
// delimiter, doubled quotes and line breaks; blanks around an unquoted field
// are dropped; empty lines are skipped). At most maxRecords records are read
// (0: all). Returns false when the text ends inside a quoted field; *openLine
// is then the line of the record holding it. A failed allocation throws
// std::bad_alloc.
bool ParseCsv(const std::string& text, char delimiter, size_t maxRecords, std::vector<CsvRecord>* records,
              long* openLine);

// The delimiter among comma, semicolon, tab and bar that gives the same
// number of fields, more than one, in each of the first lines (the largest
// such number wins, then the earlier candidate). When none is consistent,
// the one giving the header the most fields; 0 when every one gives one field.
char DetectDelimiter(const std::string& text);

// How a delimiter is shown in messages: ',' or "tab".
std::string DelimiterName(char delimiter);

// ---- Spelling names ----

// NormaliseBlanks and SpellName: base/spelling.h.
using ::NormaliseBlanks;
using ::SpellName;

// True for a field that stands for an unknown value: empty, "NA" or "?"
// (blanks around it aside).
bool IsUnknownField(const std::string& field);

// The number a field holds when all of it (blanks around it aside) is a
// finite decimal number in single precision.
bool ParseNumber(const std::string& field, float* value);


// Spellings for distinct raw names, in their order. A name that needs no
// respelling keeps its text; the others take their SpellName, and where that
// is taken already (by another name or by one of the reserved spellings), the
// first free one of SPELLING~2, SPELLING~3, ...
std::vector<std::string> AssignSpellings(const std::vector<std::string>& raws,
                                         const std::vector<std::string>& reserved = {});

// True for a value the names reader would take as a keyword when it comes
// first in an attribute's list: "continuous", "ignore" or "discrete...".
bool IsKeywordValue(const std::string& value);

// ---- The import ----

struct ImportOptions {
  char Delimiter = 0;                    // 0: detect
  std::string ClassColumn;               // name or 1-based index; empty: the last column
  std::vector<std::string> Ignore;       // columns left out
  std::vector<std::string> Categorical;  // numeric columns kept categorical
  float Support = 0.1f;                  // fraction of the rows an interval must exceed
};

enum class ColumnKind { kCategorical, kNumeric, kIgnored, kNoKnownValue, kClass };

// A name whose written spelling differs from the text read.
struct Respelling {
  std::string From;
  std::string To;
  long Fields = 0;  // fields holding it (0 for a column name)
};

struct ImportedColumn {
  std::string Header;  // the column's name as read
  std::string Name;    // as written in the names file
  ColumnKind Kind = ColumnKind::kCategorical;
  std::vector<std::string> Values;  // the spellings declared, in order
  std::vector<long> Counts;         // fields holding each declared value
  std::vector<int> Codes;           // per row: index into Values, -1 for unknown
  std::vector<Respelling> Respelled;
};

struct ImportResult {
  char Delimiter = ',';
  bool Detected = false;
  long Rows = 0;             // data rows kept
  long RepeatedHeaders = 0;  // rows equal to the header, skipped
  long FirstRepeatedLine = 0;
  int ClassColumn = 0;  // index into Columns
  int MinSup = 0;       // an interval of at most this many rows is merged
  std::vector<ImportedColumn> Columns;
};

// Reads the table in text and decides how every column is written. Returns
// false with a one-line message in *error for a table that cannot be
// imported (one column only, a row with a wrong number of fields, an
// unknown column in the options, a class without known values).
bool ImportTable(const std::string& text, const ImportOptions& options, ImportResult* result, std::string* error);

// The names file: the class attribute comment, the class list, then one
// line per column but the class, in the table's order.
std::string NamesFileText(const ImportResult& result);
// The data file: one line per row, the columns in the names file's order,
// the class last, "?" for an unknown value and for an ignored column.
std::string DataFileText(const ImportResult& result);

// Writes both files through temporary files in the target folder, renamed
// into place only when both are complete. Returns false with "cannot write
// FILE: REASON" in *error otherwise, leaving no file behind.
bool WriteFilePair(const std::string& namesPath, const std::string& namesText, const std::string& dataPath,
                   const std::string& dataText, std::string* error);

// The report of an import: the delimiter, the rows, every column with its
// kind and values, the classes and the respelled names.
void PrintImportReport(std::FILE* out, const std::string& input, const ImportResult& result);
// The warnings of an import, one line each: a repeated header, a class with
// one value, columns without a known value.
void PrintImportWarnings(std::FILE* out, const ImportResult& result);

// The whole import from INPUT to STEM.names and STEM.data: reads, reports,
// writes. Messages go to standard error. Returns the exit status (0 or 1).
int ImportCsvFile(const ImportOptions& options, const std::string& input, const std::string& stem);

}  // namespace tabular
