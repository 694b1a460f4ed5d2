// The mining steps layer by layer on generated data sets, checked against
// direct counts over the coded cases: every node's support and antecedent
// supports, the shape of the tree, and every rule's counts.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "miner_fixture.h"
#include "synthetic_data.h"

namespace {

using testing_support::ItemsOf;
using Ints = std::vector<int>;

// Number of cases holding every item of the list.
int DirectCount(const DataSet& data, const Ints& items) {
  int count = 0;
  for (int r = 0; r < data.MaxData; ++r) {
    const short* row = data.DataSpace[r];
    count += std::all_of(items.begin(), items.end(),
                         [row, &data](int item) { return std::find(row, row + data.RealAtt, item) != row + data.RealAtt; });
  }
  return count;
}

class BruteForce : public testing_support::MinerTest, public ::testing::WithParamInterface<std::tuple<int, int, bool>> {
 protected:
  // Checks every node under node; counts the nodes, and those of the layer.
  void Walk(const TreeNode* node, int layer, bool selected, int& nodes, int& inLayer) {
    for (int s = 0; s < node->NumOfSon; ++s) {
      const TreeNode* son = node->Son[s];
      ASSERT_NE(son, nullptr) << "a hole among the first sons";
      const Ints items = ItemsOf(son);
      ASSERT_TRUE(son->Parent == node && son->Length == node->Length + 1);
      ASSERT_TRUE(s == 0 || node->Son[s - 1]->Item < son->Item) << "sons ascend";
      ASSERT_TRUE(std::is_sorted(items.begin(), items.end()));
      EXPECT_EQ(son->Support, DirectCount(data, items)) << ::testing::PrintToString(items);
      ++nodes;
      inLayer += son->Length == layer;
      EXPECT_TRUE(!selected || son->Length != layer || son->Support >= run.GMinSup) << "frequent after selection";
      int live = 0;
      for (size_t i = 0; son->Length >= 2 && i < items.size(); ++i) {
        Ints rest = items;
        rest.erase(rest.begin() + static_cast<long>(i));
        EXPECT_EQ(son->SubSupport[i], DirectCount(data, rest)) << ::testing::PrintToString(items) << " without " << i;
        ASSERT_NE(son->SubNode[i], nullptr);
        EXPECT_EQ(ItemsOf(son->SubNode[i]), rest);
        live += son->TargetFlag[i] != 0;
      }
      EXPECT_EQ(son->NumOfTarget, son->Length >= 2 ? live : 1);
      Walk(son, layer, selected, nodes, inLayer);
    }
  }
  // Checks the tree and the rules; returns the number of nodes of the layer.
  int Check(int layer, bool selected) {
    int nodes = 0, inLayer = 0;
    Walk(run.Tree.AllSet, layer, selected, nodes, inLayer);
    EXPECT_EQ(nodes, run.Tree.TreeSize) << "the node count";
    for (const RuleRecord* r = run.Rules.First; selected && r; r = r->Next) {
      Ints all = testing_support::AntecedentOf(r);
      EXPECT_EQ(r->AntSupp, DirectCount(data, all));
      all.push_back(r->Target);
      EXPECT_EQ(r->Supp, DirectCount(data, all));
      EXPECT_EQ(r->TargetSupp, DirectCount(data, {r->Target}));
      EXPECT_FLOAT_EQ(r->Conf, static_cast<float>(static_cast<double>(r->Supp) / r->AntSupp));
      EXPECT_GE(r->Supp, run.GMinSup);
      EXPECT_TRUE(ass_ ? static_cast<double>(r->Supp) / r->AntSupp >= 0.6f : r->Len > 1 || r->Supp == r->AntSupp)
          << "confident rules; without -a, only perfect one-item rules";
    }
    return inLayer;
  }
  int ass_ = 0;
};

TEST_P(BruteForce, EveryCountMatchesTheData) {
  const auto [seed, minSup, complete] = GetParam();
  const testing_support::SyntheticSet set = testing_support::MakeSyntheticSet(seed, 60 + seed * 7);
  Load(set.names, set.data);
  ASSERT_EQ(data.MaxData, set.cases);
  ass_ = complete ? 1 : 0;
  BuildFirstLayers(minSup);
  const SelectionSettings settings = Selection(0.6f, ass_);
  Check(2, false);
  RuleSelectANdPruning(run.Tree, run.Tree.AllSet, 2, settings, run.Counts, run.Rules);
  Check(2, true);
  int layers = 2;
  RowSets rows;
  for (int layer = 3; layer <= 5 && !HasFailure(); ++layer) {
    if (seed % 3 == 0) {
      // Counted as made: only the frequent candidates enter the tree.
      if (layer == 3) rows.Build(RowSets::SecondLayerItems(run.Tree.AllSet), data, 0, data.MaxData, 2, 0);
      const CandidateCounting counting{&rows, run.GMinSup, 2, 0};
      if (CandidateGen(run.Tree, run.Tree.AllSet, layer, settings.Dump, 0, &counting) == 0) break;
      Check(layer, true);
    } else {
      if (CandidateGen(run.Tree, run.Tree.AllSet, layer, settings.Dump) == 0) break;
      if (seed % 3 == 1) {
        // The row sweep.
        for (int r = 0; r < data.MaxData; ++r) CountbyTree(run.Tree.AllSet, data.DataSpace[r], layer, data.RealAtt);
      } else {
        // Blocks of 64 rows on two threads, the supports added up.
        CountingSettings counting;
        counting.Threads = 2;
        counting.BlockRows = 64;
        counting.ThreadWork = 0;
        Verification(run.Tree.AllSet, layer, data, counting);
      }
      EXPECT_GT(Check(layer, false), 0) << "layer " << layer;
    }
    RuleSelectANdPruning(run.Tree, run.Tree.AllSet, layer, settings, run.Counts, run.Rules);
    Check(layer, true);
    layers = layer;
  }
  EXPECT_GE(layers, 3) << "the generated sets are meant to reach layer 3";
  EXPECT_GT(run.Rules.NumOfRules, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, BruteForce,
                         ::testing::Combine(::testing::Values(1, 2, 3, 4, 5, 6), ::testing::Values(0, 1, 4),
                                            ::testing::Bool()));

}  // namespace
