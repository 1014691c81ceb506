// How our buttons look: the system's theme where there is one, the classic frame otherwise, and nothing but system
// colours, so that high-contrast settings hold. Functions draw on the device and keep nothing.
#pragma once

#include "platform/geometry.h"
#include "platform/win32.h"

struct ButtonLook {
  bool isEnabled = true;
  bool isPressed = false;
  bool isHot = false;
  bool isDefault = false;
  bool isFocused = false;  // and the focus rectangle is to be shown
  bool isFlat = false;
};

// Lengths given for 96 dots per inch, on this device.
int ScaleForDevice(HDC device, int pixelsAt96);

// Fills the rectangle with the frame and face of a button.
void DrawButtonFrame(HWND button, HDC device, const CRect& rectangle, const ButtonLook& look);
// Where the content of such a button goes.
CRect ButtonContent(HWND button, HDC device, const CRect& rectangle, const ButtonLook& look);
void DrawButtonFocus(HDC device, const CRect& rectangle, const ButtonLook& look);
// A filled triangle that points down, in the middle of the rectangle.
void DrawDropArrow(HDC device, const CRect& rectangle, bool isEnabled);
// A vertical line through the middle of the rectangle.
void DrawSeparator(HDC device, const CRect& rectangle);
