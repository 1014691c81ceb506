// SliderPopup: the slider that drops down from a value combo. It is a window of its own that never takes the focus;
// while it is open it holds the mouse, so that a click elsewhere closes it. It reports to its owner through three
// functions and is gone, window included, once `closed` has been called.
#pragma once

#include <functional>

#include "platform/geometry.h"
#include "platform/unique_handle.h"
#include "services/zvdlgwidgets/value_range.h"

class SliderPopup {
 public:
  struct Owner {
    std::function<void(int value)> dragged;
    std::function<void()> released;  // the mouse button is up again
    std::function<void()> closed;
  };

  // Opens below (or above, where there is no room below) the anchor, given in screen coordinates, and looks like the
  // edit that it serves.
  SliderPopup(HWND edit, const CRect& anchor, ValueRange range, int value, Owner owner);
  SliderPopup(const SliderPopup&) = delete;
  SliderPopup& operator=(const SliderPopup&) = delete;
  ~SliderPopup();

  HWND GetWindow() const { return window_; }
  void SetValue(int value);

 private:
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  CRect Track() const;
  void Drag(int x);
  void Paint();
  void DrawSlider(HDC device, const CRect& client) const;

  HWND edit_;
  HWND window_ = nullptr;
  ValueRange range_;
  int value_;
  Owner owner_;
  bool isDragging_ = false;
  bool isClosing_ = false;
};
