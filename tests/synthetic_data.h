// Small random data sets for the tests, deterministic from a seed: a names
// file and a data file with a few attributes of 2 to 4 values, some unknown
// values, and planted dependencies so that confident rules exist.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace testing_support {

struct SyntheticSet {
  std::string names;
  std::string data;
  int cases = 0;
  int attributes = 0;  // without the class
};

// Attributes a0, a1, ... with values v0..v(k-1) (2 to 4 each), classes c0
// and c1. Attribute 1 copies attribute 0 in most cases, and the class
// follows attribute 0's first value in most cases; about 5% of the fields
// are unknown, and now and then a value is one the names file never
// declares. A generator of its own (xorshift) gives the same set with every
// compiler and library.
inline SyntheticSet MakeSyntheticSet(uint64_t seed, int cases) {
  uint64_t state = seed * 0x9E3779B97F4A7C15ull + 1;
  auto below = [&state](int n) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<int>(static_cast<uint32_t>(state >> 11) % static_cast<uint32_t>(n));
  };
  auto chance = [&below](int percent) { return below(100) < percent; };
  SyntheticSet set;
  set.cases = cases;
  set.attributes = 3 + below(3);
  std::vector<int> values(static_cast<size_t>(set.attributes));
  set.names = "| synthetic set, seed " + std::to_string(seed) + "\nc0, c1.\n";
  for (int a = 0; a < set.attributes; ++a) {
    values[a] = 2 + below(3);
    if (a == 1) values[a] = values[0];
    set.names += "a" + std::to_string(a) + ": ";
    for (int v = 0; v < values[a]; ++v) set.names += "v" + std::to_string(v) + (v + 1 < values[a] ? ", " : ".\n");
  }
  for (int c = 0; c < cases; ++c) {
    std::vector<int> row(static_cast<size_t>(set.attributes));
    for (int a = 0; a < set.attributes; ++a) row[a] = below(values[a]);
    if (chance(85)) row[1] = row[0];
    const int cls = chance(90) ? (row[0] == 0 ? 0 : 1) : below(2);
    for (int a = 0; a < set.attributes; ++a)
      set.data += (chance(5) ? "?" : chance(1) ? "other" : "v" + std::to_string(row[a])) + ",";
    set.data += (chance(2) ? "?" : "c" + std::to_string(cls)) + "\n";
  }
  return set;
}

}  // namespace testing_support
