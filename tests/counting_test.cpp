// The counting of a run does not change its results: candidates counted as
// they are made or afterwards in blocks of rows, on one thread or several,
// give the same tree, the same rules and the same console output.
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "miner_fixture.h"
#include "output/reports.h"

namespace {

using testing_support::MaskRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

// Cases of `attributes` attributes of 3 values in correlated blocks of 4 and
// a class following the last block: many frequent pairs and itemsets of
// four items, so every layer has work for several threads. Deterministic
// from the seed.
std::pair<std::string, std::string> CorrelatedSet(uint64_t seed, int cases, int attributes) {
  uint64_t state = seed * 0x9E3779B97F4A7C15ull + 7;
  auto below = [&state](int n) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<int>(static_cast<uint32_t>(state >> 11) % static_cast<uint32_t>(n));
  };
  std::string names = "c0, c1.\n";
  for (int a = 0; a < attributes; ++a) names += "a" + std::to_string(a) + ": x, y, z.\n";
  std::ostringstream data;
  const char* values[] = {"x", "y", "z"};
  for (int r = 0; r < cases; ++r) {
    int hidden = 0;
    for (int a = 0; a < attributes; ++a) {
      if (a % 4 == 0) hidden = below(3);
      const int value = below(100) < 70 ? hidden : below(3);
      data << (below(100) < 2 ? "?" : values[value]) << ",";
    }
    data << (below(100) < 85 ? (hidden == 0 ? "c0" : "c1") : "c0") << "\n";
  }
  return {names, data.str()};
}

class CountingTest : public testing_support::MinerTest {
 protected:
  // The whole console output of a run (layer reports included) and the rules.
  struct Mined {
    std::string output;
    std::vector<std::vector<int>> rules;
    int treeSize = 0;
  };
  Mined Mine(const MiningOptions& options, int minSup) {
    MinedRules mined;
    mined.GMinSup = minSup;
    MineLayers(mined, data, options, out.file(), [this](int layer, const MinedRules& sofar) {
      PrintLayerReport(layer, sofar, out.file());
    });
    Mined result;
    result.output = out.Take();
    result.treeSize = mined.Tree.TreeSize;
    for (const RuleRecord* r : testing_support::RulesOf(mined.Rules)) {
      std::vector<int> rule = testing_support::AntecedentOf(r);
      rule.insert(rule.end(), {-1, r->Target, r->Supp, r->AntSupp});
      result.rules.push_back(rule);
    }
    return result;
  }
};

TEST_F(CountingTest, BlocksAndThreadsGiveTheSameRun) {
  const auto set = CorrelatedSet(3, 3000, 12);
  Load(set.first, set.second);
  for (int ass : {0, 1}) {
    MiningOptions options;
    options.MaxLayer = 5;
    options.MinConf = 0.7f;
    options.Ass = ass;
    const Mined whole = Mine(options, 150);
    ASSERT_GT(whole.rules.size(), 20u);
    ASSERT_NE(whole.output.find("Report of 4 layers"), std::string::npos) << whole.output;
    for (int threads : {2, 8}) {
      for (int blockRows : {0, 64, 1000}) {
        SCOPED_TRACE("threads " + std::to_string(threads) + ", block rows " + std::to_string(blockRows));
        options.Threads = threads;
        options.ThreadWork = 0;  // share out even this small work
        options.CountBlockRows = blockRows;
        const Mined other = Mine(options, 150);
        EXPECT_EQ(other.output, whole.output);
        EXPECT_EQ(other.rules, whole.rules);
        EXPECT_EQ(other.treeSize, whole.treeSize);
      }
    }
  }
}

// A candidate whose count falls short never enters the tree when it is
// counted as it is made, yet still counts as made: a layer whose
// candidates all fall short is reported, and only then the loop ends.
TEST_F(CountingTest, ALayerOfInfrequentCandidatesIsStillReported) {
  // {1,3}, {1,5} and {3,5} reach 2 cases, {1,3,5} none.
  SetRows(6, 3, {{1, 3, 0}, {1, 0, 5}, {0, 3, 5}, {1, 3, 0}, {1, 0, 5}, {0, 3, 5}});
  for (int blockRows : {0, 64}) {
    MiningOptions options;
    options.MaxLayer = 6;
    options.CountBlockRows = blockRows;
    const Mined mined = Mine(options, 2);
    EXPECT_NE(mined.output.find("Report of 3 layers"), std::string::npos) << mined.output;
    EXPECT_EQ(mined.output.find("Report of 4 layers"), std::string::npos) << mined.output;
  }
}

}  // namespace
