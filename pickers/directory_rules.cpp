#include "pickers/directory_rules.h"

#include <algorithm>

#include "services/zvcore/result_codes.h"

namespace {

constexpr int kEditIndent = 3;  // pixels between label and edit

int Width(const RECT& rect) { return rect.right - rect.left; }
int Height(const RECT& rect) { return rect.bottom - rect.top; }

}  // namespace

int32_t CheckDirectoryParams(const DIRECTORYDLGPARAMS& params) {
  const bool usable = params.directoryBuffer && params.bufferLength > 0 && params.filterIndex >= 0;
  return usable ? SUCCESS : ERROR_BAD_ARGUMENT;
}

int32_t DeliverFolder(const CString& folder, int32_t status, wchar_t* buffer, int32_t bufferLength) {
  if (bufferLength <= folder.GetLength()) {
    return ERROR_BUFFER_TOO_SMALL;
  }
  std::copy_n(folder.GetString(), folder.GetLength() + 1, buffer);
  return status;
}

CString FolderInFileSystem(const CString& shellName) { return shellName.Left(2) == L"::" ? CString() : shellName; }

CompactLayout LayOutCompactPicker(const CompactLayoutInput& input) {
  const int buttonCount = input.hasHelp ? 3 : 2;
  const int buttonWidth = Width(input.ok);
  const int buttonHeight = Height(input.ok);
  const int gap = input.cancel.top - input.ok.bottom;

  CompactLayout layout = {};
  layout.list = input.list;
  layout.list.bottom += (buttonCount - 1) * buttonHeight;

  const int rowTop = layout.list.bottom + gap;
  const int rowBottom = rowTop + buttonHeight;
  layout.label = {layout.list.left, rowTop, layout.list.left + Width(input.label), rowBottom};
  layout.edit = {layout.label.right + kEditIndent, rowTop, layout.list.right, rowBottom};

  const int buttonTop = rowBottom + gap;
  int left = (input.hookWidth - buttonCount * buttonWidth - (buttonCount - 1) * gap) / 2;
  for (RECT* const button : {&layout.ok, &layout.cancel, &layout.help}) {
    if (button == &layout.help && !input.hasHelp) {
      break;
    }
    *button = {left, buttonTop, left + buttonWidth, buttonTop + buttonHeight};
    left += buttonWidth + gap;
  }
  return layout;
}
