// CDialog: a dialog from a template resource of the module in force. Modal: construct with template and parent,
// DoModal. Modeless: construct without arguments, Create; the object must outlive the window. Derive and override
// OnInitDialog, OnOK, OnCancel and DoDataExchange; add handlers in the message map. An exception in a handler ends a
// modal dialog: DoModal returns -1, and GetFailure tells what it was.
#pragma once

#include "platform/data_exchange.h"
#include "platform/message_map.h"
#include "platform/wnd.h"

class CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)

 public:
  CDialog() = default;
  explicit CDialog(UINT templateId, CWnd* parent = nullptr) : CDialog(MAKEINTRESOURCEW(templateId), parent) {}
  explicit CDialog(LPCTSTR templateName, CWnd* parent = nullptr)
      : m_lpszTemplateName(templateName), m_pParentWnd(parent) {}
  ~CDialog() override;

  // Modeless; a child dialog when the template says so (WS_CHILD).
  BOOL Create(UINT templateId, CWnd* parent = nullptr) { return Create(MAKEINTRESOURCEW(templateId), parent); }
  BOOL Create(LPCTSTR templateName, CWnd* parent = nullptr);
  // The template is read during the call only.
  BOOL CreateIndirect(LPCDLGTEMPLATE dialogTemplate, CWnd* parent = nullptr);
  // Both before DoModal, for a template that was built in memory. It must live until DoModal returns.
  BOOL InitModalIndirect(LPCDLGTEMPLATE dialogTemplate, CWnd* parent = nullptr);

  // Runs the dialog over its disabled owner. The result is EndDialog's; -1 when the dialog could not be made, failed,
  // or the program is ending.
  virtual INT_PTR DoModal();
  // Hides the window, gives the owner back its input, and lets DoModal return once the handlers are done.
  void EndDialog(int result);

  virtual BOOL OnInitDialog();
  virtual void OnOK();
  virtual void OnCancel();

  void NextDlgCtrl() const { ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, 0, FALSE); }
  void PrevDlgCtrl() const { ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, 1, FALSE); }
  void GotoDlgCtrl(CWnd* control) {
    ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control->m_hWnd), TRUE);
  }
  UINT GetDefID() const { return static_cast<UINT>(SendMessage(DM_GETDEFID)); }
  void SetDefID(UINT id) { SendMessage(DM_SETDEFID, id); }

  BOOL PreTranslateMessage(MSG* message) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override;

 protected:
  DECLARE_MESSAGE_MAP()
  LRESULT HandleInitDialog(WPARAM wParam, LPARAM lParam);
  bool EndRunAfterFailure() override;
  // The top-level window before which the dialog is to stand; null when this thread has no window.
  HWND FindOwner() const;

  LPCTSTR m_lpszTemplateName = nullptr;
  CWnd* m_pParentWnd = nullptr;

 private:
  static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  BOOL CreateFrom(LPCDLGTEMPLATE dialogTemplate, HWND parent);
  void ReleaseOwner();

  LPCDLGTEMPLATE modalTemplate_ = nullptr;
  HWND disabledOwner_ = nullptr;
};
