#include "platform/tool_bar.h"

#include <vector>

#include "platform/frame_wnd.h"
#include "platform/module_context.h"
#include "platform/thread_state.h"

IMPLEMENT_DYNAMIC(CToolBar, CControlBar)
IMPLEMENT_DYNAMIC(CReBar, CControlBar)

BEGIN_MESSAGE_MAP(CToolBar, CControlBar)
END_MESSAGE_MAP()

namespace {

constexpr COLORREF kTransparent = RGB(192, 192, 192);
constexpr WORD kToolBarResource = 241;

// The record behind a TOOLBAR resource.
struct ToolBarResource {
  WORD version;
  WORD width;
  WORD height;
  WORD count;
  WORD ids[1];
};

// Applies an update to one button of a tool bar.
class ButtonUpdate : public CCmdUI {
 public:
  explicit ButtonUpdate(CToolBarCtrl& bar) : bar_(bar) {}
  void Enable(BOOL enable) override {
    m_bEnableChanged = TRUE;
    m_bEnabled = enable;
    bar_.EnableButton(static_cast<int>(m_nID), enable);
  }
  void SetCheck(int check) override { bar_.CheckButton(static_cast<int>(m_nID), check != 0); }
  void SetText(LPCWSTR) override {}

 private:
  CToolBarCtrl& bar_;
};

}  // namespace

BOOL CToolBar::CreateEx(CWnd* parent, DWORD controlStyle, DWORD style, UINT id) {
  m_dwStyle = style & 0xFFFF;
  const DWORD tips = m_dwStyle & CBRS_TOOLTIPS ? TBSTYLE_TOOLTIPS : 0;
  const DWORD windowStyle =
      (style & 0xFFFF0000) | controlStyle | tips | CCS_NOPARENTALIGN | CCS_NORESIZE | CCS_NODIVIDER | CCS_NOMOVEY;
  if (!CWnd::Create(TOOLBARCLASSNAMEW, nullptr, windowStyle, CRect(0, 0, 0, 0), parent, id)) {
    return FALSE;
  }
  SendMessage(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
  return TRUE;
}

CToolBarCtrl& CToolBar::GetToolBarCtrl() const {
  return *ThreadState::Get().Temporary<CToolBarCtrl>(m_hWnd,
                                                     [](CToolBarCtrl& bar, HWND handle) { bar.m_hWnd = handle; });
}

void CToolBar::SetSizes(SIZE button, SIZE image) {
  imageSize_ = image;
  SendMessage(TB_SETBITMAPSIZE, 0, MAKELONG(image.cx, image.cy));
  SendMessage(TB_SETBUTTONSIZE, 0, MAKELONG(button.cx, button.cy));
}

BOOL CToolBar::LoadBitmap(UINT id) {
  images_.DeleteImageList();
  if (!images_.Create(id, imageSize_.cx, 1, kTransparent)) {
    return FALSE;
  }
  SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images_.GetSafeHandle()));
  return TRUE;
}

BOOL CToolBar::SetButtons(const UINT* ids, int count) {
  while (SendMessage(TB_BUTTONCOUNT)) {
    SendMessage(TB_DELETEBUTTON, 0);
  }
  std::vector<TBBUTTON> buttons;
  int image = 0;
  for (int i = 0; i < count; ++i) {
    TBBUTTON button = {};
    button.idCommand = static_cast<int>(ids[i]);
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = ids[i] == ID_SEPARATOR ? BTNS_SEP : BTNS_BUTTON;
    button.iBitmap = ids[i] == ID_SEPARATOR ? 0 : image++;
    button.iString = -1;
    buttons.push_back(button);
  }
  return static_cast<BOOL>(SendMessage(TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data())));
}

BOOL CToolBar::LoadToolBar(UINT id) {
  const HINSTANCE module = AfxGetResourceHandle();
  const HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(kToolBarResource));
  const HGLOBAL loaded = found ? ::LoadResource(module, found) : nullptr;
  const auto* const resource = loaded ? static_cast<const ToolBarResource*>(::LockResource(loaded)) : nullptr;
  if (!resource) {
    return FALSE;
  }
  constexpr int kButtonMargin = 7;
  constexpr int kButtonMarginBelow = 7;
  SetSizes(CSize(resource->width + kButtonMargin, resource->height + kButtonMarginBelow),
           CSize(resource->width, resource->height));
  const std::vector<UINT> ids(resource->ids, resource->ids + resource->count);
  return LoadBitmap(id) && SetButtons(ids.data(), resource->count);
}

void CToolBar::SetButtonStyle(int index, UINT style) {
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof(info);
  info.dwMask = TBIF_STYLE | TBIF_BYINDEX;
  info.fsStyle = static_cast<BYTE>(LOWORD(style));
  SendMessage(TB_SETBUTTONINFOW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&info));
}

UINT CToolBar::GetItemID(int index) const {
  TBBUTTON button = {};
  SendMessage(TB_GETBUTTON, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
  return static_cast<UINT>(button.idCommand);
}

CSize CToolBar::CalcFixedLayout(BOOL /*stretch*/, BOOL /*horizontal*/) {
  CSize size;
  SendMessage(TB_GETMAXSIZE, 0, reinterpret_cast<LPARAM>(static_cast<SIZE*>(&size)));
  return size;
}

void CToolBar::OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) {
  ButtonUpdate update(GetToolBarCtrl());
  update.m_nIndexMax = static_cast<UINT>(SendMessage(TB_BUTTONCOUNT));
  for (update.m_nIndex = 0; update.m_nIndex < update.m_nIndexMax; ++update.m_nIndex) {
    update.m_nID = GetItemID(static_cast<int>(update.m_nIndex));
    update.DoUpdate(target, disableIfNoHandler);
  }
}

BOOL CReBar::Create(CWnd* parent, DWORD style, UINT id) {
  m_dwStyle = style & 0xFFFF;
  return CWnd::Create(REBARCLASSNAMEW, nullptr,
                      (style & 0xFFFF0000) | RBS_VARHEIGHT | RBS_BANDBORDERS | CCS_NODIVIDER | CCS_NOPARENTALIGN |
                          WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                      CRect(0, 0, 0, 0), parent, id);
}

BOOL CReBar::AddBar(CControlBar* bar, LPCTSTR text, bool newRow) {
  const CSize size = bar->CalcFixedLayout(FALSE, TRUE);
  REBARBANDINFOW band = {};
  band.cbSize = sizeof(band);
  band.fMask = RBBIM_STYLE | RBBIM_CHILD | RBBIM_CHILDSIZE | RBBIM_SIZE | RBBIM_IDEALSIZE;
  band.fStyle = RBBS_GRIPPERALWAYS | (newRow ? RBBS_BREAK : 0u);
  band.hwndChild = bar->m_hWnd;
  band.cxMinChild = static_cast<UINT>(size.cx);
  band.cyMinChild = static_cast<UINT>(size.cy);
  band.cx = static_cast<UINT>(size.cx);
  band.cxIdeal = static_cast<UINT>(size.cx);
  if (text) {
    band.fMask |= RBBIM_TEXT;
    band.lpText = const_cast<LPWSTR>(text);
  }
  return static_cast<BOOL>(SendMessage(RB_INSERTBANDW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&band)));
}

int CReBar::BandOf(const CControlBar* bar) const {
  const int count = static_cast<int>(SendMessage(RB_GETBANDCOUNT));
  for (int i = 0; i < count; ++i) {
    REBARBANDINFOW band = {};
    band.cbSize = sizeof(band);
    band.fMask = RBBIM_CHILD;
    SendMessage(RB_GETBANDINFOW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&band));
    if (band.hwndChild == bar->m_hWnd) {
      return i;
    }
  }
  return -1;
}

bool CReBar::ShowBar(CControlBar* bar, bool show) {
  const int band = BandOf(bar);
  if (band >= 0) {
    SendMessage(RB_SHOWBAND, static_cast<WPARAM>(band), show);
  }
  return band >= 0;
}

CSize CReBar::CalcFixedLayout(BOOL /*stretch*/, BOOL /*horizontal*/) {
  return CSize(0, static_cast<int>(SendMessage(RB_GETBARHEIGHT)));
}

// The user moved a band and the bar became higher or lower.
BOOL CReBar::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(RBN_HEIGHTCHANGE)) {
    if (CFrameWnd* const frame = GetFrame()) {
      frame->RecalcLayout();
    }
    return TRUE;
  }
  return CControlBar::OnChildNotify(message, wParam, lParam, result);
}
