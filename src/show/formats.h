// The rules as text: an aligned table for a person, CSV for spreadsheets,
// pandas and R, and JSON lines for programs.
#pragma once

#include <string>
#include <vector>

#include "show/rulefile.h"
#include "show/select.h"

namespace show {

enum class Format { kTable, kCsv, kJson };

bool ParseFormat(const std::string& name, Format& format);

// The chosen rules of the file in the format, the whole output as one text.
std::string FormatRules(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming,
                        Format format);

// Numbers as the rule file writes them: six decimals.
std::string Fixed(double value, int decimals = 6);

// A JSON string literal of text. Bytes that are no valid UTF-8 are taken as
// Latin-1 characters and escaped (\u00XX), so the result is always valid
// JSON. With forScript, '<', '>' and '&' are escaped as well, so the text
// can stand inside an HTML <script> element and never close it.
std::string JsonString(const std::string& text, bool forScript = false);

// A CSV field in double quotes, inner quotes doubled.
std::string CsvQuoted(const std::string& text);

}  // namespace show
