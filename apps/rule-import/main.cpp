// Turns a table in a CSV or TSV file with a header row into the names and
// data files the miner reads.
#include <getopt.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/console.h"
#include "base/numbers.h"
#include "base/staged_file.h"
#include "tabular/csv_import.h"
#include "tabular/pair_check.h"

namespace {

const char kUsage[] =
    "Usage: rule-import [options] INPUT.csv STEM\n"
    "Reads a table with a header row and writes STEM.names and STEM.data for rule -f STEM.\n"
    "  -d, --delimiter C       field delimiter: a character, or 'tab' (default: detected among\n"
    "                          comma, semicolon, tab and bar)\n"
    "  -c, --class COLUMN      the class column, by name or 1-based index (default: the last)\n"
    "  -i, --ignore COLUMN,... columns left out (written as ignored)\n"
    "  -k, --categorical COLUMN,...\n"
    "                          numeric columns kept as categories instead of cut into intervals\n"
    "  -s, --support F         numeric columns: an interval of at most F x rows is merged with a\n"
    "                          neighbour, F from 0 to 1 (default 0.1)\n"
    "  -h, --help              show this text\n"
    "Empty fields, NA and ? are unknown values.\n"
    "\n"
    "Usage: rule-import --check STEM\n"
    "Checks a names/data pair written by hand for what the miner would read past without a\n"
    "word: a header row in the data, fields separated by another character than a comma,\n"
    "values the names file does not declare, a last case cut short. Exit status 1 when\n"
    "anything is found.\n";

int UsageError(const std::string& message) {
  std::fprintf(stderr, "rule-import: %s\n%s", message.c_str(), kUsage);
  return 1;  // the companions' status for a command line that cannot be run
}

bool ParseDelimiter(const std::string& text, char* delimiter) {
  if (text == "tab" || text == "\\t" || text == "\t") {
    *delimiter = '\t';
    return true;
  }
  if (text.size() != 1 || text[0] == '"' || text[0] == '\n' || text[0] == '\r') return false;
  *delimiter = text[0];
  return true;
}

// Reports what a hand-written names/data pair would make the miner read past.
int Check(const std::string& stem) {
  tabular::PairFindings findings;
  std::string error;
  if (!tabular::CheckNamesAndData(stem, &findings, &error)) {
    std::printf("rule-import: %s\n", error.c_str());
    return 1;
  }
  std::printf("%s: %d cases of %d attributes (the class included)\n", stem.c_str(), findings.Cases,
              findings.Attributes);
  for (const std::string& problem : findings.Problems) std::printf("problem: %s\n", problem.c_str());
  if (findings.Problems.empty()) std::printf("no problem found\n");
  return findings.Problems.empty() ? 0 : 1;
}

int Import(int argc, char** argv) {
  tabular::ImportOptions options;
  static const option kLong[] = {{"delimiter", required_argument, nullptr, 'd'},
                                 {"class", required_argument, nullptr, 'c'},
                                 {"ignore", required_argument, nullptr, 'i'},
                                 {"categorical", required_argument, nullptr, 'k'},
                                 {"support", required_argument, nullptr, 's'},
                                 {"help", no_argument, nullptr, 'h'},
                                 {"check", required_argument, nullptr, 'C'},
                                 {nullptr, 0, nullptr, 0}};
  std::string checkStem;
  optind = 0;
  opterr = 0;
  int option;
  while ((option = getopt_long(argc, argv, ":d:c:i:k:s:h", kLong, nullptr)) != -1) {
    switch (option) {
      case 'h':
        std::fputs(kUsage, stdout);
        return 0;
      case 'd':
        if (!ParseDelimiter(optarg, &options.Delimiter))
          return UsageError("the delimiter must be one character or 'tab', not '" + std::string(optarg) + "'");
        break;
      case 'C': checkStem = optarg; break;
      case 'c': options.ClassColumn = optarg; break;
      case 'i': options.Ignore.push_back(optarg); break;
      case 'k': options.Categorical.push_back(optarg); break;
      case 's':
        if (!ParseFraction(optarg, &options.Support))
          return UsageError("the support must be a number from 0 to 1, not '" + std::string(optarg) + "'");
        break;
      case ':': return UsageError(std::string("option ") + argv[optind - 1] + " needs a value");
      default:
        if (optopt) return UsageError(std::string("unknown option -") + static_cast<char>(optopt));
        return UsageError(std::string("unknown option ") + argv[optind - 1]);
    }
  }
  if (!checkStem.empty()) {
    if (argc != optind) return UsageError("--check takes no other argument");
    return Check(checkStem);
  }
  if (argc - optind != 2) return UsageError(argc - optind < 2 ? "INPUT.csv and STEM are needed" : "too many arguments");
  return tabular::ImportCsvFile(options, argv[optind], argv[optind + 1]);
}

}  // namespace

int main(int argc, char** argv) {
  CheckedStandardOutput out;
  return out.Finish("rule-import", GuardedRun([&] { return Import(argc, argv); }));
}
