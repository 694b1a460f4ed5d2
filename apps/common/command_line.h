// The command-line handling shared by the companion programs (rule-analyse,
// rule-classify, rule-discretise): options by their spelling, each taking a
// value or standing alone, and one convention for what a program does with
// a command line it cannot run.
//
// Exit statuses of the companions: 0 for a completed run and for --help; 1
// for a command line that cannot be run, for input that cannot be used and
// for output that cannot be written; 0 after "Not enough memory".
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

constexpr int kExitDone = 0;
constexpr int kExitRefused = 1;

// What a command accepts.
struct AcceptedOptions {
  std::vector<std::string> ValueFlags;  // "-f", "--seed": take the next word (or, for one letter, "-fVALUE")
  std::vector<std::string> Switches;    // "-d", "--vote": stand alone
  bool JoinedValues = false;            // "-fVALUE" gives -f the value VALUE
};

// What a command line said.
struct CommandLine {
  std::map<std::string, std::string> Values;  // the last value of each value flag
  std::set<std::string> Switches;
  bool Help = false;  // --help or -h

  bool Has(const std::string& flag) const { return Values.count(flag) > 0 || Switches.count(flag) > 0; }
  const std::string* Value(const std::string& flag) const {
    auto found = Values.find(flag);
    return found == Values.end() ? nullptr : &found->second;
  }
};

// What is wrong with a command line, for the program to put in its words.
struct ParseProblem {
  enum Kind { None, UnknownOption, MissingValue, UnexpectedWord } What = None;
  std::string Word;  // the offending word (for MissingValue, the flag)
  explicit operator bool() const { return What != None; }
};

// Reads argv[first..] against the accepted options. Parsing stops at the first problem;
// --help anywhere before it sets Help.
ParseProblem ParseCommandLine(int argc, char** argv, int first, const AcceptedOptions& accepted, CommandLine& line);
