// Item and pair counts and the first two layers of the candidate tree.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::FlagsOf;
using testing_support::ItemsOf;
using testing_support::MinerTest;
using testing_support::NodeOf;
using testing_support::Outcome;

// Items 1, 2 (first attribute), 3, 4 (second) and classes 5, 6.
class FirstLayer : public MinerTest {
 protected:
  void SetUp() override {
    MinerTest::SetUp();
    SetRows(6, 3, {{1, 3, 5}, {1, 4, 5}, {2, 3, 5}});
  }
  static std::vector<int> Layer1Items() {
    std::vector<int> items;
    for (int s = 0; s < AllSet->NumOfSon; ++s) items.push_back(AllSet->Son[s]->Item);
    return items;
  }
};

TEST_F(FirstLayer, CountsEveryItemAndOrderedPair) {
  BuildFirstLayers(2);
  const int expected1[] = {0, 2, 1, 2, 1, 3, 0, 0};
  for (int item = 0; item <= 7; ++item) EXPECT_EQ(Counter1[item], expected1[item]) << item;
  EXPECT_EQ(Counter2[1][3], 1);
  EXPECT_EQ(Counter2[1][5], 2);
  EXPECT_EQ(Counter2[3][5], 2);
  EXPECT_EQ(Counter2[2][5], 1);
  EXPECT_EQ(Counter2[5][1], 0);  // pairs are counted in column order
  EXPECT_EQ(Counter2[1][2], 0);  // one value per attribute
}

TEST_F(FirstLayer, WorkedExample) {
  Outcome built = BuildFirstLayers(2);
  EXPECT_EQ(built.output, "The first layer tree size is 3 \n");
  EXPECT_EQ(Layer1Items(), (std::vector<int>{1, 3, 5}));
  EXPECT_EQ(AllSet->Item, -1);
  EXPECT_EQ(AllSet->Length, 0);
  EXPECT_EQ(AllSet->Support, 3);
  EXPECT_EQ(AllSet->SonCapacity, 7);

  TreeNode* p15 = NodeOf({1, 5});
  TreeNode* p35 = NodeOf({3, 5});
  ASSERT_NE(p15, nullptr);
  ASSERT_NE(p35, nullptr);
  EXPECT_EQ(NodeOf({1, 3}), nullptr);  // seen together once only
  EXPECT_EQ(p15->Support, 2);
  EXPECT_EQ(p35->Support, 2);
  EXPECT_EQ(FlagsOf(p15), (std::vector<int>{1, 1}));
  EXPECT_EQ(p15->SubSupport[0], 3);  // Counter1[5]
  EXPECT_EQ(p15->SubSupport[1], 2);  // Counter1[1]
  EXPECT_EQ(p15->SubNode[0], NodeOf({5}));
  EXPECT_EQ(p15->SubNode[1], NodeOf({1}));
  EXPECT_EQ(NodeOf({5})->NumOfSon, 0);
  EXPECT_EQ(TreeSize, 5);
}

TEST_F(FirstLayer, ThresholdIsInclusive) {
  BuildFirstLayers(3);
  EXPECT_EQ(Layer1Items(), (std::vector<int>{5}));  // count 3 kept, count 2 not
  EXPECT_EQ(TreeSize, 1);  // a single frequent item: no pair
}

TEST_F(FirstLayer, UnknownItemIsNeverANode) {
  SetRows(4, 2, {{0, 3}, {0, 3}, {0, 4}, {1, 3}});
  BuildFirstLayers(1);
  EXPECT_EQ(Counter1[0], 3);
  EXPECT_EQ(Layer1Items(), (std::vector<int>{1, 3, 4}));
  EXPECT_NE(NodeOf({1, 3}), nullptr);
  EXPECT_EQ(TreeSize, 4);
}

TEST_F(FirstLayer, ZeroMinimumSupportTakesEveryItemAndPair) {
  BuildFirstLayers(0);
  EXPECT_EQ(Layer1Items(), (std::vector<int>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(TreeSize, 6 + 15);
  EXPECT_EQ(NodeOf({2, 6})->Support, 0);
  EXPECT_EQ(NodeOf({1, 2})->Support, 0);
  EXPECT_EQ(NodeOf({1, 5})->Support, 2);
}

TEST_F(FirstLayer, SonArraysGrowPastTenPairs) {
  // One item in every row, with twelve others each seen with it once.
  std::vector<std::vector<short>> rows;
  for (short other = 2; other <= 13; ++other) rows.push_back({1, other});
  SetRows(13, 2, rows);
  BuildFirstLayers(1);
  TreeNode* one = NodeOf({1});
  ASSERT_EQ(one->NumOfSon, 12);
  EXPECT_GE(one->SonCapacity, 13);
  for (int s = 0; s < 12; ++s) {
    EXPECT_EQ(one->Son[s]->Item, s + 2);
    EXPECT_EQ(one->Son[s]->Support, 1);
  }
}

TEST_F(FirstLayer, NoCasesAtAll) {
  SetRows(6, 3, {});
  Outcome built = BuildFirstLayers(1);
  EXPECT_EQ(built.output, "The first layer tree size is 0 \n");
  EXPECT_EQ(AllSet->Support, 0);
  EXPECT_EQ(TreeSize, 0);
}

}  // namespace
