// The preview pane through the export: what it shows of files with and without stamps, and how it stands in the dialog.
#include "tests/dialogs/open_preview_fixture.h"

#include <commctrl.h>

namespace {

using namespace zvtest;

constexpr int kSplitterCursor = 30980;

void Toggle(HWND dialog) { ::SendMessageW(OpenHook(dialog), WM_COMMAND, kOpenPreviewCommand, 0); }

// Of the picture in the pane, in pixels of the pane; empty without a picture.
RECT PictureIn(HWND dialog, COLORREF color) {
  const HWND pane = FindControl(dialog, kOpenPane);
  RECT client, found = {INT_MAX, INT_MAX, 0, 0};
  ::GetClientRect(pane, &client);
  const HDC device = ::GetDC(pane);
  for (LONG x = 0; x < client.right; ++x) {
    if (IsNear(::GetPixel(device, x, client.bottom / 2), color)) {
      found.left = std::min(found.left, x);
      found.right = std::max(found.right, x + 1);
    }
  }
  for (LONG y = 0; y < client.bottom; ++y) {
    if (IsNear(::GetPixel(device, client.right / 2, y), color)) {
      found.top = std::min(found.top, y);
      found.bottom = std::max(found.bottom, y + 1);
    }
  }
  ::ReleaseDC(pane, device);
  return found;
}

void ClearSelection(HWND dialog) {
  LVITEMW item = {};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  ::SendMessageW(OpenFileList(dialog), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
}

TEST_F(OpenPane, IsAChildOfTheHookWithoutTitleOrBorder) {
  Look([](HWND dialog) {
    const HWND pane = Control(dialog, kOpenPane);
    EXPECT_EQ(OpenHook(dialog), ::GetParent(pane));
    constexpr LONG kOfClipping = WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    EXPECT_EQ(0x50000000, ::GetWindowLongW(pane, GWL_STYLE) & ~kOfClipping);
    EXPECT_EQ(0, ::GetWindowLongW(pane, GWL_EXSTYLE));
    EXPECT_EQ(::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)),
              reinterpret_cast<HCURSOR>(::GetClassLongPtrW(pane, GCLP_HCURSOR)));
    EXPECT_EQ(L"", TextOf(pane));
  });
}

TEST_F(OpenPane, HasADarkAndALightEdge) {
  Look([](HWND dialog) {
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    const HWND pane = Control(dialog, kOpenPane);
    RECT client;
    ::GetClientRect(pane, &client);
    const HDC device = ::GetDC(pane);
    EXPECT_EQ(RGB(0, 0, 0), ::GetPixel(device, 0, client.bottom / 2));
    EXPECT_EQ(RGB(0, 0, 0), ::GetPixel(device, client.right / 2, 0));
    EXPECT_EQ(RGB(255, 255, 255), ::GetPixel(device, client.right - 1, client.bottom / 2));
    EXPECT_EQ(RGB(255, 255, 255), ::GetPixel(device, client.right / 2, client.bottom - 1));
    ::ReleaseDC(pane, device);
  });
}

TEST_F(OpenPane, SaysThatThereIsNoPreviewUntilAFileIsChosen) {
  Look([](HWND dialog) {
    WaitForNoPreview(dialog);
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
  });
}

TEST_F(OpenPane, ShowsASmallPictureAtItsOwnSizeLessThreePixelsAllAround) {
  WriteSolid(folder.File(L"small.bmp"), kGreen, FMT_BMP, 1, 60);
  Look(
      [](HWND dialog) {
        SelectFile(dialog, L"small.bmp");
        WaitForColor(dialog, kGreen);
        const RECT picture = PictureIn(dialog, kGreen);
        EXPECT_EQ(54, picture.right - picture.left);
        EXPECT_EQ(54, picture.bottom - picture.top);
        RECT client;
        ::GetClientRect(Control(dialog, kOpenPane), &client);
        EXPECT_EQ((client.right - 60) / 2 + 3, picture.left) << "in the middle";
        EXPECT_EQ((client.bottom - 60) / 2 + 3, picture.top);
      },
      3);
}

TEST_F(OpenPane, ShowsATransparentPictureOverTheColourOfButtonsAndNotOverTheOneBefore) {
  WriteTransparent(folder.File(L"clear.png"), kGreen, 128);
  Look(
      [](HWND dialog) {
        const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
        const COLORREF mixed = RGB(GetRValue(face) / 2, (255 + GetGValue(face)) / 2, GetBValue(face) / 2);
        SelectFile(dialog, L"clear.png");
        WaitForColor(dialog, mixed);
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        SelectFile(dialog, L"clear.png");
        WaitForColor(dialog, mixed);
        SaveScreenshot(dialog, L"open_transparent");
        ::InvalidateRect(Control(dialog, kOpenPane), nullptr, FALSE);
        ::UpdateWindow(Control(dialog, kOpenPane));
        EXPECT_TRUE(IsNear(mixed, PaneColor(dialog))) << "also when it is painted again";
      },
      3);
}

TEST_F(OpenPane, ShowsTheStampAndNeverThePicture) {
  WriteStamped(folder, L"stamped.cmp", kGreen, kRed);
  Look(
      [](HWND dialog) {
        SelectFile(dialog, L"stamped.cmp");
        WaitForColor(dialog, kGreen);
        EXPECT_EQ(94, PictureIn(dialog, kGreen).right - PictureIn(dialog, kGreen).left) << "its own 100 pixels";
        SelectFile(dialog, L"blue.bmp");
        WaitForColor(dialog, kBlue);
        SelectFile(dialog, L"stamped.cmp");
        WaitForColor(dialog, kGreen);
      },
      3);
}

TEST_F(OpenPane, LooksAgainAtAFileWithAStampButNotAtOneShownInFull) {
  WriteStamped(folder, L"stamped.cmp", kGreen, kRed);
  Look(
      [this](HWND dialog) {
        SelectFile(dialog, L"stamped.cmp");
        WaitForColor(dialog, kGreen);
        WriteStamped(folder, L"stamped.cmp", kBlue, kRed);
        ClearSelection(dialog);
        SelectFile(dialog, L"stamped.cmp");
        WaitForColor(dialog, kBlue);
        SelectFile(dialog, L"red.bmp");
        WaitForColor(dialog, kRed);
        WriteSolid(folder.File(L"red.bmp"), kGreen);
        ::SendMessageW(OpenNameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L""));
        SelectFile(dialog, L"red.bmp");
        EXPECT_FALSE(HoldsWithin(300, [=] { return !IsNear(PaneColor(dialog), kRed); }));
      },
      3);
}

TEST_F(OpenPane, ShowsStampsAloneWhenOnlyStampsAreAskedFor) {
  WriteStamped(folder, L"stamped.cmp", kGreen, kRed);
  call.params.flags = DLG_OPEN_PREVIEW_STAMP_ONLY | DLG_OPEN_SHOW_PAGE_CONTROLS;
  Look(
      [](HWND dialog) {
        EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane)) << "brings no pane by itself";
        Toggle(dialog);
        SelectFile(dialog, L"stamped.cmp");
        WaitForColor(dialog, kGreen);
        SelectFile(dialog, L"red.bmp");
        WaitForNoPreview(dialog);
      },
      3);
}

TEST_F(OpenPane, StillReadsTheFileWhenNoPictureIsAskedFor) {
  WriteSolid(folder.File(L"pages.tif"), kRed, FMT_TIFF);
  WriteSolid(folder.File(L"pages.tif"), kGreen, FMT_TIFF, 2);
  call.params.flags = DLG_OPEN_SHOW_PAGE_CONTROLS;
  Look(
      [](HWND dialog) {
        Toggle(dialog);
        SelectFile(dialog, L"pages.tif");
        WaitUntil([=] { return IsEnabled(dialog, kOpenPageEdit); }, "its pages are known");
        WaitForNoPreview(dialog);
      },
      3);
}

TEST_F(OpenPane, ShowsThePageThatIsTyped) {
  WriteSolid(folder.File(L"pages.tif"), kRed, FMT_TIFF);
  WriteSolid(folder.File(L"pages.tif"), kGreen, FMT_TIFF, 2);
  WriteSolid(folder.File(L"pages.tif"), kBlue, FMT_TIFF, 3);
  Look(
      [](HWND dialog) {
        SelectFile(dialog, L"pages.tif");
        WaitForColor(dialog, kRed);
        SetText(dialog, kOpenPageEdit, L"3");
        WaitForColor(dialog, kBlue);
        SetText(dialog, kOpenPageEdit, L"2");
        WaitForColor(dialog, kGreen);
        SetText(dialog, kOpenPageEdit, L"0");
        WaitForColor(dialog, kRed);
        EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit)) << "there is no page 0";
      },
      3);
}

TEST_F(OpenPane, ShowsThePageThatTookTheDeletedOnesPlace) {
  for (const int32_t format : {FMT_TIFF, FMT_GIF}) {
    const std::wstring name = format == FMT_TIFF ? L"pages.tif" : L"pages.gif";
    for (const auto& [page, color] : {std::pair{1, kRed}, {2, kGreen}, {3, kBlue}}) {
      WriteSolid(folder.File(name), color, format, page);
    }
    Look([&](HWND dialog) {
      SelectFile(dialog, name);
      WaitForColor(dialog, kRed);
      SetText(dialog, kOpenPageEdit, L"2");
      WaitForColor(dialog, kGreen);
      Click(dialog, kOpenDeletePage);
      const HWND question = WaitForMessageBox();
      Click(question, IDYES);
      WaitUntilClosed(question);
      WaitForColor(dialog, kBlue);
      EXPECT_EQ(L"2", TextOf(dialog, kOpenPageEdit));
    });
    FILEINFO info = {};
    info.uStructSize = sizeof(info);
    EXPECT_EQ(SUCCESS, GetFileInfo(folder.File(name).c_str(), &info, sizeof(info), 1, nullptr));
    EXPECT_EQ(2, info.totalPages);
  }
}

TEST_F(OpenPane, ComesBackWithThePictureOfTheChosenFile) {
  Look([](HWND dialog) {
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    Toggle(dialog);
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane)) << "closing destroys it";
    SelectFile(dialog, L"blue.bmp");
    Toggle(dialog);
    WaitForColor(dialog, kBlue);
  });
}

TEST_F(OpenPane, LeavesNothingBehindWhenItIsOpenedAndClosedAgainAndAgain) {
  Look([](HWND dialog) {
    SelectFile(dialog, L"red.bmp");
    ExpectNothingLeftBehind([=] {
      Toggle(dialog);
      ASSERT_EQ(nullptr, FindControl(dialog, kOpenPane));
      Toggle(dialog);
      ASSERT_NE(nullptr, FindControl(dialog, kOpenPane));
    });
    WaitForColor(dialog, kRed);
  });
}

TEST_F(OpenPane, ComesBackWhereTheSplitterWasLeft) {
  Look([](HWND dialog) {
    const RECT before = OpenPaneRect(dialog);
    const LONG y = (before.top + before.bottom) / 2;
    ::SendMessageW(OpenHook(dialog), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(before.left + 2, y));
    ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(before.left - 75, y));
    ::SendMessageW(OpenHook(dialog), WM_LBUTTONUP, 0, MAKELPARAM(before.left - 75, y));
    EXPECT_EQ(before.left - 80, OpenPaneRect(dialog).left);
    Toggle(dialog);
    Toggle(dialog);
    EXPECT_EQ(before.left - 80, OpenPaneRect(dialog).left);
  });
}

// A drag from the splitter's middle to x; the button is up again afterwards.
void Drag(HWND dialog, LONG x) {
  const RECT pane = OpenPaneRect(dialog);
  const LONG y = (pane.top + pane.bottom) / 2;
  ::SendMessageW(OpenHook(dialog), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(pane.left, y));
  ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
  ::SendMessageW(OpenHook(dialog), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

TEST_F(OpenPane, FitsThePictureAnewWhenTheSplitterIsDragged) {
  Look([](HWND dialog) {
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    Drag(dialog, OpenPaneRect(dialog).right - 100);
    WaitUntil([=] { return PictureIn(dialog, kRed).right > 0; }, "the picture is painted anew");
    RECT client;
    ::GetClientRect(Control(dialog, kOpenPane), &client);
    WaitUntil([=] { return PictureIn(dialog, kRed).right - PictureIn(dialog, kRed).left == client.right - 6; },
              "the picture fills the narrow pane's width");
  });
}

TEST_F(OpenPane, IsNeverDraggedBeyondItsLimits) {
  Look([](HWND dialog) {
    RECT client;
    ::GetClientRect(dialog, &client);
    Drag(dialog, client.right + 500);
    EXPECT_EQ(client.right - 30, OpenPaneRect(dialog).left) << "the pointer stops at 25 from the right";
    EXPECT_EQ(client.right, OpenPaneRect(dialog).right);
    Drag(dialog, 0);
    EXPECT_EQ(165, OpenPaneRect(dialog).left) << "the pointer stops at 170";
  });
}

// Also below the dialog's smallest width, which a program is not held to.
void SetClientWidth(HWND dialog, LONG width) {
  RECT client, frame;
  ::GetClientRect(dialog, &client);
  ::GetWindowRect(dialog, &frame);
  ::SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + width - client.right, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOSENDCHANGING);
  WaitUntil([=] { return OpenPaneRect(dialog).right == width; }, "the pane follows");
}

TEST_F(OpenPane, KeepsItsDistanceFromTheRightEdgeAfterTheDialogWasNarrow) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Look([](HWND dialog) {
    RECT client;
    ::GetClientRect(dialog, &client);
    Drag(dialog, client.right);
    SetClientWidth(dialog, 180);
    EXPECT_EQ(170, OpenPaneRect(dialog).left) << "there the list's room counts for more";
    SetClientWidth(dialog, client.right);
    EXPECT_EQ(client.right - 25, OpenPaneRect(dialog).left) << "not the 10 pixels that it had left";
  });
}

TEST_F(OpenPane, IsDraggedOnlyFromTheSplitter) {
  Look([](HWND dialog) {
    const RECT before = OpenPaneRect(dialog);
    const LONG y = (before.top + before.bottom) / 2;
    for (const LONG from : {before.left - 6, before.left + 5}) {
      ::SendMessageW(OpenHook(dialog), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from, y));
      ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from - 50, y));
      ::SendMessageW(OpenHook(dialog), WM_LBUTTONUP, 0, MAKELPARAM(from - 50, y));
      EXPECT_EQ(before.left, OpenPaneRect(dialog).left);
    }
    Toggle(dialog);
    ::SendMessageW(OpenHook(dialog), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(before.left, y));
    ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(before.left - 50, y));
    ::SendMessageW(OpenHook(dialog), WM_LBUTTONUP, 0, MAKELPARAM(before.left - 50, y));
    Toggle(dialog);
    EXPECT_EQ(before.left, OpenPaneRect(dialog).left) << "with the pane closed there is no splitter";
  });
}

TEST_F(OpenPane, StopsADragThatIsCancelled) {
  Look([](HWND dialog) {
    const RECT before = OpenPaneRect(dialog);
    const LONG y = (before.top + before.bottom) / 2;
    ::SendMessageW(OpenHook(dialog), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(before.left, y));
    ::SendMessageW(OpenHook(dialog), WM_CANCELMODE, 0, 0);
    ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(before.left - 50, y));
    EXPECT_EQ(before.left, OpenPaneRect(dialog).left);
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof(thread);
    ASSERT_TRUE(::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &thread));
    EXPECT_EQ(nullptr, thread.hwndCapture);
  });
}

TEST_F(OpenPane, ShowsTheSplitterCursorOverTheSplitter) {
  Look([](HWND dialog) {
    const HWND hook = OpenHook(dialog);
    const RECT pane = OpenPaneRect(dialog);
    const HCURSOR splitter = ::LoadCursorW(::GetModuleHandleW(L"zvfiledlg.dll"), MAKEINTRESOURCEW(kSplitterCursor));
    ASSERT_NE(nullptr, splitter);
    // The pointer's own move tells the window under it as well, at a moment of the system's choice: the hook is asked until
    // its answer stands.
    const auto expectAt = [&](LONG x, bool isSplitter) {
      POINT point = {x, (pane.top + pane.bottom) / 2};
      ::ClientToScreen(dialog, &point);
      ::SetCursorPos(point.x, point.y);
      WaitUntil(
          [=] {
            ::SendMessageW(hook, WM_SETCURSOR, reinterpret_cast<WPARAM>(hook), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
            CURSORINFO info = {};
            info.cbSize = sizeof(info);
            return ::GetCursorInfo(&info) && (info.hCursor == splitter) == isSplitter;
          },
          isSplitter ? "the splitter cursor" : "another cursor");
    };
    expectAt(pane.right - 20, false);
    expectAt(pane.left + 2, true);
    expectAt(pane.left - 4, true);
    expectAt(pane.left - 20, false);
    Toggle(dialog);
    expectAt(pane.left + 2, false);
    expectAt(pane.left - 4, false);
    Toggle(dialog);
    expectAt(pane.left + 2, true);
  });
}

TEST_F(OpenPane, LeavesTheListFiftyPixelsInTheNarrowestDialog) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Look([](HWND dialog) {
    RECT frame, view;
    ::GetWindowRect(dialog, &frame);
    ::GetWindowRect(OpenShellView(dialog), &view);
    MINMAXINFO info = {};
    ::SendMessageW(dialog, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_GE(info.ptMinTrackSize.x, (frame.right - frame.left) - (view.right - view.left) + 50);
    ::SetWindowPos(dialog, nullptr, 0, 0, 200, frame.bottom - frame.top, SWP_NOMOVE | SWP_NOZORDER);
    ::GetWindowRect(OpenShellView(dialog), &view);
    EXPECT_GE(view.right - view.left, 50);
  });
}

TEST_F(OpenPane, IsPaintedAgainAfterPaletteChangesAndActivation) {
  Look([](HWND dialog) {
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    const HWND pane = Control(dialog, kOpenPane);
    for (const HWND window : {pane, dialog}) {
      ::SendMessageW(dialog, WM_PALETTECHANGED, reinterpret_cast<WPARAM>(window), 0);
    }
    ::SendMessageW(dialog, WM_ACTIVATE, WA_INACTIVE, 0);
    ::SendMessageW(dialog, WM_ACTIVATE, WA_CLICKACTIVE, 0);
    const HDC device = ::GetDC(pane);
    ::PatBlt(device, 0, 0, 1000, 1000, BLACKNESS);
    ::ReleaseDC(pane, device);
    ::InvalidateRect(OpenHook(dialog), nullptr, FALSE);
    WaitForColor(dialog, kRed);
  });
}

}  // namespace
