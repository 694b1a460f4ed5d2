// Choosing the rules of a classifier by their statistics and by how they
// cover the training cases, predicting by the chi-square of all matching
// rules, and the fall-back on the majority class for data with no usable
// pattern.
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/numbers.h"
#include "evaluation/class_votes.h"
#include "evaluation/evaluation.h"

namespace {

// The four cells of a rule's 2x2 table over n cases: antecedent and class
// together, antecedent without the class, class without the antecedent,
// neither.
struct Cells {
  double Both, AntOnly, ClassOnly, Neither;
};

Cells TableOf(const RuleRecord& rule, int cases) {
  const double both = rule.Supp;
  const double ant = rule.AntSupp;
  const double cls = rule.TargetSupp;
  return {both, ant - both, cls - both, cases - ant - cls + both};
}

}  // namespace

double RuleChiSquare(const RuleRecord& rule, int cases) {
  const double n = cases;
  const double ant = rule.AntSupp;
  const double cls = rule.TargetSupp;
  if (n <= 0 || ant <= 0 || cls <= 0 || ant >= n || cls >= n) return 0.0;
  const Cells c = TableOf(rule, cases);
  const double diff = c.Both * c.Neither - c.AntOnly * c.ClassOnly;
  return n * diff * diff / (ant * (n - ant) * cls * (n - cls));
}

double RuleMaxChiSquare(const RuleRecord& rule, int cases) {
  const double n = cases;
  const double ant = rule.AntSupp;
  const double cls = rule.TargetSupp;
  if (n <= 0 || ant <= 0 || cls <= 0 || ant >= n || cls >= n) return 0.0;
  const double d = std::min(ant, cls) - ant * cls / n;
  const double e = 1 / (ant * cls) + 1 / (ant * (n - cls)) + 1 / ((n - ant) * cls) + 1 / ((n - ant) * (n - cls));
  return d * d * n * e;
}

bool PositivelyCorrelated(const RuleRecord& rule, int cases) {
  return static_cast<double>(rule.Supp) * cases > static_cast<double>(rule.AntSupp) * rule.TargetSupp;
}

int PruneInsignificant(RuleSet& rules, int cases, double threshold) {
  int removed = 0;
  for (RuleRecord* r = rules.First; r;) {
    if (PositivelyCorrelated(*r, cases) && RuleChiSquare(*r, cases) >= threshold) {
      r = r->Next;
      continue;
    }
    r = RemoveRule(rules, r);
    ++removed;
  }
  return removed;
}

namespace {

// The most frequent class among the counts, the lowest index on ties; -1
// when every count is 0.
int MostFrequent(const std::vector<int>& counts) {
  int best = -1;
  for (size_t c = 0; c < counts.size(); ++c)
    if (counts[c] > 0 && (best < 0 || counts[c] > counts[static_cast<size_t>(best)])) best = static_cast<int>(c);
  return best;
}

std::vector<int> ClassCounts(const DataSet& data) {
  std::vector<int> counts(static_cast<size_t>(std::max(data.MaxClass, 0)), 0);
  for (int i = 0; i < data.MaxData; ++i) {
    const int cls = data.DataSpace[i][data.RealAtt];
    if (cls >= 0 && cls < data.MaxClass) counts[static_cast<size_t>(cls)] += 1;
  }
  return counts;
}

}  // namespace

void CoverCases(RuleSet& rules, const DataSet& data, int delta) {
  const int cases = data.MaxData;
  std::vector<int> coveredTimes(static_cast<size_t>(cases), 0);
  std::vector<int> alive;  // cases covered fewer than delta times, in data set order
  for (int i = 0; i < cases; ++i) alive.push_back(i);
  std::vector<int> uncovered = ClassCounts(data);  // class counts of the cases no kept rule covers
  std::vector<int> covering;
  for (RuleRecord* r = rules.First; r;) {
    if (alive.empty()) {
      r = RemoveRule(rules, r);
      continue;
    }
    covering.clear();
    bool right = false;
    for (int i : alive) {
      const int match = MatchTest(data.DataSpace[i], r, data.RealAtt);
      if (match < 0) continue;
      covering.push_back(i);
      right = right || match == 1;
    }
    if (!right) {
      r = RemoveRule(rules, r);
      continue;
    }
    for (int i : covering) {
      if (coveredTimes[static_cast<size_t>(i)]++ > 0) continue;
      const int cls = data.DataSpace[i][data.RealAtt];
      if (cls >= 0 && cls < data.MaxClass) uncovered[static_cast<size_t>(cls)] -= 1;
    }
    alive.erase(std::remove_if(alive.begin(), alive.end(),
                               [&](int i) { return coveredTimes[static_cast<size_t>(i)] >= delta; }),
                alive.end());
    r = r->Next;
  }
  rules.DefaultClass = MostFrequent(uncovered);
  if (rules.DefaultClass < 0) rules.DefaultClass = MostFrequent(ClassCounts(data));
}

Prediction PredictChiSquare(const RuleSet& rules, const DataSet& data, const short* row, int trainingCases) {
  ClassVotes votes(data.MaxClass);
  int position = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    ++position;
    if (r->Target < 0 || r->Target >= votes.Classes()) continue;
    if (MatchTest(row, r, data.RealAtt) < 0) continue;
    const double chi = RuleChiSquare(*r, trainingCases);
    const double most = RuleMaxChiSquare(*r, trainingCases);
    // A rule whose table allows no association weighs nothing but still
    // names its class.
    votes.Add(r, position, most > 0 ? chi * chi / most : 0.0);
  }
  return votes.Winner(rules.DefaultClass);
}

Prediction Decide(const RuleSet& rules, const DataSet& data, const short* row, Decision decision,
                  int trainingCases) {
  if (decision == Decision::kChiSquare) return PredictChiSquare(rules, data, row, trainingCases);
  return PredictFirst(rules, data, row);
}

int CountRight(const RuleSet& rules, const DataSet& data, Decision decision, int trainingCases) {
  int right = 0;
  for (int i = 0; i < data.MaxData; ++i) {
    const short* row = data.DataSpace[i];
    const int cls = Decide(rules, data, row, decision, trainingCases).Class;
    if (cls >= 0 && cls == row[data.RealAtt]) ++right;
  }
  return right;
}

void CutAtFewestErrors(RuleSet& rules, const DataSet& data) {
  std::vector<RuleRecord*> list;
  for (RuleRecord* r = rules.First; r; r = r->Next) list.push_back(r);
  // The rule that decides each case under first match, and its errors.
  std::vector<std::vector<int>> decided(list.size() + 1);  // per rule: its cases; last: the uncovered
  std::vector<int> wrong(list.size(), 0);
  for (int i = 0; i < data.MaxData; ++i) {
    size_t k = 0;
    for (; k < list.size(); ++k) {
      const int match = MatchTest(data.DataSpace[i], list[k], data.RealAtt);
      if (match < 0) continue;
      if (match == 0) wrong[k] += 1;
      break;
    }
    decided[k].push_back(i);
  }
  // Walking back from the whole list: the cases of the rules cut off join
  // the uncovered ones, which the most frequent class among them takes.
  std::vector<int> remaining(static_cast<size_t>(std::max(data.MaxClass, 0)), 0);
  int uncovered = 0;
  auto takeOver = [&](const std::vector<int>& cases) {
    for (int i : cases) {
      const int cls = data.DataSpace[i][data.RealAtt];
      if (cls >= 0 && cls < data.MaxClass) remaining[static_cast<size_t>(cls)] += 1;
      uncovered += 1;
    }
  };
  takeOver(decided.back());
  double ruleErrors = 0;
  for (size_t k = 0; k < list.size(); ++k) ruleErrors += PessimisticErrors(static_cast<double>(decided[k].size()), wrong[k]);
  auto errorsNow = [&] {
    const int d = MostFrequent(remaining);
    return ruleErrors + PessimisticErrors(uncovered, uncovered - (d < 0 ? 0 : remaining[static_cast<size_t>(d)]));
  };
  double bestErrors = errorsNow();
  size_t bestKeep = list.size();
  int bestDefault = MostFrequent(remaining);
  for (size_t k = list.size(); k-- > 0;) {
    ruleErrors -= PessimisticErrors(static_cast<double>(decided[k].size()), wrong[k]);
    takeOver(decided[k]);
    const double errors = errorsNow();
    if (errors <= bestErrors) {  // the shorter of equal prefixes
      bestErrors = errors;
      bestKeep = k;
      bestDefault = MostFrequent(remaining);
    }
  }
  for (size_t k = bestKeep; k < list.size(); ++k) RemoveRule(rules, list[k]);
  if (bestDefault >= 0) rules.DefaultClass = bestDefault;
}
