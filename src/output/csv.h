// The CSV rule file: one line per rule with its 2x2 contingency table,
// confidence, chi-square, lift, leverage and the items by name.
#pragma once

#include <cstdio>
#include <string>

#include "base/status.h"
#include "input/dataset.h"
#include "mining/rules.h"

// Writes the rules of data's cases to fileName with the thresholds in the
// first line. A file that cannot be opened prints "Can not Open File" and
// gives exit status 1; a rule with a zero count prints "Devided by zero
// Write2CSVfile" and gives exit status 0; a write that fails names the file
// and the reason, exit status 1. Console lines go to out.
Status Write2CSVfile(const std::string& fileName, float support, float minConf, const RuleSet& rules,
                     const DataSet& data, std::FILE* out);
// Writes value as printf's "%f" shows it (six decimals, the exact binary
// value rounded to nearest, ties to even) at out, and gives the end. out has
// room for 64 characters; value is finite.
char* FormatFixed(char* out, float value);
// Pearson's chi-square of the 2x2 table; 10000 (with an "exit" line on out)
// when a margin or the table is empty.
float ChisquareTest(int a, int b, int c, int d, std::FILE* out);
