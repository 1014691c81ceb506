// The exports of the dialogs that stand over a parent window of the caller.
#include "associations/file_format_associations_dlg.h"
#include "common/entry_frame.h"
#include "conversion/file_conversion_dlg.h"
#include "iccprofile/icc_profile_dlg.h"
#include "include/zvfiledlg.h"
#include "platform/afx.h"

namespace {

// Help and place, which every record of these dialogs carries.
void Prepare(CZVBaseDialog& dialog, HELPCALLBACK helpCallback, void* helpUserData, const POINT* position) {
  dialog.SetHelpCallback(helpCallback);
  dialog.SetHelpCallBackUserData(helpUserData);
  POINT place = {};
  if (AfxIsValidAddress(position, sizeof(place), FALSE)) {
    place = *position;
    CZVBaseDialog::SetPositionPoint(&place);
  } else {
    CZVBaseDialog::SetPositionPoint(nullptr);
  }
}

// Runs a dialog whose OK and Cancel end in one code; OK writes the record first.
template <class Dialog, class Record>
int32_t RunToClose(Dialog& dialog, Record& record) {
  switch (dialog.DoModal()) {
    case IDOK: {
      const int32_t status = dialog.Commit(record);
      return status == SUCCESS ? SUCCESS_DLG_CLOSE : status;
    }
    case IDCANCEL: return SUCCESS_DLG_CLOSE;
    default: return ERROR_DIALOG_FAILED;
  }
}

}  // namespace

int32_t ZV_CALL Z_DlgFileConversion(HWND parent, FILECONVERSIONDLGPARAMS* params) {
  return EnterLibrary(kConversionFamily, parent, params, [=](CWnd* owner) {
    CZVFileConversionDlg dialog(owner);
    Prepare(dialog, params->helpCallback, params->helpUserData, params->position);
    const int32_t status = dialog.Initialize(*params);
    return status == SUCCESS ? RunToClose(dialog, *params) : status;
  });
}

int32_t ZV_CALL Z_DlgICCProfile(HWND parent, ICCPROFILEDLGPARAMS* params) {
  return EnterLibrary(kProfileFamily, parent, params, [=](CWnd* owner) {
    CZVICCProfileDlg dialog(owner);
    Prepare(dialog, params->helpCallback, params->helpUserData, params->position);
    const int32_t status = dialog.BindColorLibrary(params);
    return status == SUCCESS ? RunToClose(dialog, *params) : status;
  });
}

int32_t ZV_CALL Z_DlgFilesAssociation(HWND parent, FILEASSOCIATIONDLGPARAMS* params) {
  return EnterLibrary(kAssociationFamily, parent, params, [=](CWnd* owner) {
    CZVFileFormatAssociationsDlg dialog(owner, params->pszProgID, params->uFlags);
    Prepare(dialog, params->pfnHelpCallback, params->pHelpUserData, params->ptPosition);
    const int32_t status = dialog.ApplyParams(*params);
    if (status != SUCCESS) {
      return status;
    }
    switch (dialog.DoModal()) {
      case IDOK: return SUCCESS_DLG_OK;
      case IDCANCEL: return SUCCESS_DLG_CANCEL;
      default: return ERROR_DIALOG_FAILED;
    }
  });
}
