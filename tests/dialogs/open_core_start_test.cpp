// How a run of the open dialog starts: the room for the names, the window that owns it, and where it stands.
#include <windows.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>

#include "tests/dialogs/open_core_fixture.h"

namespace {

using namespace zvtest;

// What the platform was asked for, in place of a dialog.
struct Request {
  OPENFILENAMEW record = {};
  size_t roomBytes = 0;
  std::wstring names;  // all characters of the room
};
Request request;
BOOL WINAPI TakeRequest(OPENFILENAMEW* record) {
  const size_t bytes = ::_msize(record->lpstrFile);
  request = {*record, bytes, std::wstring(record->lpstrFile, std::min<size_t>(record->nMaxFile, bytes / 2))};
  return FALSE;
}

class OpenStart : public OpenCore {
 protected:
  void AskPlatform() {
    const ImportPatch platform(L"zvfiledlg.dll", "GetOpenFileNameW", &TakeRequest);
    EXPECT_EQ(SUCCESS_DLG_CANCEL, Z_DlgOpen(call.parent, &call.openFileName, &call.params));
  }
  void ExpectRoomFor(uint32_t characters, const std::wstring& first) {
    EXPECT_EQ(characters, request.record.nMaxFile);
    EXPECT_GE(request.roomBytes, characters * sizeof(wchar_t));
    ASSERT_EQ(characters, request.names.size());
    EXPECT_STREQ(first.c_str(), request.names.c_str());
    EXPECT_EQ(std::wstring::npos, request.names.find_first_not_of(L'\0', first.size())) << "the rest is clear";
    EXPECT_EQ(characters, call.openFileName.nMaxFile);
  }
  // Calls `look` with the rectangle of the dialog on the screen.
  void LookAtPlace(const std::function<void(const RECT& frame)>& look) {
    Open([&](HWND dialog) {
      RECT frame;
      ::GetWindowRect(dialog, &frame);
      look(frame);
      Cancel(dialog);
    });
  }
};

// --- Room for the names ---

TEST_F(OpenStart, GivesNamesRoomOf26000CharactersWhereTheCallersIsBelow260) {
  std::wstring name(259, L'\0');
  name.replace(0, 9, L"first.bmp");
  call.openFileName.lpstrFile = name.data();
  for (const DWORD small : {100, 259}) {
    call.openFileName.nMaxFile = small;
    AskPlatform();
    ExpectRoomFor(26'000, L"first.bmp");
    EXPECT_NE(name.data(), request.record.lpstrFile) << "a room of the dialog's own";
  }
}

TEST_F(OpenStart, GivesNamesTheRoomThatTheCallerHasFrom260On) {
  std::wstring name(40'000, L'\0');
  name.replace(0, 10, L"second.bmp");
  call.openFileName.lpstrFile = name.data();
  for (const DWORD large : {260, 40'000}) {
    call.openFileName.nMaxFile = large;
    AskPlatform();
    ExpectRoomFor(large, L"second.bmp");
  }
}

TEST_F(OpenStart, GivesNamesAClearRoomWithoutAFirstName) {
  AskPlatform();
  ExpectRoomFor(26'000, L"");
}

constexpr size_t kManyCharacters = 5'000'000;
void* __cdecl RefuseLargeBlocks(size_t size) { return size > kManyCharacters ? nullptr : std::malloc(size); }

TEST_F(OpenStart, SaysWhenThereIsNoMemoryForTheNames) {
  SetLoadDpi(123, 321);
  int marker = 0;
  SetStatusCallback([](int32_t, void*) -> int32_t { return SUCCESS; }, &marker, nullptr, nullptr);
  call.openFileName.nMaxFile = kManyCharacters;
  {
    const ImportPatch memory(L"zvfiledlg.dll", "malloc", &RefuseLargeBlocks);
    EXPECT_EQ(ERROR_OUT_OF_MEMORY, Z_DlgOpen(parent.hwnd(), &call.openFileName, &call.params));
  }
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(123, x);
  EXPECT_EQ(321, y);
  void* userData = nullptr;
  SetStatusCallback(nullptr, nullptr, nullptr, &userData);
  EXPECT_EQ(&marker, userData);
}

// --- Owner ---

TEST_F(OpenStart, HasNoOwnerWithoutAParentAndLeavesTheActiveWindowEnabled) {
  ::SetActiveWindow(parent.hwnd());
  ASSERT_EQ(parent.hwnd(), ::GetActiveWindow());
  call.parent = nullptr;
  AskPlatform();
  EXPECT_EQ(nullptr, request.record.hwndOwner);
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open([this](HWND dialog) {
              EXPECT_EQ(nullptr, ::GetWindow(dialog, GW_OWNER));
              EXPECT_TRUE(::IsWindowEnabled(parent.hwnd()));
              Cancel(dialog);
            }));
}

TEST_F(OpenStart, IsOwnedByItsParentAndDisablesItMeanwhile) {
  AskPlatform();
  EXPECT_EQ(parent.hwnd(), request.record.hwndOwner);
  Open([this](HWND dialog) {
    EXPECT_EQ(parent.hwnd(), ::GetWindow(dialog, GW_OWNER));
    EXPECT_FALSE(::IsWindowEnabled(parent.hwnd()));
    Cancel(dialog);
  });
  EXPECT_TRUE(::IsWindowEnabled(parent.hwnd()));
}

// --- Place ---

TEST_F(OpenStart, StandsInTheMiddleOfTheScreenWithoutAnOwner) {
  call.params.position = {3, 4};
  call.parent = nullptr;
  LookAtPlace([](const RECT& frame) {
    RECT screen;
    ::GetWindowRect(::GetDesktopWindow(), &screen);
    EXPECT_NEAR(screen.right, frame.left + frame.right, 1);
    EXPECT_NEAR(screen.bottom, frame.top + frame.bottom, 1);
  });
}

TEST_F(OpenStart, StandsAtTheCallersPointOverAnOwner) {
  call.params.position = {33, 44};
  LookAtPlace([](const RECT& frame) {
    EXPECT_EQ(33, frame.left);
    EXPECT_EQ(44, frame.top);
  });
}

// As on a screen left of and above the main one.
int32_t PlaceBeforeTheMainScreen(HWND window, POINT) {
  ::SetWindowPos(window, nullptr, -60, -40, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return SUCCESS;
}

TEST_F(OpenStart, StandsNeverLeftOfOrAboveTheMainScreen) {
  const ImportPatch kernel(L"zvfiledlg.dll", "PositionDialogWindow", &PlaceBeforeTheMainScreen);
  LookAtPlace([](const RECT& frame) {
    EXPECT_EQ(0, frame.left);
    EXPECT_EQ(0, frame.top);
  });
}

}  // namespace
