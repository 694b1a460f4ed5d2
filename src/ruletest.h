// Rule-set evaluation: the rule file, testing a rule set on the cases,
// ordering rules with a default class, and complete rule selection.
//
// Cases are read as class-labelled rows: items in columns 0 .. RealAtt-1 and
// the class, as a class index, in column RealAtt. Rule targets and the
// default class are class indexes too.
#pragma once

#include <string>
#include <vector>

#include "rulegen.h"

// Share of the cases of each class, filled by the caller.
extern std::vector<float> Dist;

struct RuleChoice {
  int Position;
  int Right;
  int Wrong;
};

// The coverage table: one row per rule, MaxData cells, then the target and
// the taken flag.
using CoverageTable = int**;

// ---- Rule file ----
int WriteRule(const std::string& fileName, float conf, float support);
int ReadRule(const std::string& fileName);

// ---- Matching and testing ----
int MatchTest(const short* row, const RuleRecord* rule);
int TestSingle();
int Testmulti();
int FillInTable(CoverageTable table);
void PrintTable(CoverageTable table);

// ---- Ordering and default class ----
int OrderRuleAndSetDefault();
int ReadRuleLabel(CoverageTable table, RuleChoice* choice, int start);
int FreeLowAccRule(CoverageTable table, const int* positions, int n);
int SwapRule(int a, int b);
int SwapRow(CoverageTable table, int a, int b);
int UpdateTable(CoverageTable table, int* classCounts, int p);
int CurrentDefault(const int* classCounts);
double CurrentDefaultRate(const int* classCounts);
int DiscardRestRule(int n);
RuleRecord* DeleteRule(RuleRecord* rule);
void SetSimpleDefault();
void TestAndSetDefult();

// ---- Complete rule selection ----
void ChooseKcompleterule();
int WriteLeftAttribute(const RuleRecord* rule, int* list);
int OverLapAttribute(const RuleRecord* rule, int* list);

// Sets the globals of this module back to their start values.
void ResetRuletest();
