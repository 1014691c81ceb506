#include "services/zvdlgwidgets/theme.h"

bool IsControlThemed(HWND standardControl) {
  // Version 6 of a control opens its theme when it is made; older versions know of none.
  return ::IsAppThemed() && ::GetWindowTheme(standardControl) != nullptr;
}

unique_htheme OpenControlTheme(HWND standardControl, LPCWSTR className) {
  // Not opened for the window, which keeps one theme only, its own.
  return unique_htheme(IsControlThemed(standardControl) ? ::OpenThemeData(nullptr, className) : nullptr);
}
