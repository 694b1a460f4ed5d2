// The command line of rule-discretise and its run: the input pair read with
// its continuous attributes, the cut attributes reported interval by
// interval, and the categorical pair written.
#include "rule-discretise/run_discretise.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/console.h"
#include "base/numbers.h"
#include "common/command_line.h"
#include "discretiser/discretise.h"
#include "input/readers.h"

namespace {

const char kUsage[] =
    "Usage: rule-discretise -f STEM [-m merge|entropy|tree] [-s FRACTION] -o OUTSTEM\n"
    "Reads STEM.names and STEM.data, cuts every continuous attribute into intervals and\n"
    "writes the categorical pair OUTSTEM.names and OUTSTEM.data, which rule can mine.\n"
    "  -f STEM      stem of the input files\n"
    "  -m METHOD    merge: merge neighbouring values while an interval is too small (default);\n"
    "               entropy: cut each attribute by class entropy with the minimum-description-\n"
    "               length rule; tree: cut where a pruned class-entropy tree over all the\n"
    "               continuous attributes splits them\n"
    "  -s FRACTION  minimum support as a fraction of the cases, from 0 to 1 (default 0.1):\n"
    "               with merge, an interval holding at most that many cases is merged with a\n"
    "               neighbour; entropy and tree do not use it\n"
    "  -o OUTSTEM   stem of the output files; it must not name the input files\n"
    "  --help       show this text\n";

int BadUsage(const std::string& message) {
  std::printf("rule-discretise: %s\n%s", message.c_str(), kUsage);
  return kExitRefused;
}

// The path with every directory resolved, also when the file itself does
// not exist yet.
std::string CanonicalPath(const std::string& path) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved)) return resolved;
  const size_t slash = path.rfind('/');
  const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : path.substr(0, slash));
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  if (realpath(dir.c_str(), resolved)) return std::string(resolved) + "/" + base;
  return path;
}

// True when two paths name the same file: the same inode when both exist,
// otherwise the same resolved path.
bool SameFile(const std::string& x, const std::string& y) {
  struct stat sx, sy;
  if (stat(x.c_str(), &sx) == 0 && stat(y.c_str(), &sy) == 0) {
    return sx.st_dev == sy.st_dev && sx.st_ino == sy.st_ino;
  }
  return CanonicalPath(x) == CanonicalPath(y);
}

// NAME of a names file whose first line is "| class attribute: NAME" (as
// rule-import writes it); empty otherwise.
std::string ClassAttribute(const std::string& namesFile) {
  std::string line;
  if (std::FILE* f = std::fopen(namesFile.c_str(), "r")) {
    for (int c; (c = std::fgetc(f)) != EOF && c != '\n';) line += static_cast<char>(c);
    std::fclose(f);
  }
  const std::string lead = "| class attribute: ";
  return line.compare(0, lead.size(), lead) == 0 ? line.substr(lead.size()) : "";
}

// Reads, cuts, reports and writes. The status is the run's last word.
Status Discretise(const std::string& stem, float fraction, CutMethod method, const std::string& outStem) {
  DataSet data;
  data.FileName = stem;
  InputErrors errors{stdout, 0};
  RETURN_IF_FAILED(GetNames(data, stem, errors, true));
  RETURN_IF_FAILED(ReadData(data, ".data", errors));
  const int minSup = ComputeMinSup(data.MaxData, fraction);
  if (method == CutMethod::kEntropy)
    std::printf("Read %d cases of %d attributes from %s; the attributes are cut by class entropy\n", data.MaxData,
                data.MaxAtt - 1, stem.c_str());
  else if (method == CutMethod::kTree)
    std::printf("Read %d cases of %d attributes from %s; the attributes are cut where a class-entropy tree splits them\n",
                data.MaxData, data.MaxAtt - 1, stem.c_str());
  else
    std::printf("Read %d cases of %d attributes from %s; an interval of at most %d cases is merged\n",
                data.MaxData, data.MaxAtt - 1, stem.c_str(), minSup);

  std::vector<CutAttribute> cuts;
  RETURN_IF_FAILED(DiscretiseAttributes(data, minSup, &cuts, method));
  for (const CutAttribute& cut : cuts) {
    const std::vector<std::string> names = IntervalSpellings(cut.Intervals);
    std::printf("%s: %d interval%s\n", data.AttName[cut.Declared].c_str(), static_cast<int>(names.size()),
                names.size() == 1 ? "" : "s");
    for (size_t j = 0; j < names.size(); ++j) {
      const int cases = cut.Intervals[j].Count;
      std::printf("\t%s\t%d case%s\n", names[j].c_str(), cases, cases == 1 ? "" : "s");
    }
  }

  RETURN_IF_FAILED(WriteCategoricalPair(data, outStem, cuts, ClassAttribute(stem + ".names")));
  std::printf("Wrote %s.names and %s.data\n", outStem.c_str(), outStem.c_str());
  return Status();
}

}  // namespace

int RunDiscretise(int argc, char** argv) {
  AcceptedOptions accepted;
  accepted.ValueFlags = {"-f", "-m", "-s", "-o"};
  CommandLine line;
  const ParseProblem problem = ParseCommandLine(argc, argv, 1, accepted, line);
  if (line.Help) {
    std::fputs(kUsage, stdout);
    return kExitDone;
  }
  switch (problem.What) {
    case ParseProblem::None: break;
    case ParseProblem::MissingValue: return BadUsage("option " + problem.Word + " needs an argument");
    case ParseProblem::UnknownOption:
    case ParseProblem::UnexpectedWord: return BadUsage("unknown option " + problem.Word);
  }
  float fraction = 0.1f;
  if (const std::string* value = line.Value("-s"); value && !ParseFraction(value->c_str(), &fraction))
    return BadUsage("the support fraction must be a number from 0 to 1, not " + *value);
  CutMethod method = CutMethod::kMerge;
  if (const std::string* value = line.Value("-m")) {
    if (*value == "entropy") method = CutMethod::kEntropy;
    else if (*value == "tree") method = CutMethod::kTree;
    else if (*value != "merge") return BadUsage("the method must be merge, entropy or tree, not " + *value);
  }
  if (!line.Has("-f")) return BadUsage("no input stem (-f)");
  if (!line.Has("-o")) return BadUsage("no output stem (-o)");
  const std::string stem = *line.Value("-f");
  const std::string outStem = *line.Value("-o");
  for (const char* out : {".names", ".data"}) {
    for (const char* in : {".names", ".data"}) {
      if (SameFile(outStem + out, stem + in)) {
        std::printf("rule-discretise: %s%s would overwrite the input file %s%s\n", outStem.c_str(), out,
                    stem.c_str(), in);
        return kExitRefused;
      }
    }
  }
  return Finish(Discretise(stem, fraction, method, outStem));
}
