/* What all dialog templates share. Read by the resource compiler. */
#ifndef ZV_LAYOUT_H
#define ZV_LAYOUT_H

#define ZV_DIALOG_FONT FONT 8, "MS Shell Dlg", 400, 0, 1
/* A part of ours inside a common dialog of the platform. */
#define ZV_HOOK_STYLE DS_3DLOOK | DS_CONTROL | DS_SHELLFONT | WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS

/* Dialog units, of the platform's layout guide. */
#define ZV_MARGIN 7
#define ZV_LINE_HEIGHT 8
#define ZV_EDIT_HEIGHT 12

#endif
