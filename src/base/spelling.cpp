#include "base/spelling.h"

namespace {

// The look-alikes written for characters the names tokenizer or the readers
// of the rule file would take as structure (UTF-8).
const char kCommaLookAlike[] = "\xE2\x80\x9A";      // U+201A single low-9 quotation mark
const char kColonLookAlike[] = "\xE2\x88\xB6";      // U+2236 ratio
const char kBarLookAlike[] = "\xC2\xA6";            // U+00A6 broken bar
const char kBackslashLookAlike[] = "\xE2\xA7\xB5";  // U+29F5 reverse solidus operator
const char kPeriodLookAlike[] = "\xE2\x80\xA4";     // U+2024 one dot leader
const char kQuoteLookAlike[] = "\xE2\x80\x9D";      // U+201D right double quotation mark
const char kControlLookAlike[] = "\xEF\xBF\xBD";    // U+FFFD replacement character

bool IsBlankByte(unsigned char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

}  // namespace

std::string NormaliseBlanks(const std::string& field) {
  std::string out;
  bool blank = false;
  for (char c : field) {
    if (IsBlankByte(static_cast<unsigned char>(c))) {
      blank = !out.empty();
      continue;
    }
    if (blank) out += ' ';
    blank = false;
    out += c;
  }
  return out;
}

std::string SpellName(const std::string& raw) {
  const std::string text = NormaliseBlanks(raw);
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    switch (c) {
      case ',': out += kCommaLookAlike; break;
      case ':': out += kColonLookAlike; break;
      case '|': out += kBarLookAlike; break;
      case '\\': out += kBackslashLookAlike; break;
      case '"': out += kQuoteLookAlike; break;  // CSV readers of the rule file take it as quoting
      case '.':
        // The tokenizer ends a name at a period before a blank or the end
        // of the field; any other period is read as part of the name.
        if (i + 1 == text.size() || text[i + 1] == ' ') {
          out += kPeriodLookAlike;
        } else {
          out += '.';
        }
        break;
      default:
        if (c < 0x20 || c == 0x7F) {
          out += kControlLookAlike;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out;
}
