// Fuzzes the rule file reader, and the tests of a rule set read from it, as
// rule-classify test runs them on a fixed names/data pair. The input is the
// rule file. A file that parses must survive a write and a second read
// unchanged; one that does not parse is refused without keeping a half-read
// rule.
#include <cstddef>
#include <cstdint>
#include <string>

#include "evaluation/evaluation.h"
#include "fuzz_support.h"
#include "input/readers.h"

namespace {

const char kNames[] =
    "play, stay.\n"
    "day: ignore.\n"
    "outlook: sunny, overcast, rain.\n"
    "windy: yes, no.\n";

const char kData[] =
    "d01,sunny,yes,stay\nd02,sunny,yes,stay\nd03,sunny,no,stay\nd04,sunny,no,play\n"
    "d05,overcast,yes,play\nd06,overcast,no,play\nd07,rain,yes,stay\nd08,rain,no,play\n"
    "d09,?,no,play\n";

std::string FileText(const std::string& path) {
  std::string text;
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return text;
  char buffer[4096];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
  std::fclose(f);
  return text;
}

// The rules of the rule set, checked to be linked both ways.
int RulesLinked(const RuleSet& rules) {
  int n = 0;
  const RuleRecord* previous = nullptr;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    FUZZ_CHECK(r->Prev == previous);
    FUZZ_CHECK(r->Len >= 0 && r->Antecedent != nullptr && r->Antecedent[r->Len] == 0);
    previous = r;
    ++n;
  }
  FUZZ_CHECK(rules.Last == previous);
  return n;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  fuzz_support::Put("set.names", kNames);
  fuzz_support::Put("set.data", kData);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string ruleFile = fuzz_support::Put("set.rules", data, size);
  const std::string first = fuzz_support::PathOf("first.rules");
  const std::string second = fuzz_support::PathOf("second.rules");
  const int status = fuzz_support::OneRun([&] {
    DataSet cases;
    InputErrors errors;
    RETURN_IF_FAILED(GetNames(cases, fuzz_support::PathOf("set"), errors));
    RETURN_IF_FAILED(GetData(cases, ".data", errors));
    LabelCases(cases);
    RuleSet rules;
    const Status read = ReadRule(rules, ruleFile, stdout);
    const int linked = RulesLinked(rules);
    if (!read.ok()) {
      FUZZ_CHECK(read.exit_status() == 1);
      FUZZ_CHECK(rules.NumOfRules == linked);
      return Status();
    }
    if (RulesMisfit(rules, cases).empty()) {
      TestSingle(rules, cases, stdout);
      Testmulti(rules, cases, stdout);
      FUZZ_CHECK(rules.Hits + rules.Misses <= cases.MaxData);
    }
    // Written and read again, the rules stay the same.
    FUZZ_CHECK(WriteRule(rules, first, 0.5f, 0.1f, 4, 0.0f).ok());
    RuleSet again;
    FUZZ_CHECK(ReadRule(again, first, stdout).ok());
    FUZZ_CHECK(RulesLinked(again) == linked);
    FUZZ_CHECK(again.NumOfRules == rules.NumOfRules && again.DefaultClass == rules.DefaultClass);
    FUZZ_CHECK(WriteRule(again, second, 0.5f, 0.1f, 4, 0.0f).ok());
    FUZZ_CHECK(FileText(first) == FileText(second));
    return Status();
  });
  FUZZ_CHECK(status == -1);
  return 0;
}
