#include <windows.h>
#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include "demo/demo_ids.h"
#include "demo/viewer_window.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand) {
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_COOL_CLASSES};
  InitCommonControlsEx(&classes);
  OleInitialize(nullptr);

  ViewerWindow viewer(instance);
  if (!viewer.Create(showCommand)) return 1;

  int count = 0;
  if (wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count)) {
    if (count > 1) viewer.Show(arguments[1], 1);
    LocalFree(arguments);
  }

  HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_ACCELERATORS));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TranslateAcceleratorW(viewer.Handle(), accelerators, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  OleUninitialize();
  return int(message.wParam);
}
