// The run driver: option globals, the error printer, the end of a run, and
// the checked allocators every module uses.
#pragma once

#include <cstddef>
#include <cstdio>
#include <new>
#include <string>

// ---- Option globals (set to their defaults by ResetOptions) ----
extern std::string FileName;   // -f: stem of the names and data files
extern int GMinSup;            // minimum support as a number of cases
extern float MinConf;          // -c: minimum confidence (0.999999f by default)
extern int MaxLayer;           // -l: largest itemset mined (4)
extern float MinImp;           // -i: improvement threshold, echoed and stored in rule files
extern int Ass;                // -a: complete rule set, no pruning, no CSV file
extern int Opt;                // -o
extern int Complete;           // -r sets 2: two-complete rule selection
extern int NonRedundant;       // -n
extern int CostSensitive;      // -e
extern int Default;            // -u sets 0
extern int Debug;              // -x: debug dumps
extern int Discard;            // -d: trim rules left over by the ordering
extern int Time;               // -t
extern float IMP;              // improvement margin of rule selection (no option)
extern int DerivableRule;      // count left by CountDerivableRule

// Sets every option global back to its default.
void ResetOptions();

// Prints the message of an error code as a line and returns:
// 0 "Can not Open File", 1 "Not enough memory", 11 and 12 the buffer messages.
void ErrorOut(int code);

// Thrown instead of ending the process when EndRunThrows is set, so that a
// caller running the miner in-process (cross-validation, fuzzing) can observe
// the end of a run and its exit status.
struct RunEnded {
  int Status;
};
extern bool EndRunThrows;

// Ends the run with the given exit status: flushes standard output, then
// exits, or throws RunEnded when EndRunThrows is set.
[[noreturn]] void EndRun(int status);

// "Not enough memory", then the end of the run with exit status 0.
[[noreturn]] void OutOfMemory();

// Checked allocation: on failure, OutOfMemory(). XCalloc zero-fills.
void* XMalloc(std::size_t bytes);
void* XCalloc(std::size_t count, std::size_t size);
void* XRealloc(void* old, std::size_t bytes);

// Closes a file when the reading or writing ends, however it ends; a
// writer that needs the status of closing takes the file back with Release.
struct FileCloser {
  std::FILE* f;
  ~FileCloser() {
    if (f) std::fclose(f);
  }
  std::FILE* Release() {
    std::FILE* file = f;
    f = nullptr;
    return file;
  }
};

// Opens a file as fopen does. An open that fails for want of memory ends the
// run as any failed allocation does; any other failure gives null for the
// caller to report.
std::FILE* XFopen(const std::string& path, const char* mode);

template <class T>
T* XAllocArray(std::size_t count) {
  return static_cast<T*>(XCalloc(count ? count : 1, sizeof(T)));
}

// Runs body() and turns the ways a run can end into an exit status: the
// status of EndRun, or 0 after "Not enough memory" when a standard container
// runs out of memory.
template <class F>
int GuardedRun(F body) {
  try {
    return body();
  } catch (const RunEnded& e) {
    return e.Status;
  } catch (const std::bad_alloc&) {
    ErrorOut(1);
    return 0;
  }
}

// Releases everything a run built (item tables, data, counts, tree, rule set,
// evaluation state) and sets every global back to its start value, so that
// the miner can run again in the same process.
void ResetRun();

// The minimum support count: the integer part of MaxData x fraction + 0.5,
// the product taken in single precision.
int ComputeMinSup(int maxData, float fraction);

// Converts a floating value to int as the processor's truncating conversion
// does, out-of-range and NaN values giving INT_MIN.
int TruncateToInt(double value);

// The whole run of the miner `rule`, from the command line to the CSV file.
// Returns the exit status.
int RunMiner(int argc, char** argv);

// The mining steps shared by the miner and the companion programs, on the
// data as read and with the option globals and GMinSup as they stand: the
// root AllSet, the first layer, the rule set, then the layer loop with a
// report per layer.
void MineLayers();
