#include "tests/support/dialog_layout.h"

#include <commctrl.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <optional>
#include <sstream>
#include <vector>

#include "tests/support/dialog_driver.h"

namespace zvtest {

namespace {

struct Child {
  HWND window;
  int id;
  std::wstring kind;  // window class
  LONG style;
  RECT place;  // in the dialog's client area

  bool IsButton() const { return kind == L"Button"; }
  LONG ButtonType() const { return IsButton() ? style & BS_TYPEMASK : -1; }
  bool IsGroupBox() const { return ButtonType() == BS_GROUPBOX; }
  bool IsPushButton() const { return ButtonType() == BS_PUSHBUTTON || ButtonType() == BS_DEFPUSHBUTTON; }
  bool IsRadio() const { return ButtonType() == BS_AUTORADIOBUTTON || ButtonType() == BS_RADIOBUTTON; }
  bool IsStatic() const { return kind == L"Static"; }
  LONG StaticType() const { return style & SS_TYPEMASK; }
  bool TakesFocus() const { return (style & WS_TABSTOP) != 0 && !IsGroupBox(); }
};

// In tab order.
std::vector<Child> VisibleChildren(HWND dialog) {
  std::vector<Child> children;
  for (HWND window = ::GetWindow(dialog, GW_CHILD); window; window = ::GetWindow(window, GW_HWNDNEXT)) {
    const LONG style = ::GetWindowLongW(window, GWL_STYLE);
    if (!(style & WS_VISIBLE)) {
      continue;
    }
    wchar_t kind[64] = L"";
    ::GetClassNameW(window, kind, 64);
    RECT place;
    ::GetWindowRect(window, &place);
    ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    children.push_back({window, ::GetDlgCtrlID(window), kind, style, place});
  }
  return children;
}

LONG Width(const RECT& rect) { return rect.right - rect.left; }
LONG Height(const RECT& rect) { return rect.bottom - rect.top; }

bool IsInside(const RECT& inner, const RECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}
bool Touches(const RECT& a, const RECT& b) {
  RECT common;
  return ::IntersectRect(&common, &a, &b);
}

std::string Utf8(const std::wstring& text) {
  std::string narrow(text.size() * 3, '\0');
  narrow.resize(
      static_cast<size_t>(::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), narrow.data(),
                                                static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}
std::string Name(const Child& child) { return std::to_string(child.id) + " \"" + Utf8(TextOf(child.window)) + "\""; }

// --- Texts ---

constexpr LONG kAnyLength = 30000;

// The size of a text in the font of that window. Zero width means a line of any length.
SIZE TextSize(HWND window, const std::wstring& text, UINT format, LONG width = kAnyLength) {
  const HDC device = ::GetDC(window);
  const HGDIOBJ former = ::SelectObject(device, reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0)));
  RECT area = {0, 0, width, 0};
  ::DrawTextW(device, text.c_str(), -1, &area, DT_CALCRECT | format);
  ::SelectObject(device, former);
  ::ReleaseDC(window, device);
  return {area.right, area.bottom};
}

// What a button of that type needs beside its text, in pixels at 96 dpi.
LONG ButtonRoom(const Child& button) {
  constexpr LONG kFrame = 8, kGapBehindBox = 4, kGroupEnds = 16;
  if (button.IsPushButton()) {
    return kFrame;
  }
  return button.IsGroupBox() ? kGroupEnds : ::GetSystemMetrics(SM_CXMENUCHECK) + kGapBehindBox;
}

bool ButtonHoldsItsText(const Child& button) {
  if (button.ButtonType() == BS_OWNERDRAW) {
    return true;  // a picture; its text is for screen readers
  }
  const bool wraps = button.style & BS_MULTILINE;
  const LONG room = Width(button.place) - ButtonRoom(button);
  const SIZE size =
      TextSize(button.window, TextOf(button.window), wraps ? DT_WORDBREAK : DT_SINGLELINE, wraps ? room : kAnyLength);
  return size.cx <= room && (button.IsGroupBox() || size.cy <= Height(button.place));
}

bool StaticHoldsItsText(const Child& label) {
  const LONG type = label.StaticType();
  const bool isText = type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT || type == SS_LEFTNOWORDWRAP;
  const std::wstring text = TextOf(label.window);
  if (!isText || text.empty() || (label.style & SS_ELLIPSISMASK)) {
    return true;
  }
  const UINT prefix = label.style & SS_NOPREFIX ? DT_NOPREFIX : 0u;
  const bool wraps = type != SS_LEFTNOWORDWRAP;
  const SIZE size = TextSize(label.window, text, prefix | (wraps ? DT_WORDBREAK : DT_SINGLELINE),
                             wraps ? Width(label.place) : kAnyLength);
  return size.cx <= Width(label.place) && size.cy <= Height(label.place);
}

// The first item that the closed box cuts off.
std::optional<std::wstring> ItemTooLong(const Child& combo) {
  constexpr LONG kFrame = 8;
  const LONG room = Width(combo.place) - ::GetSystemMetrics(SM_CXVSCROLL) - kFrame;
  const auto count = static_cast<int>(::SendMessageW(combo.window, CB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    std::wstring text(static_cast<size_t>(::SendMessageW(combo.window, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0)) + 1,
                      L'\0');
    ::SendMessageW(combo.window, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    if (TextSize(combo.window, text, DT_SINGLELINE | DT_NOPREFIX).cx > room) {
      return text;
    }
  }
  return std::nullopt;
}

// The first column whose title is cut off.
std::optional<std::wstring> TitleTooLong(const Child& list) {
  constexpr LONG kHeaderMargins = 12;
  if ((list.style & LVS_TYPEMASK) != LVS_REPORT || (list.style & LVS_NOCOLUMNHEADER)) {
    return std::nullopt;
  }
  wchar_t title[256];
  LVCOLUMNW column = {};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.pszText = title;
  column.cchTextMax = 256;
  for (int i = 0;
       ::SendMessageW(list.window, LVM_GETCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column)); ++i) {
    if (TextSize(list.window, column.pszText, DT_SINGLELINE | DT_NOPREFIX).cx + kHeaderMargins > column.cx) {
      return column.pszText;
    }
  }
  return std::nullopt;
}

std::string WindowTitleFault(HWND dialog) {
  if (::GetWindowLongW(dialog, GWL_STYLE) & WS_CHILD) {
    return "";
  }
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  const HFONT font = ::CreateFontIndirectW(&metrics.lfCaptionFont);
  const HDC device = ::GetDC(dialog);
  const HGDIOBJ former = ::SelectObject(device, font);
  const std::wstring title = TextOf(dialog);
  SIZE size = {};
  ::GetTextExtentPoint32W(device, title.c_str(), static_cast<int>(title.size()), &size);
  ::SelectObject(device, former);
  ::ReleaseDC(dialog, device);
  ::DeleteObject(font);
  RECT client;
  ::GetClientRect(dialog, &client);
  constexpr LONG kButtons = 2;  // question mark and close box
  return size.cx + kButtons * ::GetSystemMetrics(SM_CXSIZE) <= client.right ? "" : "the title is cut off\n";
}

}  // namespace

std::string TextFaults(HWND dialog) {
  std::ostringstream faults;
  faults << WindowTitleFault(dialog);
  for (const Child& child : VisibleChildren(dialog)) {
    if ((child.IsButton() && !ButtonHoldsItsText(child)) || (child.IsStatic() && !StaticHoldsItsText(child))) {
      faults << "no room for the text of " << Name(child) << '\n';
    } else if (child.kind == WC_COMBOBOXW) {
      if (const auto item = ItemTooLong(child)) {
        faults << "no room for the item \"" << Utf8(*item) << "\" of " << child.id << '\n';
      }
    } else if (child.kind == WC_LISTVIEWW) {
      if (const auto title = TitleTooLong(child)) {
        faults << "no room for the column title \"" << Utf8(*title) << "\" of " << child.id << '\n';
      }
    }
  }
  return faults.str();
}

// --- Places ---

std::string EdgeFaults(HWND dialog) {
  RECT client;
  ::GetClientRect(dialog, &client);
  std::ostringstream faults;
  for (const Child& child : VisibleChildren(dialog)) {
    if (!IsInside(child.place, client)) {
      faults << Name(child) << " stands outside the dialog\n";
    }
  }
  return faults.str();
}

// Group boxes may hold others, but not cut through them.
std::string OverlapFaults(HWND dialog) {
  const std::vector<Child> children = VisibleChildren(dialog);
  std::ostringstream faults;
  for (size_t i = 0; i < children.size(); ++i) {
    for (size_t k = i + 1; k < children.size(); ++k) {
      const Child &a = children[i], &b = children[k];
      const bool isHeld =
          (a.IsGroupBox() && IsInside(b.place, a.place)) || (b.IsGroupBox() && IsInside(a.place, b.place));
      if (!isHeld && Touches(a.place, b.place)) {
        faults << Name(a) << " and " << Name(b) << " overlap\n";
      }
    }
  }
  return faults.str();
}

// --- Keyboard ---

namespace {

// The letter behind "&", in upper case; 0 without one. "&&" is a plain ampersand.
wchar_t KeyOf(const std::wstring& text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == L'&' && text[++i] != L'&') {
      return static_cast<wchar_t>(std::towupper(text[i]));
    }
  }
  return L'\0';
}

bool ShowsKey(const Child& child) { return child.IsButton() || (child.IsStatic() && !(child.style & SS_NOPREFIX)); }

}  // namespace

std::string KeyFaults(HWND dialog) {
  const std::vector<Child> children = VisibleChildren(dialog);
  std::ostringstream faults;
  std::map<wchar_t, const Child*> owners;
  bool hasPushButton = false, hasDefault = false;
  for (size_t i = 0; i < children.size(); ++i) {
    const Child& child = children[i];
    hasPushButton = hasPushButton || child.IsPushButton();
    hasDefault = hasDefault || child.ButtonType() == BS_DEFPUSHBUTTON;
    const wchar_t key = ShowsKey(child) ? KeyOf(TextOf(child.window)) : L'\0';
    if (!key) {
      continue;
    }
    const auto [owner, isFirst] = owners.emplace(key, &child);
    if (!isFirst) {
      faults << Name(*owner->second) << " and " << Name(child) << " have the same key\n";
    }
    const bool leadsToControl = i + 1 < children.size() && !children[i + 1].IsStatic() && !children[i + 1].IsGroupBox();
    if (child.IsStatic() && !leadsToControl) {
      faults << "the key of " << Name(child) << " leads nowhere\n";
    }
  }
  const bool managerKnowsDefault = HIWORD(::SendMessageW(dialog, DM_GETDEFID, 0, 0)) == DC_HASDEFID;
  if (hasPushButton && !hasDefault && !managerKnowsDefault && !(::GetWindowLongW(dialog, GWL_STYLE) & WS_CHILD)) {
    faults << "no button is the default one\n";
  }
  return faults.str();
}

namespace {

// The smallest group box around a control; null outside all.
const Child* GroupOf(const Child& child, const std::vector<Child>& children) {
  const Child* group = nullptr;
  for (const Child& box : children) {
    if (box.IsGroupBox() && box.window != child.window && IsInside(child.place, box.place) &&
        (!group || IsInside(box.place, group->place))) {
      group = &box;
    }
  }
  return group;
}

bool IsSameRow(const RECT& a, const RECT& b) {
  const LONG middle = (b.top + b.bottom) / 2;
  return middle >= a.top && middle < a.bottom;
}

// Down, to the right in a row, or up into the next column.
bool IsInReadingOrder(const RECT& earlier, const RECT& later) {
  if (IsSameRow(earlier, later)) {
    return later.left >= earlier.left;
  }
  return later.top > earlier.top || later.left >= earlier.right;
}

}  // namespace

std::string TabOrderFaults(HWND dialog) {
  const std::vector<Child> children = VisibleChildren(dialog);
  std::ostringstream faults;
  std::map<HWND, const Child*> latest;  // by group box
  for (const Child& child : children) {
    if (!child.TakesFocus() && !child.IsRadio()) {
      continue;
    }
    const Child* const group = GroupOf(child, children);
    const Child*& earlier = latest[group ? group->window : nullptr];
    if (earlier && !IsInReadingOrder(earlier->place, child.place)) {
      faults << "the tab order leads from " << Name(*earlier) << " back to " << Name(child) << '\n';
    }
    earlier = &child;
  }
  return faults.str();
}

std::string LayoutFaults(HWND dialog) {
  return TextFaults(dialog) + EdgeFaults(dialog) + OverlapFaults(dialog) + KeyFaults(dialog) + TabOrderFaults(dialog);
}

}  // namespace zvtest
