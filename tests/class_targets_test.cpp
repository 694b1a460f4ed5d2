// Mining with only the class values as targets: every class rule a full run
// finds is found, no other rule is written, and the tree stays smaller.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "base/numbers.h"
#include "input/readers.h"
#include "mining/mining.h"
#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::TempDir;
using testing_support::WriteFile;

// A rule as the classifier sees it: antecedent (ascending), target,
// support and antecedent support.
using RuleKey = std::tuple<std::vector<int>, int, int, int>;

struct RunSummary {
  std::map<RuleKey, float> classRules;  // with their confidence
  int otherRules = 0;                   // rules whose target is no class item
  int largestTree = 0;                  // tree size after each layer, the largest
};

RunSummary Mine(const DataSet& data, float support, float confidence, int layers, bool classOnly) {
  MiningOptions options;
  options.FileName = data.FileName;
  options.Support = support;
  options.MinConf = confidence;
  options.MaxLayer = layers;
  options.ClassTargetsOnly = classOnly ? 1 : 0;
  MinedRules run;
  run.GMinSup = ComputeMinSup(data.MaxData, support);
  RunSummary summary;
  std::FILE* sink = std::fopen("/dev/null", "w");
  MineLayers(run, data, options, sink, [&summary](int, const MinedRules& r) {
    summary.largestTree = std::max(summary.largestTree, r.Tree.TreeSize);
  });
  std::fclose(sink);
  const int firstClassItem = data.MaxItem - data.MaxClass + 1;
  for (const RuleRecord* r = run.Rules.First; r; r = r->Next) {
    if (r->Target < firstClassItem) {
      ++summary.otherRules;
      continue;
    }
    const RuleKey key{std::vector<int>(r->Antecedent, r->Antecedent + r->Len), r->Target, r->Supp, r->AntSupp};
    summary.classRules[key] = r->Conf;
  }
  return summary;
}

// Mines the data set both ways with each setting and checks that the
// class-only run holds every class rule of the full run, with the same
// confidence, and no rule of any other target. Returns the number of class
// rules only the class-only run found.
int CompareRuns(const std::string& stem, const std::vector<std::tuple<float, float, int>>& settings) {
  DataSet data;
  InputErrors errors;
  std::FILE* sink = std::fopen("/dev/null", "w");
  errors.Out = sink;
  Status status = GetNames(data, stem, errors);
  if (status.ok()) status = GetData(data, ".data", errors);
  std::fclose(sink);
  EXPECT_TRUE(status.ok()) << stem;
  if (!status.ok()) return 0;
  int extra = 0;
  for (const auto& [support, confidence, layers] : settings) {
    SCOPED_TRACE(stem + " -s " + std::to_string(support) + " -c " + std::to_string(confidence) + " -l " +
                 std::to_string(layers));
    const RunSummary full = Mine(data, support, confidence, layers, false);
    const RunSummary classOnly = Mine(data, support, confidence, layers, true);
    EXPECT_EQ(classOnly.otherRules, 0);
    int missing = 0;
    for (const auto& [key, conf] : full.classRules) {
      const auto found = classOnly.classRules.find(key);
      if (found == classOnly.classRules.end()) {
        ++missing;
        continue;
      }
      EXPECT_EQ(found->second, conf);
    }
    EXPECT_EQ(missing, 0) << "of " << full.classRules.size() << " class rules";
    EXPECT_GE(classOnly.classRules.size(), full.classRules.size());
    EXPECT_LE(classOnly.largestTree, full.largestTree);
    extra += static_cast<int>(classOnly.classRules.size() - full.classRules.size());
  }
  return extra;
}

// A data set of `attributes` attributes of 2 to 4 values and 2 to 4
// classes; the class follows a few attributes, some attributes follow
// others, and a few fields are unknown.
void WriteGeneratedSet(const std::string& stem, std::uint64_t seed) {
  std::uint64_t state = seed * 0x9E3779B97F4A7C15ull + 7;
  auto below = [&state](int n) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<int>(static_cast<std::uint32_t>(state >> 11) % static_cast<std::uint32_t>(n));
  };
  const int classes = 2 + below(3);
  const int attributes = 4 + below(4);
  const int cases = 150 + below(250);
  std::vector<int> values(static_cast<size_t>(attributes));
  std::string names;
  for (int c = 0; c < classes; ++c) names += "k" + std::to_string(c) + (c + 1 < classes ? ", " : ".\n");
  for (int a = 0; a < attributes; ++a) {
    values[a] = 2 + below(3);
    names += "a" + std::to_string(a) + ": ";
    for (int v = 0; v < values[a]; ++v) names += "v" + std::to_string(v) + (v + 1 < values[a] ? ", " : ".\n");
  }
  std::string data;
  for (int i = 0; i < cases; ++i) {
    std::vector<int> row(static_cast<size_t>(attributes));
    for (int a = 0; a < attributes; ++a) row[a] = below(values[a]);
    // Attribute 2 mostly copies attribute 0 (perfect and near-perfect rules
    // between attributes), and the class mostly follows attributes 0 and 1.
    if (below(100) < 80) row[2] = row[0] % values[2];
    const int cls = below(100) < 85 ? (row[0] + row[1]) % classes : below(classes);
    for (int a = 0; a < attributes; ++a) data += (below(100) < 3 ? "?" : "v" + std::to_string(row[a])) + ",";
    data += "k" + std::to_string(cls) + "\n";
  }
  WriteFile(stem + ".names", names);
  WriteFile(stem + ".data", data);
}

TEST(ClassTargetsOnly, GeneratedSetsKeepEveryClassRuleOfAFullRun) {
  TempDir dir;
  int extra = 0;
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    const std::string stem = dir / ("set" + std::to_string(seed));
    WriteGeneratedSet(stem, seed);
    extra += CompareRuns(stem, {{0.02f, 0.5f, 4}, {0.05f, 0.8f, 5}, {0.01f, 0.999999f, 4}});
  }
  std::printf("%d class rules found only by the class-only run\n", extra);
}

}  // namespace
