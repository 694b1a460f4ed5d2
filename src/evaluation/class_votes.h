// Votes of covering rules for the classes of one case: a weight per class,
// and the earliest voter of each class with its place in the classifier.
#pragma once

#include <vector>

#include "evaluation/evaluation.h"

class ClassVotes {
 public:
  explicit ClassVotes(int classes)
      : weight_(static_cast<size_t>(classes > 0 ? classes : 0), 0.0),
        first_(weight_.size(), nullptr),
        firstPosition_(weight_.size(), 0) {}

  int Classes() const { return static_cast<int>(weight_.size()); }
  // Adds weight to the rule's class (a class index below Classes()).
  void Add(const RuleRecord* rule, int position, double weight) {
    const size_t c = static_cast<size_t>(rule->Target);
    weight_[c] += weight;
    if (!first_[c]) {
      first_[c] = rule;
      firstPosition_[c] = position;
    }
  }
  // The class with the largest weight, on equal weights the one whose first
  // voter stands earlier, decided by that voter; the default class when no
  // class got a vote.
  Prediction Winner(int defaultClass) const {
    Prediction p;
    for (size_t k = 0; k < weight_.size(); ++k) {
      if (!first_[k]) continue;
      const bool better = p.Class < 0 || weight_[k] > weight_[static_cast<size_t>(p.Class)] ||
                          (weight_[k] == weight_[static_cast<size_t>(p.Class)] && firstPosition_[k] < p.Position);
      if (!better) continue;
      p.Class = static_cast<int>(k);
      p.Rule = first_[k];
      p.Position = firstPosition_[k];
    }
    if (p.Class < 0) p.Class = defaultClass;
    return p;
  }

 private:
  std::vector<double> weight_;
  std::vector<const RuleRecord*> first_;
  std::vector<int> firstPosition_;
};
