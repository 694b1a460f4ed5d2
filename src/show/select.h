// Choosing and ordering the rules to show: the filters, the sort and the
// spelling of items for a person.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "show/rulefile.h"

namespace show {

// How items are spelled: ATTRIBUTE=VALUE, the class (written "Class" by the
// miner) under the name the names file gives it, when it gives one.
struct Naming {
  std::string className;  // empty: "Class"
  std::string Attribute(const Item& item) const;
  std::string Spell(const Item& item) const;  // ATTRIBUTE=VALUE
  // "{x=1, y=2} => {t=3}"
  std::string Antecedent(const Rule& rule) const;  // "x=1, y=2"
  std::string Text(const Rule& rule) const;
};

enum class SortKey { kFile, kSupport, kConfidence, kLift, kLeverage, kChi, kCount };

// Parses a measure name (support, confidence, lift, leverage, chi, count).
bool ParseSortKey(const std::string& name, SortKey& key);

struct Selection {
  SortKey sort = SortKey::kFile;
  long top = -1;  // at most this many rules; -1: all
  // Lower bounds; no bound by default (a rule file may hold negative values).
  double minSupport = -HUGE_VAL, minConfidence = -HUGE_VAL, minLift = -HUGE_VAL;
  // ATTRIBUTE or ATTRIBUTE=VALUE, as the rule file spells them or as they
  // were written in a table that rule-import respelled.
  std::string target;                  // empty: any
  std::vector<std::string> contains;   // each must name an item of the rule
};

// True when wanted names the item: wanted is ATTRIBUTE=VALUE or ATTRIBUTE alone,
// the attribute as shown or as the file writes it. Names may hold '=', so
// the whole spelling is compared rather than split.
bool Names(const std::string& wanted, const Item& item, const Naming& naming);

// The rules that pass the filters, non-trivial rules first, each part in
// descending order of the sort key (file order on ties and without a key),
// then cut to the top count. Pointers into file.rules.
std::vector<const Rule*> Select(const RuleFile& file, const Selection& selection, const Naming& naming);

}  // namespace show
