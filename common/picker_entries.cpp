// The exports of the three file pickers.
#include "common/entry_frame.h"
#include "include/zvfiledlg.h"
#include "pickers/directory_dlg.h"
#include "pickers/open_dlg.h"
#include "pickers/picker_position.h"
#include "pickers/view_command.h"

namespace {

// The pickers' bodies end with plain SUCCESS.
int32_t AsDialogResult(int32_t status) { return status == SUCCESS ? SUCCESS_DLG_OK : status; }

bool HoldsPixels(const BITMAPHANDLE* bitmap) { return bitmap && (bitmap->flags & BITMAP_FLAG_ALLOCATED); }

}  // namespace

int32_t ZV_CALL Z_DlgGetDirectory(HWND parent, DIRECTORYDLGPARAMS* params) {
  return EnterLibrary(kDirectoryFamily, parent, params, [=](CWnd* owner) {
    StorePickerPosition(PickerFamily::kDirectory, params->position);
    CZVDirectoryDlg dialog(owner);
    return AsDialogResult(dialog.PickDirectory(*params));
  });
}

int32_t ZV_CALL Z_DlgOpen(HWND parent, OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS* params) {
  return EnterLibrary(kOpenFamily, parent, params, [=](CWnd* owner) {
    StorePickerPosition(PickerFamily::kOpen, params->position);
    const bool hasViewMode = params->uStructSize == sizeof(OPENFILEDLGPARAMS);
    CZVOpenDlg dialog(owner, hasViewMode ? ViewCommandOf(params->viewMode) : 0);
    return AsDialogResult(dialog.PickFiles(openFileName, *params));
  });
}

int32_t ZV_CALL Z_DlgSave(HWND parent, OPENFILENAMEW* openFileName, SAVEFILEDLGPARAMS* params) {
  return EnterLibrary(kSaveFamily, parent, params, [=](CWnd*) -> int32_t {
    StorePickerPosition(PickerFamily::kSave, params->position);
    if (!openFileName) {
      return ERROR_BAD_ARGUMENT;
    }
    if ((params->flags & DLG_SAVE_WRITE_FILE) && !HoldsPixels(params->bitmap)) {
      return ERROR_NO_IMAGE;
    }
    return ERROR_DIALOG_FAILED;
  });
}
