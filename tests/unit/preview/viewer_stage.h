// A window with a pane, and a canvas to paint on, for tests of viewers.
#pragma once

#include <gtest/gtest.h>

#include "platform/dc.h"
#include "platform/wnd.h"
#include "preview/file_viewer.h"

// The pane is a visible window of the platform's own class.
class PaneHost final : public PreviewHost {
 public:
  PaneHost() {
    frame_ = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                               ::GetModuleHandleW(nullptr), nullptr);
    pane_.Attach(::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 40, 30, 120, 80, frame_, nullptr,
                                   ::GetModuleHandleW(nullptr), nullptr));
  }
  PaneHost(const PaneHost&) = delete;
  PaneHost& operator=(const PaneHost&) = delete;
  ~PaneHost() {
    ::DestroyWindow(pane_.Detach());
    ::DestroyWindow(frame_);
  }
  void DrawPreview(CDC&, const CRect&) override {}
  CWnd* PreviewPane() override { return isOpen ? &pane_ : nullptr; }

  bool isOpen = true;

  // Of the pane in its frame, which the display may still be putting into its place.
  CRect Place() {
    CRect place;
    pane_.GetWindowRect(place);
    ::MapWindowPoints(nullptr, frame_, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }

 private:
  HWND frame_;
  CWnd pane_;
};

// White, 24 bits.
class Canvas {
 public:
  Canvas(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(info.bmiHeader), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_ = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    device.Attach(::CreateCompatibleDC(nullptr));
    former_ = device.SelectObject(static_cast<HGDIOBJ>(bitmap_));
    const RECT all = {0, 0, width, height};
    ::FillRect(device, &all, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    device.SelectObject(former_);
    device.DeleteDC();
    ::DeleteObject(bitmap_);
  }
  COLORREF At(int x, int y) const { return ::GetPixel(device, x, y); }

  CDC device;

 private:
  HBITMAP bitmap_;
  HGDIOBJ former_;
};
