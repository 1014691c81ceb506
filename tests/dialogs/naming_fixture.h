// Opens the naming dialogs from the conversion dialog, as a user does.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"

namespace zvtest {

class NamingDialogs : public ConversionDialog {
 protected:
  // Opens the dialog from the conversion dialog; the script must close it.
  void WithNamingDialog(const std::function<void(HWND conversion, HWND naming)>& script) {
    RunAndClose([&](HWND dialog) { script(dialog, OpenNaming(dialog)); });
  }
  void WithRenameDialog(const std::function<void(HWND conversion, HWND rename)>& script) {
    params.overwriteMode = OVERWRITE_RENAME;
    RunAndClose([&](HWND dialog) { script(dialog, OpenRename(dialog)); });
  }
  static HWND OpenNaming(HWND conversion) {
    Click(conversion, IDB_CONV_NAMING);
    return WaitForDialogWith(IDE_NAMING_TEMPLATE);
  }
  static HWND OpenRename(HWND conversion) {
    Click(conversion, IDB_CONV_CUSTOMIZE);
    return WaitForDialogWith(IDX_RENAME_PREFIX);
  }

  static std::wstring Sample(HWND dialog, int row) { return ListViewText(dialog, IDL_NAMING_SAMPLES, row, 0); }
  static std::wstring RenameSample(HWND dialog, int row) { return ListViewText(dialog, IDL_RENAME_SAMPLES, row, 0); }
  static std::wstring KernelText(uint32_t id) {
    wchar_t text[256] = L"";
    EXPECT_EQ(SUCCESS, GetDialogStringText(id, text, 256));
    return text;
  }
  static HWND FocusOf(HWND dialog) {
    GUITHREADINFO info = {sizeof(info)};
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
    return info.hwndFocus;
  }
};

}  // namespace zvtest
