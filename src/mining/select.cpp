// Rule selection and pruning: deletes the infrequent nodes of the newest
// layer, turns the rest into rules, and kills the targets and nodes that no
// larger itemset could turn into a better rule.
#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "mining/mining.h"

namespace {

constexpr double kPerfect = 0.999999;

void PrintItems(std::FILE* out, const TreeNode* node) {
  for (int i = 0; i < node->Length; ++i) std::fprintf(out, "%d ", node->ItemSet[i]);
}

// Writes the rule unless only class rules are wanted and its target is no
// class item.
void Write(RuleSet& rules, const TreeNode* s, int j, double conf, const SelectionSettings& settings,
           const ItemCounts& counts) {
  if (settings.ClassTargetsFrom > 0 && s->ItemSet[j] < settings.ClassTargetsFrom) return;
  WriteToRuleSet(rules, s, j, static_cast<float>(conf), counts);
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
    if (conf >= settings.MinConf) Write(rules, s, j, conf, settings, counts);
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
    Write(rules, s, j, conf, settings, counts);
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
  if (conf >= settings.MinConf && conf > best + settings.IMP) Write(rules, s, j, conf, settings, counts);
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

namespace {

// Whether the itemset without class item can still be the antecedent of a
// class rule, or of one of its extensions: some class c has every itemset
// (node without one item) + c in the tree, c live. Node + c is then a
// candidate of the next layer with c live, and any larger antecedent holds
// node and so needs the same.
bool LeadsToClassRule(const CandidateTree& tree, const TreeNode* node, int classTargetsFrom, int lastItem,
                      std::vector<int>& items) {
  if (node->Token == 2) return false;  // node + c would hold the perfect rule: c dies
  const int n = node->Length;
  items.resize(static_cast<size_t>(n));
  for (int c = classTargetsFrom; c <= lastItem; ++c) {
    bool live = true;
    for (int skip = 0; skip < n && live; ++skip) {
      int k = 0;
      for (int i = 0; i < n; ++i)
        if (i != skip) items[k++] = node->ItemSet[i];
      items[k++] = c;
      const TreeNode* with = SearchSubSet(tree, items.data(), k);
      live = with && with->TargetFlag[with->Length - 1] != 0;
    }
    if (live) return true;
  }
  return false;
}

// Adds to doomed the slots of the sons of parent that can lead to no class
// rule.
void MarkSons(const CandidateTree& tree, TreeNode* parent, int classTargetsFrom, int lastItem,
              std::vector<int>& items, std::vector<std::pair<TreeNode*, int>>& doomed) {
  for (int slot = 0; slot < parent->NumOfSon; ++slot) {
    TreeNode* s = parent->Son[slot];
    if (!s || s->Token == -2) continue;
    const bool useful = s->Item >= classTargetsFrom ? s->TargetFlag[s->Length - 1] != 0
                                                    : LeadsToClassRule(tree, s, classTargetsFrom, lastItem, items);
    if (!useful) doomed.emplace_back(parent, slot);
  }
}

// The parents of the newest layer's nodes, in tree order.
void ParentsOfLayer(TreeNode* node, int layer, std::vector<TreeNode*>& parents) {
  if (!node) return;
  if (node->Length == layer - 1) {
    if (node->NumOfSon > 0) parents.push_back(node);
    return;
  }
  for (int s = 0; s < node->NumOfSon; ++s) ParentsOfLayer(node->Son[s], layer, parents);
}

}  // namespace

int PruneForClassTargets(CandidateTree& tree, int layer, int classTargetsFrom) {
  std::vector<TreeNode*> parents;
  ParentsOfLayer(tree.AllSet, layer, parents);
  // The largest item code in the tree closes the range of class items.
  int lastItem = classTargetsFrom - 1;
  const TreeNode* root = tree.AllSet;
  for (int s = 0; root && s < root->NumOfSon; ++s) lastItem = std::max(lastItem, static_cast<int>(root->Son[s]->Item));
  // Every node is judged before any goes: the judgement looks nodes up
  // through the son arrays, which must stay whole.
  std::vector<int> items;
  std::vector<std::pair<TreeNode*, int>> doomed;
  for (TreeNode* parent : parents) MarkSons(tree, parent, classTargetsFrom, lastItem, items, doomed);
  for (size_t k = 0; k < doomed.size(); ++k) {
    TreeNode* parent = doomed[k].first;
    const int slot = doomed[k].second;
    parent->Son[slot] = DeleteNode(tree, parent->Son[slot]);
    if (k + 1 == doomed.size() || doomed[k + 1].first != parent) ReOrderSon(parent);
  }
  return static_cast<int>(doomed.size());
}
