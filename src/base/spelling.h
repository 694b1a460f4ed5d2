// How a name read from a table is spelled in a names file: so that the
// names tokenizer reads it back unchanged, as one name, and the rule file
// keeps it in one field. The spelling depends on the name alone, so a name
// as a person wrote it can be matched against the spelled one.
#pragma once

#include <string>

// Blanks, tabs and line breaks as one blank each run, none at either end.
std::string NormaliseBlanks(const std::string& field);

// The spelling of a name that the names tokenizer reads back unchanged, as
// one name, and that holds no comma: blanks normalised; comma, colon, bar,
// backslash and double quote replaced by look-alikes; a period that would end the name (one
// before a blank or at the end) replaced by a one-dot leader; other control
// characters replaced by the replacement character.
std::string SpellName(const std::string& raw);
