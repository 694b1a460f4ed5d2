#include "common/command_line.h"

#include <algorithm>

namespace {

bool Contains(const std::vector<std::string>& list, const std::string& word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

}  // namespace

ParseProblem ParseCommandLine(int argc, char** argv, int first, const AcceptedOptions& accepted, CommandLine& line) {
  for (int i = first; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      line.Help = true;
    } else if (Contains(accepted.ValueFlags, arg)) {
      if (i + 1 >= argc) return {ParseProblem::MissingValue, arg};
      line.Values[arg] = argv[++i];
    } else if (Contains(accepted.Switches, arg)) {
      line.Switches.insert(arg);
    } else if (accepted.JoinedValues && arg.size() > 2 && arg[0] == '-' && arg[1] != '-' &&
               Contains(accepted.ValueFlags, arg.substr(0, 2))) {
      line.Values[arg.substr(0, 2)] = arg.substr(2);
    } else if (!arg.empty() && arg[0] == '-' && arg != "-") {
      return {ParseProblem::UnknownOption, arg};
    } else {
      return {ParseProblem::UnexpectedWord, arg};
    }
  }
  return {};
}
