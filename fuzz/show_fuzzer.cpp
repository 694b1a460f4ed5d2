// Fuzzes rule-show's readers: the input is a rule file, a miner's CSV or,
// when it begins with a number, a classifier's rule file read against a
// fixed names/data pair. A file that is read is selected, sorted and put in
// every format; every rule's 2x2 table adds up to the same number of cases.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "rule-show/classifier_rules.h"
#include "show/formats.h"
#include "show/html.h"
#include "show/rulefile.h"
#include "show/select.h"

namespace {

const char kNames[] =
    "| class attribute: plan\n"
    "play, stay.\n"
    "outlook: sunny, overcast, rain.\n"
    "wind: yes, no.\n";

const char kData[] = "sunny,yes,stay\nsunny,no,play\novercast,yes,play\nrain,no,stay\nrain,yes,play\n";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz_support::QuietOutput();
  fuzz_support::Put("set.names", kNames);
  fuzz_support::Put("set.data", kData);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string path = fuzz_support::Put("set.rules", data, size);
  const int status = fuzz_support::OneRun([&] {
    show::RuleFile file;
    if (IsClassifierRuleFile(path)) {
      std::string message;
      if (!ReadClassifierRules(path, fuzz_support::PathOf("set"), file, &message)) {
        FUZZ_CHECK(!message.empty());
        return Status();
      }
    } else {
      file.path = path;
      show::ReadError error;
      if (!show::ParseRuleFile(text, file, error)) {
        FUZZ_CHECK(error.line > 0 && !error.what.empty());
        return Status();
      }
    }
    for (const show::Rule& rule : file.rules) {
      FUZZ_CHECK(rule.Cases() == file.Cases() && rule.a >= 0 && rule.b >= 0 && rule.c >= 0);
    }
    show::Naming naming;
    naming.className = "plan";
    show::Selection selection;
    selection.sort = show::SortKey::kLift;
    selection.top = 3;
    selection.contains.push_back("outlook=sunny");
    const std::vector<const show::Rule*> all = show::Select(file, show::Selection{}, naming);
    FUZZ_CHECK(all.size() == file.rules.size());
    const std::vector<const show::Rule*> some = show::Select(file, selection, naming);
    FUZZ_CHECK(some.size() <= 3);
    // The table and CSV have a header line at least; JSON has a line per rule.
    for (show::Format format : {show::Format::kTable, show::Format::kCsv})
      FUZZ_CHECK(!show::FormatRules(file, all, naming, format).empty());
    FUZZ_CHECK(show::FormatRules(file, all, naming, show::Format::kJson).empty() == all.empty());
    FUZZ_CHECK(!show::HtmlReport(file, some, naming).empty());
    return Status();
  });
  FUZZ_CHECK(status == -1);
  return 0;
}
