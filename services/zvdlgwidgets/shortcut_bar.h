// CZVShortcutBar: a bar of places: groups with a header each, one of them expanded to show its items as pictures with a
// text below. A click, or Enter and Space on the item that the arrow keys have reached, is reported to the parent in
// WM_NOTIFY as ZVSBN_ITEMCLICKED; a click on a header expands its group. The bar owns texts and order; image lists and
// fonts stay their owner's and must live as long as the bar.
#pragma once

#include <vector>

#include "platform/message_map.h"
#include "platform/wnd.h"
#include "services/zvdlgwidgets/shortcut_bar_layout.h"

// Bar style: no line around the bar.
#define ZVSBS_NOBORDER 0x20000u

// Code and record of the notification.
#define ZVSBN_ITEMCLICKED 1151u

struct NMSHORTCUTBAR {
  NMHDR hdr;
  int group;
  int item;
};

class CZVShortcutBar : public CWnd {
 public:
  BOOL Create(DWORD style, DWORD barStyle, const RECT& rectangle, CWnd* parent, UINT id);

  // Each gives the index of the new group or item; -1 for a group that does not exist.
  int AddGroup(LPCWSTR text);
  int AddItem(int group, int image, LPCWSTR text);
  int GetGroupCount() const { return static_cast<int>(groups_.size()); }
  int GetItemCount(int group) const;
  void SetItemText(int group, int item, LPCWSTR text);

  // Null goes back to no pictures.
  void SetImageList(HIMAGELIST images);
  // Of items and headers; null is the system's message font.
  void SetTextFont(HFONT items, HFONT headers);
  void SetColors(COLORREF background, COLORREF text);

  void ExpandGroup(int group);
  int GetExpandedGroup() const { return expandedGroup_; }
  // The item that the keys have reached; -1 none.
  int GetCurrentItem() const { return currentItem_; }

 protected:
  afx_msg void OnPaint();
  afx_msg BOOL OnEraseBkgnd(CDC* dc);
  afx_msg void OnSize(UINT type, int width, int height);
  afx_msg void OnMouseMove(UINT flags, CPoint point);
  afx_msg void OnMouseLeave();
  afx_msg void OnLButtonDown(UINT flags, CPoint point);
  afx_msg void OnLButtonUp(UINT flags, CPoint point);
  afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
  afx_msg void OnKeyDown(UINT key, UINT repeat, UINT flags);
  afx_msg UINT OnGetDlgCode();
  afx_msg void OnSetFocus(CWnd* previous);
  afx_msg void OnKillFocus(CWnd* next);

  DECLARE_MESSAGE_MAP()

 private:
  struct Item {
    int image;
    CString text;
  };
  struct Group {
    CString text;
    std::vector<Item> items;
  };

  const std::vector<Item>& ExpandedItems() const;
  ShortcutBarMetrics Metrics() const;
  ShortcutBarLayout Layout() const;
  int ItemAt(CPoint point) const;
  void MoveTo(int item);
  void Report(int item);
  void PaintBar(HDC device);
  void PaintHeader(HDC device, const CRect& rectangle, const Group& group) const;
  void PaintItem(HDC device, const CRect& rectangle, int index) const;

  std::vector<Group> groups_;
  int expandedGroup_ = -1;
  int currentItem_ = -1;
  int hotItem_ = -1;
  int pressedItem_ = -1;
  int scroll_ = 0;
  HIMAGELIST images_ = nullptr;
  HFONT itemFont_ = nullptr;
  HFONT headerFont_ = nullptr;
  COLORREF background_ = ::GetSysColor(COLOR_APPWORKSPACE);
  COLORREF textColor_ = ::GetSysColor(COLOR_WINDOW);
};
