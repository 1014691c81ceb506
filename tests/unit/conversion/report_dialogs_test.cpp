// The log report, the page selection and the overwrite question over records of the test's own.
#include <windows.h>

#include <commctrl.h>

#include "conversion/ask_box_dlg.h"
#include "conversion/load_options_dlg.h"
#include "conversion/log_report_dlg.h"
#include "conversion/page_list.h"
#include "resources/conversion_ids.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"
#include "tests/unit/conversion/tool_dialog_fixture.h"

namespace {

using namespace zvtest;

std::wstring KernelText(UINT id) { return LoadDialogString(id).str(); }

class LogReport : public ToolDialog {
 protected:
  void AddLine(const wchar_t* name, int32_t status) {
    data.log.Add({CString(L"C:\\in\\") + name + L".bmp", CString(L"D:\\out\\") + name + L".png", status});
  }
  int32_t Run(const std::function<void(HWND)>& script) {
    return Drive(
        [this](CWnd* owner) {
          CZVFileConversionDlgLogReportDlg dialog(owner);
          EXPECT_EQ(SUCCESS, dialog.SetData(&data));
          return dialog.DoModal();
        },
        IDL_LOG, script);
  }
  void RunAndOK(const std::function<void(HWND)>& script) {
    EXPECT_EQ(IDOK, Run([&](HWND dialog) {
                script(dialog);
                End(dialog, IDOK);
              }));
  }
  static int PictureOf(HWND dialog, int row) {
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    ::SendMessageW(Control(dialog, IDL_LOG), LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item.iImage;
  }
  static std::wstring Status(HWND dialog, int row) { return ListViewText(dialog, IDL_LOG, row, 0); }
  static std::wstring Source(HWND dialog, int row) { return ListViewText(dialog, IDL_LOG, row, 1); }
  static std::wstring Destination(HWND dialog, int row) { return ListViewText(dialog, IDL_LOG, row, 2); }

  LOGREPORTDLGDATA data;
  const std::wstring succeeded = KernelText(IDS_LOG_SUCCEEDED);
  const std::wstring failed = KernelText(IDS_LOG_FAILED);
};

TEST_F(LogReport, RefusesNoRecord) {
  CZVFileConversionDlgLogReportDlg dialog(nullptr);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, dialog.SetData(nullptr));
}

TEST_F(LogReport, EndsAtOnceWithoutLinesOrARecord) {
  CZVFileConversionDlgLogReportDlg empty(CWnd::FromHandle(parent.hwnd()));
  ASSERT_EQ(SUCCESS, empty.SetData(&data));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, empty.DoModal());
  CZVFileConversionDlgLogReportDlg unset(CWnd::FromHandle(parent.hwnd()));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, unset.DoModal());
}

TEST_F(LogReport, OfSuccessesSwitchesEveryRowBetweenPathAndName) {
  for (const wchar_t* const name : {L"a", L"b", L"c"}) AddLine(name, CONVERSION_OK);
  RunAndOK([this](HWND dialog) {
    ASSERT_EQ(3, ListViewCount(dialog, IDL_LOG));
    for (int row = 0; row < 3; ++row) {
      EXPECT_EQ(succeeded, Status(dialog, row));
      EXPECT_EQ(0, PictureOf(dialog, row));
      EXPECT_EQ(0u, Source(dialog, row).find(L"C:\\in\\"));
      EXPECT_EQ(0u, Destination(dialog, row).find(L"D:\\out\\"));
    }
    Check(dialog, IDX_LOG_FULL_PATH, false);
    EXPECT_EQ(L"a.bmp", Source(dialog, 0));
    EXPECT_EQ(L"c.png", Destination(dialog, 2));
    Check(dialog, IDX_LOG_FULL_PATH, true);
    EXPECT_EQ(L"C:\\in\\a.bmp", Source(dialog, 0));
    EXPECT_EQ(L"D:\\out\\c.png", Destination(dialog, 2));
  });
}

TEST_F(LogReport, SortsItsRowsByStatus) {
  AddLine(L"a", CONVERSION_OK);
  AddLine(L"b", CONVERSION_FAILED);
  AddLine(L"c", CONVERSION_OK);
  ASSERT_LT(failed, succeeded) << "the order of the texts that the test was written for";
  RunAndOK([this](HWND dialog) {
    ASSERT_EQ(3, ListViewCount(dialog, IDL_LOG));
    EXPECT_EQ(failed, Status(dialog, 0));
    EXPECT_EQ(1, PictureOf(dialog, 0));
    EXPECT_EQ(L"C:\\in\\b.bmp", Source(dialog, 0));
    EXPECT_EQ(succeeded, Status(dialog, 1));
    EXPECT_EQ(succeeded, Status(dialog, 2));
  });
}

TEST_F(LogReport, RewritesRowsByTheIndexOfTheLineAndNotByTheirStatus) {
  AddLine(L"good", CONVERSION_OK);
  AddLine(L"bad", CONVERSION_FAILED);
  RunAndOK([this](HWND dialog) {
    ASSERT_EQ(failed, Status(dialog, 0));
    ASSERT_EQ(L"C:\\in\\bad.bmp", Source(dialog, 0));
    Check(dialog, IDX_LOG_FULL_PATH, false);
    EXPECT_EQ(failed, Status(dialog, 0));
    EXPECT_EQ(L"good.bmp", Source(dialog, 0));
    EXPECT_EQ(succeeded, Status(dialog, 1));
    EXPECT_EQ(L"bad.bmp", Source(dialog, 1));
  });
}

TEST_F(LogReport, LeavesOutLinesWithoutPaths) {
  data.log.Add({L"", L"", CONVERSION_ABORTED});
  data.log.Add({L"C:\\in\\a.bmp", L"", CONVERSION_FAILED});
  RunAndOK([](HWND dialog) {
    EXPECT_EQ(0, ListViewCount(dialog, IDL_LOG));
    Check(dialog, IDX_LOG_FULL_PATH, false);
    EXPECT_EQ(0, ListViewCount(dialog, IDL_LOG));
  });
}

TEST_F(LogReport, KeepsTheCheckInItsRecordHoweverItEnds) {
  AddLine(L"a", CONVERSION_OK);
  RunAndOK([](HWND dialog) { Check(dialog, IDX_LOG_FULL_PATH, false); });
  EXPECT_EQ(0, data.showFullPath);
  EXPECT_EQ(IDCANCEL, Run([](HWND dialog) {
              EXPECT_FALSE(IsChecked(dialog, IDX_LOG_FULL_PATH));
              EXPECT_EQ(L"a.bmp", Source(dialog, 0));
              Check(dialog, IDX_LOG_FULL_PATH, true);
              PressKey(dialog, VK_ESCAPE);
              WaitUntilClosed(dialog);
            }));
  EXPECT_EQ(1, data.showFullPath);
}

TEST_F(LogReport, SharesItsWidthOneToTwoToTwo) {
  AddLine(L"a", CONVERSION_OK);
  RunAndOK([](HWND dialog) {
    const HWND list = Control(dialog, IDL_LOG);
    RECT client;
    ::GetClientRect(list, &client);
    const int unit = (client.right - 1) / 5;
    const int expected[] = {unit, 2 * unit, 2 * unit};
    for (WPARAM column = 0; column < 3; ++column) {
      EXPECT_EQ(expected[column], ::SendMessageW(list, LVM_GETCOLUMNWIDTH, column, 0));
    }
    EXPECT_TRUE(::SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & LVS_EX_GRIDLINES);
    EXPECT_EQ(static_cast<LRESULT>(CLR_NONE), ::SendMessageW(list, LVM_GETBKCOLOR, 0, 0));
    EXPECT_EQ(static_cast<LRESULT>(CLR_NONE), ::SendMessageW(list, LVM_GETTEXTBKCOLOR, 0, 0));
    EXPECT_EQ(::SendMessageW(list, LVM_GETIMAGELIST, LVSIL_SMALL, 0),
              ::SendMessageW(list, LVM_GETIMAGELIST, LVSIL_NORMAL, 0));
  });
}

class PageSelection : public ToolDialog {
 protected:
  ~PageSelection() override { FreePages(chosen); }

  int32_t Run(const std::function<void(HWND)>& script) {
    FreePages(chosen);
    return Drive(
        [this](CWnd* owner) {
          CZVFileConversionDlgLoadOptionsDlg dialog(owner);
          dialog.SetContextHelp(contextHelp);
          EXPECT_EQ(SUCCESS, dialog.SetOptions(given));
          const INT_PTR result = dialog.DoModal();
          EXPECT_EQ(SUCCESS, dialog.GetOptions(&chosen));
          return result;
        },
        IDX_PAGES_ALL, script);
  }
  int32_t ChoosePages(const std::wstring& text) {
    return Run([&](HWND dialog) {
      ClickAndWait(dialog, IDX_PAGES_LIST);
      SetText(dialog, IDE_PAGES_LIST, text);
      End(dialog, IDOK);
    });
  }
  std::vector<int32_t> Pages() const { return {chosen.pages, chosen.pages + (chosen.pages ? chosen.pageCount : 0)}; }

  CONVERSIONFILEOPTIONS given;
  CONVERSIONFILEOPTIONS chosen;
  bool contextHelp = false;
};

TEST_F(PageSelection, OfAllPagesHasNoArray) {
  EXPECT_EQ(IDOK, Run([](HWND dialog) {
              EXPECT_TRUE(IsChecked(dialog, IDX_PAGES_ALL));
              EXPECT_FALSE(IsEnabled(dialog, IDE_PAGES_LIST));
              End(dialog, IDOK);
            }));
  EXPECT_EQ(-1, chosen.pageCount);
  EXPECT_EQ(nullptr, chosen.pages);
}

TEST_F(PageSelection, GivesTheTypedPagesInTheirOrder) {
  EXPECT_EQ(IDOK, ChoosePages(L"3,12,5-9"));
  EXPECT_EQ((std::vector<int32_t>{3, 12, 5, 6, 7, 8, 9}), Pages());
}

TEST_F(PageSelection, OpensWithPageOneWhateverWasChosenBefore) {
  given.allPages = 1;
  int32_t pages[] = {2, 3};
  given.pages = pages;
  given.pageCount = 2;
  EXPECT_EQ(IDCANCEL, Run([](HWND dialog) {
              EXPECT_TRUE(IsChecked(dialog, IDX_PAGES_LIST));
              EXPECT_TRUE(IsEnabled(dialog, IDE_PAGES_LIST));
              EXPECT_EQ(L"1", TextOf(dialog, IDE_PAGES_LIST));
              End(dialog, IDCANCEL);
            }));
}

TEST_F(PageSelection, RefusesAListThatIsNoneAndStays) {
  for (const wchar_t* const text : {L"", L"0", L"2,", L",2", L"1-", L"1-2-3"}) {
    EXPECT_EQ(IDCANCEL, Run([text](HWND dialog) {
                ClickAndWait(dialog, IDX_PAGES_LIST);
                SetText(dialog, IDE_PAGES_LIST, text);
                Click(dialog, IDOK);
                const HWND box = WaitForMessageBox();
                EXPECT_EQ(KernelText(IDS_PAGES_BAD_LIST_TEXT), TextOf(box, 0xffff));
                EXPECT_EQ(KernelText(IDS_PAGES_BAD_LIST_CAPTION), TextOf(box));
                Click(box, FindControl(box, IDOK) ? IDOK : IDCANCEL);
                WaitUntilClosed(box);
                End(dialog, IDCANCEL);
              }));
  }
}

TEST_F(PageSelection, HandsEverythingBackButAllPages) {
  const HELPCALLBACK help = [](uint32_t, int32_t, void*) {};
  int userData = 0;
  given.helpCallback = help;
  given.helpUserData = &userData;
  given.loadPasses = 7;
  given.allPages = 1;
  chosen.allPages = 42;
  ChoosePages(L"2");
  EXPECT_EQ(help, chosen.helpCallback);
  EXPECT_EQ(&userData, chosen.helpUserData);
  EXPECT_EQ(7, chosen.loadPasses);
  EXPECT_EQ(42, chosen.allPages);
  CZVFileConversionDlgLoadOptionsDlg dialog(nullptr);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, dialog.GetOptions(nullptr));
}

TEST_F(PageSelection, HasAQuestionMarkWhenAskedFor) {
  const auto expect = [](bool mark) {
    return [mark](HWND dialog) {
      EXPECT_EQ(mark, HasQuestionMark(dialog));
      End(dialog, IDCANCEL);
    };
  };
  Run(expect(false));
  contextHelp = true;
  Run(expect(true));
}

class OverwriteQuestion : public ToolDialog {
 protected:
  int32_t Answer(const std::function<void(HWND)>& script) {
    int32_t answer = -1;
    Drive(
        [&](CWnd* owner) {
          CZVFileConversionDlgAskBoxDlg dialog(owner, L"Is it there?");
          const INT_PTR result = dialog.DoModal();
          answer = dialog.GetAnswer();
          return result;
        },
        IDB_CONV_ASK_REPLACE, script);
    return answer;
  }
};

TEST_F(OverwriteQuestion, EachButtonGivesItsAnswer) {
  constexpr std::pair<int, int32_t> kAnswers[] = {
      {IDB_CONV_ASK_REPLACE, 0}, {IDB_CONV_ASK_RENAME, 1}, {IDB_CONV_ASK_SKIP, 2}, {IDB_CONV_ASK_ABORT, 3}};
  for (const auto& [button, answer] : kAnswers) {
    EXPECT_EQ(answer, Answer([button = button](HWND dialog) {
                EXPECT_EQ(L"Is it there?", TextOf(dialog, IDE_CONV_ASK_MESSAGE));
                End(dialog, button);
              }));
  }
}

TEST_F(OverwriteQuestion, EscAndTheCloseBoxAreAbort) {
  EXPECT_EQ(3, Answer([](HWND dialog) {
              PressKey(dialog, VK_ESCAPE);
              WaitUntilClosed(dialog);
            }));
  EXPECT_EQ(3, Answer([](HWND dialog) {
              zvtest::CloseWindow(dialog);
              WaitUntilClosed(dialog);
            }));
}

}  // namespace
