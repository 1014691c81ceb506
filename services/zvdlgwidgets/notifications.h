// The notification codes of these controls, sent to the parent in WM_COMMAND with the control's id, as the system's own
// controls do.
#pragma once

// CZVEditCtrl: the user has finished a value (focus left the edit, or Enter was pressed) after changing the text.
#define ZVEN_VALUECOMMITTED 1
// CZVValueCombo, CZVColorPickerCtrl: the value has changed, by the user or by SetWindowText. SetValue and SetRGB are
// silent.
#define ZVN_VALUECHANGED 1
// CZVBitmapButton with a drop-down arrow: a click, or the Down key. It is BN_CLICKED, named for what it means there.
#define ZVBN_DROPDOWN 0
