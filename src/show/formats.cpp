#include "show/formats.h"

#include <algorithm>
#include <cstdio>

namespace show {

bool ParseFormat(const std::string& name, Format& format) {
  if (name == "table") format = Format::kTable;
  else if (name == "csv") format = Format::kCsv;
  else if (name == "json") format = Format::kJson;
  else return false;
  return true;
}

std::string Fixed(double value, int decimals) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  return buffer;
}

namespace {

// The length of the valid UTF-8 sequence at text[at], or 0.
size_t Utf8Length(const std::string& text, size_t at) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  size_t length;
  unsigned long code;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) length = 2, code = lead & 0x1F;
  else if (lead >= 0xE0 && lead <= 0xEF) length = 3, code = lead & 0x0F;
  else if (lead >= 0xF0 && lead <= 0xF4) length = 4, code = lead & 0x07;
  else return 0;
  if (at + length > text.size()) return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte(at + i) & 0x3F);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
  return length;
}

std::string Escape(unsigned code) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "\\u%04x", code);
  return buffer;
}

}  // namespace

std::string JsonString(const std::string& text, bool forScript) {
  std::string out = "\"";
  for (size_t at = 0; at < text.size();) {
    const unsigned char ch = static_cast<unsigned char>(text[at]);
    const size_t length = Utf8Length(text, at);
    if (length == 0) {
      out += Escape(ch);  // not UTF-8: the byte as a Latin-1 character
      ++at;
      continue;
    }
    if (length > 1) {
      // U+2028 and U+2029 end a line in older JavaScript.
      const bool lineEnd = length == 3 && text.compare(at, 2, "\xE2\x80") == 0 &&
                           (text[at + 2] == '\xA8' || text[at + 2] == '\xA9');
      out += lineEnd ? Escape(text[at + 2] == '\xA8' ? 0x2028 : 0x2029) : text.substr(at, length);
      at += length;
      continue;
    }
    switch (ch) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (ch < 0x20 || ch == 0x7F || (forScript && (ch == '<' || ch == '>' || ch == '&'))) out += Escape(ch);
        else out += static_cast<char>(ch);
    }
    ++at;
  }
  return out + "\"";
}

std::string CsvQuoted(const std::string& text) {
  std::string out = "\"";
  for (char ch : text) {
    if (ch == '"') out += '"';
    out += ch;
  }
  return out + "\"";
}

namespace {

const char kTrivialNote[] =
    "* trivial: the target or the antecedent holds in every case (lift 1, chi-square undefined and written "
    "10000); listed after the other rules\n";

std::string Table(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming) {
  const std::vector<std::string> headers = {"#", "support", "count", "confidence", "lift", "leverage", "chi-square"};
  std::vector<std::vector<std::string>> cells;
  bool anyTrivial = false;
  for (const Rule* rule : rules) {
    cells.push_back({std::to_string(rule->index), Fixed(rule->Support(), 4),
                     std::to_string(rule->a) + "/" + std::to_string(rule->Cases()), Fixed(rule->confidence, 4),
                     Fixed(rule->lift, 4), Fixed(rule->leverage, 4), Fixed(rule->chi, 2)});
    anyTrivial = anyTrivial || rule->Trivial();
  }
  std::vector<size_t> widths;
  for (size_t column = 0; column < headers.size(); ++column) {
    size_t width = headers[column].size();
    for (const auto& row : cells) width = std::max(width, row[column].size());
    widths.push_back(width);
  }
  const auto line = [&](const std::vector<std::string>& row, const std::string& mark, const std::string& text) {
    std::string out;
    for (size_t column = 0; column < row.size(); ++column) {
      if (column > 0) out += "  ";
      out += std::string(widths[column] - row[column].size(), ' ') + row[column];
    }
    return out + mark + "  " + text + "\n";
  };
  std::string out = file.path + ": " + std::to_string(file.Cases()) + " cases, " +
                    std::to_string(file.rules.size()) + " rules, " + std::to_string(rules.size()) + " shown\n";
  out += line(headers, " ", "rule");
  for (size_t i = 0; i < rules.size(); ++i)
    out += line(cells[i], rules[i]->Trivial() ? "*" : " ", naming.Text(*rules[i]));
  if (anyTrivial) out += kTrivialNote;
  return out;
}

std::string Csv(const std::vector<const Rule*>& rules, const Naming& naming) {
  std::string out = "index,antecedent,target,support,confidence,lift,leverage,chi,trivial,a,b,c,d,cases\n";
  for (const Rule* r : rules) {
    out += std::to_string(r->index) + "," + CsvQuoted(naming.Antecedent(*r)) + "," +
           CsvQuoted(naming.Spell(r->target)) + "," + Fixed(r->Support()) + "," + Fixed(r->confidence) + "," +
           Fixed(r->lift) + "," + Fixed(r->leverage) + "," + Fixed(r->chi) + "," +
           (r->Trivial() ? "TRUE" : "FALSE") + "," + std::to_string(r->a) + "," + std::to_string(r->b) + "," +
           std::to_string(r->c) + "," + std::to_string(r->d) + "," + std::to_string(r->Cases()) + "\n";
  }
  return out;
}

std::string JsonItem(const Item& item, const Naming& naming) {
  return "{\"attribute\":" + JsonString(naming.Attribute(item)) + ",\"value\":" + JsonString(item.value) + "}";
}

std::string Json(const std::vector<const Rule*>& rules, const Naming& naming) {
  std::string out;
  for (const Rule* r : rules) {
    std::string antecedent;
    for (const Item& item : r->antecedent) antecedent += (antecedent.empty() ? "" : ",") + JsonItem(item, naming);
    out += "{\"index\":" + std::to_string(r->index) + ",\"antecedent\":[" + antecedent +
           "],\"target\":" + JsonItem(r->target, naming) + ",\"support\":" + Fixed(r->Support()) +
           ",\"confidence\":" + Fixed(r->confidence) + ",\"lift\":" + Fixed(r->lift) +
           ",\"leverage\":" + Fixed(r->leverage) + ",\"chi\":" + Fixed(r->chi) +
           ",\"trivial\":" + (r->Trivial() ? "true" : "false") + ",\"a\":" + std::to_string(r->a) +
           ",\"b\":" + std::to_string(r->b) + ",\"c\":" + std::to_string(r->c) + ",\"d\":" + std::to_string(r->d) +
           ",\"cases\":" + std::to_string(r->Cases()) + "}\n";
  }
  return out;
}

}  // namespace

std::string FormatRules(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming,
                        Format format) {
  switch (format) {
    case Format::kCsv: return Csv(rules, naming);
    case Format::kJson: return Json(rules, naming);
    case Format::kTable: break;
  }
  return Table(file, rules, naming);
}

}  // namespace show
