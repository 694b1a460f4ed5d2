// A self-contained HTML page of rules: a sortable, filterable table, a
// scatter plot of support against confidence coloured by lift and a grouped
// matrix of antecedents against targets. Everything is inline (style, script
// and the rules as JSON), so the page opens without any network.
#pragma once

#include <string>
#include <vector>

#include "show/rulefile.h"
#include "show/select.h"

namespace show {

// The page of the chosen rules of the file.
std::string HtmlReport(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming);

// The rules as the JSON blob of the page: {"file", "cases", "total",
// "confidence", "support", "items": [spelling...], "rules": {"index": [...],
// "a", "b", "c", "d", "confidence", "chi", "lift", "leverage", "trivial" (0
// or 1), "target" (item numbers), "items" (the antecedents' item numbers one
// after another), "ends" (where each rule's antecedent ends in "items")}},
// one array per field, escaped to stand inside a <script> element.
std::string ReportData(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming);

// Text for an HTML element or attribute: & < > " ' as character references.
std::string HtmlEscape(const std::string& text);

}  // namespace show
