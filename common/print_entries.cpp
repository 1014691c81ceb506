// The exports of the print frame.
#include "common/entry_frame.h"
#include "common/print_checks.h"
#include "include/zvfiledlg.h"

int32_t ZV_CALL Z_DlgPrintStitchedImages(HWND parent, STITCHEDPRINTDLGPARAMS* params) {
  return EnterLibrary(kStitchedPrintFamily, parent, params, [=](CWnd*) {
    const int32_t status = CheckStitchedPrint(*params);
    return status == SUCCESS ? ERROR_DIALOG_FAILED : status;
  });
}

int32_t ZV_CALL Z_DlgPrintPreview(HWND parent, PRINTPREVIEWDLGPARAMS* params) {
  return EnterLibrary(kPrintPreviewFamily, parent, params, [=](CWnd*) {
    const int32_t status = CheckPrintPreview(*params);
    return status == SUCCESS ? ERROR_DIALOG_FAILED : status;
  });
}
