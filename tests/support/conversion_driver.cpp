#include "tests/support/conversion_driver.h"

#include <chrono>

#include "resources/conversion_ids.h"

namespace zvtest {

namespace {

constexpr int kResizeEnable = 5407;
constexpr int kResizeUnit = 5411;
constexpr int kResizeWidth = 5402;
constexpr int kResizeHeight = 5405;
constexpr int kResizeMethod = 5409;
constexpr int kUnitPercent = 1;
constexpr int kMethodBicubic = 2;

bool StartsWith(const std::wstring& text, const std::wstring& beginning) { return text.rfind(beginning, 0) == 0; }

// The index of the first item that begins so, or -1.
int FindComboItem(HWND dialog, int controlId, const std::wstring& beginning) {
  for (int index = 0; index < ComboCount(dialog, controlId); ++index) {
    if (StartsWith(ComboText(dialog, controlId, index), beginning)) return index;
  }
  return -1;
}

bool SelectComboItem(HWND dialog, int controlId, const std::wstring& beginning) {
  const int index = FindComboItem(dialog, controlId, beginning);
  if (index < 0) return false;
  SelectCombo(dialog, controlId, index);
  return true;
}

bool SelectFormat(HWND dialog, const std::wstring& beginning) {
  for (int row = 0; row < ListBoxCount(dialog, IDL_CONV_FORMATS); ++row) {
    if (!StartsWith(ListBoxText(dialog, IDL_CONV_FORMATS, row), beginning)) continue;
    SelectListBoxRows(dialog, IDL_CONV_FORMATS, {row});
    return true;
  }
  return false;
}

}  // namespace

HWND WaitForConversionDialog() { return WaitForDialogWith(IDL_CONV_FORMATS); }

bool ChooseOutput(HWND dialog, const OutputChoice& choice) {
  if (ListViewCount(dialog, IDL_CONV_FILES) > 1) Click(dialog, IDB_CONV_SELECT_ALL);
  if (!SelectFormat(dialog, choice.format)) return false;
  if (choice.bitsPerPixel > 0 && !SelectComboItem(dialog, IDC_CONV_BPP, std::to_wstring(choice.bitsPerPixel)))
    return false;
  return choice.subtype.empty() || SelectComboItem(dialog, IDC_CONV_SUBTYPE, choice.subtype);
}

void SetDestination(HWND dialog, const std::wstring& folder) {
  Click(dialog, IDX_CONV_GIVEN_FOLDER);
  SetText(dialog, IDE_CONV_FOLDER, folder);
}

void SetResizePercent(HWND dialog, int percent) {
  Click(dialog, IDB_CONV_RESIZE);
  const HWND box = WaitForDialogWith(kResizeEnable);
  Check(box, kResizeEnable, true);
  SelectCombo(box, kResizeUnit, kUnitPercent);
  SetText(box, kResizeWidth, std::to_wstring(percent));
  SetText(box, kResizeHeight, std::to_wstring(percent));
  SelectCombo(box, kResizeMethod, kMethodBicubic);
  Click(box, IDOK);
  WaitUntilClosed(box);
}

double Convert(HWND dialog, unsigned patience) {
  const auto start = std::chrono::steady_clock::now();
  Click(dialog, IDB_CONV_CONVERT);
  const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
  if (!HoldsWithin(patience, [progress] { return !::IsWindow(progress); })) throw DriverTimeout("the run did not end");
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void CloseConversionDialog(HWND dialog) {
  WaitUntil([dialog] { return ::IsWindowEnabled(dialog) != FALSE; }, "the conversion dialog in front again");
  Click(dialog, IDB_CONV_CLOSE);
  WaitUntilClosed(dialog);
}

}  // namespace zvtest
