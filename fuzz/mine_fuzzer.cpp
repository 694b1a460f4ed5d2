// Fuzzes a whole run of the miner on a fuzzed names/data pair with fuzzed
// option values, followed by the analyses of rule-analyse on the rule set
// mined in the default mode. The input is five lines holding the arguments
// of -s, -c, -l, -a and -x (an empty line for -a or -x leaves that option
// out), then the names file, a line "%%", and the data file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "analyses/analyses.h"
#include "base/numbers.h"
#include "fuzz_support.h"
#include "input/readers.h"
#include "mining/mining.h"
#include "rule/run_miner.h"

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
    DataSet data;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(data, fuzz_support::PathOf("set"), errors));
    RETURN_IF_FAILED(GetData(data, ".data", errors));
    const int minSup = ComputeMinSup(data.MaxData, support);
    std::vector<int> count(static_cast<size_t>(data.MaxItem) + 1, 0);
    for (int i = 0; i < data.MaxData; ++i)
      for (int c = 0; c < data.RealAtt; ++c) ++count[data.DataSpace[i][c]];
    auto frequent = [&](int item) { return item > 0 && count[item] >= minSup; };
    bound = 0;
    if (minSup <= 0) {
      int items = 0;
      for (int item = 1; item <= data.MaxItem; ++item) items += frequent(item);
      for (int k = 1; k <= layers; ++k) bound += Choose(items, k);
      return Status();
    }
    for (int i = 0; i < data.MaxData; ++i) {
      int items = 0;
      for (int c = 0; c < data.RealAtt; ++c) items += frequent(data.DataSpace[i][c]);
      for (int k = 1; k <= layers; ++k) bound += Choose(items, k);
    }
    return Status();
  });
  return bound;
}

// The analyses of rule-analyse on the rule set mined with the options as
// the miner reads them: the derivable rules, then the coverage of the cases.
Status Analyse(const std::string& stem, const std::string& support, const std::string& confidence,
               const std::string& layer) {
  MiningOptions options;
  options.FileName = stem;
  options.Support = ParseFloat(support.c_str());
  options.MinConf = ParseFloat(confidence.c_str());
  options.MaxLayer = ParseInt(layer.c_str());
  options.KeepPairCounts = true;  // the derivable-rule count reads them
  DataSet data;
  InputErrors errors;
  RETURN_IF_FAILED(GetNames(data, stem, errors));
  RETURN_IF_FAILED(GetData(data, ".data", errors));
  MinedRules run;
  run.GMinSup = ComputeMinSup(data.MaxData, options.Support);
  MineLayers(run, data, options, stdout, nullptr);
  SortRuleSet(run.Rules);
  const int before = run.Rules.NumOfRules;
  const int derivable = CountDerivableRule(run.Rules, run.Counts, data.MaxItem, options.MinConf, stdout);
  FUZZ_CHECK(derivable >= 0);
  FUZZ_CHECK(run.Counts.Pairs == nullptr);
  // The removed rules are counted; the list stays linked both ways.
  int linked = 0;
  const RuleRecord* previous = nullptr;
  for (const RuleRecord* r = run.Rules.First; r; r = r->Next, ++linked) {
    FUZZ_CHECK(r->Prev == previous);
    previous = r;
  }
  FUZZ_CHECK(run.Rules.Last == previous);
  FUZZ_CHECK(linked == run.Rules.NumOfRules && linked <= before);
  const Coverage coverage = CoverageOfData(run.Tree.AllSet, data, stdout);
  FUZZ_CHECK(coverage.Loose >= 0 && coverage.Loose <= data.MaxData);
  FUZZ_CHECK(coverage.Tough >= 0 && coverage.Tough <= data.MaxData);
  return Status();
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
    status = RunMiner(static_cast<int>(args.size()), argv.data(), stdout);
    return Status();
  });
  if (ended != -1) status = ended;
  // Every way a run ends has status 0 or 1.
  FUZZ_CHECK(status == 0 || status == 1);
  // The analyses rule-analyse makes of a rule set mined in the default mode.
  if (status == 0 && ended == -1 && ass.empty()) {
    const int analysed = fuzz_support::OneRun([&] { return Analyse(stem, support, confidence, layer); });
    FUZZ_CHECK(analysed == -1 || analysed == 0 || analysed == 1);
  }
  return 0;
}
