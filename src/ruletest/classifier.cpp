// Classifiers from mined rules: labelling the cases with class indexes,
// keeping the class rules, ordering them, and the folds of cross-validation.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "ruletest.h"

int ClassIndexOf(int item) {
  const int firstClassItem = MaxItem - MaxClass + 1;
  if (item < firstClassItem || item > MaxItem) return -1;
  return item - firstClassItem;
}

void LabelCases() {
  for (int i = 0; i < MaxData; ++i) {
    short* row = DataSpace[i];
    row[RealAtt] = static_cast<short>(ClassIndexOf(row[RealAtt - 1]));
  }
}

void SetClassDistribution() {
  std::vector<int> counts(static_cast<size_t>(MaxClass), 0);
  for (int i = 0; i < MaxData; ++i) {
    const int cls = DataSpace[i][RealAtt];
    if (cls >= 0 && cls < MaxClass) counts[cls] += 1;
  }
  Dist.assign(static_cast<size_t>(MaxClass), 0.0f);
  for (int c = 0; c < MaxClass && MaxData > 0; ++c)
    Dist[c] = static_cast<float>(counts[c]) / static_cast<float>(MaxData);
}

void KeepClassRules() {
  for (RuleRecord* r = RuleSet->First; r;) {
    const int cls = ClassIndexOf(r->Target);
    if (cls < 0) {
      r = RemoveRule(r);
      continue;
    }
    r->Target = cls;
    r = r->Next;
  }
}

namespace {

// Puts the rules in precedence order (higher confidence, then more support,
// then shorter antecedent first), keeping the mined order among equals.
void SortRules() {
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = RuleSet->First; r; r = r->Next) rules.push_back(r);
  std::stable_sort(rules.begin(), rules.end(),
                   [](const RuleRecord* a, const RuleRecord* b) { return Precede(a, b) == 1; });
  RuleRecord* prev = nullptr;
  for (RuleRecord* r : rules) {
    r->Prev = prev;
    r->Next = nullptr;
    if (prev) prev->Next = r;
    else RuleSet->First = r;
    prev = r;
  }
  RuleSet->Last = prev;
}

// Removes the rules that decide no training case: each case is decided by
// the first rule that covers it, so a rule that is never first only stands
// in the way of the later rules on new cases, and the training accuracy
// stays as it is.
void DropUndecidingRules() {
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = RuleSet->First; r; r = r->Next) rules.push_back(r);
  std::vector<char> decides(rules.size(), 0);
  for (int i = 0; i < MaxData; ++i) {
    for (size_t k = 0; k < rules.size(); ++k) {
      if (MatchTest(DataSpace[i], rules[k]) < 0) continue;
      decides[k] = 1;
      break;
    }
  }
  for (size_t k = 0; k < rules.size(); ++k)
    if (!decides[k]) RemoveRule(rules[k]);
}

}  // namespace

void BuildClassifier(const ClassifierSettings& settings) {
  MinConf = settings.Confidence;
  MaxLayer = settings.Layers;
  Discard = settings.DiscardRest ? 1 : 0;
  GMinSup = ComputeMinSup(MaxData, settings.Support);
  MineLayers();
  KeepClassRules();
  SetClassDistribution();
  SortRules();
  if (settings.CompleteMode != 0) {
    Complete = settings.CompleteMode;
    ChooseKcompleterule();
  }
  OrderRuleAndSetDefault();
  // Every training case explained leaves no class count: a case the rules do
  // not cover then goes to the most frequent class.
  if (RuleSet->DefaultClass == -1) SetSimpleDefault();
  DropUndecidingRules();
}

namespace {

const char* ClassLabel(int cls) {
  if (cls >= 0 && cls < MaxClass) return ClassName[cls].c_str();
  return "(none)";
}

}  // namespace

void PrintClassifier() {
  std::printf("\nClassifier of %d rules, default class %s\n", RuleSet->NumOfRules,
              ClassLabel(RuleSet->DefaultClass));
  int k = 0;
  for (const RuleRecord* r = RuleSet->First; r; r = r->Next) {
    std::printf("%4d: ", ++k);
    if (r->Len == 0) std::printf("(every case)");
    for (int i = 0; i < r->Len; ++i) {
      const int item = r->Antecedent[i];
      const bool known = item >= 0 && item <= MaxItem && ItemRecord[item];
      std::printf("%s%s = %s", i ? ", " : "", known ? ItemRecord[item]->AttributeName.c_str() : "?",
                  known ? ItemRecord[item]->ValueName.c_str() : "?");
    }
    std::printf(" -> %s  (support %d, confidence %.4f)\n", ClassLabel(r->Target), r->Supp,
                static_cast<double>(r->Score));
  }
  std::printf("   default: %s\n", ClassLabel(RuleSet->DefaultClass));
}

std::string RulesMisfit() {
  const int lastValueItem = MaxItem - MaxClass;
  int k = 0;
  int rules = 0;
  for (const RuleRecord* r = RuleSet->First; r; r = r->Next) {
    ++k;
    ++rules;
    for (int i = 0; i < r->Len; ++i) {
      const int item = r->Antecedent[i];
      if (item < 1 || item > lastValueItem)
        return "rule " + std::to_string(k) + " has item code " + std::to_string(item) +
               ", but the attribute values run from 1 to " + std::to_string(lastValueItem);
    }
    if (r->Target < 0 || r->Target >= MaxClass)
      return "rule " + std::to_string(k) + " has target " + std::to_string(r->Target) +
             ", but the class indexes run from 0 to " + std::to_string(MaxClass - 1);
  }
  if (RuleSet->DefaultClass < -1 || RuleSet->DefaultClass >= MaxClass)
    return "the default class " + std::to_string(RuleSet->DefaultClass) + " is no class index from -1 to " +
           std::to_string(MaxClass - 1);
  if (RuleSet->NumOfRules != rules)
    return "it declares " + std::to_string(RuleSet->NumOfRules) + " rules but holds " + std::to_string(rules);
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
