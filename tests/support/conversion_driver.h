// Steps through the batch conversion dialog as a user would: pick a format by its name, depth and sub type, name the
// destination, resize, convert, wait for the end. For programs that run whole conversions; tests of single controls use
// dialog_driver.h.
#pragma once

#include <string>

#include "tests/support/dialog_driver.h"

namespace zvtest {

struct OutputChoice {
  std::wstring format;   // beginning of the name in the list of formats
  int bitsPerPixel = 0;  // 0 keeps the dialog's choice
  std::wstring subtype;  // beginning of the name in the list of sub types; empty keeps the dialog's choice
};

HWND WaitForConversionDialog();
// Selects all files, one format and its depth and sub type. False when the dialog does not offer the choice.
bool ChooseOutput(HWND dialog, const OutputChoice& choice);
void SetDestination(HWND dialog, const std::wstring& folder);
// Switches resizing on, in percent of both sides and with the best method, through the dialog's own resize box.
void SetResizePercent(HWND dialog, int percent);
// Presses "Convert" and waits until the run's progress box is gone; gives the milliseconds between the two. `patience` is
// in milliseconds.
double Convert(HWND dialog, unsigned patience);
// Waits until the dialog can be used again after a run, and presses "Close".
void CloseConversionDialog(HWND dialog);

}  // namespace zvtest
