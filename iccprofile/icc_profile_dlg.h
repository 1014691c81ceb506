// CZVICCProfileDlg: loads an ICC profile from an ICC file or an image and saves it to one. All work on profiles is done by the
// colour library, which is bound for the life of the dialog.
//
// Who owns the profile: what the caller passed in stays the caller's, to the end. The dialog borrows it until another one is
// loaded, and that one is the dialog's. Commit hands it over to the caller's record, which then is its only owner; without
// Commit the dialog frees it. Calls of the colour library always come in the same order; a borrowed profile is forgotten
// before they could free it.
#pragma once

#include "iccprofile/color_library.h"
#include "include/zvfiledlg_profile.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/bitmap_button.h"
#include "services/zvdlgwidgets/edit_ctrl.h"

class CZVICCProfileDlg : public CZVBaseDialog {
 public:
  explicit CZVICCProfileDlg(CWnd* parent);
  ~CZVICCProfileDlg() override;

  // Finds the colour library and takes the record's values. ERROR_COLOR_LIBRARY_MISSING; ERROR_BAD_ARGUMENT when neither group
  // is to be shown.
  int32_t BindColorLibrary(ICCPROFILEDLGPARAMS* params);
  // Gives flags and profile to the record, after a run that ended with Close. The record's paths stay.
  int32_t Commit(ICCPROFILEDLGPARAMS& params);

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  afx_msg void OnLoadType();
  afx_msg void OnSaveType();
  afx_msg void OnLoadPage();
  afx_msg void OnSavePage();
  afx_msg void OnLoadBrowse();
  afx_msg void OnSaveBrowse();
  afx_msg void OnLoad();
  afx_msg void OnSave();

  DECLARE_MESSAGE_MAP()

 private:
  bool ShowsLoad() const { return (flags_ & DLG_ICC_SHOW_LOAD) != 0; }
  bool ShowsSave() const { return (flags_ & DLG_ICC_SHOW_SAVE) != 0; }
  void ApplyLayout();
  void ShrinkToOneGroup();
  CRect RectOf(int controlId) const;
  void PrepareGroup(CComboBox& type, UINT iccFileText, UINT imageText, CZVEditCtrl& page);
  void EnablePage(const CComboBox& type, int labelId, CZVEditCtrl& page);
  void CheckPage(CZVEditCtrl& page);
  void EnableSave(bool enable);
  // Runs a file dialog; an accepted path goes to `path` and to the control.
  void Browse(CFileDialog& dialog, CString& path, int pathControlId);
  void ForgetBorrowedProfile();
  int32_t LoadProfile();
  int32_t SaveProfile();
  void ShowDone(UINT textId, UINT captionId, const CString& path);
  void ShowFailure(int32_t code);

  ColorLibrary library_;
  ICCPROFILEDATA iccProfile_ = {};
  bool borrowsProfile_ = true;  // iccProfile_ is a copy of the caller's record
  CString loadPath_;
  CString savePath_;
  uint32_t flags_ = 0;

  CComboBox loadType_;
  CComboBox saveType_;
  CZVEditCtrl loadPage_;
  CZVEditCtrl savePage_;
  CZVBitmapButton loadBrowse_;
  CZVBitmapButton saveBrowse_;
};
