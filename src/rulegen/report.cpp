// Console reports: the layer report, the rule listings and the tree dumps.
#include <cstdio>

#include "readfile.h"
#include "rulegen.h"

namespace {
constexpr int kListed = 30;  // rules shown by the listings
}

void Report() {
  std::printf("The number of tree nodes %d \n", TreeSize);
  std::printf("The number of rules %d \n", RuleSet ? RuleSet->NumOfRules : 0);
}

int DisplayAbstractRule() {
  const int total = RuleSet ? RuleSet->NumOfRules : 0;
  std::printf("\nThe number of rules is %d", total);
  if (total > kListed) std::printf("\n Print the first 30 rules \n");
  int shown = 0;
  for (RuleRecord* r = RuleSet ? RuleSet->First : nullptr; r && shown < kListed; r = r->Next, ++shown) {
    std::printf("\n");
    for (int i = 0; i < r->Len; ++i) std::printf("%d ", r->Antecedent[i]);
    std::printf(" -> %d", r->Target);
    std::printf("\t Sup = %d", r->Supp);
    std::printf("\t Conf = %f", r->Conf);
    std::printf("\t Chi = %f", r->Score);
  }
  std::printf("\n");
  return 1;
}

void DisplayRule() {
  const int total = RuleSet ? RuleSet->NumOfRules : 0;
  std::printf("\n- - - - - - - - - - - - - - - - - - - - - - - - - - - - \n");
  std::printf("Number of rules %d \n", total);
  if (total > kListed) std::printf("\n Print the first 30 rules \n");
  int k = 0;
  for (int t = 1; t <= MaxItem && k < kListed; ++t) {
    for (RuleRecord* r = RuleSet ? RuleSet->First : nullptr; r && k < kListed; r = r->Next) {
      if (r->Target != t) continue;
      ++k;
      std::printf("%d:", k);
      for (int i = 0; i < r->Len; ++i) {
        const ItemEntry& item = *ItemRecord[r->Antecedent[i]];
        std::printf("%s is %s; ", item.AttributeName.c_str(), item.ValueName.c_str());
      }
      std::printf("(%d) ", r->AntSupp);
      const ItemEntry& target = *ItemRecord[t];
      std::printf(" -> %s is %s (%d), \t \t supp = %d, conf = %.4f \n", target.AttributeName.c_str(),
                  target.ValueName.c_str(), r->TargetSupp, r->Supp, r->Conf);
    }
  }
}

void DisplayTree(TreeNode* node) {
  if (!node) return;
  if (node->Length > 0) {
    for (int i = 0; i < node->Length; ++i) std::printf("%d ", node->ItemSet[i]);
    std::printf("\t #sons = %d ", node->NumOfSon);
    if (node->Support > 0) {
      std::printf("\tsupp=%d, \n", node->Support);
      if (node->Length > 2) {
        for (int i = 0; i < node->Length; ++i) {
          const TreeNode* sub = node->SubNode[i];
          std::printf("\t subset %d: ", i);
          for (int m = 0; m < node->Length - 1; ++m) std::printf("%d ", sub->ItemSet[m]);
          std::printf("supp = %d(%d)", sub->Support, node->SubSupport[i]);
          if (node->TargetFlag[i] == 1) std::printf("target = %d \n", node->ItemSet[i]);
          else std::printf("\n");
        }
      }
    }
    std::printf("\t #targets = %d, Token = %d \n", node->NumOfTarget, node->Token);
  }
  for (int s = 0; s < node->NumOfSon; ++s) DisplayTree(node->Son[s]);
}

void DisplayTreeByLayer(TreeNode* node, int layer) {
  if (!node) return;
  if (node->Length == layer) {
    for (int i = 0; i < node->Length; ++i) std::printf("%d ", node->ItemSet[i]);
    std::printf("\t : %d", node->NumOfSon);
    if (node->Support > 0) std::printf("\tsum[%d], ", node->Support);
    if (node->Token > 0) {
      std::printf("\t");
      if (node->TargetFlag[0] != static_cast<short>(65535)) std::printf("%d ", node->TargetFlag[0]);
      std::printf("\t acc= %.3f", node->Acc);
      std::printf("\t conf=%.3f", node->Conf);
    }
    std::printf("\n");
  }
  for (int s = 0; s < node->NumOfSon; ++s) DisplayTreeByLayer(node->Son[s], layer);
}
