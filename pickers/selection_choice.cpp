#include "pickers/selection_choice.h"

namespace {

bool QuotesNames(const SystemVersion& system) {
  return system.platform == VER_PLATFORM_WIN32_WINDOWS && system.major == 4 &&
         (system.minor == 0 || system.minor == 10 || system.minor == 90);
}

}  // namespace

SelectionText ChooseSelectionText(const SystemVersion& system, bool hasBuffer, bool allowsSeveral) {
  if (QuotesNames(system)) {
    return allowsSeveral ? SelectionText::kAnswerAsQuotedNames : SelectionText::kAnswerAsList;
  }
  if (!hasBuffer) {
    return SelectionText::kAnswerAsQuotedNames;
  }
  return allowsSeveral ? SelectionText::kBufferAsList : SelectionText::kAnswerAsList;
}

std::vector<std::wstring> ParseSelection(SelectionText choice, const wchar_t* answer, const wchar_t* buffer) {
  switch (choice) {
    case SelectionText::kAnswerAsQuotedNames: return ParseQuotedSelection(answer);
    case SelectionText::kAnswerAsList: return ParseSelectionList(answer);
    case SelectionText::kBufferAsList: return ParseSelectionList(buffer);
  }
  return {};
}
