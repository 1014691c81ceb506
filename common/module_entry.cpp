#include "platform/win32.h"
#include "services/zvdlgwidgets/window_classes.h"

// The module's instance is known to the framework by its image base, so there is nothing to keep here.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    ::DisableThreadLibraryCalls(module);
  } else if (reason == DLL_PROCESS_DETACH) {
    // The system keeps a module's classes when the module goes, with window procedures that are no longer there.
    UnregisterWidgetClasses(module);
  }
  return TRUE;
}
