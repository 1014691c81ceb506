// CZVColorPickerCtrl: a colour well. It is bound to a push button of a template, shows the colour with a drop-down
// arrow, and on a click, Space or the Down key opens the system's colour dialog below itself. A new choice is reported
// to the parent as ZVN_VALUECHANGED.
#pragma once

#include "platform/controls.h"
#include "platform/message_map.h"
#include "services/zvdlgcommon/help_callback.h"
#include "services/zvdlgwidgets/notifications.h"
#include "services/zvdlgwidgets/owner_drawn_button.h"

class CZVColorPickerCtrl : public CButton {
 public:
  // Silent. Black at first.
  void SetRGB(COLORREF color);
  void SetRGB(BYTE red, BYTE green, BYTE blue) { SetRGB(RGB(red, green, blue)); }
  COLORREF GetRGBColorRef() const { return color_; }
  // Gives the colour dialog a Help button that calls the callback with this dialog number, the picker's control id and
  // the user data. A null callback takes the button away.
  void SetHelp(HELPCALLBACK callback, void* userData, UINT dialogNumber = 0);

 protected:
  void PreSubclassWindow() override;
  void DrawItem(LPDRAWITEMSTRUCT item) override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
  afx_msg BOOL OnClicked();

  DECLARE_MESSAGE_MAP()

 private:
  static UINT_PTR CALLBACK DialogHook(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  void PickColor();
  void ShowHelp() const;
  void PlaceDialog(HWND dialog) const;

  COLORREF color_ = RGB(0, 0, 0);
  HELPCALLBACK helpCallback_ = nullptr;
  void* helpUserData_ = nullptr;
  UINT helpDialogNumber_ = 0;
  OwnerDrawnButtonState state_{.opensDownward = true};
};
