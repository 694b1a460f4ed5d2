// A classifier's rule file (rule-classify train -o) as rules a person reads:
// the item codes spelled with the names of the data set it was trained on,
// and every rule's 2x2 table counted on that data set's cases.
#pragma once

#include <string>

#include "show/rulefile.h"

// True when the file holds numbers from its first field on, as a
// classifier's rule file does (a rule file of the miner begins with a word).
bool IsClassifierRuleFile(const std::string& path);

// Reads the rules of path against STEM.names and STEM.data. False with the
// reason in *message (the input errors of the names and data files are
// printed to standard output first).
bool ReadClassifierRules(const std::string& path, const std::string& stem, show::RuleFile& file,
                         std::string* message);
