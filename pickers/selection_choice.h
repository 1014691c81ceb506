// Which text tells what the user has chosen, and which of the two parsers reads it: the text that the platform's dialog gives
// on request, or the one in the dialog's own file buffer.
#pragma once

#include <string>
#include <vector>

#include "pickers/open_rules.h"

enum class SelectionText {
  kAnswerAsQuotedNames,  // the answer, as a folder and quoted names
  kAnswerAsList,         // the answer, as null-ended strings
  kBufferAsList          // the file buffer, as null-ended strings
};

// The systems of the 4.0, 4.10 and 4.90 family hand several names over between quotation marks; all later ones as a list.
SelectionText ChooseSelectionText(const SystemVersion& system, bool hasBuffer, bool allowsSeveral);
// `answer` and `buffer` are ended by two nulls; buffer may be null where it is not chosen.
std::vector<std::wstring> ParseSelection(SelectionText choice, const wchar_t* answer, const wchar_t* buffer);
