// CZVOpenDlg: the platform's open dialog with a preview pane, a page selector and buttons of ours in the shell's tool bar. Its
// caller gets a record for each chosen file instead of a mere name: it reads the files itself when the user presses OK, and
// puts back every process-wide setting that it touched. m_hWnd is the hook's window, which holds our controls and the pane;
// the platform's dialog around it is its parent.
#pragma once

#include <string>
#include <vector>

#include "include/zvfiledlg_open.h"
#include "pickers/file_info_step.h"
#include "pickers/load_options_step.h"
#include "pickers/open_rules.h"
#include "pickers/opened_files.h"
#include "platform/button.h"
#include "platform/file_dialog.h"
#include "platform/image_list.h"
#include "preview/preview_producer.h"
#include "preview/preview_wnd.h"
#include "preview/raster_file_viewer.h"
#include "preview/viewer_list.h"
#include "services/zvdlgwidgets/edit_ctrl.h"
#include "services/zvdlgwidgets/shortcut_bar.h"

class CZVOpenDlg : public CFileDialog, private PreviewHost, private PreviewSink {
  DECLARE_DYNAMIC(CZVOpenDlg)

 public:
  // viewCommand shows the file list as the caller wants it; 0 leaves the shell's choice.
  CZVOpenDlg(CWnd* parent, UINT viewCommand);

  // A message to the hook's window: the platform is about to put names into the file buffer.
  static constexpr UINT kMakeRoom = 0x8016;

  // Runs the dialog. Of openFileName the filter when it is missing, template, flags, nMaxFile and filter index are changed;
  // params gets the files. SUCCESS, SUCCESS_DLG_CANCEL, or the code of what failed.
  int32_t PickFiles(OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS& params);

 protected:
  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  void DoDataExchange(CDataExchange* exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnFileNameOK() override;
  void OnInitDone() override;
  void OnFileNameChange() override;
  void OnFolderChange() override;
  void OnTypeChange() override;

  virtual bool OnShellViewReady();
  virtual void OnFileSelected(const CString& path);
  void DrawPreview(CDC& device, const CRect& rectangle) override;
  virtual bool QueryPreviewPalette(CWnd* window);
  virtual void UpdatePreview();
  virtual void DrawNoPreview(CDC& device, const CRect& rectangle);

  afx_msg BOOL OnHelpInfo(HELPINFO* info);
  afx_msg void OnHelp();
  afx_msg void OnTogglePreview();
  afx_msg void OnFileInfo();
  afx_msg void OnPageChange();
  afx_msg void OnPageCommitted();
  afx_msg void OnDeletePage();
  afx_msg void OnDestroy();
  afx_msg void OnPaint();
  afx_msg void OnSize(UINT type, int width, int height);
  afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
  afx_msg void OnGetMinMaxInfo(MINMAXINFO* info);
  afx_msg void OnActivate(UINT state, CWnd* other, BOOL minimized);
  afx_msg void OnPaletteChanged(CWnd* focus);
  afx_msg void OnCancelMode();
  afx_msg void OnLButtonDown(UINT keys, CPoint point);
  afx_msg void OnLButtonUp(UINT keys, CPoint point);
  afx_msg void OnMouseMove(UINT keys, CPoint point);
  afx_msg LRESULT OnOpenSettings(WPARAM, LPARAM);
  afx_msg LRESULT OnLayOutAgain(WPARAM, LPARAM);
  afx_msg LRESULT OnMakeRoom(WPARAM, LPARAM);
  afx_msg void OnPlaceChosen(NMHDR* header, LRESULT* result);
  DECLARE_MESSAGE_MAP()

 private:
  static constexpr UINT kLayOutAgain = 0x8015;  // a message to itself

  // open_dlg.cpp
  void PrepareCallerRecord(OPENFILENAMEW& caller) const;
  void PrepareDialog(const OPENFILENAMEW& caller);
  bool HasOldStyleShell() const { return IsOldStyleShell(system_); }
  void Centre();
  void ApplyFlags();
  void ApplyHelpStyle();
  void SetTexts();
  void DeriveDefaultExtension();
  HWND Outer() const { return ::GetParent(m_hWnd); }
  bool Wants(uint32_t flag) const { return (params_->flags & flag) != 0; }

  // open_dlg_selection.cpp
  void MakeRoomForNames();
  bool TakeSelectedPath();
  std::vector<std::wstring> ChosenPaths() const;
  LoadOptionsOutcome AskLoadOptions(std::vector<OPENDLGFILEDATA>& list);
  void ReadFiles(const std::vector<OPENDLGFILEDATA>& list);

  // open_dlg_pages.cpp
  void ShowPage(int32_t page);
  void EnablePageControls(bool enable);
  void TakeTypedPage(bool keepsPageThatExists);
  void ShowReadFailure(int32_t status);

  // open_dlg_pane.cpp
  CWnd* PreviewPane() override { return pane_.GetSafeHwnd() ? &pane_ : nullptr; }
  void ShowPreviewBitmap(BITMAPHANDLE* bitmap) override;
  void OnPreviewFailed() override { EnablePageControls(false); }
  void LoadPreview();
  void ShowPane(bool show);
  bool CreatePane();
  void PlacePane(int newLeft);
  void EndDrag();

  // open_dlg_layout.cpp
  void LayOut();
  void FitOwnRow();
  void ShiftRows();
  void KeepOwnRowClear(LONG bottomOfRows);
  LONG OwnRowBelowCancel() const;
  void MoveOwnRow(LONG down) const;
  void FollowShellRows();
  void LayOutRows(const CRect& client);
  CRect ClientRect() const;
  CRect ShellRect(HWND control) const;
  void MoveShellControl(HWND control, const CRect& rect) const;
  CRect AlignRight(HWND control, int right) const;
  void EndAt(HWND control, int right) const;
  void LayOutTopRow(const CRect& client);

  // open_dlg_places.cpp
  void CreatePlacesBar();
  void GoToFolder(int specialFolder);
  void TypeFolder(LPCWSTR path);
  void FinishNavigation();
  void KeepReturnedName();

  // open_dlg_toolbar.cpp
  void AddToolBarButtons();
  void InsertToolBarButton(int command, int bitmap, BYTE style);
  void RemoveUnusedButtons();
  void AgreePreviewButton();

  OPENFILEDLGPARAMS* params_ = nullptr;
  UINT viewCommand_;
  const SystemVersion system_;
  std::wstring selection_;  // the buffer behind m_ofn.lpstrFile
  std::wstring defaultExtension_;
  int32_t status_;
  OpenedFiles files_;
  FileInfoDialogs fileInfoDialogs_;
  int32_t firstXDpi_ = 0, firstYDpi_ = 0;  // the load resolution that was in force before the dialog

  CButton loadOptionsSwitch_;
  CZVEditCtrl pageEdit_;
  CButton deleteButton_;
  std::vector<int> shellCommands_;  // of the tool bar as the shell made it
  HWND toolBar_ = nullptr;
  bool flatToolBar_ = true;
  CImageList placeImages_;
  CZVShortcutBar places_;
  int placeGroup_ = -1;
  CString savedFileNameText_;  // while the name box holds the path of a place
  bool typedNameReturned_ = false;

  std::wstring currentPath_;
  int32_t currentPage_ = 1;
  bool pageReactionHeld_ = false;
  bool previewAvailable_ = false;
  bool fileInfoAvailable_ = false;
  bool firstFolderChange_ = false;
  bool initDone_ = false;
  bool shellViewSeen_ = false;
  CSize firstViewSize_;
  // What the last dialog left in the settings. It is looked up and no more: the record alone opens the pane.
  bool settingsPaneShown_ = false;

  PreviewProducer producer_{*this};
  ViewerList viewers_{*this};
  CZVRasterFileViewer rasterViewer_;
  CZVPreviewWnd pane_;
  bool previewShown_ = false;
  bool lastPreviewShown_ = false;
  CString currentPreviewFile_, lastPreviewFile_;
  bool initialPaneOpen_ = true;
  int rowShift_ = 0;  // pixels
  bool rowsShifted_ = false;
  LONG ownRowBelowCancel_ = 0;  // pixels, after the first layout
  CRect paneRect_, splitterRect_;
  CSize lastClientSize_;
  bool dragActive_ = false;
  CPoint lastDragPoint_;
};
