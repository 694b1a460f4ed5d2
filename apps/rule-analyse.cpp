// Mines a data set as the miner does in its default mode, then analyses the
// rule set: the rules derivable by chaining perfect rules, and how many cases
// hold the itemset of a node that produced a perfect rule.
#include <getopt.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

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
  return 1;
}

bool ParseNumber(const char* text, double& value) {
  char* end = nullptr;
  errno = 0;
  value = std::strtod(text, &end);
  return end != text && *end == '\0' && errno == 0;
}

int Analyse(int argc, char** argv) {
  ResetRun();
  float support = 0.1f;
  bool haveStem = false;

  static const option kLong[] = {{"help", no_argument, nullptr, 'h'}, {nullptr, 0, nullptr, 0}};
  optind = 0;
  opterr = 0;
  int option;
  while ((option = getopt_long(argc, argv, ":f:s:c:l:", kLong, nullptr)) != -1) {
    double value = 0;
    switch (option) {
      case 'h':
        std::printf("%s", kUsage);
        return 0;
      case 'f':
        FileName = optarg;
        haveStem = true;
        break;
      case 's':
        if (!ParseNumber(optarg, value)) return UsageError("-s needs a number, not '" + std::string(optarg) + "'");
        support = static_cast<float>(value);
        break;
      case 'c':
        if (!ParseNumber(optarg, value)) return UsageError("-c needs a number, not '" + std::string(optarg) + "'");
        MinConf = static_cast<float>(value);
        break;
      case 'l':
        if (!ParseNumber(optarg, value) || value != static_cast<int>(value))
          return UsageError("-l needs a whole number, not '" + std::string(optarg) + "'");
        MaxLayer = static_cast<int>(value);
        break;
      case ':':
        return UsageError(std::string("option -") + static_cast<char>(optopt) + " needs a value");
      default:
        if (optopt) return UsageError(std::string("unknown option -") + static_cast<char>(optopt));
        return UsageError(std::string("unknown option ") + argv[optind - 1]);
    }
  }
  if (optind < argc) return UsageError(std::string("unexpected argument '") + argv[optind] + "'");
  if (!haveStem) return UsageError("missing -f STEM");

  std::time_t now = std::time(nullptr);
  std::printf("\t\t\t\t\t %s ", std::ctime(&now));
  std::printf("\tFile Name: %s\n", FileName.c_str());
  std::printf("\tGlobal Support = %.4f \n", support);
  std::printf("\tGlobal Confidence = %.4f \n", MinConf);
  std::printf("\t Max Layer = % d \n", MaxLayer);

  std::clock_t start = std::clock();
  GetNames();
  GetData(".data");
  GMinSup = ComputeMinSup(MaxData, support);
  std::printf("MaxData = %d, Attribute = %d, Used attributes %d \n", MaxData, MaxAtt, RealAtt);
  MineLayers();

  // The derivable-rule count reads the perfect rules at the head of the list.
  SortRuleSet();
  CountDerivableRule();
  CoverageOfData(AllSet);

  std::printf("\n\nderivable rules = %d, rules left = %d\n", DerivableRule, RuleSet->NumOfRules);
  std::printf("loose coverage = %d of %d cases, tough coverage = %d\n", LooseCov, MaxData, ToughCov);
  std::clock_t used = std::clock() - start;
  std::printf("\n the running time is %f \n", static_cast<double>(used) / 1000000.0);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return GuardedRun([&] { return Analyse(argc, argv); });
}
