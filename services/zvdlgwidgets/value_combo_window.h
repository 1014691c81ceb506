// ValueComboWindow: the window behind the class "ZVValueComboClass": an edit box with an arrow beside it. One object
// belongs to one window, from its first message to its last.
#pragma once

#include <memory>

#include "platform/geometry.h"
#include "platform/win32.h"
#include "services/zvdlgwidgets/slider_popup.h"
#include "services/zvdlgwidgets/value_range.h"

class ValueComboWindow {
 public:
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  ValueComboWindow(const ValueComboWindow&) = delete;
  ValueComboWindow& operator=(const ValueComboWindow&) = delete;

 private:
  explicit ValueComboWindow(HWND window) : window_(window) {}

  static LRESULT CALLBACK EditProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR combo);

  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT HandleOwnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT HandleEditMessage(UINT message, WPARAM wParam, LPARAM lParam);
  bool HandleKey(WPARAM key, bool isAltDown);
  bool HandleCharacter(wchar_t character) const;

  void CreateEdit();
  void Layout();
  void Paint();
  CRect ButtonArea() const;

  // What the text says, brought into the range; the last good value when it says nothing.
  int CurrentValue() const;
  void ShowValue(int value);
  void OnTextChanged();
  void ChangeBy(int64_t difference);
  void ChangeTo(int value);
  void CommitText();
  void Notify() const;

  void OpenSlider();
  void CloseSlider(bool keepValue);

  HWND window_;
  HWND edit_ = nullptr;
  ValueRange range_{0, 100};
  int value_ = 0;
  UINT flags_ = 0;
  bool isShowingValue_ = false;
  bool hasFocus_ = false;
  int valueBeforeSlider_ = 0;
  bool hasUnreportedDrag_ = false;
  int wheelRest_ = 0;
  std::unique_ptr<SliderPopup> slider_;
};
