// Shows the rules of a rule file written by `rule` as a person reads them:
// sorted, filtered, as a table, CSV, JSON lines or an HTML report.
#include <getopt.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/console.h"
#include "base/numbers.h"
#include "base/staged_file.h"
#include "rule-show/classifier_rules.h"
#include "show/formats.h"
#include "show/html.h"
#include "show/rulefile.h"
#include "show/select.h"

namespace {

const char kUsage[] =
    "usage: rule-show [options] STEMrule.csv\n"
    "       rule-show [options] -f STEM\n"
    "       rule-show [options] [-f STEM] CLASSIFIER.rules\n"
    "Shows the rules of a rule file written by rule; reads STEM.names beside it for the class's name.\n"
    "A classifier's rule file (rule-classify train -o) is read with the names of STEM.names and\n"
    "its rules counted on STEM.data (STEM: the file's name without its extension unless -f gives it).\n"
    "  -f STEM                    the rule file STEMrule.csv\n"
    "  --sort MEASURE             support, confidence, lift, leverage, chi or count (descending)\n"
    "  --top N                    at most N rules\n"
    "  --min-support X            rules with support (a/N) at least X\n"
    "  --min-confidence X         rules with confidence at least X\n"
    "  --min-lift X               rules with lift at least X\n"
    "  --target ATTRIBUTE[=VALUE] rules with this target\n"
    "  --contains ITEM            rules holding ITEM (ATTRIBUTE=VALUE or ATTRIBUTE); repeatable\n"
    "  --format table|csv|json    the listing's format (default table)\n"
    "  -o FILE                    the listing goes to FILE instead of standard output\n"
    "  --html FILE                writes an HTML report of the rules (then no listing unless\n"
    "                             --format or -o is given)\n"
    "  -h, --help                 this text\n";

int Usage(const std::string& problem) {
  std::fprintf(stderr, "rule-show: %s\n%s", problem.c_str(), kUsage);
  return 1;  // the companions' status for a command line that cannot be run
}

int CannotWrite(const std::string& path, const std::string& reason) {
  std::printf("rule-show: cannot write %s: %s\n", path.c_str(), reason.c_str());
  return 1;
}

// A lower bound: a decimal number of 0 or more.
bool ParseBound(const std::string& text, double& value) { return ParseNumber(text, value) && value >= 0; }

int Run(int argc, char** argv) {
  enum { kSort = 256, kTop, kMinSupport, kMinConfidence, kMinLift, kTarget, kContains, kFormat, kHtml };
  static const option kOptions[] = {
      {"sort", required_argument, nullptr, kSort},
      {"top", required_argument, nullptr, kTop},
      {"min-support", required_argument, nullptr, kMinSupport},
      {"min-confidence", required_argument, nullptr, kMinConfidence},
      {"min-lift", required_argument, nullptr, kMinLift},
      {"target", required_argument, nullptr, kTarget},
      {"contains", required_argument, nullptr, kContains},
      {"format", required_argument, nullptr, kFormat},
      {"html", required_argument, nullptr, kHtml},
      {"output", required_argument, nullptr, 'o'},
      {"help", no_argument, nullptr, 'h'},
      {nullptr, 0, nullptr, 0}};
  show::Selection selection;
  show::Format format = show::Format::kTable;
  bool formatGiven = false;
  std::string stem, ruleFile, output, html;
  bool stemGiven = false;
  opterr = 0;
  int option;
  while ((option = getopt_long(argc, argv, ":f:o:h", kOptions, nullptr)) != -1) {
    const std::string value = optarg ? optarg : "";
    double bound = 0;
    switch (option) {
      case 'h': std::fputs(kUsage, stdout); return 0;
      case 'f': stem = value; stemGiven = true; break;
      case 'o': output = value; break;
      case kHtml: html = value; break;
      case kSort:
        if (!show::ParseSortKey(value, selection.sort)) return Usage("unknown measure for --sort: " + value);
        break;
      case kFormat:
        if (!show::ParseFormat(value, format)) return Usage("unknown format: " + value);
        formatGiven = true;
        break;
      case kTop: {
        char* end = nullptr;
        const long top = std::strtol(value.c_str(), &end, 10);
        if (value.empty() || *end != '\0' || top < 0) return Usage("--top takes a count, not " + value);
        selection.top = top;
        break;
      }
      case kMinSupport:
      case kMinConfidence:
      case kMinLift:
        if (!ParseBound(value, bound))
          return Usage(std::string(option == kMinSupport      ? "--min-support"
                                   : option == kMinConfidence ? "--min-confidence"
                                                              : "--min-lift") +
                       " takes a number of 0 or more, not \"" + value + "\"");
        (option == kMinSupport ? selection.minSupport
                               : option == kMinConfidence ? selection.minConfidence : selection.minLift) = bound;
        break;
      case kTarget: selection.target = value; break;
      case kContains: selection.contains.push_back(value); break;
      case ':': return Usage(std::string("option ") + argv[optind - 1] + " needs an argument");
      default: return Usage(std::string("unknown option ") + argv[optind - 1]);
    }
  }
  // -f STEM alone: the miner's STEMrule.csv. With a rule file, STEM is the
  // data set whose names the file's items take.
  if (optind + 1 < argc) return Usage("more than one rule file given");
  if (optind == argc && !stemGiven) return Usage("no rule file given");
  ruleFile = optind < argc ? argv[optind] : stem + "rule.csv";

  show::RuleFile file;
  std::string namesFile;
  if (IsClassifierRuleFile(ruleFile)) {
    // A classifier's rule file: its codes are spelled with STEM.names, by
    // default the names file of the rule file's name without its extension.
    if (!stemGiven) {
      const size_t dot = ruleFile.rfind('.');
      stem = dot == std::string::npos || dot < ruleFile.rfind('/') + 1 ? ruleFile : ruleFile.substr(0, dot);
    }
    std::string message;
    if (!ReadClassifierRules(ruleFile, stem, file, &message)) {
      std::printf("rule-show: %s\n", message.c_str());
      return 1;
    }
    namesFile = stem + ".names";
  } else {
    show::ReadError error;
    if (!show::ReadRuleFile(ruleFile, file, error)) {
      std::printf("rule-show: %s\n", error.Message().c_str());
      return 1;
    }
    namesFile = optind < argc && stemGiven ? stem + ".names" : show::NamesFileBeside(ruleFile);
  }
  show::Naming naming;
  naming.className = show::ReadClassName(namesFile);
  const std::vector<const show::Rule*> rules = show::Select(file, selection, naming);

  // Every output is written in full before any file is replaced.
  const bool listing = html.empty() || formatGiven || !output.empty();
  const std::string text = listing ? show::FormatRules(file, rules, naming, format) : "";
  PendingFile htmlFile, outputFile;
  std::string reason;
  if (!html.empty() && !htmlFile.Write(html, show::HtmlReport(file, rules, naming), reason))
    return CannotWrite(html, reason);
  if (!output.empty() && !outputFile.Write(output, text, reason)) return CannotWrite(output, reason);
  if (!html.empty() && !htmlFile.Commit(reason)) return CannotWrite(html, reason);
  if (!output.empty() && !outputFile.Commit(reason)) return CannotWrite(output, reason);
  if (!listing) {
    std::printf("rule-show: wrote %s: %zu of %zu rules\n", html.c_str(), rules.size(), file.rules.size());
  } else if (output.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule-show", GuardedRun([&] { return Run(argc, argv); }));
}
