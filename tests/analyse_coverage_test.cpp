// Coverage of the cases by the marked (perfect-rule) nodes of a small tree.
#include <string>
#include <vector>

#include "analyses/analyses.h"
#include "base/memory.h"
#include "miner_fixture.h"

namespace {

using testing_support::RuletestWorld;

// Items 1, 4, 6; nodes {1}, {4}, {6}, {1,4}, {1,6}, {4,6} and {1,4,6}.
class CoverageTest : public RuletestWorld {
 protected:
  TreeNode *root, *n1, *n4, *n6, *n14, *n16, *n46, *n146;

  void SetUp() override {
    RuletestWorld::SetUp();
    data.MaxItem = 8, data.RealAtt = 3, data.MaxData = 10;
    InitialCount(run.Counts, data);
    CandidateTree& tree = run.Tree;
    root = tree.NewRoot();
    root->Item = -1;
    root->SonCapacity = data.MaxItem + 1;
    root->Son = XAllocArray<TreeNode*>(static_cast<size_t>(root->SonCapacity));
    n1 = Link(root, NewNode(tree, root, 1, run.Counts, data.MaxData));
    n4 = Link(root, NewNode(tree, root, 4, run.Counts, data.MaxData));
    n6 = Link(root, NewNode(tree, root, 6, run.Counts, data.MaxData));
    n14 = Link(n1, AddSon(tree, n1, n4, nullptr, nullptr, nullptr));
    n16 = Link(n1, AddSon(tree, n1, n6, nullptr, nullptr, nullptr));
    n46 = Link(n4, AddSon(tree, n4, n6, nullptr, nullptr, nullptr));
    const int flags[] = {1, 1, 1}, subSupports[] = {0};
    TreeNode* const subNodes[] = {n46};
    n146 = Link(n14, AddSon(tree, n14, n16, flags, subSupports, subNodes));
  }
  static TreeNode* Link(TreeNode* parent, TreeNode* son) {
    LinkSon(parent, son);
    return son;
  }
  static void Mark(TreeNode* node, short flag1) { node->Token = 2, node->TargetFlag[1] = flag1; }
  std::string Entry(std::vector<int> row, int expectedResult) {
    EXPECT_EQ(CountEntry(root, row.data(), data.RealAtt, coverage, out.file()), expectedResult);
    return out.Take();
  }
  Coverage coverage;
};

TEST_F(CoverageTest, CaseReachingNoMarkedNodeChangesNothing) {
  coverage = Coverage{5, 7};
  n146->Token = -2;  // only positive marks count
  EXPECT_EQ(Entry({1, 4, 6}, 0), "");
  EXPECT_EQ(coverage.Loose, 5);
  EXPECT_EQ(coverage.Tough, 7);
}

TEST_F(CoverageTest, TwoMarkedNodesCountOnceAndPrintTheFirstReached) {
  // In the last column the list holds {1}, {4}, {1,4}: {4,6} is reached
  // before the longer {1,4,6}.
  Mark(n146, 0);
  Mark(n46, 1);
  n46->TargetFlag[0] = 0;
  EXPECT_EQ(Entry({1, 4, 6}, 0), "\n **4,6,Target[0] = 0, Target[1] = 1");
  EXPECT_EQ(coverage.Loose, 1);
  EXPECT_EQ(coverage.Tough, 0);
}

// A node whose second flag is all ones covers toughly; with a loose one
// reached too, the case is done at once.
TEST_F(CoverageTest, LooseAndToughCoverOfSeveralCases) {
  Mark(n14, static_cast<short>(0xFFFF));
  Mark(n6, 1);
  std::vector<int> cells = {1, 4, 6, 1, 4, 0, 6, 0, 0, 0, 0, 0};
  int* rows[] = {&cells[0], &cells[3], &cells[6], &cells[9]};
  const Coverage counted = CoverageCount(root, rows, 4, data.RealAtt, out.file());
  EXPECT_EQ(counted.Loose, 2);
  EXPECT_EQ(counted.Tough, 2);
  EXPECT_EQ(out.Take(), "\n **6,Target[0] = -1, Target[1] = 1\n **6,Target[0] = -1, Target[1] = 1");
}

}  // namespace
