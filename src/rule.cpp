// The run driver: the command line, the option globals, the run sequence,
// the error printer and the end of a run.
#include "rule.h"

#include <getopt.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "readfile.h"
#include "rulegen.h"
#include "ruletest.h"

std::string FileName;
int GMinSup;
float MinConf;
int MaxLayer;
float MinImp;
int Ass;
int Opt;
int Complete;
int NonRedundant;
int CostSensitive;
int Default;
int Debug;
int Discard;
int Time;
float IMP;
int DerivableRule;

bool EndRunThrows = false;

void ResetOptions() {
  FileName.clear();
  GMinSup = 0;
  MinConf = 0.999999f;
  MaxLayer = 4;
  MinImp = 0.0f;
  Ass = 0;
  Opt = 0;
  Complete = 1;
  NonRedundant = 0;
  CostSensitive = 0;
  Default = 1;
  Debug = 0;
  Discard = 0;
  Time = 0;
  IMP = 0.0f;
  DerivableRule = 0;
}

void ErrorOut(int code) {
  switch (code) {
    case 0: std::printf("Can not Open File\n"); break;
    case 1: std::printf("Not enough memory\n"); break;
    case 11: std::printf("error in Filling the buff\n"); break;
    case 12: std::printf("error in Reading Next Transaation\n"); break;
    default: break;
  }
}

void EndRun(int status) {
  std::fflush(stdout);
  if (EndRunThrows) throw RunEnded{status};
  std::exit(status);
}

void OutOfMemory() {
  ErrorOut(1);
  EndRun(0);
}

void* XMalloc(std::size_t bytes) {
  void* p = std::malloc(bytes ? bytes : 1);
  if (!p) OutOfMemory();
  return p;
}

void* XCalloc(std::size_t count, std::size_t size) {
  void* p = std::calloc(count ? count : 1, size ? size : 1);
  if (!p) OutOfMemory();
  return p;
}

void* XRealloc(void* old, std::size_t bytes) {
  void* p = std::realloc(old, bytes ? bytes : 1);
  if (!p) OutOfMemory();
  return p;
}

std::FILE* XFopen(const std::string& path, const char* mode) {
  errno = 0;
  std::FILE* f = std::fopen(path.c_str(), mode);
  if (!f && errno == ENOMEM) OutOfMemory();
  // A folder opens for reading but reads as an empty file: it is no input
  // file, and taking it for one would read no classes or no cases.
  struct stat status;
  if (f && fstat(fileno(f), &status) == 0 && S_ISDIR(status.st_mode)) {
    std::fclose(f);
    errno = EISDIR;
    return nullptr;
  }
  return f;
}

void ResetRun() {
  ResetRuletest();
  ResetRulegen();
  ResetReadfile();
  ResetOptions();
}

int TruncateToInt(double value) {
  // The processor's conversion yields INT_MIN for NaN and out-of-range values.
  if (!(value > -2147483649.0 && value < 2147483648.0)) return INT_MIN;
  return static_cast<int>(value);
}

int ComputeMinSup(int maxData, float fraction) {
  float product = static_cast<float>(maxData) * fraction;
  return TruncateToInt(static_cast<double>(product) + 0.5);
}

void MineLayers() {
  AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
  InitialCount();
  Counting();
  InitRuleSet();
  InitWholeTree(AllSet);
  RuleSelectANdPruning(AllSet, 2);
  std::printf("\n Report of 2 layers \n");
  Report();
  for (int layer = 3;; ++layer) {
    if (CandidateGen(AllSet, layer) == 0) break;
    Verification(AllSet, layer);
    RuleSelectANdPruning(AllSet, layer);
    std::printf("\n Report of %d layers \n", layer);
    Report();
    if (TreeSize > 10000000) break;
    if (layer + 1 > MaxLayer) break;
  }
}

namespace {

const char kUsage[] =
    "mining -f Filemane -s Local Support (default 0.01)     -l MaxLayer (default 6) -c Confidence "
    "(default 0.5)     -i MinImp (default 0.00) -a mining complete rule set (default no)     -o "
    "mining optimal rule set (default no) -r Robust rule mining (defalut 1)     -d discard low "
    "confidence rules (default no) -e Cost sensitive learning (default no -u no default set "
    "(default yes))\n ";

float ParseFloat(const char* text) { return static_cast<float>(std::strtod(text, nullptr)); }

int ParseInt(const char* text) {
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

}  // namespace

int RunMiner(int argc, char** argv) {
  if (argc < 3) {
    std::printf("\n Usage:\n");
    std::printf("%s\n", kUsage);
    return 0;
  }
  ResetRun();
  float support = 0.1f;

  std::time_t now = std::time(nullptr);
  std::printf("\t\t\t\t\t %s ", std::ctime(&now));

  optind = 0;  // full rescan, also when the miner runs again in one process
  int option;
  while ((option = getopt(argc, argv, "f:s:c:l:d:p:a:o:i:r:n:e:u:x:t")) != -1) {
    switch (option) {
      case 'f':
        FileName = optarg;
        std::printf("\tFile Name: %s\n", FileName.c_str());
        break;
      case 's':
        support = ParseFloat(optarg);
        std::printf("\tGlobal Support = %.4f \n", support);
        break;
      case 'c':
        MinConf = ParseFloat(optarg);
        std::printf("\tGlobal Confidence = %.4f \n", MinConf);
        break;
      case 'l':
        MaxLayer = ParseInt(optarg);
        std::printf("\t Max Layer = % d \n", MaxLayer);
        break;
      case 'i':
        MinImp = ParseFloat(optarg);
        std::printf("\t MinImp = % f \n", MinImp);
        break;
      case 'a':
        Ass = 1;
        std::printf("\t Mining Complete Rule Set \n");
        break;
      case 'o':
        Opt = 1;
        std::printf("\t Mining Optimal Rule Set \n");
        break;
      case 'r':
        Complete = 2;
        std::printf("\t Mining two complete rule set \n");
        break;
      case 'n':
        NonRedundant = 1;
        std::printf("\t Mining Zaki's non-redundant rules \n");
        break;
      case 'e':
        CostSensitive = 1;
        std::printf("\t Cosrsensitive learning (accuracy = confidence, sorted by local support.) \n");
        break;
      case 'u':
        Default = 0;
        std::printf("\t No default is set, rules are NOT ordered \n");
        break;
      case 'x':
        Debug = 1;
        std::printf("\t printf Debug information \n");
        break;
      case 'd':
        Discard = 1;
        std::printf("\t Discard the remaining rules \n");
        break;
      case 'p':
        break;
      case 't':
        Time = 1;
        std::printf("\t record time, Rules have not been sorted  \n");
        break;
      default:
        std::printf("unrecognised option\n");
        EndRun(1);
    }
  }

  std::clock_t start = std::clock();
  const std::string stem = FileName;

  GetNames();
  GetData(".data");
  GMinSup = ComputeMinSup(MaxData, support);

  if (Debug) {
    for (int i = 1; i <= MaxData; ++i) {
      std::printf("%d: ", i);
      const short* row = DataSpace[i - 1];
      for (int j = 0; j < RealAtt; ++j) std::printf("%d,", row[j]);
      std::printf("\n");
    }
  }
  std::printf("MaxData = %d, Attribute = %d, Used attributes %d \n", MaxData, MaxAtt, RealAtt);

  MineLayers();

  if (Debug) {
    DisplayTree(AllSet);
    DisplayAbstractRule();
  }
  std::clock_t used = std::clock() - start;
  std::printf("\n the running time is %f \n", static_cast<double>(used) / 1000000.0);

  if (Ass) return 0;
  // An unwritable rule file has been reported; the status tells scripts.
  if (Write2CSVfile(stem + "rule.csv", support) < 0) return 1;
  return 0;
}
