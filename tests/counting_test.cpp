// Support counting of a new layer, both per row and over the whole data.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::MinerTest;
using testing_support::NodeOf;

// A tree with layer 1 {1}, {4}, {6}, layer 2 {1,4}, {1,6}, {4,6} and the
// layer-3 node {1,4,6}, over items 1..8 in three columns.
class Counting3 : public MinerTest {
 protected:
  void Build(const std::vector<std::vector<short>>& rows, int columns = 3) {
    SetRows(8, columns, rows);
    testing_support::Capture([] {
      InitialCount();
      Counting();
    });
    AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
    AllSet->Item = -1;
    AllSet->Support = MaxData;
    AllSet->SonCapacity = 10;
    AllSet->Son = XAllocArray<TreeNode*>(10);
    TreeNode* n1 = NewNode(AllSet, 1);
    TreeNode* n4 = NewNode(AllSet, 4);
    TreeNode* n6 = NewNode(AllSet, 6);
    for (TreeNode* n : {n1, n4, n6}) LinkSon(AllSet, n);
    TreeNode* p14 = AddSon(n1, n4, nullptr, nullptr, nullptr);
    TreeNode* p16 = AddSon(n1, n6, nullptr, nullptr, nullptr);
    TreeNode* p46 = AddSon(n4, n6, nullptr, nullptr, nullptr);
    LinkSon(n1, p14);
    LinkSon(n1, p16);
    LinkSon(n4, p46);
    p14->Support = Counter2[1][4];
    p16->Support = Counter2[1][6];
    p46->Support = Counter2[4][6];
    const int flags[] = {1, 1, 1};
    const int supports[] = {p46->Support};
    TreeNode* const nodes[] = {p46};
    triple_ = AddSon(p14, p16, flags, supports, nodes);
    LinkSon(p14, triple_);
  }
  std::vector<int> Supports() const {
    return {NodeOf({1})->Support, NodeOf({4})->Support, NodeOf({6})->Support, NodeOf({1, 4})->Support,
            NodeOf({1, 6})->Support, NodeOf({4, 6})->Support, triple_->Support};
  }
  TreeNode* triple_ = nullptr;
};

TEST_F(Counting3, OnlyTheNewLayerIsCounted) {
  Build({{1, 4, 6}});
  ASSERT_EQ(TreeSize, 7);
  const std::vector<int> before = Supports();
  EXPECT_EQ(before.back(), 0);
  const short row[] = {1, 4, 6, 0};
  EXPECT_EQ(CountbyTree(AllSet, row, 3), 1);
  std::vector<int> after = before;
  after.back() = 1;
  EXPECT_EQ(Supports(), after);
}

TEST_F(Counting3, RowsThatDoNotHoldTheItemset) {
  Build({{1, 4, 6}});
  for (const std::vector<short>& row : std::vector<std::vector<short>>{
           {1, 5, 6, 0}, {2, 3, 5, 0}, {0, 0, 0, 0}, {1, 4, 7, 0}, {2, 4, 6, 0}}) {
    CountbyTree(AllSet, row.data(), 3);
  }
  EXPECT_EQ(triple_->Support, 0);
}

TEST_F(Counting3, UnknownItemInAColumnIsSkipped) {
  Build({{1, 0, 4, 6}}, 4);
  const short row[] = {1, 0, 4, 6, 0};
  CountbyTree(AllSet, row, 3);
  EXPECT_EQ(triple_->Support, 1);
}

TEST_F(Counting3, NullRootCountsNothing) {
  const short row[] = {1, 4, 6, 0};
  EXPECT_EQ(CountbyTree(nullptr, row, 3), 0);
}

TEST_F(Counting3, VerificationCountsEveryRowOnce) {
  Build({{1, 4, 6}, {1, 4, 6}, {1, 5, 6}, {2, 4, 6}, {1, 4, 7}, {1, 4, 6}, {0, 4, 6}});
  const std::vector<int> before = Supports();
  EXPECT_EQ(Verification(AllSet, 3), 1);
  std::vector<int> after = before;
  after.back() = 3;
  EXPECT_EQ(Supports(), after);
}

TEST_F(Counting3, VerificationWithoutCases) {
  Build({});
  EXPECT_EQ(Verification(AllSet, 3), 1);
  EXPECT_EQ(triple_->Support, 0);
}

// Every node of the counted layer gets the number of rows holding it; a
// deeper tree counted layer by layer from the real first layers.
class CountingDeep : public MinerTest {};

TEST_F(CountingDeep, EachLayerMatchesADirectCount) {
  // Four columns of two values each plus noise: items 1..8.
  std::vector<std::vector<short>> rows;
  for (int r = 0; r < 300; ++r) {
    rows.push_back({static_cast<short>(r % 2 ? 1 : 2), static_cast<short>(r % 3 ? 3 : 4),
                    static_cast<short>(r % 5 ? 5 : (r % 7 ? 6 : 0)), static_cast<short>(r % 4 ? 7 : 8)});
  }
  SetRows(8, 4, rows);
  BuildFirstLayers(1);
  MinConf = 2.0f;  // no rule: keep every node and target
  Ass = 1;
  testing_support::Capture([] { RuleSelectANdPruning(AllSet, 2); });
  for (int layer = 3; layer <= 4; ++layer) {
    ASSERT_GT(CandidateGen(AllSet, layer), 0);
    Verification(AllSet, layer);
    // Walk the layer and compare with a count over the rows.
    std::vector<TreeNode*> stack = {AllSet};
    int checked = 0;
    while (!stack.empty()) {
      TreeNode* node = stack.back();
      stack.pop_back();
      for (int s = 0; s < node->NumOfSon; ++s) stack.push_back(node->Son[s]);
      if (node->Length != layer) continue;
      int direct = 0;
      for (const auto& row : rows_) {
        int found = 0;
        for (int i = 0; i < node->Length; ++i)
          for (int c = 0; c < RealAtt; ++c) found += row[c] == node->ItemSet[i];
        direct += found == node->Length;
      }
      EXPECT_EQ(node->Support, direct) << "layer " << layer;
      ++checked;
    }
    EXPECT_GT(checked, 0);
    testing_support::Capture([layer] { RuleSelectANdPruning(AllSet, layer); });
  }
}

}  // namespace
