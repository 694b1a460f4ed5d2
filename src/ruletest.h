// Rule-set evaluation: the rule file, testing a rule set on the cases,
// ordering rules with a default class, and complete rule selection.
//
// Cases are read as class-labelled rows: items in columns 0 .. RealAtt-1 and
// the class, as a class index, in column RealAtt. Rule targets and the
// default class are class indexes too.
#pragma once

#include <cstdint>
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
// Statuses of WriteRule and ReadRule besides those of closing the file (0 on
// success, EOF when closing fails).
constexpr int kRuleFileUnopenable = -2;  // "Can not Open File" printed
constexpr int kRuleFileMalformed = -3;   // a parse error, reported on one line

// Writes the rule set with the thresholds it was mined with, MaxLayer and
// MinImp, as one line of text.
int WriteRule(const std::string& fileName, float conf, float support);
// Reads a rule file into the empty rule set and echoes its header. A file
// that cannot be parsed, or ends inside a rule, stops the reading at once:
// the complete rules before the fault stay (NumOfRules then counts them), the
// fault is reported on one line, and the result is kRuleFileMalformed.
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

// ---- Classifiers built from mined rules ----
// What a classifier is mined and ordered with.
struct ClassifierSettings {
  float Support = 0.002f;   // minimum support, a fraction of the training cases
  float Confidence = 0.1f;  // minimum confidence of a rule and minimum accuracy of a placed rule
  int Layers = 4;           // largest itemset mined (antecedent plus target)
  int CompleteMode = 0;     // 0: no complete rule selection; 1 or 2: its mode
  bool DiscardRest = false;  // trim the rules the ordering leaves over
};

// The class index of an item code; -1 for an item that is no class value.
int ClassIndexOf(int item);
// Writes into column RealAtt of every row the class index of the case's class
// item (column RealAtt-1), or -1 when the class is unknown.
void LabelCases();
// Dist = the share of each class among the MaxData cases.
void SetClassDistribution();
// Keeps only the rules whose target is a class item, turning their targets
// into class indexes.
void KeepClassRules();
// Mines the labelled cases with the settings and turns the class rules into
// an ordered first-match classifier: rules in precedence order (Precede),
// the optional complete selection, the ordering with its default class (the
// most frequent class when every case is explained), then only the rules
// that decide some training case.
void BuildClassifier(const ClassifierSettings& settings);
// Prints the classifier rule by rule, items by name, then the default class.
void PrintClassifier();
// Empty when every antecedent item is an attribute value of the names file
// and every target and the default class are class indexes; otherwise what
// does not fit.
std::string RulesMisfit();
// Fold (0 .. k-1) of each case, stratified by the labels: the cases of each
// label are shuffled with a generator seeded by `seed`, then dealt to the
// folds in turn, carrying on from one label to the next.
std::vector<int> StratifiedFolds(const std::vector<int>& labels, int k, std::uint64_t seed);

// The companion program rule-classify: train, test and cv. Returns the exit
// status.
int RunClassify(int argc, char** argv);

// Sets the globals of this module back to their start values.
void ResetRuletest();
