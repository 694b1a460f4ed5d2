// Reading a rule file written by the miner (STEMrule.csv) back into rules a
// person can look at, and the names file beside it for the class's name.
#pragma once

#include <string>
#include <vector>

namespace show {

// One item of a rule: an attribute and one of its values, as the rule file
// spells them.
struct Item {
  std::string attribute;
  std::string value;
};

// One rule P => t with its 2x2 contingency table against the cases:
// a = P and t, b = P without t, c = t without P, d = neither.
struct Rule {
  long index = 0;  // rule number in the file, from 1
  long a = 0, b = 0, c = 0, d = 0;
  double confidence = 0, chi = 0, lift = 0, leverage = 0;  // as the file gives them
  Item target;
  std::vector<Item> antecedent;

  long Cases() const { return a + b + c + d; }
  double Support() const { return Cases() > 0 ? static_cast<double>(a) / Cases() : 0.0; }
  // A rule whose target or antecedent holds in every case: the 2x2 table has
  // an empty margin, so lift is 1 and chi-square is undefined (the file
  // writes 10000). Such a rule says nothing about the data.
  bool Trivial() const { return b + d == 0 || c + d == 0; }
};

struct RuleFile {
  std::string path;
  double confidence = 0;  // the thresholds of the run, from the first line
  double support = 0;
  std::vector<Rule> rules;
  long Cases() const { return rules.empty() ? 0 : rules.front().Cases(); }
};

// A rule file that cannot be read: the line (0 when the file cannot be
// opened at all) and what is wrong there.
struct ReadError {
  std::string path;
  long line = 0;
  std::string what;
  // "FILE:LINE: WHAT", or "FILE: WHAT" for line 0.
  std::string Message() const;
};

// Parses the text of a rule file. Returns false and fills error when the
// text is not a complete rule file as the miner writes it.
bool ParseRuleFile(const std::string& text, RuleFile& file, ReadError& error);

// Reads and parses the file at path (error.line 0 and the system's reason
// when it cannot be read).
bool ReadRuleFile(const std::string& path, RuleFile& file, ReadError& error);

// The names file beside a rule file: "DIR/STEMrule.csv" gives
// "DIR/STEM.names"; empty when the name does not end in "rule.csv".
std::string NamesFileBeside(const std::string& ruleFile);

// The class's name from a names file whose first line is exactly
// "| class attribute: NAME"; empty when the file is missing or has no such
// line.
std::string ReadClassName(const std::string& namesFile);

// Reads a whole file into text. Returns false with errno set when it cannot
// be read; a failure for want of memory throws std::bad_alloc.
bool ReadWholeFile(const std::string& path, std::string& text);

}  // namespace show
