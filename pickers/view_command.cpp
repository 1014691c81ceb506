#include "pickers/view_command.h"

#include "include/zvfiledlg_base.h"

UINT ViewCommandOf(int32_t viewMode) {
  // The commands of the shell's own View menu, unchanged since the first explorer-style dialogs.
  switch (viewMode) {
    case DLG_VIEW_LIST: return 28715;
    case DLG_VIEW_LARGE_ICONS: return 28713;
    case DLG_VIEW_TILES: return 28718;
    case DLG_VIEW_THUMBNAILS: return 28717;
    default: return 0;
  }
}
