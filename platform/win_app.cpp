#include "platform/win_app.h"

#include "platform/module_context.h"
#include "platform/thread_state.h"
#include "platform/wnd.h"

namespace {

constexpr UINT kSystemTimer = 0x0118;  // the caret's blinking

CString ModuleName(HINSTANCE module) {
  wchar_t path[MAX_PATH] = L"";
  ::GetModuleFileNameW(module, path, MAX_PATH);
  CString name(path);
  name = name.Mid(name.ReverseFind(L'\\') + 1);
  const int point = name.ReverseFind(L'.');
  return point < 0 ? name : name.Left(point);
}

}  // namespace

BOOL CWinThread::PumpMessage() {
  MSG message;
  if (::GetMessageW(&message, nullptr, 0, 0) <= 0) {
    exitCode_ = static_cast<int>(message.wParam);
    return FALSE;
  }
  if (message.message != WM_KICKIDLE && !PreTranslateMessage(&message)) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
  return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* message) {
  const HWND stop = m_pMainWnd ? m_pMainWnd->GetSafeHwnd() : nullptr;
  return CWnd::WalkPreTranslateTree(stop, message);
}

BOOL CWinThread::OnIdle(LONG count) {
  if (count == 0 && m_pMainWnd && m_pMainWnd->m_hWnd) {
    m_pMainWnd->SendMessageToIdleWindows();
  }
  return FALSE;
}

BOOL CWinThread::IsIdleMessage(MSG* message) {
  return message->message != WM_MOUSEMOVE && message->message != WM_NCMOUSEMOVE && message->message != WM_PAINT &&
         message->message != kSystemTimer;
}

int CWinThread::Run() {
  for (bool idle = true;;) {
    MSG message;
    for (LONG count = 0; idle && !::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE); ++count) {
      idle = OnIdle(count) != FALSE;
    }
    if (ThreadState::Get().contextDepth == 0) {
      ThreadState::Get().temporaries.clear();
    }
    do {
      if (::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) && IsIdleMessage(&message)) {
        idle = true;
      }
      if (!PumpMessage()) {
        return ExitInstance();
      }
    } while (::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
  }
}

CWinApp::CWinApp(LPCWSTR appName) {
  AFX_MODULE_STATE* const state = AfxGetStaticModuleState();
  state->m_pCurrentWinApp = this;
  m_hInstance = state->m_hCurrentInstanceHandle;
  m_strAppName = appName ? CString(appName) : ModuleName(m_hInstance);
  m_pszAppName = m_strAppName;
  profileName_ = m_strAppName;
}

CWinApp::~CWinApp() {
  AFX_MODULE_STATE* const state = AfxGetStaticModuleState();
  if (state->m_pCurrentWinApp == this) {
    state->m_pCurrentWinApp = nullptr;
  }
}

unique_hkey CWinApp::OpenSection(LPCWSTR section, bool create) const {
  unique_hkey key;
  if (registryKey_.IsEmpty()) {
    return key;
  }
  const CString path = L"Software\\" + registryKey_ + L"\\" + profileName_ + L"\\" + section;
  if (create) {
    ::RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, key.put(), nullptr);
  } else {
    ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, key.put());
  }
  return key;
}

HKEY CWinApp::GetSectionKey(LPCWSTR section) { return OpenSection(section, true).release(); }

UINT CWinApp::GetProfileInt(LPCWSTR section, LPCWSTR entry, int defaultValue) const {
  const unique_hkey key = OpenSection(section, false);
  DWORD type = 0;
  DWORD value = 0;
  DWORD size = sizeof(value);
  const bool read = key && ::RegQueryValueExW(key.get(), entry, nullptr, &type, reinterpret_cast<BYTE*>(&value),
                                              &size) == ERROR_SUCCESS;
  return read && type == REG_DWORD ? value : static_cast<UINT>(defaultValue);
}

BOOL CWinApp::WriteProfileInt(LPCWSTR section, LPCWSTR entry, int value) {
  const unique_hkey key = OpenSection(section, true);
  return key && ::RegSetValueExW(key.get(), entry, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                                 sizeof(value)) == ERROR_SUCCESS;
}

CString CWinApp::GetProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR defaultValue) const {
  const unique_hkey key = OpenSection(section, false);
  DWORD type = 0;
  DWORD size = 0;
  if (!key || ::RegQueryValueExW(key.get(), entry, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_SZ) {
    return CString(defaultValue);
  }
  CString value;
  auto* const buffer = reinterpret_cast<BYTE*>(value.GetBufferSetLength(static_cast<int>(size / sizeof(wchar_t)) + 1));
  if (::RegQueryValueExW(key.get(), entry, nullptr, &type, buffer, &size) != ERROR_SUCCESS) {
    return CString(defaultValue);
  }
  value.ReleaseBuffer();
  return value;
}

BOOL CWinApp::WriteProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR value) {
  const unique_hkey key = OpenSection(section, true);
  if (!key) {
    return FALSE;
  }
  if (!value) {
    const LSTATUS status = ::RegDeleteValueW(key.get(), entry);
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
  }
  const auto size = static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t));
  return ::RegSetValueExW(key.get(), entry, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), size) == ERROR_SUCCESS;
}

HICON CWinApp::LoadIcon(UINT id) const { return ::LoadIconW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id)); }

HCURSOR CWinApp::LoadCursor(UINT id) const { return ::LoadCursorW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id)); }

CWinApp* AfxGetApp() { return AfxGetModuleState()->m_pCurrentWinApp; }

CWinThread* AfxGetThread() { return AfxGetApp(); }

CWnd* AfxGetMainWnd() { return AfxGetApp() ? AfxGetApp()->GetMainWnd() : nullptr; }

LPCWSTR AfxGetAppName() { return AfxGetApp() ? AfxGetApp()->m_pszAppName : L""; }

BOOL AfxPreTranslateMessage(MSG* message) {
  CWinThread* const thread = AfxGetThread();
  return thread ? thread->PreTranslateMessage(message) : CWnd::WalkPreTranslateTree(nullptr, message);
}

BOOL AfxPumpMessage() {
  if (CWinThread* const thread = AfxGetThread()) {
    return thread->PumpMessage();
  }
  return CWinThread().PumpMessage();
}
