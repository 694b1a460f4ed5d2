// Rule selection and pruning: deletes the infrequent nodes of the newest
// layer, turns the rest into rules, and kills the targets and nodes that no
// larger itemset could turn into a better rule.
#include <cstdio>

#include "rule.h"
#include "rulegen.h"

namespace {

constexpr double kPerfect = 0.999999;

void PrintItems(const TreeNode* node) {
  for (int i = 0; i < node->Length; ++i) std::printf("%d ", node->ItemSet[i]);
}

// The rule (itemset without position j) -> item j of son s.
void TargetStep(TreeNode* s, int j) {
  const int n = s->Support;
  const int t = s->ItemSet[j];
  // The quotient of the counts in double precision; a zero antecedent
  // support gives NaN, which fails every comparison.
  const double conf = static_cast<double>(n) / static_cast<double>(s->SubSupport[j]);
  s->Confidence[j] = static_cast<float>(conf);

  if (Ass) {
    if (conf >= MinConf) WriteToRuleSet(s, j, static_cast<float>(conf));
    return;
  }

  if (conf > kPerfect) {
    if (Debug) {
      std::printf("sup(AX) = sup(A): ");
      PrintItems(s);
      std::printf("target = %d, Target flag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
    }
    s->Token = 2;
    s->TargetFlag[j] = 0;
    s->NumOfTarget -= 1;
    WriteToRuleSet(s, j, static_cast<float>(conf));
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
      if (Debug) {
        std::printf("sup(AX-c) = sup(A-c): ");
        PrintItems(s);
        if (i < j)
          std::printf("target = %d, Target Flag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
        else
          std::printf("target = %d, TargetFlag = %d, #Target = %d \n", t, s->TargetFlag[j], s->NumOfTarget);
      }
      s->TargetFlag[j] = 0;
      s->NumOfTarget -= 1;
      return;
    }
  }
  if (conf >= MinConf && conf > best + IMP) WriteToRuleSet(s, j, static_cast<float>(conf));
}

int ProcessParent(TreeNode* parent) {
  const int sons = parent->NumOfSon;
  for (int slot = 0; slot < sons; ++slot) {
    TreeNode* s = parent->Son[slot];
    if (!s) continue;
    if (s->Support < GMinSup) {
      parent->Son[slot] = DeleteNode(s);
      continue;
    }
    int last = s->Length - 1;  // the last position examined, shown by "Pruning: "
    for (int j = 0; j < s->Length; ++j) {
      if (s->TargetFlag[j] == 0) continue;
      last = j;
      TargetStep(s, j);
    }
    if (s->Token == 2 && s->NumOfTarget <= 0) {
      if (Debug) {
        std::printf("Pruning: ");
        PrintItems(s);
        std::printf("target = %d, Target Flag = %d, #Target = %d \n", s->ItemSet[last], s->TargetFlag[last],
                    s->NumOfTarget);
      }
      parent->Son[slot] = DeleteNode(s);
    }
  }
  return ReOrderSon(parent);
}

}  // namespace

int RuleSelectANdPruning(TreeNode* node, int layer) {
  if (!node) return 0;
  if (node->Length == layer - 1) return ProcessParent(node);
  if (node->Length == layer || node->NumOfSon == 0) return 0;
  int sum = 0;
  for (int s = 0; s < node->NumOfSon; ++s) sum += RuleSelectANdPruning(node->Son[s], layer);
  return sum;
}
