// Console reports: the layer report, the rule listings and the tree dumps.
#include <cstdio>

#include "output/reports.h"

namespace {
constexpr int kListed = 30;  // rules shown by the listings
}

void Report(const CandidateTree& tree, const RuleSet& rules, std::FILE* out) {
  std::fprintf(out, "The number of tree nodes %d \n", tree.TreeSize);
  std::fprintf(out, "The number of rules %d \n", rules.NumOfRules);
}

void PrintLayerReport(int layer, const MinedRules& run, std::FILE* out) {
  if (layer == 2) std::fprintf(out, "\n Report of 2 layers \n");
  else std::fprintf(out, "\n Report of %d layers \n", layer);
  Report(run.Tree, run.Rules, out);
}

int DisplayAbstractRule(const RuleSet& rules, std::FILE* out) {
  const int total = rules.NumOfRules;
  std::fprintf(out, "\nThe number of rules is %d", total);
  if (total > kListed) std::fprintf(out, "\n Print the first 30 rules \n");
  int shown = 0;
  for (const RuleRecord* r = rules.First; r && shown < kListed; r = r->Next, ++shown) {
    std::fprintf(out, "\n");
    for (int i = 0; i < r->Len; ++i) std::fprintf(out, "%d ", r->Antecedent[i]);
    std::fprintf(out, " -> %d", r->Target);
    std::fprintf(out, "\t Sup = %d", r->Supp);
    std::fprintf(out, "\t Conf = %f", r->Conf);
    std::fprintf(out, "\t Chi = %f", r->Score);
  }
  std::fprintf(out, "\n");
  return 1;
}

void DisplayRule(const RuleSet& rules, const DataSet& data, std::FILE* out) {
  const int total = rules.NumOfRules;
  std::fprintf(out, "\n- - - - - - - - - - - - - - - - - - - - - - - - - - - - \n");
  std::fprintf(out, "Number of rules %d \n", total);
  if (total > kListed) std::fprintf(out, "\n Print the first 30 rules \n");
  int k = 0;
  for (int t = 1; t <= data.MaxItem && k < kListed; ++t) {
    for (const RuleRecord* r = rules.First; r && k < kListed; r = r->Next) {
      if (r->Target != t) continue;
      ++k;
      std::fprintf(out, "%d:", k);
      for (int i = 0; i < r->Len; ++i) {
        const ItemEntry& item = *data.ItemRecord[r->Antecedent[i]];
        std::fprintf(out, "%s is %s; ", item.AttributeName.c_str(), item.ValueName.c_str());
      }
      std::fprintf(out, "(%d) ", r->AntSupp);
      const ItemEntry& target = *data.ItemRecord[t];
      std::fprintf(out, " -> %s is %s (%d), \t \t supp = %d, conf = %.4f \n", target.AttributeName.c_str(),
                  target.ValueName.c_str(), r->TargetSupp, r->Supp, r->Conf);
    }
  }
}

void DisplayTree(const TreeNode* node, std::FILE* out) {
  if (!node) return;
  if (node->Length > 0) {
    for (int i = 0; i < node->Length; ++i) std::fprintf(out, "%d ", node->ItemSet[i]);
    std::fprintf(out, "\t #sons = %d ", node->NumOfSon);
    if (node->Support > 0) {
      std::fprintf(out, "\tsupp=%d, \n", node->Support);
      if (node->Length > 2) {
        for (int i = 0; i < node->Length; ++i) {
          const TreeNode* sub = node->SubNode[i];
          std::fprintf(out, "\t subset %d: ", i);
          for (int m = 0; m < node->Length - 1; ++m) std::fprintf(out, "%d ", sub->ItemSet[m]);
          std::fprintf(out, "supp = %d(%d)", sub->Support, node->SubSupport[i]);
          if (node->TargetFlag[i] == 1) std::fprintf(out, "target = %d \n", node->ItemSet[i]);
          else std::fprintf(out, "\n");
        }
      }
    }
    std::fprintf(out, "\t #targets = %d, Token = %d \n", node->NumOfTarget, node->Token);
  }
  for (int s = 0; s < node->NumOfSon; ++s) DisplayTree(node->Son[s], out);
}

void DisplayTreeByLayer(const TreeNode* node, int layer, std::FILE* out) {
  if (!node) return;
  if (node->Length == layer) {
    for (int i = 0; i < node->Length; ++i) std::fprintf(out, "%d ", node->ItemSet[i]);
    std::fprintf(out, "\t : %d", node->NumOfSon);
    if (node->Support > 0) std::fprintf(out, "\tsum[%d], ", node->Support);
    if (node->Token > 0) {
      std::fprintf(out, "\t");
      if (node->TargetFlag[0] != static_cast<short>(65535)) std::fprintf(out, "%d ", node->TargetFlag[0]);
      std::fprintf(out, "\t acc= %.3f", node->Acc);
      std::fprintf(out, "\t conf=%.3f", node->Conf);
    }
    std::fprintf(out, "\n");
  }
  for (int s = 0; s < node->NumOfSon; ++s) DisplayTreeByLayer(node->Son[s], layer, out);
}
