#include "services/zvdlgwidgets/window_classes.h"

#include "services/zvdlgwidgets/value_combo_window.h"

namespace {

// A class of ours that behaves as one of the system's under another name.
bool RegisterLike(LPCWSTR systemClass, LPCWSTR name, HINSTANCE module) {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  if (!::GetClassInfoExW(nullptr, systemClass, &windowClass)) {
    return false;
  }
  windowClass.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
  windowClass.hInstance = module;
  windowClass.lpszClassName = name;
  return ::RegisterClassExW(&windowClass) != 0;
}

bool RegisterOwn(LPCWSTR name, WNDPROC procedure, int extraBytes, HINSTANCE module) {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = procedure;
  windowClass.cbWndExtra = extraBytes;
  windowClass.hInstance = module;
  windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = name;
  return ::RegisterClassExW(&windowClass) != 0;
}

bool IsRegistered(LPCWSTR name, HINSTANCE module) {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  return ::GetClassInfoExW(module, name, &windowClass) != FALSE;
}

}  // namespace

bool RegisterWidgetClasses(HINSTANCE module) {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  ::InitCommonControlsEx(&controls);
  return (IsRegistered(ZV_VALUE_COMBO_CLASS, module) ||
          RegisterOwn(ZV_VALUE_COMBO_CLASS, &ValueComboWindow::WindowProcedure, sizeof(void*), module)) &&
         (IsRegistered(ZV_ROLLUP_WND_CLASS, module) || RegisterOwn(ZV_ROLLUP_WND_CLASS, ::DefWindowProcW, 0, module)) &&
         (IsRegistered(ZV_PREVIEW_COMBO_CLASS, module) || RegisterLike(WC_COMBOBOXW, ZV_PREVIEW_COMBO_CLASS, module)) &&
         (IsRegistered(ZV_IMAGE_LIST_VIEW_CLASS, module) ||
          RegisterLike(WC_LISTVIEWW, ZV_IMAGE_LIST_VIEW_CLASS, module));
}

void UnregisterWidgetClasses(HINSTANCE module) {
  for (const LPCWSTR name :
       {ZV_VALUE_COMBO_CLASS, ZV_ROLLUP_WND_CLASS, ZV_PREVIEW_COMBO_CLASS, ZV_IMAGE_LIST_VIEW_CLASS}) {
    ::UnregisterClassW(name, module);
  }
}
