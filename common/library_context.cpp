#include "common/library_context.h"

namespace {

// The manifest of a module that is not a program has this resource number.
constexpr WORD kModuleManifest = 2;

// Made once and kept: windows of ours may outlive a call, and their class is looked up in it. Null when the module's
// manifest cannot be used; the older common controls serve then.
HANDLE ModuleActivationContext() {
  static const HANDLE context = [] {
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(AfxGetStaticModuleState()->m_hCurrentInstanceHandle, path, MAX_PATH);
    ACTCTXW request = {};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    request.lpSource = path;
    request.lpResourceName = MAKEINTRESOURCEW(kModuleManifest);
    request.hModule = AfxGetStaticModuleState()->m_hCurrentInstanceHandle;
    const HANDLE made = ::CreateActCtxW(&request);
    return made == INVALID_HANDLE_VALUE ? nullptr : made;
  }();
  return context;
}

}  // namespace

ControlsContext::ControlsContext() {
  const HANDLE context = ModuleActivationContext();
  if (context) {
    ::ActivateActCtx(context, &cookie_);
  }
}

ControlsContext::~ControlsContext() {
  if (cookie_) {
    ::DeactivateActCtx(0, cookie_);
  }
}
