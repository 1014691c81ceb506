// The bar of places on shells that bring none of the right kind, and the way to a folder.
#include <shlobj.h>

#include <utility>

#include "pickers/common_dialog.h"
#include "pickers/navigating_mark.h"
#include "pickers/open_dlg.h"
#include "platform/scope_exit.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr int kBarLeft = 5, kBarTop = 5, kBarRight = 93;  // pixels
constexpr int kImageSide = 32;                            // pixels
constexpr COLORREF kImageBackground = RGB(0x80, 0x80, 0x80);
constexpr int kFileInfoItem = 3;

// In the order of the bar's items, which is that of the pictures too.
struct Place {
  UINT text;
  int folder;
};
constexpr Place kPlaces[] = {{IDS_OPEN_PLACE_RECENT, CSIDL_RECENT},
                             {IDS_OPEN_PLACE_DOCUMENTS, CSIDL_PERSONAL},
                             {IDS_OPEN_PLACE_DESKTOP, CSIDL_DESKTOP}};

// The shell's own browser in the platform's dialog, which stays its owner. A dialog without one does not know the message.
IShellBrowser* BrowserOf(HWND outer) {
  constexpr UINT kGetShellBrowser = WM_USER + 7;
  return reinterpret_cast<IShellBrowser*>(::SendMessageW(outer, kGetShellBrowser, 0, 0));
}

}  // namespace

void CZVOpenDlg::CreatePlacesBar() {
  const CRect area(kBarLeft, kBarTop, kBarRight, ClientRect().bottom - kPlacesBelow);
  if (!places_.Create(WS_CHILD | WS_VISIBLE, ZVSBS_NOBORDER, area, this, IDC_OPEN_PLACES)) {
    return;
  }
  const HFONT font = GetDialogFont();
  placeGroup_ = places_.AddGroup(LoadDialogString(IDS_OPEN_PLACES));
  places_.SetTextFont(font, font);
  placeImages_.Create(IDB_OPEN_ART_PLACES, kImageSide, 0, kImageBackground);
  places_.SetImageList(placeImages_);
  for (const Place& place : kPlaces) {
    places_.AddItem(placeGroup_, places_.GetItemCount(placeGroup_), LoadDialogString(place.text));
  }
  if (fileInfoAvailable_) {
    places_.AddItem(placeGroup_, kFileInfoItem, LoadDialogString(IDS_OPEN_FILE_INFO));
  }
  places_.ExpandGroup(placeGroup_);
}

void CZVOpenDlg::OnPlaceChosen(NMHDR* header, LRESULT* result) {
  *result = 0;
  const int item = reinterpret_cast<const NMSHORTCUTBAR*>(header)->item;
  if (item == kFileInfoItem) {
    OnFileInfo();
  } else if (item >= 0 && item < static_cast<int>(ARRAYSIZE(kPlaces))) {
    GoToFolder(kPlaces[item].folder);
  }
}

void CZVOpenDlg::GoToFolder(int specialFolder) {
  PIDLIST_ABSOLUTE folder = nullptr;
  if (FAILED(::SHGetSpecialFolderLocation(m_hWnd, specialFolder, &folder))) {
    return;
  }
  const scope_exit release([=] { ::CoTaskMemFree(folder); });
  if (IShellBrowser* const browser = BrowserOf(Outer())) {
    browser->BrowseObject(folder, SBSP_DEFBROWSER | SBSP_ABSOLUTE);
    return;
  }
  wchar_t path[MAX_PATH] = L"";
  if (::SHGetPathFromIDListW(folder, path)) {
    TypeFolder(path);
  }
}

// The user's way to a folder: its path in the name box, and Enter.
void CZVOpenDlg::TypeFolder(LPCWSTR path) {
  const HWND box = FileNameBox(Outer());
  savedFileNameText_ = WindowText(box);
  ::SetWindowTextW(box, path);
  navigatingThroughNameBox = true;
  ::PostMessageW(box, WM_SETFOCUS, 0, 0);
  ::PostMessageW(box, WM_KEYDOWN, VK_RETURN, 0);
  ::PostMessageW(box, WM_KEYUP, VK_RETURN, 0);
}

void CZVOpenDlg::FinishNavigation() {
  if (navigatingThroughNameBox) {
    ::SetWindowTextW(FileNameBox(Outer()), savedFileNameText_);
    navigatingThroughNameBox = false;
    typedNameReturned_ = true;
  }
}

// Some shells empty the name box at the end of the step in which they tell of the new folder.
void CZVOpenDlg::KeepReturnedName() {
  if (std::exchange(typedNameReturned_, false)) {
    ::SetWindowTextW(FileNameBox(Outer()), savedFileNameText_);
  }
}
