// Drives a real dialog from a second thread, by control ids: a test hands over the call that opens the dialog and a script,
// and reads the call's result when both have ended.
//
//   const int32_t result = DriveDialog([&] { return Z_DlgGetDirectory(parent.hwnd(), &params); }, [] {
//     const HWND dialog = WaitForDialogWith(4201);
//     Click(dialog, IDOK);
//   });
//
// Every step waits for its condition (window there, control enabled) and throws DriverTimeout when it does not come within
// kPatience; a script never sleeps. A script that throws fails the test, and all dialogs that the call still shows are
// closed, so that the call ends. Expectations may stand in the script as well as after it. All windows meant are those of
// this process.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/leak_check.h"

namespace zvtest {

inline constexpr DWORD kPatience = 20'000;  // milliseconds; generous, since nothing waits for it that goes well

class DriverTimeout : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Runs `call` on this thread and `script` on another; gives the call's result.
int32_t DriveDialog(const std::function<int32_t()>& call, const std::function<void()>& script);
// Waits until the condition holds; `what` names it in the failure.
void WaitUntil(const std::function<bool()>& condition, const std::string& what);
// The condition within a shorter time, without a failure.
bool HoldsWithin(DWORD milliseconds, const std::function<bool()>& condition);

// --- Finding windows ---

// The visible top-level dialog that has a control of that id, at any depth (common dialogs nest theirs).
HWND WaitForDialogWith(int controlId);
HWND WaitForDialogTitled(const std::wstring& title);
// The visible dialog of that title right now, or null.
HWND FindDialogTitled(const std::wstring& title);
// The message box in front, told by its static text (65535); null when none is there.
HWND FindMessageBox();
HWND WaitForMessageBox();
void WaitUntilClosed(HWND window);
// The control of that id at any depth; waits for it.
HWND Control(HWND dialog, int controlId);
// The same right now, or null.
HWND FindControl(HWND dialog, int controlId);

// --- Reading ---

std::wstring TextOf(HWND window);
std::wstring TextOf(HWND dialog, int controlId);
bool IsShown(HWND dialog, int controlId);
bool IsEnabled(HWND dialog, int controlId);
bool IsChecked(HWND dialog, int controlId);
// In pixels of the dialog's client area.
RECT RectIn(HWND dialog, int controlId);

// --- Acting; the messages are those that a user's action makes ---

// Presses a button. Does not wait for what the button does.
void Click(HWND dialog, int controlId);
// Presses a button and waits until all that it does is done, however long within kPatience and however short.
void ClickAndWait(HWND dialog, int controlId);
// Waits until the window's thread has ended the handler that it is in, and answers messages again.
void WaitUntilAnswering(HWND window);
void Check(HWND dialog, int controlId, bool checked);
// Sends a command as a menu, a toolbar or an accelerator does.
void Command(HWND dialog, int commandId);
void SetText(HWND dialog, int controlId, const std::wstring& text);
// Esc, Enter and the like, to the control that has the focus in the dialog.
void PressKey(HWND dialog, WPARAM virtualKey);
void CloseWindow(HWND window);

int ComboCount(HWND dialog, int controlId);
int ComboSelection(HWND dialog, int controlId);
std::wstring ComboText(HWND dialog, int controlId, int index);
void SelectCombo(HWND dialog, int controlId, int index);

int ListBoxCount(HWND dialog, int controlId);
std::wstring ListBoxText(HWND dialog, int controlId, int index);
// Selects exactly these rows of a multiple-selection list box, with one change report.
void SelectListBoxRows(HWND dialog, int controlId, const std::vector<int>& rows);

int ListViewCount(HWND dialog, int controlId);
std::wstring ListViewText(HWND dialog, int controlId, int row, int column);
// Selects exactly these rows.
void SelectListViewRows(HWND dialog, int controlId, const std::vector<int>& rows);
std::vector<int> SelectedListViewRows(HWND dialog, int controlId);

// --- Evidence ---

// Saves a picture of the window as screenshots/<name>.png beside the folder of the program.
bool SaveScreenshot(HWND window, const std::wstring& name);

// A plain visible top-level window, for calls that need a parent.
class ParentWindow {
 public:
  ParentWindow();
  ParentWindow(const ParentWindow&) = delete;
  ParentWindow& operator=(const ParentWindow&) = delete;
  ~ParentWindow();
  HWND hwnd() const { return window_; }

 private:
  HWND window_;
};

// A new folder, removed with all that it holds.
class TemporaryFolder {
 public:
  // In the system's folder for temporary files.
  TemporaryFolder();
  // In the given folder.
  explicit TemporaryFolder(const std::filesystem::path& base);
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();
  // Without a separator at its end.
  const std::wstring& path() const { return path_; }
  std::wstring File(const std::wstring& name) const { return path_ + L"\\" + name; }
  // Writes a file and gives its path.
  std::wstring AddFile(const std::wstring& name, const std::vector<uint8_t>& content = {}) const;
  std::wstring AddFolder(const std::wstring& name) const;

 private:
  std::wstring path_;
};

}  // namespace zvtest
