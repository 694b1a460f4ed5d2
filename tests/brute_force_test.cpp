// The mining steps layer by layer on generated data sets, checked against
// direct counts over the coded cases: every node's support and antecedent
// supports, the shape of the tree, and every rule's counts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "miner_fixture.h"
#include "synthetic_data.h"

namespace {

using testing_support::Capture;
using testing_support::ItemsOf;
using testing_support::MinerTest;

// Number of cases holding every item of the list.
int DirectCount(const std::vector<int>& items) {
  int count = 0;
  for (int r = 0; r < MaxData; ++r) {
    const short* row = DataSpace[r];
    bool all = true;
    for (int item : items) {
      bool found = false;
      for (int c = 0; c < RealAtt && !found; ++c) found = row[c] == item;
      all = all && found;
    }
    count += all;
  }
  return count;
}

std::vector<int> Without(const std::vector<int>& items, size_t position) {
  std::vector<int> rest = items;
  rest.erase(rest.begin() + static_cast<long>(position));
  return rest;
}

class BruteForce : public MinerTest, public ::testing::WithParamInterface<std::tuple<int, int, bool>> {
 protected:
  // Checks every node of the tree; returns the number of nodes of the layer.
  int CheckTree(int layer, bool selected) {
    int nodes = 0;
    int inLayer = 0;
    Walk(AllSet, layer, selected, nodes, inLayer);
    EXPECT_EQ(nodes, TreeSize) << "the node count";
    return inLayer;
  }
  void Walk(const TreeNode* node, int layer, bool selected, int& nodes, int& inLayer) {
    for (int s = 0; s < node->NumOfSon; ++s) {
      const TreeNode* son = node->Son[s];
      ASSERT_NE(son, nullptr) << "a hole among the first sons";
      ++nodes;
      const std::vector<int> items = ItemsOf(son);
      ASSERT_EQ(son->Length, node->Length + 1);
      ASSERT_EQ(son->Parent, node);
      if (s > 0) {
        ASSERT_LT(node->Son[s - 1]->Item, son->Item) << "sons ascend";
      }
      ASSERT_TRUE(std::is_sorted(items.begin(), items.end()));
      EXPECT_EQ(son->Support, DirectCount(items)) << ::testing::PrintToString(items);
      if (son->Length == layer) ++inLayer;
      if (selected && son->Length == layer) {
        EXPECT_GE(son->Support, GMinSup);
      }
      if (son->Length >= 2) {
        int live = 0;
        for (size_t i = 0; i < items.size(); ++i) {
          const std::vector<int> rest = Without(items, i);
          EXPECT_EQ(son->SubSupport[i], DirectCount(rest)) << ::testing::PrintToString(items) << " without " << i;
          ASSERT_NE(son->SubNode[i], nullptr);
          EXPECT_EQ(ItemsOf(son->SubNode[i]), rest);
          live += son->TargetFlag[i] != 0;
        }
        EXPECT_EQ(son->NumOfTarget, live);
      }
      Walk(son, layer, selected, nodes, inLayer);
    }
  }
  void CheckRules() {
    for (const RuleRecord* r = RuleSet->First; r; r = r->Next) {
      std::vector<int> antecedent = testing_support::AntecedentOf(r);
      std::vector<int> all = antecedent;
      all.push_back(r->Target);
      std::sort(all.begin(), all.end());
      EXPECT_EQ(r->Supp, DirectCount(all));
      EXPECT_EQ(r->AntSupp, DirectCount(antecedent));
      EXPECT_EQ(r->TargetSupp, DirectCount({r->Target}));
      EXPECT_FLOAT_EQ(r->Conf, static_cast<float>(static_cast<double>(r->Supp) / r->AntSupp));
      EXPECT_GE(r->Supp, GMinSup);
      if (Ass) {
        EXPECT_GE(static_cast<double>(r->Supp) / r->AntSupp, MinConf);
      } else if (r->Len <= 1) {
        EXPECT_EQ(r->Supp, r->AntSupp) << "only perfect one-item rules";
      }
    }
  }
};

TEST_P(BruteForce, EveryCountMatchesTheData) {
  const auto [seed, minSup, complete] = GetParam();
  const testing_support::SyntheticSet set = testing_support::MakeSyntheticSet(seed, 60 + seed * 7);
  Load(set.names, set.data);
  ASSERT_EQ(MaxData, set.cases);
  GMinSup = minSup;
  MinConf = 0.6f;
  Ass = complete ? 1 : 0;
  const int maxLayer = 5;

  Capture([] {
    AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
    InitialCount();
    Counting();
    InitRuleSet();
    InitWholeTree(AllSet);
  });
  CheckTree(2, false);
  Capture([] { RuleSelectANdPruning(AllSet, 2); });
  CheckTree(2, true);
  CheckRules();
  int layers = 2;
  for (int layer = 3; layer <= maxLayer; ++layer) {
    int made = 0;
    Capture([&made, layer] { made = CandidateGen(AllSet, layer); });
    if (made == 0) break;
    if (seed % 2) {
      // The row sweep, which counts when the per-item row sets do not fit.
      for (int r = 0; r < MaxData; ++r) CountbyTree(AllSet, DataSpace[r], layer);
    } else {
      Verification(AllSet, layer);
    }
    EXPECT_GT(CheckTree(layer, false), 0) << "layer " << layer;
    Capture([layer] { RuleSelectANdPruning(AllSet, layer); });
    CheckTree(layer, true);
    CheckRules();
    layers = layer;
    if (HasFailure()) break;
  }
  EXPECT_GE(layers, 3) << "the generated sets are meant to reach layer 3";
  EXPECT_GT(RuleSet->NumOfRules, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, BruteForce,
                         ::testing::Combine(::testing::Values(1, 2, 3, 4, 5, 6), ::testing::Values(0, 1, 4),
                                            ::testing::Bool()));

}  // namespace
