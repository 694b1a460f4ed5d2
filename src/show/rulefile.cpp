// The rule file is parsed by its fixed layout: eleven numbers, the target's
// attribute and value, then one attribute and value per antecedent item,
// every field followed by ", ". Names are written without quoting, so a
// field is everything up to the next ", "; a name that itself holds ", "
// cannot be told apart from two fields (an odd number of name fields
// is reported, an even one splits the name).
#include "show/rulefile.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "base/numbers.h"

namespace show {

namespace {

const char kColumnHeader[] =
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, leverage, "
    "target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, att6, value 6";

const char kSeparator[] = ", ";
const size_t kNumbers = 11;  // index, six counts, confidence, chi, lift, leverage

// Splits a line whose every field is followed by ", " into its fields.
// False when the line does not end with ", ".
bool SplitFields(const std::string& line, std::vector<std::string>& fields) {
  fields.clear();
  size_t start = 0;
  while (start < line.size()) {
    const size_t end = line.find(kSeparator, start);
    if (end == std::string::npos) return false;
    fields.push_back(line.substr(start, end - start));
    start = end + 2;
  }
  return true;
}

bool ParseLong(const std::string& text, long& value) {
  if (text.empty() || text.size() > 18) return false;
  size_t at = text[0] == '-' ? 1 : 0;
  if (at == text.size()) return false;
  for (size_t i = at; i < text.size(); ++i)
    if (text[i] < '0' || text[i] > '9') return false;
  value = std::strtol(text.c_str(), nullptr, 10);
  return true;
}

// The text of a field as it appears in a message: quoted, cut after 40
// characters.
std::string Shown(const std::string& field) {
  return "\"" + (field.size() > 40 ? field.substr(0, 40) + "..." : field) + "\"";
}

bool Fail(ReadError& error, long line, const std::string& what) {
  error.line = line;
  error.what = what;
  return false;
}

bool ParseFirstLine(const std::string& line, RuleFile& file, long& announced, ReadError& error) {
  std::vector<std::string> f;
  long count = 0;
  if (!SplitFields(line, f) || f.size() != 6 || f[0] != "confidence" || f[2] != "support" ||
      f[4] != "RuleNumber" || !ParseNumber(f[1], file.confidence) || !ParseNumber(f[3], file.support) ||
      !ParseLong(f[5], count) || count < 0)
    return Fail(error, 1, "\"confidence, C, support, S, RuleNumber, N, \" expected: this is no rule file of the miner");
  announced = count;
  return true;
}

bool ParseRule(const std::string& line, long lineNumber, long number, long& cases, Rule& rule,
               ReadError& error) {
  const std::string ofRule = " of rule " + std::to_string(number);
  std::vector<std::string> f;
  if (!SplitFields(line, f))
    return Fail(error, lineNumber, "every field of a rule is followed by \", \": the line is cut short");
  if (f.size() < kNumbers + 2)
    return Fail(error, lineNumber, "rule " + std::to_string(number) + " has " + std::to_string(f.size()) +
                                       " fields; eleven numbers, a target attribute and value expected");
  if ((f.size() - kNumbers) % 2 != 0)
    return Fail(error, lineNumber, "rule " + std::to_string(number) +
                                       " has an attribute without a value (a name holding \", \"?)");
  static const char* const kCountNames[] = {"index", "sup(Pc)", "sup(P[nC])", "sup([nP]C)", "sup([nP][nC])",
                                            "sup(P)", "sup[C]"};
  long counts[7];
  for (int i = 0; i < 7; ++i)
    if (!ParseLong(f[i], counts[i]) || (i > 0 && counts[i] < 0))
      return Fail(error, lineNumber, std::string("the count ") + kCountNames[i] + ofRule + " expected, found " +
                                         Shown(f[i]));
  if (counts[0] != number)
    return Fail(error, lineNumber, "rule " + std::to_string(number) + " expected, found index " + Shown(f[0]));
  rule.index = counts[0];
  rule.a = counts[1];
  rule.b = counts[2];
  rule.c = counts[3];
  rule.d = counts[4];
  if (counts[5] != rule.a + rule.b || counts[6] != rule.a + rule.c || counts[5] == 0 || counts[6] == 0)
    return Fail(error, lineNumber, "the counts" + ofRule + " do not fit together (sup(P) = a + b > 0 and "
                                   "sup[C] = a + c > 0 expected)");
  if (cases >= 0 && rule.Cases() != cases)
    return Fail(error, lineNumber, "rule " + std::to_string(number) + " counts " + std::to_string(rule.Cases()) +
                                       " cases, the rules before it " + std::to_string(cases));
  cases = rule.Cases();
  static const char* const kMeasureNames[] = {"confidence", "chi-square", "lift", "leverage"};
  double* measures[] = {&rule.confidence, &rule.chi, &rule.lift, &rule.leverage};
  for (int i = 0; i < 4; ++i)
    if (!ParseNumber(f[7 + i], *measures[i]))
      return Fail(error, lineNumber, std::string("the ") + kMeasureNames[i] + ofRule + " expected, found " +
                                         Shown(f[7 + i]));
  rule.target = Item{f[kNumbers], f[kNumbers + 1]};
  rule.antecedent.clear();
  for (size_t i = kNumbers + 2; i < f.size(); i += 2) rule.antecedent.push_back(Item{f[i], f[i + 1]});
  return true;
}

}  // namespace

std::string ReadError::Message() const {
  return line > 0 ? path + ":" + std::to_string(line) + ": " + what : path + ": " + what;
}

bool ParseRuleFile(const std::string& text, RuleFile& file, ReadError& error) {
  error.path = file.path;
  file.rules.clear();
  long announced = 0;
  long cases = -1;
  long lineNumber = 0;
  size_t start = 0;
  while (start < text.size()) {
    ++lineNumber;
    size_t end = text.find('\n', start);
    if (end == std::string::npos)
      return Fail(error, lineNumber, "the last line has no line end: the file is cut short");
    std::string line = text.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (lineNumber == 1) {
      if (!ParseFirstLine(line, file, announced, error)) return false;
    } else if (lineNumber == 2) {
      if (line != kColumnHeader) return Fail(error, 2, "the column names of a rule file expected");
    } else {
      const long number = static_cast<long>(file.rules.size()) + 1;
      if (number > announced)
        return Fail(error, lineNumber, "the first line announces " + std::to_string(announced) +
                                           " rules, here is one more");
      file.rules.emplace_back();
      if (!ParseRule(line, lineNumber, number, cases, file.rules.back(), error)) return false;
    }
  }
  if (lineNumber == 0) return Fail(error, 1, "the file is empty; the first line of a rule file expected");
  if (lineNumber == 1) return Fail(error, 2, "the column names of a rule file expected; the file ends");
  if (static_cast<long>(file.rules.size()) != announced)
    return Fail(error, lineNumber + 1, "rule " + std::to_string(file.rules.size() + 1) + " of " +
                                           std::to_string(announced) + " expected; the file ends");
  return true;
}

bool ReadWholeFile(const std::string& path, std::string& text) {
  errno = 0;
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) {
    if (errno == ENOMEM) throw std::bad_alloc();
    return false;
  }
  text.clear();
  char buffer[65536];
  size_t got;
  while ((got = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, got);
  const bool failed = std::ferror(f) != 0;
  const int saved = errno;
  std::fclose(f);
  errno = saved;
  return !failed;
}

bool ReadRuleFile(const std::string& path, RuleFile& file, ReadError& error) {
  file.path = path;
  error.path = path;
  std::string text;
  if (!ReadWholeFile(path, text)) {
    error.line = 0;
    error.what = std::string("cannot read the rule file: ") + std::strerror(errno);
    return false;
  }
  return ParseRuleFile(text, file, error);
}

std::string NamesFileBeside(const std::string& ruleFile) {
  const std::string tail = "rule.csv";
  if (ruleFile.size() < tail.size() || ruleFile.compare(ruleFile.size() - tail.size(), tail.size(), tail) != 0)
    return "";
  return ruleFile.substr(0, ruleFile.size() - tail.size()) + ".names";
}

std::string ReadClassName(const std::string& namesFile) {
  std::string text;
  if (namesFile.empty() || !ReadWholeFile(namesFile, text)) return "";
  std::string first = text.substr(0, text.find('\n'));
  if (!first.empty() && first.back() == '\r') first.pop_back();
  const std::string lead = "| class attribute: ";
  if (first.size() <= lead.size() || first.compare(0, lead.size(), lead) != 0) return "";
  return first.substr(lead.size());
}

}  // namespace show
