// CZVFileConversionDlg: the batch conversion dialog. The user collects files, picks output formats and converts every chosen
// file to every chosen format, any number of times, before closing. The class moves the caller's record into the controls,
// keeps the enable rules, and serves a run with what stands in its lists; the run itself is CZVConversionRun, the rules are
// in the ..._rules files. It is shown with DoModal: 1 means that the user closed it with Close and Commit is to be called, 2
// that nothing is written back, anything else that it could not start. The record must outlive the dialog.
#pragma once

#include <vector>

#include "conversion/conversion_run.h"
#include "conversion/file_list_mgr.h"
#include "conversion/format_list.h"
#include "conversion/page_rules.h"
#include "include/zvfiledlg_open.h"
#include "naming/naming_template_processor.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/bitmap_button.h"
#include "services/zvdlgwidgets/edit_ctrl.h"
#include "services/zvdlgwidgets/image_viewer.h"

// Posted by the dialog to itself: the preview failed while a list notification was being handled.
inline constexpr UINT kPreviewFailedMessage = WM_APP + 1;
// The same: the list took its selection back to one row, which may be on its way to another one.
inline constexpr UINT kSelectionReducedMessage = WM_APP + 2;

class CZVFileConversionDlg : public CZVBaseDialog, private CZVConversionHost {
 public:
  explicit CZVFileConversionDlg(CWnd* parent);

  // Copies what the dialog needs; always 1.
  int32_t Initialize(const FILECONVERSIONDLGPARAMS& params);
  // Writes folders and switches back after a modal result of 1. Gives the dialog's result, 1 on every path that gets here.
  int32_t Commit(FILECONVERSIONDLGPARAMS& params) const;

 protected:
  BOOL OnInitDialog() override;
  void OnCancel() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  virtual void OnConvert();
  virtual void OnClose();

  DECLARE_MESSAGE_MAP()

 private:
  // What CZVConversionHost asks for.
  CString GetSourcePath(int fileRow) override;
  bool GetSourceOptions(int fileRow, CONVERSIONFILEOPTIONS& options) override;
  const CONVERSIONFORMATITEM* GetFormatItem(int formatRow) override;
  CString GetDestinationFolder() override;
  CString ExpandName(const CString& sourceName) override;
  CString FindFreeName(const CString& destination) override;
  int32_t AskOverwrite(const CString& destination) override;
  void ReportDeletionFailure(const CString& source) override;
  void MarkSourceDeleted(int fileRow) override;

  // Start (file_conversion_dlg_start.cpp).
  void AttachFileList();
  void FillOverwriteCombo();
  void CreatePreview();
  void LoadPictureButtons();
  void SetStartState();
  bool AddGivenFiles();
  bool FillFormatList();
  void ApplyUiFlags();
  void HidePreview();
  void HidePagesColumn();
  void FitFileColumn();
  BOOL RefuseToStart();

  // File list (file_conversion_dlg_files.cpp).
  void OnAddFiles();
  void OnAddFolder();
  void OnRemove();
  void OnSelectAll();
  void OnFileListChanged(NMHDR* header, LRESULT* result);
  LRESULT OnSelectionReduced(WPARAM, LPARAM);
  void FollowSelection();
  bool ShowsSelection();
  void OnFileListKey(NMHDR* header, LRESULT* result);
  void OnFullPath();
  bool AddFileRow(const CString& path, int32_t pageTotal);
  bool AddReadableFile(const CString& path);
  void AddOpenedFiles(const OPENFILEDLGPARAMS& opened);
  void AddFilesOf(const CString& folder);
  void OnFilesAdded();
  void RemoveRows(const std::vector<int>& rows);
  void OnNothingSelected();
  void OnListEmptied();
  void EnableFileControls(bool enable);
  void EnableFileControl(int id, bool enable);
  std::vector<int> GetSelectedFileRows();
  void FreePageArray(int row);
  static void OnRowRemoved(int32_t zero, int32_t* row, uint64_t userData);
  void EmptyLists();

  // Pages and preview (file_conversion_dlg_preview.cpp).
  void OnPageBack();
  void OnPageForward();
  void OnPageChanged();
  void OnPageCommitted();
  void UpdatePageControls();
  void ShowPage(int page);
  int EnteredPage() const;
  void ApplyPageNavigation();
  void DisablePageControls();
  void UpdatePreview();
  void ClearPreview();
  void NotePreviewFailure(const CString& path);
  LRESULT OnPreviewFailed(WPARAM, LPARAM);
  void RemoveUnshowable(const CString& path);

  // Formats, destination, overwriting (file_conversion_dlg_output.cpp).
  void OnFormatRowsChanged() { formatList_.OnRowsChanged(); }
  void OnDepthChanged() { formatList_.OnDepthChanged(); }
  void OnSubtypeChanged() { formatList_.OnSubtypeChanged(); }
  void OnOriginalFolder();
  void OnGivenFolder();
  void OnBrowse();
  void OnOverwriteChanged();
  void OnDeleteSource();
  void OnLogReport();
  void ApplyFolderChoice();
  void UpdateCustomizeButton();
  void CheckDestinationFolder();
  void RejectFolder();

  // The dialogs behind the buttons (file_conversion_dlg_tools.cpp).
  void OnPageOptions();
  void OnNamingTemplate();
  void OnCustomize();
  void OnResize();
  void OnRotate();
  void ChoosePages(int row, const std::vector<int32_t>& pages);
  void ShowLogReport();

  // The run (file_conversion_dlg_run.cpp).
  void RunQueue(CONVERSIONRUNDATA& data);
  void RefreshRows();
  void RefreshRow(int row);

  void OnDestroy();
  CString GetControlText(int id) const;

  // Settings.
  RENAMETEMPLATEDATA collisionData_;
  NAMINGTEMPLATESETTINGS collisionSettings_;
  NAMINGTEMPLATEDATA namingData_;
  NAMINGTEMPLATESETTINGS namingSettings_;
  CZVNamingTemplateProcessor processor_;
  CArray<LOGREPORTITEM> log_;  // lines of the last run
  CZVFileListMgr fileList_;
  CString sourceFolder_ = L"C:\\";       // where browsing starts
  CString destinationFolder_ = L"C:\\";  // the last accepted one
  const FILECONVERSIONFORMAT* formats_ = nullptr;
  int32_t formatCount_ = 0;
  const wchar_t* givenFiles_ = nullptr;
  uint32_t uiFlags_ = 0;
  int32_t overwriteMode_ = OVERWRITE_ASK;
  int32_t result_ = SUCCESS;
  int32_t deleteSource_ = 0;  // these four as the record has them, until the user changes them
  int32_t fullPath_ = 1;
  int32_t logReport_ = 1;
  int32_t useOriginalFolder_ = 0;
  CONVERSIONROTATEOPTIONS rotateOptions_;
  CONVERSIONRESIZEOPTIONS resizeOptions_;

  // Working state.
  CWnd* progressDlg_ = nullptr;  // while a run is going on
  CZVFormatList formatList_;
  CZVPageNavigation pages_;
  CString shownPath_;            // whose picture stands in the preview; empty without one
  CStringArray failedPreviews_;  // files to tell the user of; while there are any, a message is on its way
  bool changingList_ = false;    // the list changes under program control: its notifications say nothing new
  bool settingPage_ = false;     // the same for the page edit

  // Controls.
  CListCtrl files_;
  CZVBitmapButton addFilesButton_;
  CZVBitmapButton addFolderButton_;
  CZVBitmapButton removeButton_;
  CZVBitmapButton selectAllButton_;
  CZVImageViewer viewer_;
  CZVEditCtrl pageEdit_;
  CListBox formatBox_;
  CComboBox depthBox_;
  CComboBox subtypeBox_;
  CButton settingsButton_;
  CComboBox overwriteBox_;
  CEdit folderEdit_;
};
