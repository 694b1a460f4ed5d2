#include "show/select.h"

#include <algorithm>

#include "base/spelling.h"

namespace show {

std::string Naming::Attribute(const Item& item) const {
  return item.attribute == "Class" && !className.empty() ? className : item.attribute;
}

std::string Naming::Spell(const Item& item) const { return Attribute(item) + "=" + item.value; }

std::string Naming::Antecedent(const Rule& rule) const {
  std::string text;
  for (const Item& item : rule.antecedent) {
    if (!text.empty()) text += ", ";
    text += Spell(item);
  }
  return text;
}

std::string Naming::Text(const Rule& rule) const {
  return "{" + Antecedent(rule) + "} => {" + Spell(rule.target) + "}";
}

bool ParseSortKey(const std::string& name, SortKey& key) {
  static const struct {
    const char* name;
    SortKey key;
  } kKeys[] = {{"support", SortKey::kSupport}, {"confidence", SortKey::kConfidence}, {"lift", SortKey::kLift},
               {"leverage", SortKey::kLeverage}, {"chi", SortKey::kChi},           {"count", SortKey::kCount}};
  for (const auto& entry : kKeys)
    if (name == entry.name) {
      key = entry.key;
      return true;
    }
  return false;
}

bool Names(const std::string& wanted, const Item& item, const Naming& naming) {
  for (const std::string& attribute : {naming.Attribute(item), item.attribute})
    if (wanted == attribute || wanted == attribute + "=" + item.value) return true;
  return false;
}

namespace {

double KeyOf(const Rule& rule, SortKey key) {
  switch (key) {
    case SortKey::kSupport: return rule.Support();
    case SortKey::kConfidence: return rule.confidence;
    case SortKey::kLift: return rule.lift;
    case SortKey::kLeverage: return rule.leverage;
    case SortKey::kChi: return rule.chi;
    case SortKey::kCount: return static_cast<double>(rule.a);
    case SortKey::kFile: break;
  }
  return 0;
}

// An item asked for, as given and as rule-import would have spelled it
// (the attribute and the value each, at every '=' that may part them).
std::vector<std::string> Forms(const std::string& wanted) {
  std::vector<std::string> forms{wanted, SpellName(wanted)};
  for (size_t at = wanted.find('='); at != std::string::npos; at = wanted.find('=', at + 1))
    forms.push_back(SpellName(wanted.substr(0, at)) + "=" + SpellName(wanted.substr(at + 1)));
  std::sort(forms.begin(), forms.end());
  forms.erase(std::unique(forms.begin(), forms.end()), forms.end());
  return forms;
}

bool NamesAny(const std::vector<std::string>& forms, const Item& item, const Naming& naming) {
  for (const std::string& form : forms)
    if (Names(form, item, naming)) return true;
  return false;
}

bool Passes(const Rule& rule, const Selection& s, const std::vector<std::string>& target,
            const std::vector<std::vector<std::string>>& contains, const Naming& naming) {
  if (rule.Support() < s.minSupport || rule.confidence < s.minConfidence || rule.lift < s.minLift) return false;
  if (!s.target.empty() && !NamesAny(target, rule.target, naming)) return false;
  for (const std::vector<std::string>& wanted : contains) {
    bool found = NamesAny(wanted, rule.target, naming);
    for (const Item& item : rule.antecedent) found = found || NamesAny(wanted, item, naming);
    if (!found) return false;
  }
  return true;
}

}  // namespace

std::vector<const Rule*> Select(const RuleFile& file, const Selection& selection, const Naming& naming) {
  std::vector<const Rule*> chosen;
  const std::vector<std::string> target = Forms(selection.target);
  std::vector<std::vector<std::string>> contains;
  for (const std::string& wanted : selection.contains) contains.push_back(Forms(wanted));
  for (const Rule& rule : file.rules)
    if (Passes(rule, selection, target, contains, naming)) chosen.push_back(&rule);
  const SortKey key = selection.sort;
  std::stable_sort(chosen.begin(), chosen.end(), [key](const Rule* x, const Rule* y) {
    if (x->Trivial() != y->Trivial()) return y->Trivial();
    return key != SortKey::kFile && KeyOf(*x, key) > KeyOf(*y, key);
  });
  if (selection.top >= 0 && static_cast<size_t>(selection.top) < chosen.size()) chosen.resize(selection.top);
  return chosen;
}

}  // namespace show
