// Rule selection and pruning: deletes the infrequent nodes of the newest
// layer, turns the rest into rules, and kills the targets and nodes that no
// larger itemset could turn into a better rule.
#include <cstdio>

#include "mining/mining.h"

namespace {

constexpr double kPerfect = 0.999999;

void PrintItems(std::FILE* out, const TreeNode* node) {
  for (int i = 0; i < node->Length; ++i) std::fprintf(out, "%d ", node->ItemSet[i]);
}

// The rule (itemset without position j) -> item j of son s.
void TargetStep(TreeNode* s, int j, const SelectionSettings& settings, const ItemCounts& counts, RuleSet& rules) {
  std::FILE* out = settings.Dump.Out;
  const int n = s->Support;
  const int t = s->ItemSet[j];
  // The quotient of the counts in double precision; a zero antecedent
  // support gives NaN, which fails every comparison.
  const double conf = static_cast<double>(n) / static_cast<double>(s->SubSupport[j]);
  s->Confidence[j] = static_cast<float>(conf);

  if (settings.Ass) {
    if (conf >= settings.MinConf) WriteToRuleSet(rules, s, j, static_cast<float>(conf), counts);
    return;
  }

  if (conf > kPerfect) {
    if (settings.Dump.Debug) {
      std::fprintf(out, "sup(AX) = sup(A): ");
      PrintItems(out, s);
      std::fprintf(out, "target = %d, Target flag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
    }
    s->Token = 2;
    s->TargetFlag[j] = 0;
    s->NumOfTarget -= 1;
    WriteToRuleSet(rules, s, j, static_cast<float>(conf), counts);
    return;
  }

  if (s->Length <= 2) return;  // a one-item antecedent yields perfect rules only

  const int d = s->SubSupport[j] - n;  // cases with the antecedent but not the target
  float best = 0.0f;
  for (int i = 0; i < s->Length; ++i) {
    if (i == j) continue;
    const TreeNode* u = s->SubNode[i];
    const int p = i < j ? j - 1 : j;
    if (u->Confidence[p] > best) best = u->Confidence[p];
    if (u->SubSupport[p] - u->Support == d) {
      if (settings.Dump.Debug) {
        std::fprintf(out, "sup(AX-c) = sup(A-c): ");
        PrintItems(out, s);
        if (i < j)
          std::fprintf(out, "target = %d, Target Flag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
        else
          std::fprintf(out, "target = %d, TargetFlag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
      }
      s->TargetFlag[j] = 0;
      s->NumOfTarget -= 1;
      return;
    }
  }
  if (conf >= settings.MinConf && conf > best + settings.IMP) WriteToRuleSet(rules, s, j, static_cast<float>(conf), counts);
}

int ProcessParent(CandidateTree& tree, TreeNode* parent, const SelectionSettings& settings, const ItemCounts& counts,
                  RuleSet& rules) {
  std::FILE* out = settings.Dump.Out;
  const int sons = parent->NumOfSon;
  for (int slot = 0; slot < sons; ++slot) {
    TreeNode* s = parent->Son[slot];
    if (!s) continue;
    if (s->Support < settings.GMinSup) {
      parent->Son[slot] = DeleteNode(tree, s);
      continue;
    }
    int last = s->Length - 1;  // the last position examined, shown by "Pruning: "
    for (int j = 0; j < s->Length; ++j) {
      if (s->TargetFlag[j] == 0) continue;
      last = j;
      TargetStep(s, j, settings, counts, rules);
    }
    if (s->Token == 2 && s->NumOfTarget <= 0) {
      if (settings.Dump.Debug) {
        std::fprintf(out, "Pruning: ");
        PrintItems(out, s);
        std::fprintf(out, "target = %d, Target Flag = %d, #Target = %d \n", s->ItemSet[last], s->TargetFlag[last],
                    s->NumOfTarget);
      }
      parent->Son[slot] = DeleteNode(tree, s);
    }
  }
  return ReOrderSon(parent);
}

}  // namespace

int RuleSelectANdPruning(CandidateTree& tree, TreeNode* node, int layer, const SelectionSettings& settings,
                         const ItemCounts& counts, RuleSet& rules) {
  if (!node) return 0;
  if (node->Length == layer - 1) return ProcessParent(tree, node, settings, counts, rules);
  if (node->Length == layer || node->NumOfSon == 0) return 0;
  int sum = 0;
  for (int s = 0; s < node->NumOfSon; ++s) sum += RuleSelectANdPruning(tree, node->Son[s], layer, settings, counts, rules);
  return sum;
}
