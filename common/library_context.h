// LibraryContext: a call's stay in the library. While it lives, resources, texts and the application object are those of
// this module, and windows are made with the version of the common controls that its manifest names. Both are put back, in
// reverse order, when it ends. It nests: an export may be called from inside another one.
#pragma once

#include "platform/module_context.h"

class ControlsContext {
 public:
  ControlsContext();
  ControlsContext(const ControlsContext&) = delete;
  ControlsContext& operator=(const ControlsContext&) = delete;
  ~ControlsContext();

 private:
  ULONG_PTR cookie_ = 0;
};

class LibraryContext {
  ModuleContext module_{AfxGetStaticModuleState()};
  ControlsContext controls_;
};
