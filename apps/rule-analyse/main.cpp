// Mines a data set as the miner does in its default mode, then analyses the
// rule set: the rules derivable by chaining perfect rules, and how many cases
// hold the itemset of a node that produced a perfect rule.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "analyses/analyses.h"
#include "base/console.h"
#include "base/numbers.h"
#include "base/parallel.h"
#include "base/staged_file.h"
#include "common/command_line.h"
#include "input/readers.h"
#include "mining/mining.h"
#include "output/reports.h"

namespace {

const char kUsage[] =
    "Usage: rule-analyse -f STEM [-s SUPPORT] [-c CONFIDENCE] [-l MAXLAYER]\n"
    "  -f STEM        read STEM.names and STEM.data\n"
    "  -s SUPPORT     minimum support as a fraction of the cases (default 0.1)\n"
    "  -c CONFIDENCE  minimum confidence (default 0.999999)\n"
    "  -l MAXLAYER    largest itemset mined (default 4)\n"
    "  --help         show this text\n";

int UsageError(const std::string& message) {
  std::fprintf(stderr, "rule-analyse: %s\n%s", message.c_str(), kUsage);
  return kExitRefused;
}

// The whole text as a decimal number of 0 or more.
bool ParseValue(const std::string& text, double& value) { return ParseNumber(text, value) && value >= 0; }

// Mines with the options and prints the analyses of the rule set.
Status Analyse(const MiningOptions& options) {
  std::time_t now = std::time(nullptr);
  std::printf("\t\t\t\t\t %s ", std::ctime(&now));
  std::printf("\tFile Name: %s\n", options.FileName.c_str());
  std::printf("\tGlobal Support = %.4f \n", options.Support);
  std::printf("\tGlobal Confidence = %.4f \n", options.MinConf);
  std::printf("\t Max Layer = % d \n", options.MaxLayer);

  std::clock_t start = std::clock();
  DataSet data;
  InputErrors errors{stdout, 0};
  RETURN_IF_FAILED(GetNames(data, options.FileName, errors));
  RETURN_IF_FAILED(GetData(data, ".data", errors));
  MinedRules run;
  run.GMinSup = ComputeMinSup(data.MaxData, options.Support);
  std::printf("MaxData = %d, Attribute = %d, Used attributes %d \n", data.MaxData, data.MaxAtt, data.RealAtt);
  MineLayers(run, data, options, stdout,
             [](int layer, const MinedRules& sofar) { PrintLayerReport(layer, sofar, stdout); });

  // The derivable-rule count reads the perfect rules at the head of the list.
  SortRuleSet(run.Rules);
  const int derivable = CountDerivableRule(run.Rules, run.Counts, data.MaxItem, options.MinConf, stdout, &data);
  const Coverage coverage = CoverageOfData(run.Tree.AllSet, data, stdout);

  std::printf("\n\nderivable rules = %d, rules left = %d\n", derivable, run.Rules.NumOfRules);
  std::printf("loose coverage = %d of %d cases, tough coverage = %d\n", coverage.Loose, data.MaxData, coverage.Tough);
  std::clock_t used = std::clock() - start;
  std::printf("\n the running time is %f \n", static_cast<double>(used) / 1000000.0);
  return Status();
}

int RunAnalyse(int argc, char** argv) {
  AcceptedOptions accepted;
  accepted.ValueFlags = {"-f", "-s", "-c", "-l"};
  accepted.JoinedValues = true;  // "-fSTEM" as well as "-f STEM"
  CommandLine line;
  const ParseProblem problem = ParseCommandLine(argc, argv, 1, accepted, line);
  if (line.Help) {
    std::printf("%s", kUsage);
    return kExitDone;
  }
  switch (problem.What) {
    case ParseProblem::None: break;
    case ParseProblem::MissingValue: return UsageError("option " + problem.Word + " needs a value");
    case ParseProblem::UnknownOption:
      // A short option is named by its letter, a long one by the whole word.
      if (problem.Word.compare(0, 2, "--") == 0) return UsageError("unknown option " + problem.Word);
      return UsageError("unknown option " + problem.Word.substr(0, 2));
    case ParseProblem::UnexpectedWord: return UsageError("unexpected argument '" + problem.Word + "'");
  }

  MiningOptions options;
  double value = 0;
  if (const std::string* text = line.Value("-s")) {
    if (!ParseValue(*text, value)) return UsageError("-s needs a number of 0 or more, not '" + *text + "'");
    options.Support = static_cast<float>(value);
  }
  if (const std::string* text = line.Value("-c")) {
    if (!ParseValue(*text, value)) return UsageError("-c needs a number of 0 or more, not '" + *text + "'");
    options.MinConf = static_cast<float>(value);
  }
  if (const std::string* text = line.Value("-l")) {
    if (!ParseValue(*text, value) || value != static_cast<int>(value))
      return UsageError("-l needs a whole number of 0 or more, not '" + *text + "'");
    options.MaxLayer = static_cast<int>(value);
  }
  if (!line.Has("-f")) return UsageError("missing -f STEM");
  options.FileName = *line.Value("-f");
  options.Threads = AvailableThreads(std::getenv("RULE_THREADS"));
  options.KeepPairCounts = true;  // the derivable-rule count reads them
  return Finish(Analyse(options));
}

}  // namespace

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule-analyse", GuardedRun([&] { return RunAnalyse(argc, argv); }));
}
