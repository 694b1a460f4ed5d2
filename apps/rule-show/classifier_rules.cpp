#include "rule-show/classifier_rules.h"

#include <cstdio>

#include "base/files.h"
#include "evaluation/evaluation.h"
#include "input/readers.h"

bool IsClassifierRuleFile(const std::string& path) {
  std::FILE* f = XFopen(path, "rb");
  if (!f) return false;
  int c;
  while ((c = std::fgetc(f)) == ' ' || c == '\t' || c == '\n' || c == '\r') {
  }
  std::fclose(f);
  return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
}

namespace {

// The status text without its line ends and its "ERROR:  " lead.
std::string Reason(const Status& status) {
  std::string text = status.message();
  while (!text.empty() && text.front() == '\n') text.erase(0, 1);
  while (!text.empty() && text.back() == '\n') text.pop_back();
  if (text.compare(0, 8, "ERROR:  ") == 0) text.erase(0, 8);
  return text;
}

show::Item ItemOf(const DataSet& data, int code) {
  const ItemEntry& item = *data.ItemRecord[static_cast<size_t>(code)];
  return show::Item{item.AttributeName, item.ValueName};
}

}  // namespace

bool ReadClassifierRules(const std::string& path, const std::string& stem, show::RuleFile& file,
                         std::string* message) {
  DataSet data;
  InputErrors errors{stdout, 0};
  Status status = GetNames(data, stem, errors);
  if (status.ok()) status = GetData(data, ".data", errors);
  if (!status.ok()) {
    *message = Reason(status);
    return false;
  }
  LabelCases(data);
  std::FILE* sink = XFopen("/dev/null", "w");  // the header ReadRule echoes
  if (!sink) {
    *message = "cannot open /dev/null";
    return false;
  }
  RuleSet rules;
  status = ReadRule(rules, path, sink);
  std::fclose(sink);
  if (!status.ok()) {
    *message = status.message().empty() ? "cannot open " + path : Reason(status);
    return false;
  }
  const std::string misfit = RulesMisfit(rules, data);
  if (!misfit.empty()) {
    *message = path + " does not fit " + stem + ".names: " + misfit;
    return false;
  }
  file.path = path;
  file.rules.clear();
  const long n = data.MaxData;
  std::vector<long> classCases(static_cast<size_t>(data.MaxClass), 0);
  for (long i = 0; i < n; ++i) {
    const int label = data.DataSpace[static_cast<size_t>(i)][data.RealAtt];
    if (label >= 0) ++classCases[static_cast<size_t>(label)];
  }
  long index = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    show::Rule rule;
    rule.index = ++index;
    for (long i = 0; i < n; ++i) {
      const int match = MatchTest(data.DataSpace[static_cast<size_t>(i)], r, data.RealAtt);
      if (match == 1) ++rule.a;
      else if (match == 0) ++rule.b;
    }
    rule.c = classCases[static_cast<size_t>(r->Target)] - rule.a;
    rule.d = n - rule.a - rule.b - rule.c;
    const double a = rule.a, p = rule.a + rule.b, t = rule.a + rule.c, cases = n;
    rule.confidence = p > 0 ? a / p : 0;
    rule.lift = p > 0 && t > 0 ? cases * a / (p * t) : 0;
    rule.leverage = cases > 0 ? a / cases - p * t / (cases * cases) : 0;
    // Chi-square of the 2x2 table; 10000 where a margin is empty, as the
    // miner writes it.
    const double q = cases - p, u = cases - t;
    rule.chi = p > 0 && q > 0 && t > 0 && u > 0
                   ? cases * (a * (q - t + a) - (p - a) * (t - a)) * (a * (q - t + a) - (p - a) * (t - a)) /
                         (p * q * t * u)
                   : 10000;
    rule.target = show::Item{"Class", data.ClassName[static_cast<size_t>(r->Target)]};
    for (int k = 0; k < r->Len; ++k) rule.antecedent.push_back(ItemOf(data, r->Antecedent[k]));
    file.rules.push_back(rule);
  }
  return true;
}
