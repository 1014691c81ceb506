// CZVBitmapButton: a push button that shows a picture, with its text or without. It is bound to a button of a template
// (or made with Create), works with mouse, Space and Enter like any other, shows focus, pressed and disabled states in
// the system's colours, and sends BN_CLICKED. Pictures are scaled to the dialog's resolution. The magenta pixels of a
// picture (RGB 255, 0, 255) and those with the colour of its upper left corner when it has no magenta are transparent;
// pictures of 32 bits use their alpha channel. Without a disabled picture the enabled one is greyed.
#pragma once

#include "platform/controls.h"
#include "platform/unique_handle.h"
#include "services/zvdlgwidgets/argb_image.h"
#include "services/zvdlgwidgets/notifications.h"
#include "services/zvdlgwidgets/owner_drawn_button.h"

// SetStyleEx bits.
#define ZVBBS_DROPDOWN 0x1u  // an arrow at the right: the button opens something below it
#define ZVBBS_SHOWTEXT 0x2u  // the window text beside the picture; without it the text is for screen readers
#define ZVBBS_FLAT 0x4u      // no frame until the mouse or the focus is on it

class CZVBitmapButton : public CButton {
 public:
  CZVBitmapButton() = default;

  // Bitmap resources of this module; the disabled one may be 0. False when the picture is not there.
  bool LoadBitmap(UINT bitmapId, UINT disabledBitmapId = 0);
  bool LoadDisabledBitmap(UINT bitmapId);
  // Copies the picture.
  void SetPicture(HBITMAP picture);

  // Distance of the picture from its place in the middle, in pixels at 96 dpi; the default is (0, 0).
  void SetImageOffset(CPoint offset);
  void SetStyleEx(UINT style);
  UINT GetStyleEx() const { return styleEx_; }
  // A line between picture and drop-down arrow; on at first.
  void SetDrawDropdownSeparator(bool on);
  // Tool tips are off until a text is set.
  void SetToolTip(bool on);
  void SetToolTipText(LPCWSTR text);

 protected:
  void PreSubclassWindow() override;
  void DrawItem(LPDRAWITEMSTRUCT item) override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  ArgbImage PictureFor(HDC device, bool isEnabled) const;
  void DrawContent(HDC device, CRect area, bool isEnabled) const;
  void FollowMouse(UINT message);
  void UpdateToolTip();

  ArgbImage picture_;
  ArgbImage disabledPicture_;
  CPoint imageOffset_;
  UINT styleEx_ = 0;
  bool drawSeparator_ = true;
  OwnerDrawnButtonState state_;
  bool isHot_ = false;
  bool toolTipOn_ = false;
  CString toolTipText_;
  unique_hwnd toolTip_;
};
