// CZVValueCombo: a box for a whole number within a range. The value may be typed, changed with the arrow keys or the
// wheel, or dragged in a slider that drops down from the arrow (a click, Alt+Down or F4; Esc puts the old value back).
// A value outside the range is brought to its nearer end; a typed one when it is finished, that is when focus leaves
// the box or Enter is pressed. Templates name the window class "ZVValueComboClass"; bind an object to the control with
// DDX_Control. The parent gets ZVN_VALUECHANGED in WM_COMMAND whenever the user changes the value.
#pragma once

#include "platform/wnd.h"
#include "services/zvdlgwidgets/notifications.h"
#include "services/zvdlgwidgets/window_classes.h"

// While the slider is dragged the parent hears nothing; it gets one notification at the end.
#define FLAGS_NOTRACKNOTIFY 0x1u

// Messages of the window class, for code without an object. wParam and lParam carry plain numbers.
#define ZVVCM_SETRANGE (WM_USER + 1) /* minimum, maximum */
#define ZVVCM_GETMINIMUM (WM_USER + 2)
#define ZVVCM_GETMAXIMUM (WM_USER + 3)
#define ZVVCM_SETVALUE (WM_USER + 4) /* value; silent */
#define ZVVCM_GETVALUE (WM_USER + 5)
#define ZVVCM_SETFLAGS (WM_USER + 6)     /* FLAGS_... */
#define ZVVCM_SHOWDROPDOWN (WM_USER + 7) /* non-zero opens the slider */
#define ZVVCM_GETDROPPEDSTATE (WM_USER + 8)

class CZVValueCombo : public CWnd {
 public:
  // The third number is the initial value. Range, value and flags are kept until a window is bound, and given to it
  // then.
  CZVValueCombo(int minimum, int maximum, int defaultValue, UINT flags = 0);

  BOOL Create(DWORD style, const RECT& rectangle, CWnd* parent, UINT id);

  // The value is brought into the new range without a notification. A minimum above the maximum exchanges the two.
  void SetRange(int minimum, int maximum);
  int GetMinRangeValue() const;
  int GetMaxRangeValue() const;
  // Silent.
  void SetValue(int value);
  int GetValue() const;
  void SetFlags(UINT flags);

 protected:
  void PreSubclassWindow() override;

 private:
  void GiveSettings() const;

  int minimum_;
  int maximum_;
  int value_;
  UINT flags_;
};
