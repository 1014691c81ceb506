// CFileDialog: the system's open and save dialog with a hook and, on request, a template of controls of our own. The
// object stands for the hook's child window (m_hWnd): its message map gets the messages of its own controls, WM_HELP
// from anywhere in the dialog, and the Help button as WM_COMMAND ID_HELP. The system's dialog around it is GetParent().
// Its owner is hwndOwner, or else the parent's top-level window. Without either it has none, unlike other dialogs, and no
// window is disabled meanwhile. Fill m_ofn before DoModal (template: SetTemplate). The names and file list are read from
// m_ofn afterwards. An exception in a handler closes the dialog: DoModal returns -1.
#pragma once

#include "platform/dialog.h"

class CFileDialog : public CDialog {
  DECLARE_DYNAMIC(CFileDialog)

 public:
  // The texts need live during the constructor only, except the filter: pairs of text and pattern separated by "|" and
  // ended by "||". The last two arguments are accepted for source compatibility: the record always has its full size,
  // and the dialog is always the one with a hook.
  explicit CFileDialog(BOOL openDialog, LPCTSTR defaultExtension = nullptr, LPCTSTR fileName = nullptr,
                       DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCTSTR filter = nullptr,
                       CWnd* parent = nullptr, DWORD size = 0, BOOL vistaStyle = TRUE);

  // IDOK or IDCANCEL; CommDlgExtendedError tells a failure from a cancel. -1 after an exception in a handler.
  INT_PTR DoModal() override;

  // A dialog template with WS_CHILD | WS_CLIPSIBLINGS and DS_3DLOOK | DS_CONTROL, from the module in force.
  void SetTemplate(UINT id) { SetTemplate(MAKEINTRESOURCEW(id)); }
  void SetTemplate(LPCTSTR name);

  // While the dialog is up they ask it, afterwards they read m_ofn.
  CString GetPathName() const;
  CString GetFileName() const;
  CString GetFileExt() const;    // without the point
  CString GetFileTitle() const;  // the name without folder and extension
  // Empty for a virtual folder. Only while the dialog is up.
  CString GetFolderPath() const;
  BOOL GetReadOnlyPref() const { return (m_ofn.Flags & OFN_READONLY) != 0; }

  // The files of a multiple selection (OFN_ALLOWMULTISELECT), with their folder.
  POSITION GetStartPosition() const;
  CString GetNextPathName(POSITION& position) const;

  // Controls of the system's dialog. Only while it is up.
  void SetControlText(int id, LPCTSTR text);
  void HideControl(int id);
  // Null removes it.
  void SetDefExt(LPCTSTR extension);

  OPENFILENAME m_ofn = {};
  OPENFILENAME* const m_pOFN = &m_ofn;

 protected:
  // Each is called from the dialog's notification of that name.
  virtual void OnInitDone() {}
  virtual void OnFileNameChange() {}
  virtual void OnFolderChange() {}
  virtual void OnTypeChange() {}
  // 0 accepts the name and ends the dialog; anything else keeps it open.
  virtual BOOL OnFileNameOK() { return FALSE; }
  // OFN_SHAREWARN, OFN_SHARENOWARN or OFN_SHAREFALLTHROUGH.
  virtual UINT OnShareViolation(LPCTSTR /*path*/) { return OFN_SHAREWARN; }

  // There is no data exchange on failure here: the system's dialog ends itself.
  void OnOK() override { Default(); }
  void OnCancel() override { Default(); }
  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  bool EndRunAfterFailure() override;

  DECLARE_MESSAGE_MAP()

  const BOOL m_bOpenFileDialog;

 private:
  static UINT_PTR CALLBACK HookProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK OuterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                         DWORD_PTR data);
  LRESULT HandleNotification(const OFNOTIFY& notification);
  CString AskDialog(UINT message) const;

  CString filter_;
  CString defaultExtension_;
  wchar_t fileNameBuffer_[MAX_PATH] = L"";
  wchar_t fileTitleBuffer_[MAX_PATH] = L"";
  bool failed_ = false;
};
