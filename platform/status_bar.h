// CStatusBar: the panes at the bottom of a frame. Pane 0 shows the prompts of commands.
#pragma once

#include <vector>

#include "platform/control_bar.h"

inline constexpr UINT SBPS_NORMAL = 0x0000;
inline constexpr UINT SBPS_NOBORDERS = 0x0100;
inline constexpr UINT SBPS_POPOUT = 0x0200;
inline constexpr UINT SBPS_OWNERDRAW = 0x1000;
inline constexpr UINT SBPS_DISABLED = 0x04000000;
inline constexpr UINT SBPS_STRETCH = 0x08000000;

class CStatusBar : public CControlBar {
  DECLARE_DYNAMIC(CStatusBar)

 public:
  BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM, UINT id = AFX_IDW_STATUS_BAR);

  // One pane an id; each shows the string resource of its id and is as wide as that. Id 0 is an empty, stretching pane
  // when it comes first.
  BOOL SetIndicators(const UINT* ids, int count);
  int GetPaneCount() const { return static_cast<int>(panes_.size()); }
  // Width in pixels, without borders. A disabled pane keeps its text but does not show it.
  void SetPaneInfo(int index, UINT id, UINT style, int width);
  UINT GetPaneStyle(int index) const { return panes_.at(static_cast<size_t>(index)).style; }
  void SetPaneStyle(int index, UINT style);
  BOOL SetPaneText(int index, LPCTSTR text, BOOL update = TRUE);
  CString GetPaneText(int index) const;
  void GetItemRect(int index, LPRECT rect) const;

  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;

 protected:
  afx_msg void OnSize(UINT type, int cx, int cy);
  DECLARE_MESSAGE_MAP()

 private:
  struct Pane {
    UINT id = 0;
    UINT style = SBPS_NORMAL;
    int width = 0;
    CString text;
  };

  void LayOutPanes();
  void ShowPane(int index);

  std::vector<Pane> panes_;
};
