#include "services/zvdlgbase/module.h"

namespace {
HINSTANCE kernelModule = nullptr;
}

HINSTANCE KernelModule() { return kernelModule; }

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    kernelModule = module;
    ::DisableThreadLibraryCalls(module);
  }
  return TRUE;
}
