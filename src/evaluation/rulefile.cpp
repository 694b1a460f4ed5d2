// The rule file: one line of text holding the thresholds a rule set was
// mined with, its rule count and default class, and the rules themselves.
#include <cerrno>
#include <cctype>
#include <cmath>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/files.h"
#include "base/numbers.h"
#include "base/staged_file.h"
#include "evaluation/evaluation.h"

namespace {

Status CannotOpen() { return Status(StatusKind::CannotOpen, 1, "Can not Open File\n"); }

}  // namespace

Status WriteRule(const RuleSet& rules, const std::string& fileName, float conf, float support, int maxLayer,
                 float minImp) {
  PendingFile file;
  std::string reason;
  if (!file.Open(fileName, reason)) return CannotOpen();
  std::FILE* f = file.stream();
  std::fprintf(f, "%f, %f, %d, %f, ", static_cast<double>(conf), static_cast<double>(support), maxLayer,
               static_cast<double>(minImp));
  std::fprintf(f, "%d %d ", rules.NumOfRules, rules.DefaultClass);
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    std::fprintf(f, "%d %f %d %d ", r->Len, static_cast<double>(r->Score), r->Supp, r->Priority);
    for (int i = 0; i < r->Len; ++i) std::fprintf(f, "%d ", r->Antecedent[i]);
    std::fprintf(f, "%d ", r->Target);
  }
  if (!file.Commit(reason)) return WriteFailure(fileName, file.error());
  return Status();
}

namespace {

// Reads the whole file into memory; the rule file is one line of numbers, so
// its length also bounds how many numbers a rule can still claim.
bool Slurp(std::FILE* f, std::string& text) {
  char buffer[65536];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
  return !std::ferror(f);
}

// A cursor over the file's text with the number conversions the reader needs.
// Every conversion skips the blanks before the number; the blanks after it are
// skipped by the next call or by AtEnd.
class Fields {
 public:
  explicit Fields(const std::string& text) : text_(text) {}

  void SkipBlanks() {
    while (pos_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[pos_]))) ++pos_;
  }
  bool AtEnd() {
    SkipBlanks();
    return pos_ >= text_.size();
  }
  size_t Remaining() const { return text_.size() - pos_; }

  bool Int(int& value) {
    SkipBlanks();
    if (pos_ >= text_.size()) return false;
    const char* start = text_.c_str() + pos_;
    char* end = nullptr;
    errno = 0;
    long v = std::strtol(start, &end, 10);
    if (end == start || errno == ERANGE || v < INT_MIN || v > INT_MAX) return false;
    value = static_cast<int>(v);
    pos_ += static_cast<size_t>(end - start);
    return true;
  }

  bool Float(float& value) {
    SkipBlanks();
    if (pos_ >= text_.size()) return false;
    const char* start = text_.c_str() + pos_;
    const size_t length = DecimalLength(start);
    const float v = length ? std::strtof(start, nullptr) : 0.0f;
    const char after = start[length];
    if (length == 0 || !std::isfinite(v) || (after != '\0' && after != ',' && !std::isspace(static_cast<unsigned char>(after))))
      return false;
    value = v;
    pos_ += length;
    return true;
  }

  bool Comma() {
    SkipBlanks();
    if (pos_ >= text_.size() || text_[pos_] != ',') return false;
    ++pos_;
    return true;
  }

 private:
  const std::string& text_;
  size_t pos_ = 0;
};

Status ParseFailure(const std::string& fileName, const std::string& expected) {
  return Status(StatusKind::InputError, 1, "\nERROR:  rule file " + fileName + ": " + expected + " expected\n");
}

}  // namespace

Status ReadRule(RuleSet& rules, const std::string& fileName, std::FILE* out) {
  InitRuleSet(rules);
  std::FILE* f = XFopen(fileName, "r");
  if (!f) return CannotOpen();
  FileCloser closer{f};
  std::string text;
  const bool readAll = Slurp(f, text);
  const int closed = std::fclose(closer.Release());
  if (!readAll) return ParseFailure(fileName, "a readable file");
  Fields in(text);

  float conf = 0, support = 0, imp = 0;
  int layer = 0;
  if (!in.Float(conf) || !in.Comma()) return ParseFailure(fileName, "the confidence threshold followed by a comma");
  if (!in.Float(support) || !in.Comma())
    return ParseFailure(fileName, "the local support threshold followed by a comma");
  if (!in.Int(layer) || !in.Comma()) return ParseFailure(fileName, "the maximum layer followed by a comma");
  if (!in.Float(imp) || !in.Comma()) return ParseFailure(fileName, "the improvement threshold followed by a comma");
  std::fprintf(out, "\n MinLocalSupport = %.4f, MinConfidence = %.2f, MaxLayer = %d, MinImprovement = %f",
              static_cast<double>(support), static_cast<double>(conf), layer, static_cast<double>(imp));

  int count = 0, defaultClass = 0;
  if (!in.Int(count)) return ParseFailure(fileName, "the number of rules");
  if (!in.Int(defaultClass)) return ParseFailure(fileName, "the default class");
  rules.NumOfRules = count;
  rules.DefaultClass = defaultClass;
  std::fprintf(out, "\n the numOfrules = %d, default class is %d", count, defaultClass);

  int read = 0;  // complete rules linked so far
  RuleRecord* last = nullptr;
  while (!in.AtEnd()) {
    const std::string where = " of rule " + std::to_string(read + 1);
    int len = 0, supp = 0, priority = 0;
    float score = 0;
    const char* failed = nullptr;
    if (read == INT_MAX) {
      rules.NumOfRules = read;
      return Status(StatusKind::InputError, 1,
                    "\nERROR:  rule file " + fileName + " holds more than 2147483647 rules, the most a count holds\n");
    }
    if (!in.Int(len)) failed = "the antecedent length";
    else if (len < 0) failed = "a non-negative antecedent length";
    else if (!in.Float(score)) failed = "a finite decimal score";
    else if (!in.Int(supp)) failed = "the support";
    else if (!in.Int(priority)) failed = "the priority";
    // Each item and the target take a blank and a digit at least, so a length
    // the rest of the file cannot hold is refused before anything is allocated.
    else if (static_cast<size_t>(len) > in.Remaining() / 2) failed = "an antecedent length the file can hold";
    if (failed) {
      rules.NumOfRules = read;
      return ParseFailure(fileName, failed + where);
    }
    RuleRecord* rule = NewRule(len);
    rule->Score = score;
    rule->Supp = supp;
    rule->Priority = priority;
    bool complete = true;
    for (int i = 0; i < len && complete; ++i) complete = in.Int(rule->Antecedent[i]);
    if (!complete || !in.Int(rule->Target)) {
      FreeRule(rule);
      rules.NumOfRules = read;
      return ParseFailure(fileName, (complete ? "the target" : "an antecedent item") + where);
    }
    // Linked by hand: the count stays the one the file gives.
    rule->Prev = last;
    rule->Next = nullptr;
    if (last) last->Next = rule;
    else rules.First = rule;
    rules.Last = rule;
    last = rule;
    ++read;
  }
  // A read file that does not close is refused without a message.
  if (closed != 0) return Status(StatusKind::InputError, 1, "");
  return Status();
}
