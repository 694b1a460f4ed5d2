// Importing a table: reading the CSV text with libcsv, spelling every name
// so that it survives the names tokenizer and the rule file, deciding the
// kind of every column, and writing the names/data pair.
#include "tabular/csv_import.h"

#include <csv.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "discretiser/discretise.h"
#include "base/files.h"
#include "base/memory.h"
#include "base/numbers.h"
#include "base/spelling.h"
#include "base/staged_file.h"

namespace tabular {

namespace {

// ---- libcsv callbacks ----

// What the callbacks build while libcsv walks the text. The callbacks are
// called from C code, so nothing may be thrown through them: a failed
// allocation is noted and rethrown once libcsv has returned.
struct ParseState {
  std::vector<CsvRecord>* Records = nullptr;
  std::vector<std::string> Fields;
  long Line = 0;   // the line being fed
  long Start = 0;  // the line the open record starts on; 0 between records
  size_t Max = 0;
  bool Full = false;
  bool Failed = false;
};

void OnField(void* data, size_t size, void* state) {
  ParseState& s = *static_cast<ParseState*>(state);
  if (s.Failed || s.Full) return;
  try {
    if (size == 0) {
      s.Fields.emplace_back();
    } else {
      s.Fields.emplace_back(static_cast<const char*>(data), size);
    }
  } catch (const std::bad_alloc&) {
    s.Failed = true;
  }
}

void OnRecordEnd(int, void* state) {
  ParseState& s = *static_cast<ParseState*>(state);
  if (s.Failed || s.Full) return;
  try {
    CsvRecord record;
    record.Fields.swap(s.Fields);
    record.Line = s.Start;
    s.Records->push_back(std::move(record));
  } catch (const std::bad_alloc&) {
    s.Failed = true;
  }
  s.Fields.clear();
  s.Start = 0;
  if (s.Max && s.Records->size() >= s.Max) s.Full = true;
}

struct ParserFree {
  csv_parser* p;
  ~ParserFree() { csv_free(p); }
};

// True when a line holds something other than blanks and line ends, so that
// a record starts on it.
bool HoldsText(const char* begin, const char* end, char delimiter) {
  for (const char* c = begin; c < end; ++c) {
    if (*c == ' ' || *c == '\r' || *c == '\n') continue;
    if (*c == '\t' && delimiter != '\t') continue;
    return true;
  }
  return false;
}

constexpr char kCandidates[] = {',', ';', '\t', '|'};
constexpr size_t kDetectionRecords = 20;

// Text for a report line: in double quotes, line breaks, tabs and other
// control characters shown as escapes.
std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20 || c == 0x7F) {
      out += FormatText("\\x%02X", c);
    } else {
      out += static_cast<char>(c);
    }
  }
  return out + "\"";
}

// The class column's name on the comment line: line breaks as blanks.
std::string CommentName(const std::string& header) {
  std::string name = header;
  for (char& c : name)
    if (c == '\n' || c == '\r') c = ' ';
  return name;
}

std::vector<std::string> SplitList(const std::vector<std::string>& lists) {
  std::vector<std::string> items;
  for (const std::string& list : lists) {
    size_t from = 0;
    for (;;) {
      const size_t comma = list.find(',', from);
      const std::string item = list.substr(from, comma == std::string::npos ? std::string::npos : comma - from);
      if (!item.empty()) items.push_back(item);
      if (comma == std::string::npos) break;
      from = comma + 1;
    }
  }
  return items;
}

// The column a name or 1-based index on the command line means: a header
// equal to it first, then a number; -1 when none.
int FindColumn(const std::vector<std::string>& header, const std::string& accepted) {
  for (size_t c = 0; c < header.size(); ++c)
    if (header[c] == accepted || NormaliseBlanks(header[c]) == accepted) return static_cast<int>(c);
  if (accepted.empty() || accepted.find_first_not_of("0123456789") != std::string::npos || accepted.size() > 9) return -1;
  const long index = std::strtol(accepted.c_str(), nullptr, 10);
  if (index < 1 || index > static_cast<long>(header.size())) return -1;
  return static_cast<int>(index - 1);
}

// Declared values in order of first appearance, with a keyword moved from
// the front (or, when every value is one, the first respelled), so that the
// names reader takes the list as values.
void KeepKeywordFromFront(ImportedColumn& column, std::vector<std::string>& raws) {
  if (column.Values.empty() || !IsKeywordValue(column.Values[0])) return;
  std::vector<int> order(column.Values.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  size_t k = 1;
  while (k < column.Values.size() && IsKeywordValue(column.Values[k])) ++k;
  if (k < column.Values.size()) {
    std::rotate(order.begin(), order.begin() + static_cast<long>(k), order.begin() + static_cast<long>(k) + 1);
  } else {
    // The first value takes a capital, which no keyword has ("discrete1"
    // becomes "Discrete1"), and a number after it when that is taken.
    const std::unordered_set<std::string> taken(column.Values.begin(), column.Values.end());
    std::string base = column.Values[0];
    base[0] = static_cast<char>(base[0] - 'a' + 'A');
    std::string spelling = base;
    for (int n = 2; taken.count(spelling); ++n) spelling = base + "~" + std::to_string(n);
    column.Values[0] = spelling;
  }
  std::vector<int> newIndex(order.size());
  std::vector<std::string> values, rawsInOrder;
  std::vector<long> counts;
  for (size_t i = 0; i < order.size(); ++i) {
    newIndex[order[i]] = static_cast<int>(i);
    values.push_back(column.Values[order[i]]);
    counts.push_back(column.Counts[order[i]]);
    rawsInOrder.push_back(raws[order[i]]);
  }
  for (int& code : column.Codes)
    if (code >= 0) code = newIndex[code];
  column.Values.swap(values);
  column.Counts.swap(counts);
  raws.swap(rawsInOrder);
}

void CategoricalValues(const std::vector<std::vector<std::string>>& rows, int c, ImportedColumn& column) {
  std::unordered_map<std::string, int> index;
  std::vector<std::string> raws;
  column.Codes.assign(rows.size(), -1);
  for (size_t r = 0; r < rows.size(); ++r) {
    const std::string& field = rows[r][c];
    if (IsUnknownField(field)) continue;
    auto found = index.emplace(field, static_cast<int>(raws.size()));
    if (found.second) {
      raws.push_back(field);
      column.Counts.push_back(0);
    }
    column.Codes[r] = found.first->second;
    ++column.Counts[found.first->second];
  }
  column.Values = AssignSpellings(raws);
  // The class list takes no keywords; an attribute's first value does.
  if (column.Kind != ColumnKind::kClass) KeepKeywordFromFront(column, raws);
  for (size_t v = 0; v < raws.size(); ++v)
    if (column.Values[v] != raws[v]) column.Respelled.push_back({raws[v], column.Values[v], column.Counts[v]});
}

// Cuts a numeric column into intervals as rule-discretise does; every value
// takes the interval whose bounds hold LOW <= x < HIGH, the last one also
// what lies at or above its upper bound.
void NumericValues(const std::vector<std::vector<std::string>>& rows, int c, int minSup, ImportedColumn& column) {
  std::vector<float> numbers(rows.size(), 0.0f);
  std::vector<char> known(rows.size(), 0);
  std::vector<float> sorted;
  for (size_t r = 0; r < rows.size(); ++r) {
    float x;
    if (IsUnknownField(rows[r][c]) || !ParseNumber(rows[r][c], &x)) continue;
    if (x == 0.0f) x = 0.0f;  // -0 counts as 0
    numbers[r] = x;
    known[r] = 1;
    sorted.push_back(x);
  }
  std::sort(sorted.begin(), sorted.end());
  const std::vector<ContValue> intervals = CutIntervals(sorted, minSup);
  column.Values = IntervalSpellings(intervals);
  column.Counts.assign(intervals.size(), 0);
  std::vector<float> bounds;
  if (!intervals.empty()) bounds.push_back(intervals.front().Low);
  for (const ContValue& v : intervals) bounds.push_back(v.High);
  const int n = static_cast<int>(intervals.size());
  column.Codes.assign(rows.size(), -1);
  for (size_t r = 0; r < rows.size(); ++r) {
    if (!known[r] || n == 0) continue;
    int j = static_cast<int>(std::upper_bound(bounds.begin(), bounds.end(), numbers[r]) - bounds.begin()) - 1;
    j = std::clamp(j, 0, n - 1);
    column.Codes[r] = j;
    ++column.Counts[j];
  }
}

bool IsNumericColumn(const std::vector<std::vector<std::string>>& rows, int c) {
  for (const std::vector<std::string>& row : rows) {
    float x;
    if (!IsUnknownField(row[c]) && !ParseNumber(row[c], &x)) return false;
  }
  return true;
}

std::string Plural(long n, const char* word) {
  const std::string singular = word;
  if (n == 1) return "1 " + singular;
  return std::to_string(n) + " " + singular + (singular.back() == 's' ? "es" : "s");
}

// The name of a column for the report: as written, the class by its header.
std::string ShownName(const ImportedColumn& column) {
  return column.Kind == ColumnKind::kClass ? CommentName(column.Header) : column.Name;
}

long UnknownCount(const ImportedColumn& column) {
  return static_cast<long>(std::count(column.Codes.begin(), column.Codes.end(), -1));
}

}  // namespace

// ---- Reading ----

bool ParseCsv(const std::string& text, char delimiter, size_t maxRecords, std::vector<CsvRecord>* records,
              long* openLine) {
  csv_parser parser;
  if (csv_init(&parser, 0) != 0) throw std::bad_alloc();
  ParserFree release{&parser};
  csv_set_delim(&parser, static_cast<unsigned char>(delimiter));

  ParseState state;
  state.Records = records;
  state.Max = maxRecords;
  // One line at a time, so that every record knows the line it starts on.
  size_t from = 0;
  while (from < text.size() && !state.Full) {
    const size_t newline = text.find('\n', from);
    const size_t end = newline == std::string::npos ? text.size() : newline + 1;
    ++state.Line;
    if (state.Start == 0 && HoldsText(text.data() + from, text.data() + end, delimiter)) state.Start = state.Line;
    const size_t used = csv_parse(&parser, text.data() + from, end - from, OnField, OnRecordEnd, &state);
    if (state.Failed || used != end - from) throw std::bad_alloc();
    from = end;
  }
  if (state.Full) return true;
  // libcsv reports an unclosed quote at the end only in its strict mode,
  // which would also refuse the stray quotes of fields like 5'11"; its
  // parser state tells it apart: inside a field begun with a quote.
  constexpr int kInsideField = 2;
  const bool open = parser.pstate == kInsideField && parser.quoted;
  const long start = state.Start;
  csv_fini(&parser, OnField, OnRecordEnd, &state);
  if (state.Failed || csv_error(&parser) == CSV_ENOMEM) throw std::bad_alloc();
  if (open) {
    *openLine = start;
    return false;
  }
  return true;
}

char DetectDelimiter(const std::string& text) {
  char best = 0, widest = 0;
  size_t bestColumns = 1, widestColumns = 1;
  for (char candidate : kCandidates) {
    std::vector<CsvRecord> records;
    long openLine = 0;
    ParseCsv(text, candidate, kDetectionRecords, &records, &openLine);
    if (records.empty()) continue;
    const size_t columns = records.front().Fields.size();
    const bool consistent = std::all_of(records.begin(), records.end(),
                                        [columns](const CsvRecord& r) { return r.Fields.size() == columns; });
    if (consistent && columns > bestColumns) {
      best = candidate;
      bestColumns = columns;
    }
    if (columns > widestColumns) {
      widest = candidate;
      widestColumns = columns;
    }
  }
  return best ? best : widest;
}

std::string DelimiterName(char delimiter) {
  if (delimiter == '\t') return "tab";
  return std::string("'") + delimiter + "'";
}

// ---- Spelling ----

bool IsUnknownField(const std::string& field) {
  const std::string text = NormaliseBlanks(field);
  return text.empty() || text == "NA" || text == "?";
}

bool ParseNumber(const std::string& field, float* value) {
  double number = 0;
  if (!::ParseNumber(NormaliseBlanks(field), number)) return false;
  const float single = static_cast<float>(number);
  if (!std::isfinite(single)) return false;
  *value = single;
  return true;
}

std::vector<std::string> AssignSpellings(const std::vector<std::string>& raws,
                                         const std::vector<std::string>& reserved) {
  std::unordered_set<std::string> taken(reserved.begin(), reserved.end());
  std::vector<std::string> spellings(raws.size());
  std::vector<char> done(raws.size(), 0);
  // Names that need no respelling keep their text.
  for (size_t i = 0; i < raws.size(); ++i) {
    if (!raws[i].empty() && SpellName(raws[i]) == raws[i] && taken.insert(raws[i]).second) {
      spellings[i] = raws[i];
      done[i] = 1;
    }
  }
  for (size_t i = 0; i < raws.size(); ++i) {
    if (done[i]) continue;
    const std::string base = SpellName(raws[i]);
    std::string spelling = base;
    for (int n = 2; spelling.empty() || taken.count(spelling); ++n) spelling = base + "~" + std::to_string(n);
    taken.insert(spelling);
    spellings[i] = spelling;
  }
  return spellings;
}

bool IsKeywordValue(const std::string& value) {
  return value == "continuous" || value == "ignore" || value.compare(0, 8, "discrete") == 0;
}

// ---- The import ----

bool ImportTable(const std::string& input, const ImportOptions& options, ImportResult* result, std::string* error) {
  const std::string kByteOrderMark = "\xEF\xBB\xBF";
  const std::string text =
      input.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0 ? input.substr(kByteOrderMark.size()) : input;

  result->Detected = options.Delimiter == 0;
  result->Delimiter = options.Delimiter ? options.Delimiter : DetectDelimiter(text);
  if (result->Delimiter == 0) {
    *error = "no delimiter (comma, semicolon, tab or bar) gives more than one column";
    return false;
  }

  std::vector<CsvRecord> records;
  long openLine = 0;
  if (!ParseCsv(text, result->Delimiter, 0, &records, &openLine)) {
    *error = "line " + std::to_string(openLine) + ": a quoted field is still open at the end of the file";
    return false;
  }
  if (records.empty()) {
    *error = "no header row: the file is empty";
    return false;
  }
  const std::vector<std::string> header = records.front().Fields;
  const size_t width = header.size();
  if (width < 2) {
    *error = "the delimiter " + DelimiterName(result->Delimiter) + " gives only one column";
    return false;
  }

  std::vector<std::vector<std::string>> rows;
  for (size_t r = 1; r < records.size(); ++r) {
    CsvRecord& record = records[r];
    if (record.Fields.size() != width) {
      *error = "line " + std::to_string(record.Line) + ": " + Plural(static_cast<long>(record.Fields.size()), "field") +
               ", but the header has " + std::to_string(width);
      return false;
    }
    if (record.Fields == header) {
      if (result->RepeatedHeaders++ == 0) result->FirstRepeatedLine = record.Line;
      continue;
    }
    rows.push_back(std::move(record.Fields));
  }
  records.clear();
  result->Rows = static_cast<long>(rows.size());
  // Case numbers and codes are 32-bit in the miner.
  if (rows.size() > static_cast<size_t>(INT_MAX) || width > static_cast<size_t>(INT_MAX)) {
    *error = "the table has more than 2147483647 rows or columns, the most the miner can count";
    return false;
  }

  // The columns the options name.
  int classColumn = static_cast<int>(width) - 1;
  if (!options.ClassColumn.empty()) {
    classColumn = FindColumn(header, options.ClassColumn);
    if (classColumn < 0) {
      *error = "no column " + Quoted(options.ClassColumn) + " for the class";
      return false;
    }
  }
  std::vector<char> ignored(width, 0), categorical(width, 0);
  for (const std::string& accepted : SplitList(options.Ignore)) {
    const int c = FindColumn(header, accepted);
    if (c < 0) {
      *error = "no column " + Quoted(accepted) + " to ignore";
      return false;
    }
    if (c == classColumn) {
      *error = "the class column " + Quoted(accepted) + " cannot be ignored";
      return false;
    }
    ignored[c] = 1;
  }
  for (const std::string& accepted : SplitList(options.Categorical)) {
    const int c = FindColumn(header, accepted);
    if (c < 0) {
      *error = "no column " + Quoted(accepted) + " to keep categorical";
      return false;
    }
    categorical[c] = 1;
  }
  result->ClassColumn = classColumn;
  result->MinSup = ComputeMinSup(static_cast<int>(result->Rows), options.Support);

  // Attribute names: distinct, and none "Class", which names the class
  // items in the rule file.
  std::vector<std::string> attributeRaws;
  for (size_t c = 0; c < width; ++c) {
    if (static_cast<int>(c) == classColumn) continue;
    attributeRaws.push_back(NormaliseBlanks(header[c]).empty() ? "column " + std::to_string(c + 1) : header[c]);
  }
  const std::vector<std::string> attributeNames = AssignSpellings(attributeRaws, {"Class"});

  result->Columns.assign(width, ImportedColumn());
  size_t attribute = 0;
  for (size_t c = 0; c < width; ++c) {
    ImportedColumn& column = result->Columns[c];
    column.Header = header[c];
    const int col = static_cast<int>(c);
    if (col == classColumn) {
      column.Kind = ColumnKind::kClass;
      column.Name = "Class";
      if (NormaliseBlanks(column.Header).empty()) column.Header = "column " + std::to_string(c + 1);
      CategoricalValues(rows, col, column);
      if (column.Values.empty()) {
        *error = "the class column " + Quoted(column.Header) + " holds no known value";
        return false;
      }
      continue;
    }
    column.Name = attributeNames[attribute++];
    if (column.Name != column.Header) column.Respelled.push_back({column.Header, column.Name, 0});
    if (ignored[c]) {
      column.Kind = ColumnKind::kIgnored;
      column.Codes.assign(rows.size(), -1);
      continue;
    }
    const bool anyKnown = std::any_of(rows.begin(), rows.end(),
                                      [col](const std::vector<std::string>& row) { return !IsUnknownField(row[col]); });
    if (!anyKnown) {
      column.Kind = ColumnKind::kNoKnownValue;
      column.Codes.assign(rows.size(), -1);
    } else if (!categorical[c] && IsNumericColumn(rows, col)) {
      column.Kind = ColumnKind::kNumeric;
      NumericValues(rows, col, result->MinSup, column);
    } else {
      column.Kind = ColumnKind::kCategorical;
      CategoricalValues(rows, col, column);
    }
  }
  return true;
}

std::string NamesFileText(const ImportResult& result) {
  const ImportedColumn& cls = result.Columns[result.ClassColumn];
  std::string text = "| class attribute: " + CommentName(cls.Header) + "\n";
  text += "| written by rule-import: one line per column of the table but the class\n\n";
  for (size_t v = 0; v < cls.Values.size(); ++v) text += (v ? ", " : "") + cls.Values[v];
  text += ".\n\n";
  for (const ImportedColumn& column : result.Columns) {
    if (column.Kind == ColumnKind::kClass) continue;
    text += column.Name + ": ";
    if (column.Values.empty()) {
      text += "ignore";
    } else {
      for (size_t v = 0; v < column.Values.size(); ++v) text += (v ? ", " : "") + column.Values[v];
    }
    text += ".\n";
  }
  return text;
}

std::string DataFileText(const ImportResult& result) {
  std::string text;
  const ImportedColumn& cls = result.Columns[result.ClassColumn];
  auto field = [&text](const ImportedColumn& column, long r) {
    const int code = column.Codes[r];
    text += code < 0 ? std::string("?") : column.Values[code];
  };
  for (long r = 0; r < result.Rows; ++r) {
    for (const ImportedColumn& column : result.Columns) {
      if (column.Kind == ColumnKind::kClass) continue;
      field(column, r);
      text += ',';
    }
    field(cls, r);
    text += '\n';
  }
  return text;
}

bool WriteFilePair(const std::string& namesPath, const std::string& namesText, const std::string& dataPath,
                   const std::string& dataText, std::string* error) {
  PendingFile names, data;
  std::string reason;
  auto failed = [error, &reason](const std::string& path) {
    *error = "cannot write " + path + ": " + reason;
    return false;
  };
  // Both files are written before either is put in place (a folder in the
  // way of either fails its Write), so a failed run replaces neither.
  if (!names.Write(namesPath, namesText, reason)) return failed(namesPath);
  if (!data.Write(dataPath, dataText, reason)) return failed(dataPath);
  if (!names.Commit(reason)) return failed(namesPath);
  if (!data.Commit(reason)) return failed(dataPath);
  return true;
}

void PrintImportReport(std::FILE* out, const std::string& input, const ImportResult& result) {
  std::fprintf(out, "Read %s: delimiter %s%s, %s, %s\n", input.c_str(), DelimiterName(result.Delimiter).c_str(),
               result.Detected ? " (detected)" : "", Plural(result.Rows, "row").c_str(),
               Plural(static_cast<long>(result.Columns.size()), "column").c_str());
  constexpr size_t kValuesListed = 10;
  long respelledValues = 0, respelledFields = 0, respelledNames = 0;
  for (size_t c = 0; c < result.Columns.size(); ++c) {
    const ImportedColumn& column = result.Columns[c];
    std::fprintf(out, "column %zu, %s: ", c + 1, ShownName(column).c_str());
    const long values = static_cast<long>(column.Values.size());
    switch (column.Kind) {
      case ColumnKind::kClass: std::fprintf(out, "class, %s", Plural(values, "class").c_str()); break;
      case ColumnKind::kCategorical: std::fprintf(out, "categorical, %s", Plural(values, "value").c_str()); break;
      case ColumnKind::kNumeric:
        std::fprintf(out, "numeric, cut into %s", Plural(values, "interval").c_str());
        break;
      case ColumnKind::kIgnored: std::fprintf(out, "ignored"); break;
      case ColumnKind::kNoKnownValue: std::fprintf(out, "ignored, no known value"); break;
    }
    const long unknown = UnknownCount(column);
    if (column.Kind != ColumnKind::kIgnored && column.Kind != ColumnKind::kNoKnownValue && unknown > 0)
      std::fprintf(out, ", %s", Plural(unknown, "unknown").c_str());
    std::fputc('\n', out);
    // Every interval and class; the first values of a categorical column.
    const size_t listed = column.Kind == ColumnKind::kCategorical ? std::min(column.Values.size(), kValuesListed)
                                                                   : column.Values.size();
    for (size_t v = 0; v < listed; ++v)
      std::fprintf(out, "\t%s\t%s\n", column.Values[v].c_str(), Plural(column.Counts[v], "row").c_str());
    if (listed < column.Values.size())
      std::fprintf(out, "\tand %s more\n", Plural(static_cast<long>(column.Values.size() - listed), "value").c_str());
    for (const Respelling& r : column.Respelled) {
      if (r.Fields == 0) {
        ++respelledNames;
      } else {
        ++respelledValues;
        respelledFields += r.Fields;
      }
    }
  }
  bool anyNumeric = false;
  for (const ImportedColumn& column : result.Columns) anyNumeric |= column.Kind == ColumnKind::kNumeric;
  if (anyNumeric)
    std::fprintf(out, "Numeric columns: an interval of at most %s is merged with a neighbour\n",
                 Plural(result.MinSup, "row").c_str());
  std::fprintf(out, "Respelled %s (%s) and %s\n", Plural(respelledValues, "value").c_str(),
               Plural(respelledFields, "field").c_str(), Plural(respelledNames, "column name").c_str());
  for (const ImportedColumn& column : result.Columns) {
    for (const Respelling& r : column.Respelled) {
      if (r.Fields == 0) {
        std::fprintf(out, "\tcolumn name %s -> %s\n", Quoted(r.From).c_str(), Quoted(r.To).c_str());
      } else {
        std::fprintf(out, "\t%s: %s -> %s, %s\n", ShownName(column).c_str(), Quoted(r.From).c_str(),
                     Quoted(r.To).c_str(), Plural(r.Fields, "field").c_str());
      }
    }
  }
}

void PrintImportWarnings(std::FILE* out, const ImportResult& result) {
  if (result.RepeatedHeaders > 0)
    std::fprintf(out,
                 "rule-import: warning: the header row appears again %s in the data (first on line %ld); skipped\n",
                 result.RepeatedHeaders == 1 ? "once" : (std::to_string(result.RepeatedHeaders) + " times").c_str(),
                 result.FirstRepeatedLine);
  const ImportedColumn& cls = result.Columns[result.ClassColumn];
  if (cls.Values.size() == 1)
    std::fprintf(out, "rule-import: warning: the class column %s has a single value, %s, in %s\n",
                 CommentName(cls.Header).c_str(), cls.Values[0].c_str(), Plural(cls.Counts[0], "row").c_str());
  std::string empty;
  long emptyColumns = 0;
  for (const ImportedColumn& column : result.Columns) {
    if (column.Kind != ColumnKind::kNoKnownValue) continue;
    empty += (emptyColumns++ ? ", " : "") + column.Name;
  }
  if (emptyColumns > 0)
    std::fprintf(out, "rule-import: warning: %s no known value and %s written as ignored: %s\n",
                 emptyColumns == 1 ? "1 column holds" : (std::to_string(emptyColumns) + " columns hold").c_str(),
                 emptyColumns == 1 ? "is" : "are", empty.c_str());
}

int ImportCsvFile(const ImportOptions& options, const std::string& input, const std::string& stem) {
  std::FILE* f = XFopen(input, "rb");
  if (!f) {
    std::fprintf(stderr, "rule-import: cannot open %s: %s\n", input.c_str(), std::strerror(errno));
    return 1;
  }
  std::string text;
  {
    FileCloser closer{f};
    char buffer[65536];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, got);
    if (std::ferror(f)) {
      std::fprintf(stderr, "rule-import: cannot read %s: %s\n", input.c_str(), std::strerror(errno));
      return 1;
    }
  }

  ImportResult result;
  std::string error;
  if (!ImportTable(text, options, &result, &error)) {
    std::fprintf(stderr, "rule-import: %s: %s\n", input.c_str(), error.c_str());
    return 1;
  }
  text.clear();
  text.shrink_to_fit();
  PrintImportWarnings(stderr, result);
  PrintImportReport(stdout, input, result);
  const std::string namesPath = stem + ".names";
  const std::string dataPath = stem + ".data";
  if (!WriteFilePair(namesPath, NamesFileText(result), dataPath, DataFileText(result), &error)) {
    std::fflush(stdout);
    std::fprintf(stderr, "rule-import: %s\n", error.c_str());
    return 1;
  }
  std::printf("Wrote %s and %s\n", namesPath.c_str(), dataPath.c_str());
  return 0;
}

}  // namespace tabular
