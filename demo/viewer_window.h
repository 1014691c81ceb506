// The viewer's one window: picture, menu and status line. Every entry of the library is called from its menus, through
// DialogCalls; what an entry returns is told in the status line.
#ifndef ZV_DEMO_VIEWER_WINDOW_H
#define ZV_DEMO_VIEWER_WINDOW_H

#include <windows.h>
#include <shellapi.h>

#include <string>

#include "demo/picture.h"

class ViewerWindow {
 public:
  explicit ViewerWindow(HINSTANCE instance) : instance_(instance) {}
  ViewerWindow(const ViewerWindow&) = delete;
  ViewerWindow& operator=(const ViewerWindow&) = delete;

  bool Create(int showCommand);
  HWND Handle() const { return window_; }
  // Shows a page of a file; a failure is told in a message box and the former picture stays.
  void Show(const std::wstring& path, int page);

 private:
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

  void OnSize();
  void OnPaint();
  void OnDropFiles(HDROP drop);
  void OnInitMenu(HMENU menu);
  void OnCommand(int id);
  bool OnDialogCommand(int id);
  void OnScroll(int bar, int code);
  void OnMouseWheel(int delta);

  void TurnPage(int step);
  void SetFit(bool fit);
  void UpdateScrollBars();
  void UpdateTexts();
  void ReportResult(const wchar_t* entry, int32_t result);
  RECT ViewArea() const;
  RECT PictureArea() const;

  HINSTANCE instance_;
  HWND window_ = nullptr;
  HWND status_ = nullptr;
  Picture picture_;
  bool fit_ = true;
  POINT scroll_{0, 0};
};

#endif
