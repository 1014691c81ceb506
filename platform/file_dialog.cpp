#include "platform/file_dialog.h"

#include <dlgs.h>

#include "platform/module_context.h"

IMPLEMENT_DYNAMIC(CFileDialog, CDialog)

BEGIN_MESSAGE_MAP(CFileDialog, CDialog)
END_MESSAGE_MAP()

namespace {

constexpr UINT_PTR kOuterSubclassId = 1;

// "Text|*.a|" becomes two strings with their terminators.
CString SeparatedByNull(LPCTSTR filter) {
  CString list(filter);
  list.Replace(L'|', L'\0');
  return list;
}

}  // namespace

CFileDialog::CFileDialog(BOOL openDialog, LPCTSTR defaultExtension, LPCTSTR fileName, DWORD flags, LPCTSTR filter,
                         CWnd* parent, DWORD /*size*/, BOOL /*vistaStyle*/)
    : CDialog(0u, parent), m_bOpenFileDialog(openDialog), defaultExtension_(defaultExtension) {
  m_ofn.lStructSize = sizeof(m_ofn);
  m_ofn.lpstrFile = fileNameBuffer_;
  m_ofn.nMaxFile = ARRAYSIZE(fileNameBuffer_);
  m_ofn.lpstrFileTitle = fileTitleBuffer_;
  m_ofn.nMaxFileTitle = ARRAYSIZE(fileTitleBuffer_);
  m_ofn.Flags = flags | OFN_EXPLORER | OFN_ENABLEHOOK;
  m_ofn.hInstance = AfxGetResourceHandle();
  if (defaultExtension) {
    m_ofn.lpstrDefExt = defaultExtension_;
  }
  if (fileName) {
    ::lstrcpynW(fileNameBuffer_, fileName, ARRAYSIZE(fileNameBuffer_));
  }
  if (filter) {
    filter_ = SeparatedByNull(filter);
    m_ofn.lpstrFilter = filter_;
  }
}

void CFileDialog::SetTemplate(LPCTSTR name) {
  m_ofn.lpTemplateName = name;
  m_ofn.Flags |= OFN_ENABLETEMPLATE;
}

INT_PTR CFileDialog::DoModal() {
  failed_ = false;
  failure_ = nullptr;
  m_ofn.Flags |= OFN_EXPLORER | OFN_ENABLEHOOK;
  m_ofn.lCustData = reinterpret_cast<LPARAM>(this);
  m_ofn.lpfnHook = &CFileDialog::HookProcedure;
  if (!m_ofn.hwndOwner && m_pParentWnd) {
    m_ofn.hwndOwner = FindOwner();
  }
  const HWND formerFocus = ::GetFocus();
  const BOOL accepted = m_bOpenFileDialog ? ::GetOpenFileNameW(&m_ofn) : ::GetSaveFileNameW(&m_ofn);
  if (formerFocus && ::IsWindow(formerFocus)) {
    ::SetFocus(formerFocus);
  }
  if (failed_) {
    return -1;
  }
  return accepted ? IDOK : IDCANCEL;
}

// As with every dialog, the first message of consequence binds the object and its window procedure sees the rest.
UINT_PTR CALLBACK CFileDialog::HookProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_INITDIALOG || CWnd::FromHandlePermanent(window)) {
    return 0;
  }
  auto* const dialog = reinterpret_cast<CFileDialog*>(reinterpret_cast<OPENFILENAME*>(lParam)->lCustData);
  ::SetWindowSubclass(::GetParent(window), &CFileDialog::OuterProcedure, kOuterSubclassId,
                      reinterpret_cast<DWORD_PTR>(dialog));
  return dialog->SubclassWindow(window) ? static_cast<UINT_PTR>(AfxWndProc(window, message, wParam, lParam)) : 0;
}

// F1 and the question mark on the system's own controls end at the system's dialog; they are meant for us. So is the
// Help button, of which not every version of the system's dialog tells by CDN_HELP; taken here, it is told once by all.
LRESULT CALLBACK CFileDialog::OuterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                             DWORD_PTR data) {
  const auto* const dialog = reinterpret_cast<CFileDialog*>(data);
  if (message == WM_HELP && dialog->m_hWnd && dialog->FindMessageEntry(WM_HELP, 0, 0)) {
    return ::SendMessageW(dialog->m_hWnd, message, wParam, lParam);
  }
  if (message == WM_COMMAND && wParam == MAKEWPARAM(pshHelp, BN_CLICKED) && dialog->m_hWnd) {
    return ::SendMessageW(dialog->m_hWnd, WM_COMMAND, ID_HELP, 0);
  }
  if (message == WM_NCDESTROY) {
    ::RemoveWindowSubclass(window, &CFileDialog::OuterProcedure, kOuterSubclassId);
  }
  return ::DefSubclassProc(window, message, wParam, lParam);
}

BOOL CFileDialog::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
  const UINT code = reinterpret_cast<NMHDR*>(lParam)->code;
  if (code > CDN_FIRST || code < CDN_LAST) {
    return CDialog::OnNotify(wParam, lParam, result);
  }
  *result = HandleNotification(*reinterpret_cast<OFNOTIFY*>(lParam));
  // The system's dialog looks for the answer here, not at the message's result.
  ::SetWindowLongPtrW(m_hWnd, DWLP_MSGRESULT, *result);
  return TRUE;
}

LRESULT CFileDialog::HandleNotification(const OFNOTIFY& notification) {
  switch (notification.hdr.code) {
    case CDN_INITDONE: OnInitDone(); return 0;
    case CDN_SELCHANGE: OnFileNameChange(); return 0;
    case CDN_FOLDERCHANGE: OnFolderChange(); return 0;
    case CDN_TYPECHANGE: OnTypeChange(); return 0;
    case CDN_HELP: SendMessage(WM_COMMAND, ID_HELP); return 0;
    case CDN_FILEOK: return OnFileNameOK();
    case CDN_SHAREVIOLATION: return static_cast<LRESULT>(OnShareViolation(notification.pszFile));
    default: return 0;
  }
}

bool CFileDialog::EndRunAfterFailure() {
  if (!m_hWnd) {
    return false;
  }
  failed_ = true;
  ::PostMessageW(::GetParent(m_hWnd), WM_COMMAND, IDCANCEL, 0);
  return true;
}

CString CFileDialog::AskDialog(UINT message) const {
  CString text;
  const HWND outer = ::GetParent(m_hWnd);
  const auto needed = static_cast<int>(::SendMessageW(outer, message, 0, 0));
  if (needed > 0) {
    ::SendMessageW(outer, message, static_cast<WPARAM>(needed) + 1,
                   reinterpret_cast<LPARAM>(text.GetBufferSetLength(needed + 1)));
    text.ReleaseBuffer();
  }
  return text;
}

CString CFileDialog::GetPathName() const { return m_hWnd ? AskDialog(CDM_GETFILEPATH) : CString(m_ofn.lpstrFile); }

CString CFileDialog::GetFolderPath() const { return m_hWnd ? AskDialog(CDM_GETFOLDERPATH) : CString(); }

CString CFileDialog::GetFileName() const {
  if (m_hWnd) {
    return AskDialog(CDM_GETSPEC);
  }
  const CString path = GetPathName();
  return path.Mid(path.ReverseFind(L'\\') + 1);
}

CString CFileDialog::GetFileExt() const {
  const CString name = GetFileName();
  const int point = name.ReverseFind(L'.');
  return point < 0 ? CString() : name.Mid(point + 1);
}

CString CFileDialog::GetFileTitle() const {
  const CString name = GetFileName();
  const int point = name.ReverseFind(L'.');
  return point < 0 ? name : name.Left(point);
}

POSITION CFileDialog::GetStartPosition() const { return reinterpret_cast<POSITION>(m_ofn.lpstrFile); }

// With several files the buffer holds the folder, then each name, each with its terminator; with one, its path.
CString CFileDialog::GetNextPathName(POSITION& position) const {
  const auto* current = reinterpret_cast<LPCWSTR>(position);
  const bool several = m_ofn.lpstrFile[wcslen(m_ofn.lpstrFile) + 1] != L'\0' && (m_ofn.Flags & OFN_ALLOWMULTISELECT);
  if (!several) {
    position = nullptr;
    return CString(current);
  }
  CString folder(m_ofn.lpstrFile);
  if (current == m_ofn.lpstrFile) {
    current += folder.GetLength() + 1;
  }
  if (folder.Right(1) != L"\\") {
    folder += L'\\';
  }
  const CString path = folder + current;
  const wchar_t* const next = current + wcslen(current) + 1;
  position = *next ? reinterpret_cast<POSITION>(const_cast<wchar_t*>(next)) : nullptr;
  return path;
}

void CFileDialog::SetControlText(int id, LPCTSTR text) {
  ::SendMessageW(::GetParent(m_hWnd), CDM_SETCONTROLTEXT, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(text));
}

void CFileDialog::HideControl(int id) {
  ::SendMessageW(::GetParent(m_hWnd), CDM_HIDECONTROL, static_cast<WPARAM>(id), 0);
}

void CFileDialog::SetDefExt(LPCTSTR extension) {
  ::SendMessageW(::GetParent(m_hWnd), CDM_SETDEFEXT, 0, reinterpret_cast<LPARAM>(extension));
}
