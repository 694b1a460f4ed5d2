// Rule-set evaluation: the rule file, testing a rule set on the cases,
// ordering rules with a default class, and complete rule selection.
//
// Cases are read as class-labelled rows: items in columns 0 .. RealAtt-1 and
// the class, as a class index, in column RealAtt. Rule targets and the
// default class are class indexes too. A class distribution is the share of
// the cases of each class, one entry per class index.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "base/status.h"
#include "input/dataset.h"
#include "mining/mining.h"
#include "mining/rules.h"

struct RuleChoice {
  int Position;
  int Right;
  int Wrong;
};

// The coverage table: one row per rule, MaxData cells, then the target and
// the taken flag.
using CoverageTable = int**;

// ---- Rule file ----
// Writes the rule set with the thresholds it was mined with, maxLayer and
// minImp, as one line of text. A file that cannot be opened gives
// "Can not Open File\n" (exit status 1); a write that fails names the file
// and the reason (exit status 1).
Status WriteRule(const RuleSet& rules, const std::string& fileName, float conf, float support, int maxLayer,
                 float minImp);
// Reads a rule file into the empty rule set and echoes its header to out. A
// file that cannot be opened gives "Can not Open File\n"; a file that cannot
// be parsed, or ends inside a rule, stops the reading at once: the complete
// rules before the fault stay (NumOfRules then counts them) and the status
// holds the fault on one line. Both have exit status 1.
Status ReadRule(RuleSet& rules, const std::string& fileName, std::FILE* out);

// ---- Matching and testing ----
// -1 when the rule does not cover the row, 1 when it covers it with the
// row's class, 0 when it covers it with another.
int MatchTest(const short* row, const RuleRecord* rule, int realAtt);
// First-match test of the rule set on the cases, the default class taking
// the uncovered ones; sets Hits and Misses and prints the accuracy to out.
int TestSingle(RuleSet& rules, const DataSet& data, std::FILE* out);
// Vote of up to five covering rules per case, one line per case to out.
int Testmulti(RuleSet& rules, const DataSet& data, std::FILE* out);

// What decided the class of one case: the class index (-1 for none), and the
// deciding rule with its place in the classifier (1 for the first rule), or
// a null rule and place 0 when the default class decided.
struct Prediction {
  int Class = -1;
  const RuleRecord* Rule = nullptr;
  int Position = 0;
};
// The first covering rule decides; the default class takes an uncovered case.
Prediction PredictFirst(const RuleSet& rules, const DataSet& data, const short* row);

// How the covering rules vote on a case.
struct VoteSettings {
  int Voters = 5;  // the first covering rules in classifier order that vote
};
// The weighted vote: each of the first Voters rules that cover the row
// (in classifier order) gives its class its confidence (Score). The class
// with the largest sum wins; on equal sums the class of the earlier-placed
// voter wins, and that voter is the deciding rule. A target that is no class
// index is a voter whose vote does not count. A row no rule covers gets the
// default class.
Prediction PredictVote(const RuleSet& rules, const DataSet& data, const short* row, const VoteSettings& settings);
// Tests the rule set on the cases by PredictVote, as TestSingle does by first
// match: sets Hits and Misses (a case of unknown class is a miss unless no
// class is predicted) and prints the accuracy, the rule coverage and the
// default accuracy to out.
int TestVote(RuleSet& rules, const DataSet& data, const VoteSettings& settings, std::FILE* out);

int FillInTable(const RuleSet& rules, const DataSet& data, CoverageTable table);
void PrintTable(const RuleSet& rules, const DataSet& data, CoverageTable table, std::FILE* out);

// ---- Ordering and default class ----
// What the ordering places rules with.
struct OrderSettings {
  float MinConf = 0.999999f;  // least accuracy of a placed rule
  int MaxLayer = 4;           // with Discard: left-over rules this long or longer go
  bool Discard = false;       // trim the rules the ordering leaves over
  bool ByErrorRate = false;   // place the rule of the lowest pessimistic error rate, not the fewest errors
};

int OrderRuleAndSetDefault(RuleSet& rules, const DataSet& data, const std::vector<float>& dist,
                           const OrderSettings& settings);
int ReadRuleLabel(const RuleSet& rules, const DataSet& data, CoverageTable table, RuleChoice* choice, int start);
int FreeLowAccRule(const DataSet& data, CoverageTable table, const int* positions, int n);
int SwapRule(RuleSet& rules, int a, int b);
int SwapRow(CoverageTable table, int a, int b);
int UpdateTable(const RuleSet& rules, const DataSet& data, CoverageTable table, int* classCounts, int p);
int CurrentDefault(const int* classCounts, int maxClass);
double CurrentDefaultRate(const int* classCounts, int maxClass);
int DiscardRestRule(RuleSet& rules, int n, int maxLayer);
RuleRecord* DeleteRule(RuleSet& rules, RuleRecord* rule);
void SetSimpleDefault(RuleSet& rules, const DataSet& data, const std::vector<float>& dist);
void TestAndSetDefult(RuleSet& rules, const DataSet& data, std::FILE* out);

// ---- Complete rule selection ----
// complete 1 keeps the first right rule of each case; 2 also the rules that
// narrow the attributes shared with it.
void ChooseKcompleterule(RuleSet& rules, const DataSet& data, int complete);
int WriteLeftAttribute(const DataSet& data, const RuleRecord* rule, int* list);
int OverLapAttribute(const DataSet& data, const RuleRecord* rule, int* list);

// ---- Classifiers built from mined rules ----
// What a classifier is mined and ordered with.
struct ClassifierSettings {
  float Support = 0.002f;   // minimum support, a fraction of the training cases
  float Confidence = 0.1f;  // minimum confidence of a rule and minimum accuracy of a placed rule
  int Layers = 4;           // largest itemset mined (antecedent plus target)
  int CompleteMode = 0;     // 0: no complete rule selection; 1 or 2: its mode
  bool DiscardRest = false;  // trim the rules the ordering leaves over
  double Significance = 0;   // least chi-square of a kept rule (0: no test); negatively correlated rules go too
  int Coverage = 0;          // 0: the ordering; N: database coverage, a case counting until N kept rules cover it
  bool CutOff = true;        // keep the prefix of the classifier with the fewest estimated errors
  bool MajorityGuard = true;  // fall back on the majority class when the rules promise no better
  int GuardCases = 1000;      // the guard's inner cross-validation runs on at most this many cases
  bool ByErrorRate = true;   // the ordering's choice: see OrderSettings
  bool OneItemRules = true;  // add the one-item class rules with exceptions (AddOneItemClassRules)
};

// The majority guard: on a training set of at most settings.GuardCases
// cases, a 5-fold cross-validation inside it (folds stratified, seed 1)
// estimates the accuracy of classifiers built with the same settings; when
// that estimate does not beat the share of the most frequent class, the
// classifier is replaced by that class alone (no rules). Returns true when
// it was.
bool FallBackOnMajority(RuleSet& rules, const DataSet& data, const ClassifierSettings& settings);

// The class index of an item code; -1 for an item that is no class value.
int ClassIndexOf(const DataSet& data, int item);
// Writes into column RealAtt of every row the class index of the case's class
// item (column RealAtt-1), or -1 when the class is unknown.
void LabelCases(DataSet& data);
// dist = the share of each class among the MaxData cases.
void SetClassDistribution(const DataSet& data, std::vector<float>& dist);
// Keeps only the rules whose target is a class item, turning their targets
// into class indexes.
void KeepClassRules(RuleSet& rules, const DataSet& data);
// Appends to a rule set of class rules (targets as class indexes) every rule
// "item -> class" of one antecedent item whose support count is at least
// minSup (and above 0) and whose confidence is at least minConf but not
// perfect. The miner keeps a one-item rule only when it has no exception,
// so `petal = short -> setosa` reaches the classifier while a broad rule
// right on 97 % of its cases would not. Confidence is the quotient of the
// counts in double precision, stored in single, as the miner stores it.
void AddOneItemClassRules(RuleSet& rules, const DataSet& data, int minSup, float minConf);
// Mines the labelled cases with the settings and turns the class rules into
// an ordered first-match classifier: the one-item rules with exceptions
// added (unless settings.OneItemRules is off), rules in precedence order (Precede),
// the optional complete selection, the ordering with its default class (the
// most frequent class when every case is explained), then only the rules
// that decide some training case. The mining prints to out and calls report
// after each layer.
RuleSet BuildClassifier(const DataSet& data, const ClassifierSettings& settings, std::FILE* out,
                        const LayerReport& report);
// Prints the classifier rule by rule, items by name, then the default class.
void PrintClassifier(const RuleSet& rules, const DataSet& data, std::FILE* out);
// Empty when every antecedent item is an attribute value of the names file
// and every target and the default class are class indexes; otherwise what
// does not fit.
std::string RulesMisfit(const RuleSet& rules, const DataSet& data);

// ---- Rule statistics, database coverage, the chi-square vote ----
// The chi-square of a rule's 2x2 table (antecedent by class) over `cases`
// training cases, from its counts Supp, AntSupp and TargetSupp; 0 when the
// antecedent or the class holds no case or every case.
double RuleChiSquare(const RuleRecord& rule, int cases);
// The largest chi-square a rule with the same antecedent and class counts
// could reach (its cases of the antecedent and of the class overlapping as
// far as they can).
double RuleMaxChiSquare(const RuleRecord& rule, int cases);
// True when antecedent and class occur together more often than by chance.
bool PositivelyCorrelated(const RuleRecord& rule, int cases);
// Removes the rules that are not positively correlated with their class or
// whose chi-square is below threshold; returns how many went.
int PruneInsignificant(RuleSet& rules, int cases, double threshold);
// Database coverage: the rules, in their order, are kept when they classify
// at least one case still counting right; every case they cover counts one
// cover more, and a case stops counting once delta kept rules cover it. The
// default class is the most frequent class of the cases no kept rule covers
// (of all cases when every case is covered).
void CoverCases(RuleSet& rules, const DataSet& data, int delta);
// Keeps the shortest prefix of the classifier with the fewest estimated
// first-match errors on the training cases: each rule's errors among the
// cases it decides, and the default class's among the cases no kept rule
// covers, each by PessimisticErrors. The default class becomes the most
// frequent class of the cases no kept rule covers.
void CutAtFewestErrors(RuleSet& rules, const DataSet& data);
// The chi-square vote: every rule covering the row adds chi²·chi²/max chi²
// (over the trainingCases it was mined from) to its class; the heaviest
// class wins, on equal weights the class of the earlier-placed rule, which
// is the deciding rule. A row no rule covers gets the default class.
Prediction PredictChiSquare(const RuleSet& rules, const DataSet& data, const short* row, int trainingCases);
// How a classifier decides a case.
enum class Decision { kFirstMatch, kChiSquare };
Prediction Decide(const RuleSet& rules, const DataSet& data, const short* row, Decision decision,
                  int trainingCases);
// The number of cases the classifier decides right.
int CountRight(const RuleSet& rules, const DataSet& data, Decision decision, int trainingCases);

// ---- Cross-validation ----
// Fold (0 .. k-1) of each case, stratified by the labels: the cases of each
// label are shuffled with a generator seeded by `seed`, then dealt to the
// folds in turn, carrying on from one label to the next.
std::vector<int> StratifiedFolds(const std::vector<int>& labels, int k, std::uint64_t seed);
// The class index of every case (column RealAtt of the labelled rows).
std::vector<int> CaseLabels(const DataSet& data);

// One fold's cases: the cases of the other folds to train on and the cases
// of the fold to test on, each in data set order, sharing the rows of the
// data set they come from.
struct FoldSplit {
  DataSet Training;
  DataSet Testing;
};
FoldSplit SplitFold(const DataSet& data, const std::vector<int>& fold, int f);
