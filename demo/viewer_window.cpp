#include "demo/viewer_window.h"

#include <commctrl.h>

#include <algorithm>

#include "demo/demo_ids.h"
#include "demo/dialog_calls.h"
#include "services/zvdisplay/zvdisplay.h"

namespace {
constexpr wchar_t kWindowClass[] = L"ZVDemoViewer";
constexpr wchar_t kTitle[] = L"Zorvane Image Viewer";
constexpr int kLineStep = 32;  // pixels a scroll arrow or a wheel notch line moves
}  // namespace

bool ViewerWindow::Create(int showCommand) {
  WNDCLASSEXW type{};
  type.cbSize = sizeof type;
  type.style = CS_HREDRAW | CS_VREDRAW;
  type.lpfnWndProc = WindowProcedure;
  type.hInstance = instance_;
  type.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  type.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  type.lpszMenuName = MAKEINTRESOURCEW(IDR_MENU);
  type.lpszClassName = kWindowClass;
  if (!RegisterClassExW(&type)) return false;

  CreateWindowExW(WS_EX_ACCEPTFILES, kWindowClass, kTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                  CW_USEDEFAULT, 960, 720, nullptr, nullptr, instance_, this);
  if (!window_) return false;
  status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, window_,
                            nullptr, instance_, nullptr);
  ShowWindow(window_, showCommand);
  UpdateTexts();
  return true;
}

void ViewerWindow::Show(const std::wstring& path, int page) {
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  const int32_t result = picture_.Load(path, page);
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  if (result != SUCCESS) {
    const std::wstring text = L"The file cannot be shown (code " + std::to_wstring(result) + L").\n\n" + path;
    MessageBoxW(window_, text.c_str(), kTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  scroll_ = {0, 0};
  UpdateTexts();
  UpdateScrollBars();
  InvalidateRect(window_, nullptr, FALSE);
}

LRESULT CALLBACK ViewerWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<ViewerWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<ViewerWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self ? self->Handle(message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT ViewerWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE: OnSize(); return 0;
    case WM_PAINT: OnPaint(); return 0;
    case WM_ERASEBKGND: return 1;  // the paint step fills what the picture does not cover
    case WM_DROPFILES: OnDropFiles(reinterpret_cast<HDROP>(wParam)); return 0;
    case WM_INITMENUPOPUP: OnInitMenu(GetMenu(window_)); return 0;
    case WM_COMMAND: OnCommand(LOWORD(wParam)); return 0;
    case WM_HSCROLL: OnScroll(SB_HORZ, LOWORD(wParam)); return 0;
    case WM_VSCROLL: OnScroll(SB_VERT, LOWORD(wParam)); return 0;
    case WM_MOUSEWHEEL: OnMouseWheel(GET_WHEEL_DELTA_WPARAM(wParam)); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcW(window_, message, wParam, lParam);
  }
}

void ViewerWindow::OnSize() {
  SendMessageW(status_, WM_SIZE, 0, 0);
  UpdateScrollBars();
}

RECT ViewerWindow::ViewArea() const {
  RECT area, bar{};
  GetClientRect(window_, &area);
  if (status_) GetWindowRect(status_, &bar);
  area.bottom = std::max(area.top, area.bottom - (bar.bottom - bar.top));
  return area;
}

RECT ViewerWindow::PictureArea() const {
  const RECT view = ViewArea();
  const SIZE size = picture_.Size();
  const int viewWidth = view.right, viewHeight = view.bottom;
  int width = size.cx, height = size.cy;
  if (fit_ && (width > viewWidth || height > viewHeight)) {
    const double scale = std::min(double(viewWidth) / width, double(viewHeight) / height);
    width = std::max(1, int(width * scale));
    height = std::max(1, int(height * scale));
  }
  const int left = width < viewWidth ? (viewWidth - width) / 2 : -scroll_.x;
  const int top = height < viewHeight ? (viewHeight - height) / 2 : -scroll_.y;
  return {left, top, left + width, top + height};
}

void ViewerWindow::OnPaint() {
  PAINTSTRUCT paint;
  HDC device = BeginPaint(window_, &paint);
  const RECT view = ViewArea();
  const int saved = SaveDC(device);
  HBRUSH background = GetSysColorBrush(COLOR_APPWORKSPACE);
  if (picture_.IsEmpty()) {
    FillRect(device, &view, background);
  } else {
    const RECT target = PictureArea();
    IntersectClipRect(device, view.left, view.top, view.right, view.bottom);
    if (picture_.Bitmap()->flags & BITMAP_FLAG_ALPHA) FillRect(device, &target, GetSysColorBrush(COLOR_WINDOW));
    PaintBitmap(device, picture_.Bitmap(), nullptr, nullptr, &target, &view, SRCCOPY);
    ExcludeClipRect(device, target.left, target.top, target.right, target.bottom);
    FillRect(device, &view, background);
  }
  RestoreDC(device, saved);
  EndPaint(window_, &paint);
}

void ViewerWindow::OnDropFiles(HDROP drop) {
  const UINT length = DragQueryFileW(drop, 0, nullptr, 0);
  std::wstring path(length, L'\0');
  DragQueryFileW(drop, 0, path.data(), length + 1);
  DragFinish(drop);
  Show(path, 1);
}

void ViewerWindow::OnInitMenu(HMENU menu) {
  const auto enable = [menu](int id, bool on) { EnableMenuItem(menu, id, on ? MF_ENABLED : MF_GRAYED); };
  enable(ID_VIEW_NEXT_PAGE, picture_.Page() < picture_.PageCount());
  enable(ID_VIEW_PREVIOUS_PAGE, picture_.Page() > 1);
  CheckMenuRadioItem(menu, ID_VIEW_FIT, ID_VIEW_ACTUAL_SIZE, fit_ ? ID_VIEW_FIT : ID_VIEW_ACTUAL_SIZE, MF_BYCOMMAND);
}

void ViewerWindow::OnCommand(int id) {
  if (OnDialogCommand(id)) return;
  switch (id) {
    case ID_FILE_EXIT: DestroyWindow(window_); break;
    case ID_VIEW_NEXT_PAGE: TurnPage(1); break;
    case ID_VIEW_PREVIOUS_PAGE: TurnPage(-1); break;
    case ID_VIEW_FIT:
    case ID_VIEW_ACTUAL_SIZE: SetFit(id == ID_VIEW_FIT); break;
    case ID_HELP_ABOUT:
      MessageBoxW(window_, L"A small image viewer that calls every entry of the Zorvane file dialogs.", kTitle,
                  MB_OK | MB_ICONINFORMATION);
      break;
    default: break;
  }
}

bool ViewerWindow::OnDialogCommand(int id) {
  const DialogCall* call = FindDialogCall(id);
  if (!call) return false;
  std::wstring chosen;
  const int32_t result = call->run(window_, picture_, chosen);
  ReportResult(call->entry, result);
  if (!chosen.empty()) Show(chosen, 1);
  return true;
}

void ViewerWindow::TurnPage(int step) {
  const int page = picture_.Page() + step;
  if (page >= 1 && page <= picture_.PageCount()) Show(std::wstring(picture_.Path()), page);
}

void ViewerWindow::SetFit(bool fit) {
  fit_ = fit;
  scroll_ = {0, 0};
  UpdateScrollBars();
  InvalidateRect(window_, nullptr, FALSE);
}

void ViewerWindow::UpdateScrollBars() {
  const RECT view = ViewArea();
  const SIZE size = fit_ ? SIZE{0, 0} : picture_.Size();
  const auto set = [this](int bar, int content, int page, LONG& position) {
    position = std::clamp<LONG>(position, 0, std::max(0, content - page));
    SCROLLINFO info{
        sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 0, std::max(0, content - 1), UINT(page), int(position), 0};
    SetScrollInfo(window_, bar, &info, TRUE);
  };
  set(SB_HORZ, size.cx, view.right, scroll_.x);
  set(SB_VERT, size.cy, view.bottom, scroll_.y);
}

void ViewerWindow::OnScroll(int bar, int code) {
  SCROLLINFO info{sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(window_, bar, &info);
  LONG& position = bar == SB_HORZ ? scroll_.x : scroll_.y;
  switch (code) {
    case SB_LINEUP: position -= kLineStep; break;
    case SB_LINEDOWN: position += kLineStep; break;
    case SB_PAGEUP: position -= LONG(info.nPage); break;
    case SB_PAGEDOWN: position += LONG(info.nPage); break;
    case SB_THUMBTRACK: position = info.nTrackPos; break;
    default: return;
  }
  UpdateScrollBars();
  InvalidateRect(window_, nullptr, FALSE);
}

void ViewerWindow::OnMouseWheel(int delta) {
  if (fit_) return;
  scroll_.y -= delta * 3 * kLineStep / WHEEL_DELTA;
  UpdateScrollBars();
  InvalidateRect(window_, nullptr, FALSE);
}

void ViewerWindow::UpdateTexts() {
  const std::wstring description = picture_.Description();
  SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(description.c_str()));
  std::wstring title = kTitle;
  if (!picture_.IsEmpty()) title = picture_.Path() + L" - " + title;
  SetWindowTextW(window_, title.c_str());
}

void ViewerWindow::ReportResult(const wchar_t* entry, int32_t result) {
  const std::wstring text = std::wstring(entry) + L" returned " + std::to_wstring(result);
  SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text.c_str()));
}
