// Runs of the batch conversion dialog that stop: to ask about a file that is there, or for good.
#include <windows.h>

#include <commctrl.h>

#include "resources/conversion_tools_ids.h"
#include "tests/dialogs/conversion_run_fixture.h"
#include "tests/support/file_bytes.h"

namespace {

using namespace zvtest;

// --- The overwrite question ---

class OverwriteQuestion : public ConversionRun {
 protected:
  OverwriteQuestion() {
    AddPicture(L"1.bmp");
    AddPicture(L"2.bmp");
    out.AddFile(L"1.png", {7});
    params.overwriteMode = OVERWRITE_ASK;
  }
  void RunAnswering(const std::function<void(HWND)>& answer) {
    RunAndClose([&](HWND dialog) {
      ChooseAllFiles(dialog);
      Click(dialog, IDB_CONV_CONVERT);
      const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
      EXPECT_NE(std::wstring::npos, TextOf(ask, IDE_CONV_ASK_MESSAGE).find(out.File(L"1.png")));
      answer(ask);
      WaitUntilIdle(dialog);
    });
  }
};

TEST_F(OverwriteQuestion, ReplaceWritesOver) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_REPLACE); });
  EXPECT_GT(ReadWholeFile(out.File(L"1.png")).size(), 1u);
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, RenameFindsAFreeName) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_RENAME); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"10.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, SkipGoesOnWithTheNextFile) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_SKIP); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, AbortEndsTheRun) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_ABORT); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, EscIsAbort) {
  RunAnswering([](HWND ask) { PressKey(ask, VK_ESCAPE); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, TheCloseBoxIsAbort) {
  RunAnswering([](HWND ask) { zvtest::CloseWindow(ask); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, EnterLosesNothing) {
  RunAnswering([](HWND ask) { PressKey(ask, VK_RETURN); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(ConversionRun, BelowAQuestionTheProgressIsThatOfTheFilesBefore) {
  for (const wchar_t* name : {L"1.bmp", L"2.bmp", L"3.bmp"}) {
    AddPicture(name);
  }
  out.AddFile(L"3.png", {7});
  params.overwriteMode = OVERWRITE_ASK;
  RunAndClose([&](HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
    const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
    EXPECT_NE(std::wstring::npos, TextOf(progress, IDT_CONV_LAST_FILE).find(out.File(L"2.png")));
    EXPECT_EQ(33, ::SendMessageW(Control(progress, IDP_CONV_TOTAL), PBM_GETPOS, 0, 0))
        << "one of three, and the second";
    EXPECT_EQ(0, ::SendMessageW(Control(progress, IDP_CONV_FILE), PBM_GETPOS, 0, 0));
    Click(ask, IDB_CONV_ASK_SKIP);
    WaitUntilIdle(dialog);
  });
}

// --- Stopping ---

class StoppedRun : public ConversionRun {
 protected:
  StoppedRun() {
    Offer({kPng});
    for (int i = 0; i < 4; ++i) {
      sources.push_back(AddPicture(L"big" + std::to_wstring(i) + L".bmp", {3000, 2000}));
    }
  }
  // Starts a run over all files, stops it in a file, and waits for its end. That file alone fails, and none comes after it.
  void RunStopping(const std::function<void(HWND)>& stop) {
    params.logReport = 1;
    RunAndClose([&](HWND dialog) {
      ChooseAllFiles(dialog);
      Click(dialog, IDB_CONV_CONVERT);
      const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
      const HWND bar = Control(progress, IDP_CONV_FILE);
      WaitUntil([=] { return ::SendMessageW(bar, PBM_GETPOS, 0, 0) > 0; }, "a file in work");
      stop(progress);
      WaitUntilClosed(progress);
      const HWND log = WaitForDialogWith(IDL_LOG);
      const auto rows = static_cast<size_t>(ListViewCount(log, IDL_LOG));
      EXPECT_EQ(Outputs().size() + 1, rows);
      EXPECT_LT(rows, 4u);
      Click(log, IDOK);
      WaitUntilClosed(log);
      WaitUntilIdle(dialog);
      EXPECT_EQ(4, ListViewCount(dialog, IDL_CONV_FILES));
    });
    for (const std::wstring& source : sources) {
      EXPECT_TRUE(Exists(source));
    }
    for (const std::wstring& name : Outputs()) {
      FILEINFO info = {};
      info.uStructSize = sizeof info;
      EXPECT_EQ(L".png", name.substr(name.size() - 4));
      EXPECT_EQ(SUCCESS, GetFileInfo(out.File(name).c_str(), &info, sizeof info, 1, nullptr));
      EXPECT_EQ(3000, info.width);
    }
  }
  std::vector<std::wstring> sources;
};

TEST_F(StoppedRun, AbortLeavesSourcesAndWholeOutputsAlone) {
  RunStopping([](HWND progress) { Click(progress, IDB_CONV_ABORT); });
}

TEST_F(StoppedRun, EscActsLikeAbort) {
  RunStopping([](HWND progress) { PressKey(progress, VK_ESCAPE); });
}

TEST_F(StoppedRun, EnterPressesAbort) {
  RunStopping([](HWND progress) { PressKey(progress, VK_RETURN); });
}

TEST_F(StoppedRun, TheCloseBoxActsLikeAbort) {
  RunStopping([](HWND progress) { zvtest::CloseWindow(progress); });
}

TEST_F(StoppedRun, TheEndOfTheProgramEndsTheRun) {
  const DWORD thread = ::GetCurrentThreadId();
  const int32_t result = Run([&](HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND bar = Control(WaitForDialogWith(IDP_CONV_TOTAL), IDP_CONV_FILE);
    WaitUntil([=] { return ::SendMessageW(bar, PBM_GETPOS, 0, 0) > 0; }, "a file in work");
    ::PostThreadMessageW(thread, WM_QUIT, 3, 0);
    WaitUntilClosed(dialog);
  });
  EXPECT_EQ(ERROR_DIALOG_FAILED, result);
  MSG quit = {};
  EXPECT_TRUE(::PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the caller's own loop is to end as well";
  EXPECT_LE(Outputs().size(), 2u);
  for (const std::wstring& name : Outputs()) {
    EXPECT_EQ(L".png", name.substr(name.size() - 4));
  }
  for (const std::wstring& source : sources) {
    EXPECT_TRUE(Exists(source));
  }
}

}  // namespace
