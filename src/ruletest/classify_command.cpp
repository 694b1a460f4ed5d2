// The companion program rule-classify: trains a first-match classifier from
// mined class rules, tests a rule file on a data set, and cross-validates.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "ruletest.h"

namespace {

const char kUsage[] =
    "Usage: rule-classify COMMAND [options]\n"
    "Commands:\n"
    "  train   mine a data set and write an ordered classifier to a rule file\n"
    "  test    classify the cases of a data set with a rule file\n"
    "  cv      k-fold cross-validation of the classifier on a data set\n"
    "Run 'rule-classify COMMAND --help' for the options of a command.\n";

const char kMiningOptions[] =
    "  -s SUPPORT     minimum support, a fraction of the (training) cases (default 0.002)\n"
    "  -c CONFIDENCE  minimum confidence of a rule, and minimum accuracy of a rule\n"
    "                 placed in the classifier (default 0.1)\n"
    "  -l LAYERS      largest itemset mined, antecedent and class together (default 4)\n"
    "  -r 1|2         keep only rules some case needs: 1 the first right rule of each\n"
    "                 case, 2 also rules that narrow the shared attributes (default: keep all)\n"
    "  -d             trim the rules the ordering leaves over: those with LAYERS\n"
    "                 antecedent items or more go\n";

const char kTrainUsage[] =
    "Usage: rule-classify train -f STEM [-s SUPPORT] [-c CONFIDENCE] [-l LAYERS] [-r 1|2] [-d] -o RULEFILE\n"
    "Mines STEM.names and STEM.data, orders the class rules into a first-match\n"
    "classifier with a default class, writes it to RULEFILE, prints it and its\n"
    "accuracy on the training cases.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -o RULEFILE    rule file to write\n";

const char kTestUsage[] =
    "Usage: rule-classify test -f STEM -R RULEFILE [--vote]\n"
    "Classifies the cases of STEM.data with the rules of RULEFILE (written by\n"
    "rule-classify train for the same names file) and prints the accuracy.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -R RULEFILE    rule file to read\n"
    "  --vote         let up to five covering rules vote, printing one line per case\n";

const char kCvUsage[] =
    "Usage: rule-classify cv -f STEM [-k FOLDS] [--seed N] [-s SUPPORT] [-c CONFIDENCE] [-l LAYERS] [-r 1|2] [-d]\n"
    "Cross-validates the classifier on STEM: the cases are dealt into FOLDS folds\n"
    "stratified by class; each fold is classified by rules mined from the others.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -k FOLDS       number of folds, at least 2 (default 10)\n"
    "  --seed N       seed of the shuffle that deals the folds (default 1)\n";

// The options of one command: flags that take a value, and switches.
struct Options {
  std::map<std::string, std::string> Values;
  std::map<std::string, bool> Switches;
  bool Help = false;
};

// Refuses input the command cannot work with; exit status 1.
int Refuse(const std::string& command, const std::string& message) {
  std::printf("rule-classify %s: %s\n", command.c_str(), message.c_str());
  return 1;
}

// Refuses a command line, pointing to the command's help.
int UsageError(const std::string& command, const std::string& message) {
  Refuse(command, message);
  std::printf("Run 'rule-classify %s --help' for its options.\n", command.c_str());
  return 1;
}

// Parses args[first..] against the allowed value flags and switches. Returns
// an empty string, or what is wrong.
std::string ParseOptions(int argc, char** argv, int first, const std::vector<std::string>& valueFlags,
                         const std::vector<std::string>& switches, Options& options) {
  auto contains = [](const std::vector<std::string>& list, const std::string& s) {
    for (const auto& entry : list)
      if (entry == s) return true;
    return false;
  };
  for (int i = first; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      options.Help = true;
    } else if (contains(valueFlags, arg)) {
      if (i + 1 >= argc) return "option " + arg + " needs a value";
      options.Values[arg] = argv[++i];
    } else if (contains(switches, arg)) {
      options.Switches[arg] = true;
    } else {
      return "unknown argument '" + arg + "'";
    }
  }
  return "";
}

bool ParseNumber(const std::string& text, double& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtod(text.c_str(), &end);
  return *end == '\0' && errno == 0 && std::isfinite(value);
}

bool ParseWhole(const std::string& text, long long low, long long high, long long& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtoll(text.c_str(), &end, 10);
  return *end == '\0' && errno == 0 && value >= low && value <= high;
}

// Reads the mining options shared by train and cv into settings.
std::string MiningSettings(const Options& options, ClassifierSettings& settings) {
  auto value = [&](const char* flag) -> const std::string* {
    auto found = options.Values.find(flag);
    return found == options.Values.end() ? nullptr : &found->second;
  };
  double number;
  long long whole;
  if (const std::string* s = value("-s")) {
    if (!ParseNumber(*s, number) || number < 0 || number > 1)
      return "-s needs a support fraction from 0 to 1, not '" + *s + "'";
    settings.Support = static_cast<float>(number);
  }
  if (const std::string* c = value("-c")) {
    if (!ParseNumber(*c, number) || number < 0 || number > 1)
      return "-c needs a confidence from 0 to 1, not '" + *c + "'";
    settings.Confidence = static_cast<float>(number);
  }
  if (const std::string* l = value("-l")) {
    if (!ParseWhole(*l, 2, 64, whole)) return "-l needs a number of layers from 2 to 64, not '" + *l + "'";
    settings.Layers = static_cast<int>(whole);
  }
  if (const std::string* r = value("-r")) {
    if (!ParseWhole(*r, 1, 2, whole)) return "-r needs 1 or 2, not '" + *r + "'";
    settings.CompleteMode = static_cast<int>(whole);
  }
  settings.DiscardRest = options.Switches.count("-d") > 0;
  return "";
}

// Reads the names and data files of the stem and labels the cases with their
// class indexes. Returns false (after saying why) when there are no cases.
bool LoadCases(const std::string& command, const std::string& stem) {
  ResetRun();
  FileName = stem;
  GetNames();
  GetData(".data");
  if (MaxData == 0) {
    Refuse(command, stem + ".data holds no cases");
    return false;
  }
  LabelCases();
  return true;
}

const std::vector<std::string> kMiningFlags = {"-f", "-s", "-c", "-l", "-r"};

int Train(int argc, char** argv) {
  Options options;
  std::vector<std::string> flags = kMiningFlags;
  flags.push_back("-o");
  std::string problem = ParseOptions(argc, argv, 2, flags, {"-d"}, options);
  if (options.Help) {
    std::printf("%s%s", kTrainUsage, kMiningOptions);
    return 0;
  }
  if (!problem.empty()) return UsageError("train", problem);
  ClassifierSettings settings;
  problem = MiningSettings(options, settings);
  if (!problem.empty()) return UsageError("train", problem);
  if (!options.Values.count("-f")) return UsageError("train", "the stem (-f STEM) is missing");
  if (!options.Values.count("-o")) return UsageError("train", "the rule file to write (-o RULEFILE) is missing");
  const std::string ruleFile = options.Values["-o"];

  if (!LoadCases("train", options.Values["-f"])) return 1;
  BuildClassifier(settings);
  if (WriteRule(ruleFile, settings.Confidence, settings.Support) != 0) {
    std::printf("rule-classify train: cannot write the rule file %s\n", ruleFile.c_str());
    ResetRun();
    return 1;
  }
  PrintClassifier();
  TestSingle();
  ResetRun();
  return 0;
}

int Test(int argc, char** argv) {
  Options options;
  std::string problem = ParseOptions(argc, argv, 2, {"-f", "-R"}, {"--vote"}, options);
  if (options.Help) {
    std::printf("%s", kTestUsage);
    return 0;
  }
  if (!problem.empty()) return UsageError("test", problem);
  if (!options.Values.count("-f")) return UsageError("test", "the stem (-f STEM) is missing");
  if (!options.Values.count("-R")) return UsageError("test", "the rule file (-R RULEFILE) is missing");
  const std::string stem = options.Values["-f"];
  const std::string ruleFile = options.Values["-R"];

  if (!LoadCases("test", stem)) return 1;
  InitRuleSet();
  const int status = ReadRule(ruleFile);
  if (status == kRuleFileUnopenable) std::printf("rule-classify test: cannot open the rule file %s\n", ruleFile.c_str());
  if (status != 0) {
    ResetRun();
    return 1;
  }
  const std::string misfit = RulesMisfit();
  if (!misfit.empty()) {
    std::printf("\nERROR:  rule file %s does not fit %s.names: %s\n", ruleFile.c_str(), stem.c_str(),
                misfit.c_str());
    ResetRun();
    return 1;
  }
  if (options.Switches.count("--vote")) Testmulti();
  else TestSingle();
  ResetRun();
  return 0;
}

int CrossValidate(int argc, char** argv) {
  Options options;
  std::vector<std::string> flags = kMiningFlags;
  flags.push_back("-k");
  flags.push_back("--seed");
  std::string problem = ParseOptions(argc, argv, 2, flags, {"-d"}, options);
  if (options.Help) {
    std::printf("%s%s", kCvUsage, kMiningOptions);
    return 0;
  }
  if (!problem.empty()) return UsageError("cv", problem);
  ClassifierSettings settings;
  problem = MiningSettings(options, settings);
  if (!problem.empty()) return UsageError("cv", problem);
  if (!options.Values.count("-f")) return UsageError("cv", "the stem (-f STEM) is missing");
  long long folds = 10;
  if (options.Values.count("-k") && !ParseWhole(options.Values["-k"], 2, 1000000, folds))
    return UsageError("cv", "-k needs a number of folds of at least 2, not '" + options.Values["-k"] + "'");
  long long seed = 1;
  if (options.Values.count("--seed") && !ParseWhole(options.Values["--seed"], 0, (1LL << 62), seed))
    return UsageError("cv", "--seed needs a non-negative whole number, not '" + options.Values["--seed"] + "'");
  const std::string stem = options.Values["-f"];

  if (!LoadCases("cv", stem)) return 1;
  if (MaxData < folds) {
    const std::string message = stem + ".data holds " + std::to_string(MaxData) + " cases, fewer than the " +
                                std::to_string(folds) + " folds";
    ResetRun();
    return Refuse("cv", message);
  }
  std::vector<int> labels(static_cast<size_t>(MaxData));
  for (int i = 0; i < MaxData; ++i) labels[i] = DataSpace[i][RealAtt];
  const std::vector<int> fold = StratifiedFolds(labels, static_cast<int>(folds), static_cast<std::uint64_t>(seed));

  std::vector<double> accuracies;
  for (int f = 0; f < folds; ++f) {
    // Every fold mines afresh: the run's state is released and the cases read again.
    if (f > 0 && !LoadCases("cv", stem)) return 1;
    std::vector<short*> training, testing;
    for (int i = 0; i < MaxData; ++i) (fold[i] == f ? testing : training).push_back(DataSpace[i]);
    DataSpace = training;
    MaxData = static_cast<int>(training.size());
    BuildClassifier(settings);
    DataSpace = testing;
    MaxData = static_cast<int>(testing.size());
    TestSingle();
    const double accuracy = static_cast<double>(RuleSet->Hits) / MaxData * 100;
    accuracies.push_back(accuracy);
    std::printf("fold %d: %d training cases, %d rules, %d test cases, accuracy = %.2f %%\n", f + 1,
                static_cast<int>(training.size()), RuleSet->NumOfRules, MaxData, accuracy);
  }
  ResetRun();

  double mean = 0;
  for (double a : accuracies) mean += a;
  mean /= static_cast<double>(accuracies.size());
  double squares = 0;
  for (double a : accuracies) squares += (a - mean) * (a - mean);
  const double sd = std::sqrt(squares / static_cast<double>(accuracies.size() - 1));
  std::printf("mean accuracy = %.2f %% (sd %.2f)\n", mean, sd);
  return 0;
}

}  // namespace

int RunClassify(int argc, char** argv) {
  if (argc < 2) {
    std::printf("%s", kUsage);
    return 1;
  }
  const std::string command = argv[1];
  if (command == "--help" || command == "-h" || command == "help") {
    std::printf("%s", kUsage);
    return 0;
  }
  if (command == "train") return Train(argc, argv);
  if (command == "test") return Test(argc, argv);
  if (command == "cv") return CrossValidate(argc, argv);
  std::printf("rule-classify: unknown command '%s'\n%s", command.c_str(), kUsage);
  return 1;
}
