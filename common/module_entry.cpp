#include "platform/win32.h"

// The module's instance is known to the framework by its image base, so there is nothing to keep here.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    ::DisableThreadLibraryCalls(module);
  }
  return TRUE;
}
