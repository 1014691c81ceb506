// The library's application object: one per process, a place for the settings that outlive a dialog and for the resources.
// It has no behaviour of its own, and nobody runs it.
#pragma once

#include "platform/win_app.h"

class CZVMainApp : public CWinApp {
 public:
  CZVMainApp();
};
