// Which module's instance, resources and application object are in force. A statically linked framework has one state
// of its own, which is always in force unless a ModuleContext replaces it; contexts nest, belong to the thread, and
// each puts back the one that it found. Every export enters the library's context first
// (AFX_MANAGE_STATE(AfxGetStaticModuleState())).
#pragma once

#include "platform/cstring.h"
#include "platform/win32.h"

class CWinApp;

struct AFX_MODULE_STATE {
  CWinApp* m_pCurrentWinApp = nullptr;
  HINSTANCE m_hCurrentInstanceHandle = nullptr;
  HINSTANCE m_hCurrentResourceHandle = nullptr;
};

// The state of the module that this framework is linked into. It exists before the module's own statics.
AFX_MODULE_STATE* AfxGetStaticModuleState();
// The state in force on this thread.
AFX_MODULE_STATE* AfxGetModuleState();

class ModuleContext {
 public:
  explicit ModuleContext(AFX_MODULE_STATE* state);
  ModuleContext(const ModuleContext&) = delete;
  ModuleContext& operator=(const ModuleContext&) = delete;
  // Leaving the outermost context of a thread also drops the temporary wrapper objects (FromHandle) made inside.
  ~ModuleContext();

  // How many contexts this thread stands in.
  static int Depth();

 private:
  AFX_MODULE_STATE* previous_;
};

using AFX_MAINTAIN_STATE2 = ModuleContext;
#define AFX_MANAGE_STATE(state) const ModuleContext moduleContext(state);

HINSTANCE AfxGetInstanceHandle();
HINSTANCE AfxGetResourceHandle();
void AfxSetResourceHandle(HINSTANCE module);
// The module that holds a resource: always the one in force. The type is ignored.
inline HINSTANCE AfxFindResourceHandle(LPCWSTR /*name*/, LPCWSTR /*type*/) { return AfxGetResourceHandle(); }
// The length of string resource `id` of the module in force; 0 and an empty buffer when it is absent.
int AfxLoadString(UINT id, LPWSTR buffer, UINT size = 256);
