// Classifiers from mined rules: labelling the cases with class indexes,
// keeping the class rules, ordering them, and the folds of cross-validation.
#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "evaluation/evaluation.h"

int ClassIndexOf(const DataSet& data, int item) {
  const int firstClassItem = data.MaxItem - data.MaxClass + 1;
  if (item < firstClassItem || item > data.MaxItem) return -1;
  return item - firstClassItem;
}

void LabelCases(DataSet& data) {
  for (int i = 0; i < data.MaxData; ++i) {
    short* row = data.DataSpace[i];
    row[data.RealAtt] = static_cast<short>(ClassIndexOf(data, row[data.RealAtt - 1]));
  }
}

void SetClassDistribution(const DataSet& data, std::vector<float>& dist) {
  std::vector<int> counts(static_cast<size_t>(data.MaxClass), 0);
  for (int i = 0; i < data.MaxData; ++i) {
    const int cls = data.DataSpace[i][data.RealAtt];
    if (cls >= 0 && cls < data.MaxClass) counts[cls] += 1;
  }
  dist.assign(static_cast<size_t>(data.MaxClass), 0.0f);
  for (int c = 0; c < data.MaxClass && data.MaxData > 0; ++c)
    dist[c] = static_cast<float>(counts[c]) / static_cast<float>(data.MaxData);
}

void KeepClassRules(RuleSet& rules, const DataSet& data) {
  for (RuleRecord* r = rules.First; r;) {
    const int cls = ClassIndexOf(data, r->Target);
    if (cls < 0) {
      r = RemoveRule(rules, r);
      continue;
    }
    r->Target = cls;
    r = r->Next;
  }
}

namespace {

// Puts the rules in precedence order (higher confidence, then more support,
// then shorter antecedent first), keeping the mined order among equals.
void SortRules(RuleSet& ruleSet) {
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = ruleSet.First; r; r = r->Next) rules.push_back(r);
  std::stable_sort(rules.begin(), rules.end(),
                   [](const RuleRecord* a, const RuleRecord* b) { return Precede(a, b) == 1; });
  RuleRecord* prev = nullptr;
  for (RuleRecord* r : rules) {
    r->Prev = prev;
    r->Next = nullptr;
    if (prev) prev->Next = r;
    else ruleSet.First = r;
    prev = r;
  }
  ruleSet.Last = prev;
}

// Removes the rules that decide no training case: each case is decided by
// the first rule that covers it, so a rule that is never first only stands
// in the way of the later rules on new cases, and the training accuracy
// stays as it is.
void DropUndecidingRules(RuleSet& ruleSet, const DataSet& data) {
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = ruleSet.First; r; r = r->Next) rules.push_back(r);
  std::vector<char> decides(rules.size(), 0);
  for (int i = 0; i < data.MaxData; ++i) {
    for (size_t k = 0; k < rules.size(); ++k) {
      if (MatchTest(data.DataSpace[i], rules[k], data.RealAtt) < 0) continue;
      decides[k] = 1;
      break;
    }
  }
  for (size_t k = 0; k < rules.size(); ++k)
    if (!decides[k]) RemoveRule(ruleSet, rules[k]);
}

}  // namespace

void AddOneItemClassRules(RuleSet& rules, const DataSet& data, int minSup, float minConf) {
  const size_t classes = static_cast<size_t>(std::max(data.MaxClass, 0));
  if (classes == 0) return;
  const int firstClass = data.MaxItem - data.MaxClass + 1;
  // How many cases hold each item, and each item with each class.
  std::vector<int> itemCount(static_cast<size_t>(firstClass), 0);
  std::vector<int> withClass(static_cast<size_t>(firstClass) * classes, 0);
  std::vector<int> classCount(classes, 0);
  for (int i = 0; i < data.MaxData; ++i) {
    const short* row = data.DataSpace[i];
    const int cls = row[data.RealAtt];
    if (cls < 0 || cls >= data.MaxClass) continue;
    ++classCount[static_cast<size_t>(cls)];
    for (int a = 0; a < data.RealAtt - 1; ++a) {
      const int item = row[a];
      if (item <= 0 || item >= firstClass) continue;
      ++itemCount[static_cast<size_t>(item)];
      ++withClass[static_cast<size_t>(item) * classes + static_cast<size_t>(cls)];
    }
  }
  for (int item = 1; item < firstClass; ++item) {
    for (size_t c = 0; c < classes; ++c) {
      const int supp = withClass[static_cast<size_t>(item) * classes + c];
      if (supp == 0 || supp < minSup) continue;
      // The confidence as the miner computes it; perfect rules it has found.
      const double conf = static_cast<double>(supp) / static_cast<double>(itemCount[static_cast<size_t>(item)]);
      if (conf < minConf || conf > 0.999999) continue;
      RuleRecord* rule = NewRule(1);
      rule->Antecedent[0] = item;
      rule->Target = static_cast<int>(c);
      rule->Priority = 1;
      rule->Conf = static_cast<float>(conf);
      rule->Score = rule->Conf;
      rule->Supp = supp;
      rule->AntSupp = itemCount[static_cast<size_t>(item)];
      rule->TargetSupp = classCount[c];
      AddRuleTail(rules, rules.Last, rule);
    }
  }
}


RuleSet BuildClassifier(const DataSet& data, const ClassifierSettings& settings, std::FILE* out,
                        const LayerReport& report) {
  MiningOptions options;
  options.FileName = data.FileName;
  options.Support = settings.Support;
  options.MinConf = settings.Confidence;
  options.MaxLayer = settings.Layers;
  options.Discard = settings.DiscardRest ? 1 : 0;
  options.ClassTargetsOnly = 1;  // only class rules go into the classifier
  MinedRules run;
  run.GMinSup = ComputeMinSup(data.MaxData, settings.Support);
  MineLayers(run, data, options, out, report);
  RuleSet rules = std::move(run.Rules);

  KeepClassRules(rules, data);
  if (settings.OneItemRules) AddOneItemClassRules(rules, data, run.GMinSup, settings.Confidence);
  std::vector<float> dist;
  SetClassDistribution(data, dist);
  SortRules(rules);
  if (settings.Significance > 0) PruneInsignificant(rules, data.MaxData, settings.Significance);
  if (settings.CompleteMode != 0) ChooseKcompleterule(rules, data, settings.CompleteMode);
  if (settings.Coverage > 0) {
    CoverCases(rules, data, settings.Coverage);
  } else {
    OrderSettings order;
    order.MinConf = settings.Confidence;
    order.MaxLayer = settings.Layers;
    order.Discard = settings.DiscardRest;
    order.ByErrorRate = settings.ByErrorRate;
    OrderRuleAndSetDefault(rules, data, dist, order);
    // Every training case explained leaves no class count: a case the rules do
    // not cover then goes to the most frequent class.
    if (rules.DefaultClass == -1) SetSimpleDefault(rules, data, dist);
    DropUndecidingRules(rules, data);
  }
  if (settings.CutOff) CutAtFewestErrors(rules, data);
  if (settings.MajorityGuard) FallBackOnMajority(rules, data, settings);
  return rules;
}

bool FallBackOnMajority(RuleSet& rules, const DataSet& data, const ClassifierSettings& settings) {
  constexpr int kInnerFolds = 5;
  if (data.MaxData > settings.GuardCases || data.MaxData < kInnerFolds) return false;
  std::vector<int> counts(static_cast<size_t>(std::max(data.MaxClass, 0)), 0);
  for (int i = 0; i < data.MaxData; ++i) {
    const int cls = data.DataSpace[i][data.RealAtt];
    if (cls >= 0 && cls < data.MaxClass) counts[static_cast<size_t>(cls)] += 1;
  }
  const auto most = std::max_element(counts.begin(), counts.end());
  if (most == counts.end() || *most == 0) return false;
  // The inner runs' mining reports are not wanted.
  std::FILE* sink = std::fopen("/dev/null", "w");
  if (!sink) return false;
  ClassifierSettings inner = settings;
  inner.MajorityGuard = false;
  const std::vector<int> fold = StratifiedFolds(CaseLabels(data), kInnerFolds, 1);
  int right = 0;
  try {
    for (int f = 0; f < kInnerFolds; ++f) {
      const FoldSplit split = SplitFold(data, fold, f);
      const RuleSet foldRules = BuildClassifier(split.Training, inner, sink, [](int, const MinedRules&) {});
      right += CountRight(foldRules, split.Testing, Decision::kFirstMatch, split.Training.MaxData);
    }
  } catch (...) {
    std::fclose(sink);
    throw;
  }
  std::fclose(sink);
  if (right > *most) return false;
  for (RuleRecord* r = rules.First; r;) r = RemoveRule(rules, r);
  rules.DefaultClass = static_cast<int>(most - counts.begin());
  return true;
}

namespace {

const char* ClassLabel(const DataSet& data, int cls) {
  if (cls >= 0 && cls < data.MaxClass) return data.ClassName[cls].c_str();
  return "(none)";
}

}  // namespace

void PrintClassifier(const RuleSet& rules, const DataSet& data, std::FILE* out) {
  std::fprintf(out, "\nClassifier of %d rules, default class %s\n", rules.NumOfRules,
               ClassLabel(data, rules.DefaultClass));
  int k = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    std::fprintf(out, "%4d: ", ++k);
    if (r->Len == 0) std::fprintf(out, "(every case)");
    for (int i = 0; i < r->Len; ++i) {
      const int item = r->Antecedent[i];
      const bool known = item >= 0 && item <= data.MaxItem && static_cast<size_t>(item) < data.ItemRecord.size() &&
                         data.ItemRecord[item];
      std::fprintf(out, "%s%s = %s", i ? ", " : "", known ? data.ItemRecord[item]->AttributeName.c_str() : "?",
                   known ? data.ItemRecord[item]->ValueName.c_str() : "?");
    }
    std::fprintf(out, " -> %s  (support %d, confidence %.4f)\n", ClassLabel(data, r->Target), r->Supp,
                 static_cast<double>(r->Score));
  }
  std::fprintf(out, "   default: %s\n", ClassLabel(data, rules.DefaultClass));
}

std::string RulesMisfit(const RuleSet& ruleSet, const DataSet& data) {
  const int lastValueItem = data.MaxItem - data.MaxClass;
  int k = 0;
  int rules = 0;
  for (const RuleRecord* r = ruleSet.First; r; r = r->Next) {
    ++k;
    ++rules;
    for (int i = 0; i < r->Len; ++i) {
      const int item = r->Antecedent[i];
      if (item < 1 || item > lastValueItem)
        return "rule " + std::to_string(k) + " has item code " + std::to_string(item) +
               ", but the attribute values run from 1 to " + std::to_string(lastValueItem);
    }
    if (r->Target < 0 || r->Target >= data.MaxClass)
      return "rule " + std::to_string(k) + " has target " + std::to_string(r->Target) +
             ", but the class indexes run from 0 to " + std::to_string(data.MaxClass - 1);
  }
  if (ruleSet.DefaultClass < -1 || ruleSet.DefaultClass >= data.MaxClass)
    return "the default class " + std::to_string(ruleSet.DefaultClass) + " is no class index from -1 to " +
           std::to_string(data.MaxClass - 1);
  if (ruleSet.NumOfRules != rules)
    return "it declares " + std::to_string(ruleSet.NumOfRules) + " rules but holds " + std::to_string(rules);
  return "";
}

namespace {

// xorshift64*: a small generator whose sequence is fixed on every platform.
class Xorshift {
 public:
  explicit Xorshift(std::uint64_t seed) : state_(seed ^ 0x9E3779B97F4A7C15ULL) {
    if (state_ == 0) state_ = 0x2545F4914F6CDD1DULL;
  }
  std::uint64_t Next() {
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return state_ * 0x2545F4914F6CDD1DULL;
  }
  // A number from 0 to bound-1.
  std::uint64_t Below(std::uint64_t bound) { return Next() % bound; }

 private:
  std::uint64_t state_;
};

}  // namespace

std::vector<int> StratifiedFolds(const std::vector<int>& labels, int k, std::uint64_t seed) {
  std::vector<int> fold(labels.size(), 0);
  if (k < 1) return fold;
  std::vector<int> distinct(labels);
  std::sort(distinct.begin(), distinct.end());
  distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
  Xorshift random(seed);
  size_t dealt = 0;
  for (int label : distinct) {
    std::vector<size_t> cases;
    for (size_t i = 0; i < labels.size(); ++i)
      if (labels[i] == label) cases.push_back(i);
    // Fisher-Yates with the generator above.
    for (size_t i = cases.size(); i > 1; --i) std::swap(cases[i - 1], cases[random.Below(i)]);
    for (size_t i : cases) fold[i] = static_cast<int>(dealt++ % static_cast<size_t>(k));
  }
  return fold;
}

std::vector<int> CaseLabels(const DataSet& data) {
  std::vector<int> labels(static_cast<size_t>(data.MaxData));
  for (int i = 0; i < data.MaxData; ++i) labels[i] = data.DataSpace[i][data.RealAtt];
  return labels;
}

FoldSplit SplitFold(const DataSet& data, const std::vector<int>& fold, int f) {
  std::vector<int> training, testing;
  for (int i = 0; i < data.MaxData; ++i) (fold[i] == f ? testing : training).push_back(i);
  return FoldSplit{data.Subset(training), data.Subset(testing)};
}
