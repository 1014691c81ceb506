// Runs one dialog of the batch conversion alone, over records of the test's own: what the whole conversion dialog never
// hands to it can be tried here.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "platform/afx.h"
#include "services/zvdlgwidgets/window_classes.h"
#include "tests/support/dialog_driver.h"

namespace zvtest {

class ToolDialog : public ::testing::Test {
 protected:
  ToolDialog() { RegisterWidgetClasses(AfxGetInstanceHandle()); }

  // `run` makes the dialog on that parent and gives its modal result.
  int32_t Drive(const std::function<INT_PTR(CWnd* parent)>& run, int controlId,
                const std::function<void(HWND)>& script) {
    return DriveDialog([&] { return static_cast<int32_t>(run(CWnd::FromHandle(parent.hwnd()))); },
                       [&] { script(WaitForDialogWith(controlId)); });
  }
  static void End(HWND dialog, int button) {
    Click(dialog, button);
    WaitUntilClosed(dialog);
  }
  static bool HasQuestionMark(HWND dialog) { return ::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP; }

  ParentWindow parent;
};

}  // namespace zvtest
