// Fuzzes a whole run of the miner on a fuzzed names/data pair with fuzzed
// option values, followed by the analyses of rule-analyse. The input is five lines holding the arguments of -s, -c,
// -l, -a and -x (an empty line for -a or -x leaves that option out), then
// the names file, a line "%%", and the data file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz_support.h"
#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

namespace {

// The largest layer mined. Layer 3 is always built.
constexpr long kMaxLayer = 5;
// A small support lets the candidate tree grow combinatorially (as designed,
// up to its 10,000,000-node limit); inputs whose tree could exceed this many
// nodes teach the fuzzer nothing new and only slow it down.
constexpr double kMaxNodes = 5000;

std::string NextLine(const std::string& text, size_t& at) {
  if (at >= text.size()) return "";
  size_t end = text.find('\n', at);
  if (end == std::string::npos) end = text.size();
  std::string line = text.substr(at, end - at);
  at = end + 1;
  return line;
}

double Choose(int n, int k) {
  double c = 1;
  for (int i = 0; i < k; ++i) c = c * (n - i) / (i + 1);
  return c;
}

// An upper bound of the nodes the run can build: with a minimum support of
// at least one case, every node is a subset of some case; otherwise any
// combination of frequent items can be. Negative when the files end the run.
double NodeBound(float support, int layers) {
  double bound = -1;
  fuzz_support::OneRun([&] {
    FileName = fuzz_support::PathOf("set");
    GetNames();
    GetData(".data");
    const int minSup = ComputeMinSup(MaxData, support);
    std::vector<int> count(static_cast<size_t>(MaxItem) + 1, 0);
    for (int i = 0; i < MaxData; ++i)
      for (int c = 0; c < RealAtt; ++c) ++count[DataSpace[i][c]];
    auto frequent = [&](int item) { return item > 0 && count[item] >= minSup; };
    bound = 0;
    if (minSup <= 0) {
      int items = 0;
      for (int item = 1; item <= MaxItem; ++item) items += frequent(item);
      for (int k = 1; k <= layers; ++k) bound += Choose(items, k);
      return;
    }
    for (int i = 0; i < MaxData; ++i) {
      int items = 0;
      for (int c = 0; c < RealAtt; ++c) items += frequent(DataSpace[i][c]);
      for (int k = 1; k <= layers; ++k) bound += Choose(items, k);
    }
  });
  return bound;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  size_t at = 0;
  const std::string support = NextLine(input, at);
  const std::string confidence = NextLine(input, at);
  std::string layer = NextLine(input, at);
  const std::string ass = NextLine(input, at);
  const std::string debug = NextLine(input, at);
  std::string names, cases;
  fuzz_support::SplitAt(at < input.size() ? input.substr(at) : "", "\n%%\n", names, cases);

  fuzz_support::Put("set.names", names);
  fuzz_support::Put("set.data", cases);
  long layers = std::strtol(layer.c_str(), nullptr, 10);
  if (layers > kMaxLayer) {
    layers = kMaxLayer;
    layer = std::to_string(kMaxLayer);
  }
  // The miner reads -s as strtod does.
  const float fraction = static_cast<float>(std::strtod(support.c_str(), nullptr));
  if (NodeBound(fraction, layers < 3 ? 3 : static_cast<int>(layers)) > kMaxNodes) return 0;

  const std::string stem = fuzz_support::PathOf("set");
  std::vector<std::string> args = {"rule", "-f", stem, "-s", support, "-c", confidence, "-l", layer};
  if (!ass.empty()) args.insert(args.end(), {"-a", ass});
  if (!debug.empty()) args.insert(args.end(), {"-x", debug});
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(&arg[0]);
  argv.push_back(nullptr);

  int status = 0;
  const int ended = fuzz_support::OneRun([&] {
    status = RunMiner(static_cast<int>(args.size()), argv.data());
    // The analyses rule-analyse makes of a rule set mined in the default mode.
    if (status == 0 && ass.empty()) {
      SortRuleSet();
      CountDerivableRule();
      CoverageOfData(AllSet);
      FUZZ_CHECK(LooseCov >= 0 && LooseCov <= MaxData && ToughCov >= 0 && ToughCov <= MaxData);
    }
  });
  if (ended != -1) status = ended;
  // Every way a run ends has status 0 or 1.
  FUZZ_CHECK(status == 0 || status == 1);
  return 0;
}
