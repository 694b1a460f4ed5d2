// The companion program rule-classify: trains a first-match classifier from
// mined class rules, tests a rule file on a data set, predicts the class of
// every case as CSV, and cross-validates.
//
// Cross-validation reads the names and data files once; each fold trains and
// tests on subsets of the one data set. The folds run on up to
// std::thread::hardware_concurrency() threads; the environment variable
// RULE_THREADS, when it is a positive whole number, caps that number
// (RULE_THREADS=1 runs the folds one after another). Each fold prints into a
// buffer of its own and the buffers are printed in fold order, so the output
// does not depend on the number of threads.
#include "rule-classify/classify_command.h"


#include <algorithm>
#include <cerrno>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "base/files.h"
#include "base/numbers.h"
#include "base/staged_file.h"
#include "common/command_line.h"
#include "discretiser/discretise.h"
#include "evaluation/evaluation.h"
#include "input/readers.h"
#include "output/reports.h"

namespace {

const char kUsage[] =
    "Usage: rule-classify COMMAND [options]\n"
    "Commands:\n"
    "  train   mine a data set and write an ordered classifier to a rule file\n"
    "  test    classify the cases of a data set with a rule file\n"
    "  predict write the predicted class of every case of a data set as CSV\n"
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
    "                 antecedent items or more go\n"
    "  --prune CHI2   drop the rules below this chi-square or not positively\n"
    "                 correlated with their class before choosing (default 0: keep them)\n"
    "  --order rate|errors  the ordering places next the rule of the lowest\n"
    "                 pessimistic error rate on the cases left (default), or the one\n"
    "                 with the fewest errors there\n"
    "  --cover N      choose the rules by database coverage instead of the ordering:\n"
    "                 a rule stays when it is right on a case still counting, and a\n"
    "                 case counts until N chosen rules cover it (default 0: the ordering)\n"
    "  --cutoff on|off  keep the shortest prefix of the classifier with the fewest\n"
    "                 pessimistically estimated training errors (default on)\n"
    "  --guard on|off predict the majority class alone when a 5-fold cross-validation\n"
    "                 inside the training cases (up to 1000 of them) does not beat it\n"
    "                 (default on)\n"
    "  --one-item on|off  also offer the ordering the rules of one antecedent item\n"
    "                 that have exceptions, which the miner leaves out (default on)\n";

const char kTrainUsage[] =
    "Usage: rule-classify train -f STEM [-s SUPPORT] [-c CONFIDENCE] [-l LAYERS] [-r 1|2] [-d]\n"
    "                          [--order rate|errors] [--prune CHI2] [--cover N] [--cutoff on|off] [--guard on|off]\n"
    "                          [--one-item on|off] -o RULEFILE\n"
    "Mines STEM.names and STEM.data, orders the class rules into a first-match\n"
    "classifier with a default class, writes it to RULEFILE, prints it and its\n"
    "accuracy on the training cases. Continuous attributes are refused: cut them\n"
    "first with rule-discretise.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -o RULEFILE    rule file to write\n";

const char kTestUsage[] =
    "Usage: rule-classify test -f STEM -R RULEFILE [--vote | --vote-report]\n"
    "Classifies the cases of STEM.data with the rules of RULEFILE (written by\n"
    "rule-classify train for the same names file) and prints the accuracy.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -R RULEFILE    rule file to read\n"
    "  --vote         classify by the vote of the first five covering rules, each\n"
    "                 weighted by its confidence, instead of the first covering rule\n"
    "  --vote-report  the five-rule vote report of the library, one line per case\n";

const char kPredictUsage[] =
    "Usage: rule-classify predict -f STEM -R RULEFILE [-o FILE] [--vote]\n"
    "Predicts the class of every case of STEM.data, cases of unknown class\n"
    "included, with the rules of RULEFILE, and writes one CSV line per case:\n"
    "case,predicted,rule,antecedent,confidence,class (the deciding rule's place\n"
    "in the classifier, 0 for the default class; the true class, empty when\n"
    "unknown). Messages go to standard error.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -R RULEFILE    rule file to read\n"
    "  -o FILE        write the table to FILE instead of standard output\n"
    "  --vote         predict by the vote of the first five covering rules\n";

const char kCvUsage[] =
    "Usage: rule-classify cv -f STEM [-k FOLDS] [--seed N] [--predict first|chi2] [--cuts tree|attribute]\n"
    "                       [-s SUPPORT] [-c CONFIDENCE] [-l LAYERS] [-r 1|2] [-d] [--order rate|errors]\n"
    "                       [--prune CHI2] [--cover N] [--cutoff on|off] [--guard on|off] [--one-item on|off]\n"
    "Cross-validates the classifier on STEM: the cases are dealt into FOLDS folds\n"
    "stratified by class; each fold is classified by rules mined from the others.\n"
    "Continuous attributes are cut in every fold by class entropy from its training\n"
    "cases only.\n"
    "  -f STEM        stem of the names and data files\n"
    "  -k FOLDS       number of folds, at least 2 (default 10)\n"
    "  --seed N       seed of the shuffle that deals the folds (default 1)\n"
    "  --predict first|chi2  classify a test case by its first covering rule\n"
    "                 (default), or by the chi-square weight of all its covering rules\n"
    "  --cuts tree|attribute  where continuous attributes are cut: at the cut points\n"
    "                 of a pruned class-entropy tree over them all (default, as\n"
    "                 rule-discretise -m tree), or each by its own values (as\n"
    "                 rule-discretise -m entropy)\n";

// Refuses input the command cannot work with; exit status 1.
int Refuse(std::FILE* out, const std::string& command, const std::string& message) {
  std::fprintf(out, "rule-classify %s: %s\n", command.c_str(), message.c_str());
  return kExitRefused;
}

// Refuses a command line, pointing to the command's help.
int UsageError(std::FILE* out, const std::string& command, const std::string& message) {
  Refuse(out, command, message);
  std::fprintf(out, "Run 'rule-classify %s --help' for its options.\n", command.c_str());
  return kExitRefused;
}

// What is wrong with a command line, in this program's words.
std::string Describe(const ParseProblem& problem) {
  if (problem.What == ParseProblem::MissingValue) return "option " + problem.Word + " needs a value";
  return "unknown argument '" + problem.Word + "'";
}

// Reads the mining options shared by train and cv into settings.
std::string MiningSettings(const CommandLine& line, ClassifierSettings& settings) {
  double number;
  long long whole;
  if (const std::string* s = line.Value("-s")) {
    if (!ParseNumber(*s, number) || number < 0 || number > 1)
      return "-s needs a support fraction from 0 to 1, not '" + *s + "'";
    settings.Support = static_cast<float>(number);
  }
  if (const std::string* c = line.Value("-c")) {
    if (!ParseNumber(*c, number) || number < 0 || number > 1)
      return "-c needs a confidence from 0 to 1, not '" + *c + "'";
    settings.Confidence = static_cast<float>(number);
  }
  if (const std::string* l = line.Value("-l")) {
    if (!ParseWhole(*l, 2, 64, whole)) return "-l needs a number of layers from 2 to 64, not '" + *l + "'";
    settings.Layers = static_cast<int>(whole);
  }
  if (const std::string* r = line.Value("-r")) {
    if (!ParseWhole(*r, 1, 2, whole)) return "-r needs 1 or 2, not '" + *r + "'";
    settings.CompleteMode = static_cast<int>(whole);
  }
  settings.DiscardRest = line.Switches.count("-d") > 0;
  if (const std::string* p = line.Value("--prune")) {
    if (!ParseNumber(*p, number) || number < 0) return "--prune needs a chi-square of 0 or more, not '" + *p + "'";
    settings.Significance = number;
  }
  if (const std::string* v = line.Value("--cover")) {
    if (!ParseWhole(*v, 0, 1000000, whole)) return "--cover needs a number of covers from 0 up, not '" + *v + "'";
    settings.Coverage = static_cast<int>(whole);
  }
  if (const std::string* v = line.Value("--cutoff")) {
    if (*v != "on" && *v != "off") return "--cutoff needs on or off, not '" + *v + "'";
    settings.CutOff = *v == "on";
  }
  if (const std::string* v = line.Value("--order")) {
    if (*v != "errors" && *v != "rate") return "--order needs rate or errors, not '" + *v + "'";
    settings.ByErrorRate = *v == "rate";
  }
  if (const std::string* v = line.Value("--guard")) {
    if (*v != "on" && *v != "off") return "--guard needs on or off, not '" + *v + "'";
    settings.MajorityGuard = *v == "on";
  }
  if (const std::string* v = line.Value("--one-item")) {
    if (*v != "on" && *v != "off") return "--one-item needs on or off, not '" + *v + "'";
    settings.OneItemRules = *v == "on";
  }
  return "";
}

// Reads --predict of cv into decision.
std::string DecisionSetting(const CommandLine& line, Decision& decision) {
  if (const std::string* v = line.Value("--predict")) {
    if (*v == "first") decision = Decision::kFirstMatch;
    else if (*v == "chi2") decision = Decision::kChiSquare;
    else return "--predict needs first or chi2, not '" + *v + "'";
  }
  return "";
}

// Reads the names file of the stem, continuous attributes included, and the
// raw cases of the data file into data. The input errors go to out. Returns
// the exit status of a failure (after saying why, also when there are no
// cases), or -1 when the raw cases are ready.
int LoadRawCases(std::FILE* out, const std::string& command, const std::string& stem, DataSet& data) {
  InputErrors errors{out, 0};
  Status status = GetNames(data, stem, errors, true);
  if (status.ok()) status = ReadData(data, ".data", errors);
  if (!status.ok()) {
    std::fputs(status.message().c_str(), out);
    return status.exit_status();
  }
  if (data.MaxData == 0) return Refuse(out, command, stem + ".data holds no cases");
  return -1;
}

// The first continuous attribute of a data set, empty when it has none.
std::string FirstContinuous(const DataSet& data) {
  for (int a = 0; a < data.MaxAtt; ++a)
    if (data.SpecialStatus[a] == 3) return data.AttName[a];
  return "";
}

// Reads the names and data files of the stem into data and labels the cases
// with their class indexes. The input errors go to out. A continuous
// attribute is refused: a rule file holds interval items, not the cuts that
// would code new cases. Returns the exit status of a failure (after saying
// why, also when there are no cases), or -1 when the cases are ready.
int LoadCases(std::FILE* out, const std::string& command, const std::string& stem, DataSet& data) {
  const int loaded = LoadRawCases(out, command, stem, data);
  if (loaded >= 0) return loaded;
  const std::string continuous = FirstContinuous(data);
  if (!continuous.empty())
    return Refuse(out, command,
                  stem + ".names declares the continuous attribute " + continuous +
                      "; cut it into intervals first with rule-discretise (cv cuts each fold itself)");
  ConvertDataSpace(data);
  LabelCases(data);
  return -1;
}

// The layer report of the miner, printed after each layer of a mining run.
LayerReport PrintingReport(std::FILE* out) {
  return [out](int layer, const MinedRules& run) { PrintLayerReport(layer, run, out); };
}

const std::vector<std::string> kMiningFlags = {"-f", "-s", "-c", "-l", "-r", "--prune", "--cover", "--cutoff", "--guard", "--order", "--one-item"};

// Reads the command line of a command that mines (train, cv): the mining
// options, -d, and the command's own value flags. Returns the exit status
// when the command ends here (its help, or a command line it cannot run),
// -1 when it goes on with line and settings.
int ReadMiningCommand(int argc, char** argv, std::FILE* out, const char* command, const char* usage,
                      const std::vector<std::string>& ownFlags, CommandLine& line, ClassifierSettings& settings) {
  AcceptedOptions accepted;
  accepted.ValueFlags = kMiningFlags;
  accepted.ValueFlags.insert(accepted.ValueFlags.end(), ownFlags.begin(), ownFlags.end());
  accepted.Switches = {"-d"};
  const ParseProblem parsed = ParseCommandLine(argc, argv, 2, accepted, line);
  if (line.Help) {
    std::fprintf(out, "%s%s", usage, kMiningOptions);
    return kExitDone;
  }
  if (parsed) return UsageError(out, command, Describe(parsed));
  const std::string problem = MiningSettings(line, settings);
  if (!problem.empty()) return UsageError(out, command, problem);
  if (!line.Value("-f")) return UsageError(out, command, "the stem (-f STEM) is missing");
  return -1;
}

int Train(int argc, char** argv, std::FILE* out) {
  CommandLine line;
  ClassifierSettings settings;
  const int ended = ReadMiningCommand(argc, argv, out, "train", kTrainUsage, {"-o"}, line, settings);
  if (ended >= 0) return ended;
  if (!line.Value("-o")) return UsageError(out, "train", "the rule file to write (-o RULEFILE) is missing");
  const std::string ruleFile = *line.Value("-o");

  DataSet data;
  const int loaded = LoadCases(out, "train", *line.Value("-f"), data);
  if (loaded >= 0) return loaded;
  RuleSet rules = BuildClassifier(data, settings, out, PrintingReport(out));
  const Status written = WriteRule(rules, ruleFile, settings.Confidence, settings.Support, settings.Layers, 0.0f);
  if (written.kind() == StatusKind::CannotOpen) {
    std::fputs(written.message().c_str(), out);
    std::fprintf(out, "rule-classify train: cannot write the rule file %s\n", ruleFile.c_str());
    return kExitRefused;
  }
  if (!written.ok()) {
    std::fputs(written.message().c_str(), out);
    return written.exit_status();
  }
  PrintClassifier(rules, data, out);
  TestSingle(rules, data, out);
  return kExitDone;
}

// Reads the cases of the stem and the rule file, echoing the rule file's
// header to echo, and checks that the rules fit the names file. Messages go
// to out. Returns the exit status of a failure, or -1 when both are ready.
int LoadCasesAndRules(std::FILE* out, std::FILE* echo, const std::string& command, const std::string& stem,
                      const std::string& ruleFile, DataSet& data, RuleSet& rules) {
  const int loaded = LoadCases(out, command, stem, data);
  if (loaded >= 0) return loaded;
  const Status read = ReadRule(rules, ruleFile, echo);
  if (!read.ok()) {
    std::fputs(read.message().c_str(), out);
    if (read.kind() == StatusKind::CannotOpen)
      std::fprintf(out, "rule-classify %s: cannot open the rule file %s\n", command.c_str(), ruleFile.c_str());
    return kExitRefused;
  }
  const std::string misfit = RulesMisfit(rules, data);
  if (!misfit.empty()) {
    std::fprintf(out, "\nERROR:  rule file %s does not fit %s.names: %s\n", ruleFile.c_str(), stem.c_str(),
                 misfit.c_str());
    return kExitRefused;
  }
  return -1;
}

int Test(int argc, char** argv, std::FILE* out) {
  AcceptedOptions accepted;
  accepted.ValueFlags = {"-f", "-R"};
  accepted.Switches = {"--vote", "--vote-report"};
  CommandLine line;
  const ParseProblem parsed = ParseCommandLine(argc, argv, 2, accepted, line);
  if (line.Help) {
    std::fprintf(out, "%s", kTestUsage);
    return kExitDone;
  }
  if (parsed) return UsageError(out, "test", Describe(parsed));
  if (!line.Value("-f")) return UsageError(out, "test", "the stem (-f STEM) is missing");
  if (!line.Value("-R")) return UsageError(out, "test", "the rule file (-R RULEFILE) is missing");
  const bool vote = line.Switches.count("--vote") > 0;
  const bool voteReport = line.Switches.count("--vote-report") > 0;
  if (vote && voteReport) return UsageError(out, "test", "--vote and --vote-report exclude each other");

  DataSet data;
  RuleSet rules;
  const int loaded = LoadCasesAndRules(out, out, "test", *line.Value("-f"), *line.Value("-R"), data, rules);
  if (loaded >= 0) return loaded;
  if (vote) TestVote(rules, data, VoteSettings(), out);
  else if (voteReport) Testmulti(rules, data, out);
  else TestSingle(rules, data, out);
  return kExitDone;
}

// ---- Predictions as CSV ----

// A CSV field, quoted when it holds a comma, a quote or a line break, its
// quotes doubled.
std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

std::string ClassName(const DataSet& data, int cls) {
  return cls >= 0 && cls < data.MaxClass ? data.ClassName[static_cast<size_t>(cls)] : "";
}

// The antecedent as attribute=value pairs joined by "; ".
std::string Antecedent(const DataSet& data, const RuleRecord* rule) {
  std::string text;
  for (int i = 0; i < rule->Len; ++i) {
    const int item = rule->Antecedent[i];
    const bool known = item >= 0 && item <= data.MaxItem && static_cast<size_t>(item) < data.ItemRecord.size() &&
                       data.ItemRecord[static_cast<size_t>(item)];
    if (i) text += "; ";
    if (known) {
      const auto& record = *data.ItemRecord[static_cast<size_t>(item)];
      text += record.AttributeName + "=" + record.ValueName;
    } else {
      text += "?";
    }
  }
  return text;
}

// The table of predictions: a header line, then one line per case.
std::string PredictionTable(const RuleSet& rules, const DataSet& data, bool vote) {
  std::string table = "case,predicted,rule,antecedent,confidence,class\n";
  char number[32];
  for (int i = 0; i < data.MaxData; ++i) {
    const short* row = data.DataSpace[i];
    const Prediction p = vote ? PredictVote(rules, data, row, VoteSettings()) : PredictFirst(rules, data, row);
    table += std::to_string(i + 1) + "," + CsvField(ClassName(data, p.Class)) + "," + std::to_string(p.Position) +
             ",";
    if (p.Rule) {
      std::snprintf(number, sizeof number, "%.4f", static_cast<double>(p.Rule->Score));
      table += CsvField(Antecedent(data, p.Rule)) + "," + number;
    } else {
      table += ",";
    }
    table += "," + CsvField(ClassName(data, row[data.RealAtt])) + "\n";
  }
  return table;
}

int Predict(int argc, char** argv, std::FILE* out) {
  AcceptedOptions accepted;
  accepted.ValueFlags = {"-f", "-R", "-o"};
  accepted.Switches = {"--vote"};
  CommandLine line;
  const ParseProblem parsed = ParseCommandLine(argc, argv, 2, accepted, line);
  if (line.Help) {
    std::fprintf(out, "%s", kPredictUsage);
    return kExitDone;
  }
  // Standard output carries the table: every message goes to standard error.
  std::FILE* messages = out == stdout ? stderr : out;
  if (parsed) return UsageError(messages, "predict", Describe(parsed));
  if (!line.Value("-f")) return UsageError(messages, "predict", "the stem (-f STEM) is missing");
  if (!line.Value("-R")) return UsageError(messages, "predict", "the rule file (-R RULEFILE) is missing");

  DataSet data;
  RuleSet rules;
  // The rule file's header is not part of the table.
  std::FILE* discard = XFopen("/dev/null", "w");
  if (!discard) return Refuse(messages, "predict", "cannot open /dev/null");
  FileCloser closeDiscard{discard};
  const int loaded =
      LoadCasesAndRules(messages, discard, "predict", *line.Value("-f"), *line.Value("-R"), data, rules);
  if (loaded >= 0) return loaded;
  const std::string table = PredictionTable(rules, data, line.Switches.count("--vote") > 0);
  if (const std::string* file = line.Value("-o")) {
    std::string reason;
    int error = 0;
    if (!WriteFileReplacing(*file, table, reason, &error)) {
      std::fputs(WriteFailure(*file, error).message().c_str(), messages);
      return kExitRefused;
    }
    return kExitDone;
  }
  std::fwrite(table.data(), 1, table.size(), out);
  // Standard output is checked by the program's main, with the reason.
  if (out != stdout && (std::fflush(out) != 0 || std::ferror(out))) {
    std::fputs(WriteFailure("(standard output)", errno).message().c_str(), messages);
    return kExitRefused;
  }
  return kExitDone;
}

// ---- Cross-validation ----

// Console output kept in memory, to be printed later: a stream whose writes
// append to a string. (A stream of open_memstream drops what does not fit
// when its buffer cannot grow, without an error; here a write that cannot
// be kept marks the buffer as failed.)
class OutputBuffer {
 public:
  OutputBuffer() {
    cookie_io_functions_t io = {};
    io.write = &OutputBuffer::Write;
    file_ = fopencookie(this, "w", io);
    if (!file_) throw std::bad_alloc();
  }
  ~OutputBuffer() {
    if (file_) std::fclose(file_);
  }
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  std::FILE* file() const { return file_; }
  // Ends the writing. A buffer that could not keep everything written to it
  // ran out of memory.
  void Close() {
    if (!file_) return;
    const bool clean = !std::ferror(file_);
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!clean || !closed || failed_) throw std::bad_alloc();
  }
  // Prints what was written (up to the last flush while it is open).
  void PrintTo(std::FILE* out) const {
    if (file_) std::fflush(file_);
    if (!text_.empty()) std::fwrite(text_.data(), 1, text_.size(), out);
  }
  // Lets go of the text once it has been printed.
  void Release() {
    std::string none;
    text_.swap(none);
  }

 private:
  static ssize_t Write(void* cookie, const char* data, size_t size) {
    OutputBuffer* buffer = static_cast<OutputBuffer*>(cookie);
    try {
      buffer->text_.append(data, size);
    } catch (const std::bad_alloc&) {
      buffer->failed_ = true;
      return 0;
    }
    return static_cast<ssize_t>(size);
  }

  std::string text_;
  bool failed_ = false;
  std::FILE* file_ = nullptr;
};

// The number of threads the folds run on (see the top of this file).
int FoldThreads(int folds) {
  long long threads = std::thread::hardware_concurrency();
  if (threads < 1) threads = 1;
  long long cap;
  const char* env = std::getenv("RULE_THREADS");
  if (env && ParseWhole(env, 1, 1LL << 30, cap) && cap < threads) threads = cap;
  return static_cast<int>(threads < folds ? threads : folds);
}

// One fold: its output and how it ended.
struct FoldRun {
  OutputBuffer Output;
  bool Done = false;
  std::exception_ptr Failure;
  double Accuracy = 0;
  Status Coding;  // coding the fold's cases with its cuts
};

// The intervals a fold cut its continuous attributes into, one line.
void PrintFoldCuts(const DataSet& coded, const std::vector<CutAttribute>& cuts, int f, std::FILE* out) {
  std::fprintf(out, "fold %d: intervals from the training cases:", f + 1);
  for (const CutAttribute& cut : cuts) {
    std::fprintf(out, " %s", coded.AttName[static_cast<size_t>(cut.Declared)].c_str());
    const std::vector<std::string> names = IntervalSpellings(cut.Intervals);
    if (names.empty()) std::fprintf(out, " (left out)");
    for (size_t j = 0; j < names.size(); ++j) std::fprintf(out, "%s%s", j ? " " : " ", names[j].c_str());
    std::fprintf(out, ";");
  }
  std::fprintf(out, "\n");
}

// Runs fold(f, runs[f]) for f = 0 .. count-1 on up to `threads` threads,
// the folds taken in order, each printing into its own buffer, and prints the buffers to out in fold
// order as the folds finish. A fold that fails (std::bad_alloc) has its
// buffer printed as far as it got, after those of the folds before it, and
// its exception is rethrown here once every thread has stopped.
template <class Fold>
void RunFolds(int count, int threads, std::vector<FoldRun>& runs, Fold fold, std::FILE* out) {
  std::mutex lock;
  std::condition_variable finished;
  int next = 0;
  bool stop = false;
  auto worker = [&] {
    for (;;) {
      int f;
      {
        std::lock_guard<std::mutex> guard(lock);
        if (stop || next >= count) return;
        f = next++;
      }
      FoldRun& run = runs[static_cast<size_t>(f)];
      try {
        fold(f, run);
        run.Output.Close();
      } catch (...) {
        run.Failure = std::current_exception();
      }
      std::lock_guard<std::mutex> guard(lock);
      run.Done = true;
      if (run.Failure) stop = true;
      finished.notify_all();
    }
  };
  std::vector<std::thread> workers;
  auto joinAll = [&] {
    {
      std::lock_guard<std::mutex> guard(lock);
      stop = true;
    }
    for (std::thread& t : workers) t.join();
  };
  try {
    workers.reserve(static_cast<size_t>(threads));
    for (int t = 0; t < threads; ++t) workers.emplace_back(worker);
  } catch (const std::system_error&) {
    // No more threads to be had: the ones started do the work, or this one.
    if (workers.empty()) worker();
  } catch (...) {
    joinAll();
    throw;
  }
  for (int f = 0; f < count; ++f) {
    FoldRun& run = runs[static_cast<size_t>(f)];
    {
      std::unique_lock<std::mutex> guard(lock);
      finished.wait(guard, [&] { return run.Done; });
    }
    run.Output.PrintTo(out);
    run.Output.Release();
    if (run.Failure) {
      joinAll();
      std::rethrow_exception(run.Failure);
    }
  }
  joinAll();
}

int CrossValidate(int argc, char** argv, std::FILE* out) {
  CommandLine line;
  ClassifierSettings settings;
  const int ended = ReadMiningCommand(argc, argv, out, "cv", kCvUsage, {"-k", "--seed", "--predict", "--cuts"}, line, settings);
  if (ended >= 0) return ended;
  Decision decision = Decision::kFirstMatch;
  const std::string badDecision = DecisionSetting(line, decision);
  if (!badDecision.empty()) return UsageError(out, "cv", badDecision);
  long long folds = 10;
  if (const std::string* k = line.Value("-k"))
    if (!ParseWhole(*k, 2, 1000000, folds))
      return UsageError(out, "cv", "-k needs a number of folds of at least 2, not '" + *k + "'");
  long long seed = 1;
  if (const std::string* n = line.Value("--seed"))
    if (!ParseWhole(*n, 0, (1LL << 62), seed))
      return UsageError(out, "cv", "--seed needs a non-negative whole number, not '" + *n + "'");
  CutPlacement placement = CutPlacement::kInTree;
  if (const std::string* v = line.Value("--cuts")) {
    if (*v == "attribute") placement = CutPlacement::kPerAttribute;
    else if (*v != "tree") return UsageError(out, "cv", "--cuts needs tree or attribute, not '" + *v + "'");
  }
  const std::string stem = *line.Value("-f");

  // What reading the files prints (input errors of single cases) is printed
  // once here and again at the start of every later fold: each fold stands
  // for a run on the files as read.
  DataSet data;
  OutputBuffer reading;
  const int loaded = LoadRawCases(reading.file(), "cv", stem, data);
  reading.Close();
  reading.PrintTo(out);
  if (loaded >= 0) return loaded;
  if (data.MaxData < folds)
    return Refuse(out, "cv",
                  stem + ".data holds " + std::to_string(data.MaxData) + " cases, fewer than the " +
                      std::to_string(folds) + " folds");
  // Continuous attributes are cut anew in every fold, from its training
  // cases only; the raw rows stay for that. Otherwise the cases are coded
  // once and every fold takes its subsets of them.
  const bool continuous = HasContinuousAttribute(data);
  std::vector<int> labels(static_cast<size_t>(data.MaxData));
  if (continuous) {
    for (int i = 0; i < data.MaxData; ++i)
      labels[static_cast<size_t>(i)] = ClassIndexOf(data, static_cast<int>(data.RawDataSpace[i][data.RealAtt - 1]));
  } else {
    ConvertDataSpace(data);
    LabelCases(data);
    labels = CaseLabels(data);
  }
  const std::vector<int> fold = StratifiedFolds(labels, static_cast<int>(folds), static_cast<std::uint64_t>(seed));

  const int count = static_cast<int>(folds);
  std::vector<FoldRun> runs(static_cast<size_t>(count));
  RunFolds(
      count, FoldThreads(count), runs,
      [&](int f, FoldRun& run) {
        std::FILE* foldOut = run.Output.file();
        if (f > 0) reading.PrintTo(foldOut);
        DataSet coded;
        if (continuous) {
          std::vector<int> training;
          for (int i = 0; i < data.MaxData; ++i)
            if (fold[static_cast<size_t>(i)] != f) training.push_back(i);
          std::vector<CutAttribute> cuts = LearnEntropyCuts(data, training, placement);
          // An attribute the cuts leave in one interval tells the training
          // classes nothing; as an item of every case it would only stand in
          // the miner's way, so it is left out.
          for (CutAttribute& cut : cuts)
            if (cut.Intervals.size() < 2) cut.Intervals.clear();
          run.Coding = CodeWithCuts(data, cuts, coded);
          if (!run.Coding.ok()) return;
          LabelCases(coded);
          PrintFoldCuts(coded, cuts, f, foldOut);
        }
        const FoldSplit split = SplitFold(continuous ? coded : data, fold, f);
        RuleSet rules = BuildClassifier(split.Training, settings, foldOut, PrintingReport(foldOut));
        TestSingle(rules, split.Testing, foldOut);
        if (decision != Decision::kFirstMatch)
          rules.Hits = CountRight(rules, split.Testing, decision, split.Training.MaxData);
        const double accuracy = static_cast<double>(rules.Hits) / split.Testing.MaxData * 100;
        run.Accuracy = accuracy;
        std::fprintf(foldOut, "fold %d: %d training cases, %d rules, %d test cases, accuracy = %.2f %%\n", f + 1,
                     split.Training.MaxData, rules.NumOfRules, split.Testing.MaxData, accuracy);
      },
      out);
  for (const FoldRun& run : runs) {
    if (run.Coding.ok()) continue;
    std::fputs(run.Coding.message().c_str(), out);
    return run.Coding.exit_status();
  }

  double mean = 0;
  for (const FoldRun& run : runs) mean += run.Accuracy;
  mean /= static_cast<double>(count);
  double squares = 0;
  for (const FoldRun& run : runs) squares += (run.Accuracy - mean) * (run.Accuracy - mean);
  const double sd = std::sqrt(squares / static_cast<double>(count - 1));
  std::fprintf(out, "mean accuracy = %.2f %% (sd %.2f)\n", mean, sd);
  return kExitDone;
}

}  // namespace

int RunClassify(int argc, char** argv, std::FILE* out) {
  if (argc < 2) {
    std::fprintf(out, "%s", kUsage);
    return kExitRefused;
  }
  const std::string command = argv[1];
  if (command == "--help" || command == "-h" || command == "help") {
    std::fprintf(out, "%s", kUsage);
    return kExitDone;
  }
  if (command == "train") return Train(argc, argv, out);
  if (command == "test") return Test(argc, argv, out);
  if (command == "cv") return CrossValidate(argc, argv, out);
  if (command == "predict") return Predict(argc, argv, out);
  std::fprintf(out, "rule-classify: unknown command '%s'\n%s", command.c_str(), kUsage);
  return kExitRefused;
}
