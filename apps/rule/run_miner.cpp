// The command line of the miner and its run sequence: the options with
// their echo lines, the names and data files, the layer loop with a report
// per layer, the running time and the CSV rule file.
#include "rule/run_miner.h"

#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "base/console.h"
#include "base/numbers.h"
#include "base/parallel.h"
#include "input/readers.h"
#include "mining/mining.h"
#include "output/csv.h"
#include "output/reports.h"

namespace {

const char kUsage[] =
    "mining -f Filemane -s Local Support (default 0.01)     -l MaxLayer (default 6) -c Confidence "
    "(default 0.5)     -i MinImp (default 0.00) -a mining complete rule set (default no)     -o "
    "mining optimal rule set (default no) -r Robust rule mining (defalut 1)     -d discard low "
    "confidence rules (default no) -e Cost sensitive learning (default no -u no default set "
    "(default yes))\n ";

// Reads the options in command-line order, echoing each one. Returns false
// after "unrecognised option".
bool ParseMinerOptions(int argc, char** argv, MiningOptions& options, std::FILE* out) {
  optind = 0;  // full rescan, also when the miner runs again in one process
  int option;
  while ((option = getopt(argc, argv, "f:s:c:l:d:p:a:o:i:r:n:e:u:x:t")) != -1) {
    switch (option) {
      case 'f':
        options.FileName = optarg;
        std::fprintf(out, "\tFile Name: %s\n", options.FileName.c_str());
        break;
      case 's':
        options.Support = ParseFloat(optarg);
        std::fprintf(out, "\tGlobal Support = %.4f \n", options.Support);
        break;
      case 'c':
        options.MinConf = ParseFloat(optarg);
        std::fprintf(out, "\tGlobal Confidence = %.4f \n", options.MinConf);
        break;
      case 'l':
        options.MaxLayer = ParseInt(optarg);
        std::fprintf(out, "\t Max Layer = % d \n", options.MaxLayer);
        break;
      case 'i':
        options.MinImp = ParseFloat(optarg);
        std::fprintf(out, "\t MinImp = % f \n", options.MinImp);
        break;
      case 'a':
        options.Ass = 1;
        std::fprintf(out, "\t Mining Complete Rule Set \n");
        break;
      case 'o':
        options.Opt = 1;
        std::fprintf(out, "\t Mining Optimal Rule Set \n");
        break;
      case 'r':
        options.Complete = 2;
        std::fprintf(out, "\t Mining two complete rule set \n");
        break;
      case 'n':
        options.NonRedundant = 1;
        std::fprintf(out, "\t Mining Zaki's non-redundant rules \n");
        break;
      case 'e':
        options.CostSensitive = 1;
        std::fprintf(out, "\t Cosrsensitive learning (accuracy = confidence, sorted by local support.) \n");
        break;
      case 'u':
        options.Default = 0;
        std::fprintf(out, "\t No default is set, rules are NOT ordered \n");
        break;
      case 'x':
        options.Debug = 1;
        std::fprintf(out, "\t printf Debug information \n");
        break;
      case 'd':
        options.Discard = 1;
        std::fprintf(out, "\t Discard the remaining rules \n");
        break;
      case 'p':
        break;
      case 't':
        options.Time = 1;
        std::fprintf(out, "\t record time, Rules have not been sorted  \n");
        break;
      default:
        std::fprintf(out, "unrecognised option\n");
        return false;
    }
  }
  return true;
}

Status Mine(const MiningOptions& options, std::FILE* out) {
  std::clock_t start = std::clock();
  const std::string stem = options.FileName;

  DataSet data;
  InputErrors errors{out, 0};
  RETURN_IF_FAILED(GetNames(data, stem, errors));
  RETURN_IF_FAILED(GetData(data, ".data", errors));
  MinedRules run;
  run.GMinSup = ComputeMinSup(data.MaxData, options.Support);

  if (options.Debug) {
    for (int i = 1; i <= data.MaxData; ++i) {
      std::fprintf(out, "%d: ", i);
      const short* row = data.DataSpace[i - 1];
      for (int j = 0; j < data.RealAtt; ++j) std::fprintf(out, "%d,", row[j]);
      std::fprintf(out, "\n");
    }
  }
  std::fprintf(out, "MaxData = %d, Attribute = %d, Used attributes %d \n", data.MaxData, data.MaxAtt, data.RealAtt);

  MineLayers(run, data, options, out,
             [out](int layer, const MinedRules& sofar) { PrintLayerReport(layer, sofar, out); });

  if (options.Debug) {
    DisplayTree(run.Tree.AllSet, out);
    DisplayAbstractRule(run.Rules, out);
  }
  std::clock_t used = std::clock() - start;
  std::fprintf(out, "\n the running time is %f \n", static_cast<double>(used) / 1000000.0);

  if (options.Ass) return Status();
  return Write2CSVfile(stem + "rule.csv", options.Support, options.MinConf, run.Rules, data, out);
}

}  // namespace

int RunMiner(int argc, char** argv, std::FILE* out) {
  if (argc < 3) {
    std::fprintf(out, "\n Usage:\n");
    std::fprintf(out, "%s\n", kUsage);
    return 0;
  }
  MiningOptions options;
  // Counting runs on every hardware thread; RULE_THREADS caps them.
  options.Threads = AvailableThreads(std::getenv("RULE_THREADS"));

  std::time_t now = std::time(nullptr);
  std::fprintf(out, "\t\t\t\t\t %s ", std::ctime(&now));

  if (!ParseMinerOptions(argc, argv, options, out)) return 1;
  const Status status = Mine(options, out);
  if (status.ok()) return 0;
  std::fputs(status.message().c_str(), out);
  return status.exit_status();
}
