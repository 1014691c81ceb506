// What the pickers do to the platform's file dialog around them: its control ids, and small steps on its controls. `outer`
// is the platform's dialog; a control that a version of the system lacks is left out of every step.
#pragma once

#include "platform/cstring.h"
#include "platform/win32.h"

// The platform's own controls.
inline constexpr int kShellHelp = 1038;
inline constexpr int kShellTypeLabel = 1089;
inline constexpr int kShellNameLabel = 1090;
inline constexpr int kShellLookInLabel = 1091;
inline constexpr int kShellList = 1120;
inline constexpr int kShellTypeCombo = 1136;
inline constexpr int kShellFolderCombo = 1137;
inline constexpr int kShellNameCombo = 1148;

// Pixels right of the buttons and the list, and between boxes and buttons.
inline constexpr int kPickerMargin = 15;
// Pixels below the bar of places.
inline constexpr int kPlacesBelow = 10;

// The shell's list of files, once the shell has made it; null before.
HWND ShellView(HWND outer);
// The name box: a combo box where the system remembers names, an edit (1152) where it does not.
HWND FileNameBox(HWND outer);
// All of it, however long.
CString WindowText(HWND window);
// Null when there is no such control.
RECT RectInside(HWND outer, HWND control);
void MoveInside(HWND control, const RECT& rect);
// Sets the kernel's text of that id; an unknown one gives an empty text.
void SetControlString(HWND outer, int id, UINT stringId);
// Gives every child, at any depth, the dialog font of the kernel, if it has one.
void ApplyDialogFont(HWND outer);
