// The window classes that dialog templates name. They are real Win32 classes: a template control works before, and
// without, a C++ object being bound to it.
#pragma once

#include "platform/win32.h"

#define ZV_VALUE_COMBO_CLASS L"ZVValueComboClass"
#define ZV_PREVIEW_COMBO_CLASS L"ZVPreviewComboClass"
#define ZV_ROLLUP_WND_CLASS L"ZVRollupWndClass"
#define ZV_IMAGE_LIST_VIEW_CLASS L"ZVImageListViewClass"

// Registers the classes above for a module, and the common controls that they build on. Call it before the first dialog
// of the module starts; further calls do nothing. False when the system refuses a class.
bool RegisterWidgetClasses(HINSTANCE module);
// Takes the classes away again, for a module that is being unloaded.
void UnregisterWidgetClasses(HINSTANCE module);
