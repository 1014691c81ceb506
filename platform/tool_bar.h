// CToolBar: a bar of command buttons, and CReBar, in which the bars of a frame dock. Buttons follow their commands'
// update handlers at idle time; their tips are the second lines of the commands' string resources.
#pragma once

#include "platform/control_bar.h"
#include "platform/tool_bar_ctrl.h"

inline constexpr UINT TBBS_BUTTON = MAKELONG(TBSTYLE_BUTTON, 0);
inline constexpr UINT TBBS_SEPARATOR = MAKELONG(TBSTYLE_SEP, 0);
inline constexpr UINT TBBS_CHECKBOX = MAKELONG(TBSTYLE_CHECK, 0);
inline constexpr UINT TBBS_GROUP = MAKELONG(TBSTYLE_GROUP, 0);
inline constexpr UINT TBBS_CHECKGROUP = TBBS_GROUP | TBBS_CHECKBOX;
inline constexpr UINT ID_SEPARATOR = 0;

class CToolBar : public CControlBar {
  DECLARE_DYNAMIC(CToolBar)

 public:
  BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_TOOLBAR) {
    return CreateEx(parent, TBSTYLE_FLAT, style, id);
  }
  BOOL CreateEx(CWnd* parent, DWORD controlStyle, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP,
                UINT id = AFX_IDW_TOOLBAR);

  // Button and picture sizes in pixels.
  void SetSizes(SIZE button, SIZE image);
  // Pictures side by side in a bitmap resource; light grey (192, 192, 192) is transparent.
  BOOL LoadBitmap(UINT id);
  // One button an id, with pictures in order; ID_SEPARATOR makes a gap.
  BOOL SetButtons(const UINT* ids, int count);
  // A TOOLBAR resource (type 241) with the bitmap resource of the same id.
  BOOL LoadToolBar(UINT id);
  void SetButtonStyle(int index, UINT style);
  UINT GetItemID(int index) const;
  int CommandToIndex(UINT id) const { return static_cast<int>(SendMessage(TB_COMMANDTOINDEX, id)); }
  // The same window, as the control.
  CToolBarCtrl& GetToolBarCtrl() const;

  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
  void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;

 protected:
  DECLARE_MESSAGE_MAP()

 private:
  CSize imageSize_{16, 15};
  CImageList images_;
};

class CReBar : public CControlBar {
  DECLARE_DYNAMIC(CReBar)

 public:
  BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_REBAR);
  // Takes the bar in as a band at the end; on a row of its own with `newRow`.
  BOOL AddBar(CControlBar* bar, LPCTSTR text = nullptr, bool newRow = false);
  // False when the bar is not in here.
  bool ShowBar(CControlBar* bar, bool show);

  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;

 protected:
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

 private:
  int BandOf(const CControlBar* bar) const;
};
