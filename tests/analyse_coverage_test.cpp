// Coverage of the cases by the marked (perfect-rule) nodes of a small tree.
#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

// Items 1, 4, 6; nodes {1}, {4}, {6}, {1,4}, {1,6}, {4,6} and {1,4,6}.
class CoverageTest : public RuletestWorld {
 protected:
  TreeNode *n1, *n4, *n6, *n14, *n16, *n46, *n146;

  void SetUp() override {
    RuletestWorld::SetUp();
    MaxItem = 8, RealAtt = 3, MaxData = 10;
    InitialCount();
    AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
    AllSet->Item = -1;
    AllSet->SonCapacity = MaxItem + 1;
    AllSet->Son = XAllocArray<TreeNode*>(static_cast<size_t>(AllSet->SonCapacity));
    n1 = Link(AllSet, NewNode(AllSet, 1));
    n4 = Link(AllSet, NewNode(AllSet, 4));
    n6 = Link(AllSet, NewNode(AllSet, 6));
    n14 = Link(n1, AddSon(n1, n4, nullptr, nullptr, nullptr));
    n16 = Link(n1, AddSon(n1, n6, nullptr, nullptr, nullptr));
    n46 = Link(n4, AddSon(n4, n6, nullptr, nullptr, nullptr));
    const int flags[] = {1, 1, 1}, subSupports[] = {0};
    TreeNode* const subNodes[] = {n46};
    n146 = Link(n14, AddSon(n14, n16, flags, subSupports, subNodes));
  }
  static TreeNode* Link(TreeNode* parent, TreeNode* son) {
    LinkSon(parent, son);
    return son;
  }
  static void Mark(TreeNode* node, short flag1) { node->Token = 2, node->TargetFlag[1] = flag1; }
  static std::string Entry(std::vector<int> row, int expectedResult) {
    return Printed([&] { EXPECT_EQ(CountEntry(AllSet, row.data()), expectedResult); });
  }
};

TEST_F(CoverageTest, CaseReachingNoMarkedNodeChangesNothing) {
  LooseCov = 5, ToughCov = 7;
  n146->Token = -2;  // only positive marks count
  EXPECT_EQ(Entry({1, 4, 6}, 0), "");
  EXPECT_EQ(LooseCov, 5);
  EXPECT_EQ(ToughCov, 7);
}

TEST_F(CoverageTest, TwoMarkedNodesCountOnceAndPrintTheFirstReached) {
  // In the last column the list holds {1}, {4}, {1,4}: {4,6} is reached
  // before the longer {1,4,6}.
  Mark(n146, 0);
  Mark(n46, 1);
  n46->TargetFlag[0] = 0;
  EXPECT_EQ(Entry({1, 4, 6}, 0), "\n **4,6,Target[0] = 0, Target[1] = 1");
  EXPECT_EQ(LooseCov, 1);
  EXPECT_EQ(ToughCov, 0);
}

}  // namespace
