#include "platform/module_context.h"

#include <algorithm>

#include "platform/thread_state.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

AFX_MODULE_STATE* AfxGetStaticModuleState() {
  static AFX_MODULE_STATE state = [] {
    const auto module = reinterpret_cast<HINSTANCE>(&__ImageBase);
    return AFX_MODULE_STATE{nullptr, module, module};
  }();
  return &state;
}

AFX_MODULE_STATE* AfxGetModuleState() {
  AFX_MODULE_STATE* const entered = ThreadState::Get().moduleState;
  return entered ? entered : AfxGetStaticModuleState();
}

ModuleContext::ModuleContext(AFX_MODULE_STATE* state) {
  ThreadState& thread = ThreadState::Get();
  previous_ = std::exchange(thread.moduleState, state);
  ++thread.contextDepth;
}

ModuleContext::~ModuleContext() {
  ThreadState& thread = ThreadState::Get();
  thread.moduleState = previous_;
  if (--thread.contextDepth == 0) {
    thread.temporaries.clear();
  }
}

int ModuleContext::Depth() { return ThreadState::Get().contextDepth; }

HINSTANCE AfxGetInstanceHandle() { return AfxGetModuleState()->m_hCurrentInstanceHandle; }

HINSTANCE AfxGetResourceHandle() { return AfxGetModuleState()->m_hCurrentResourceHandle; }

void AfxSetResourceHandle(HINSTANCE module) { AfxGetModuleState()->m_hCurrentResourceHandle = module; }

int AfxLoadString(UINT id, LPWSTR buffer, UINT size) {
  if (size == 0) {
    return 0;
  }
  buffer[0] = L'\0';
  return ::LoadStringW(AfxGetResourceHandle(), id, buffer, static_cast<int>(size));
}

BOOL CString::LoadString(UINT id) { return LoadString(AfxGetResourceHandle(), id); }

BOOL CString::LoadString(HINSTANCE module, UINT id) {
  // With a buffer length of 0 the platform gives a pointer to the resource itself, which has no terminator.
  LPCWSTR resource = nullptr;
  const int length = ::LoadStringW(module, id, reinterpret_cast<LPWSTR>(&resource), 0);
  *this = length > 0 ? CString(resource, length) : CString();
  return length > 0;
}
