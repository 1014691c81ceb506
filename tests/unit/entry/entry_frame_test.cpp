// What a call of an export leaves behind when it ends.
#include "common/entry_frame.h"

#include <gtest/gtest.h>

#include <new>

#include "include/zvfiledlg.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/window_classes.h"

namespace {

class Call : public ::testing::Test {
 protected:
  Call() { record.uStructSize = sizeof(record); }
  // Also takes the classes away again.
  static bool HasWindowClasses() {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    const bool isThere = ::GetClassInfoExW(AfxGetInstanceHandle(), ZV_VALUE_COMBO_CLASS, &windowClass);
    UnregisterWidgetClasses(AfxGetInstanceHandle());
    return isThere;
  }

  DIRECTORYDLGPARAMS record = {};
  POINT place = {150, 60};
};

TEST_F(Call, TakesBackThePositionPointThatNoDialogHasUsed) {
  EXPECT_EQ(ERROR_BAD_ARGUMENT, EnterLibrary(kDirectoryFamily, nullptr, &record, [this](CWnd*) {
              CZVBaseDialog::SetPositionPoint(&place);
              return ERROR_BAD_ARGUMENT;
            }));
  EXPECT_EQ(nullptr, CZVBaseDialog::SetPositionPoint(nullptr)) << "the next dialog is centred";
}

TEST_F(Call, TakesBackThePositionPointWhenItEndsByAnException) {
  EXPECT_EQ(ERROR_OUT_OF_MEMORY, EnterLibrary(kDirectoryFamily, nullptr, &record, [this](CWnd*) -> int32_t {
              CZVBaseDialog::SetPositionPoint(&place);
              throw std::bad_alloc();
            }));
  EXPECT_EQ(nullptr, CZVBaseDialog::SetPositionPoint(nullptr));
}

TEST_F(Call, HasTheWindowClassesOfTheControlsOnceItHasPassedTheChecks) {
  HasWindowClasses();
  bool ran = false;
  record.uStructSize = 1;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, EnterLibrary(kDirectoryFamily, nullptr, &record, [&](CWnd*) {
              ran = true;
              return SUCCESS;
            }));
  EXPECT_FALSE(ran);
  EXPECT_FALSE(HasWindowClasses()) << "a refused call registers nothing";
  record.uStructSize = sizeof(record);
  EXPECT_EQ(SUCCESS, EnterLibrary(kDirectoryFamily, nullptr, &record, [](CWnd*) {
              EXPECT_TRUE(HasWindowClasses());
              return SUCCESS;
            }));
}

}  // namespace
