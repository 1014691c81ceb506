// What the tests of whole runs share: a dialog that offers two formats, PNG first.
#pragma once

#include "tests/dialogs/conversion_fixture.h"

namespace zvtest {

inline constexpr int32_t kJpeg = 0, kPng = 1;  // catalogue formats

class ConversionRun : public ConversionDialog {
 protected:
  ConversionRun() { Offer({kPng, kJpeg}); }

  static void ChooseAllFiles(HWND dialog) {
    Click(dialog, IDB_CONV_SELECT_ALL);
    WaitUntil(
        [=] {
          return static_cast<int>(SelectedListViewRows(dialog, IDL_CONV_FILES).size()) ==
                 ListViewCount(dialog, IDL_CONV_FILES);
        },
        "all files chosen");
  }
};

}  // namespace zvtest
