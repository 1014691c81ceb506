// CWinThread and CWinApp. In a library the one application object exists for settings and resources alone: it is made
// once as a static, and InitInstance is called by nobody. In a program it also owns the main window's message loop
// (Run). Settings live in the registry, under HKEY_CURRENT_USER\Software\<registry key>\<profile name>\<section>;
// without a registry key nothing is stored and every read gives its default.
#pragma once

#include "platform/cmd_target.h"
#include "platform/cstring.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

class CWnd;

class CWinThread : public CCmdTarget {
 public:
  // Takes one message and hands it on. False when it was WM_QUIT.
  virtual BOOL PumpMessage();
  // Offers the message to the windows between its target and the main window.
  virtual BOOL PreTranslateMessage(MSG* message);
  // Called when the queue is empty, with a count from 0; true asks for another call.
  virtual BOOL OnIdle(LONG count);
  // Whether a message may have changed what OnIdle looks at.
  virtual BOOL IsIdleMessage(MSG* message);
  // The message loop of a program; its result is the exit code.
  virtual int Run();
  virtual BOOL InitInstance() { return TRUE; }
  virtual int ExitInstance() { return exitCode_; }

  CWnd* GetMainWnd() const { return m_pMainWnd; }

  CWnd* m_pMainWnd = nullptr;

 private:
  int exitCode_ = 0;
};

class CWinApp : public CWinThread {
 public:
  // Becomes the application of this module. The name is the module's file name without its extension when null.
  explicit CWinApp(LPCWSTR appName = nullptr);
  ~CWinApp() override;

  // The company's name, under which settings are stored.
  void SetRegistryKey(LPCWSTR registryKey) { registryKey_ = registryKey; }
  void SetProfileName(LPCWSTR profileName) { profileName_ = profileName; }

  // The registry key of a section, made when it is not there; null without a registry key. The caller closes it.
  HKEY GetSectionKey(LPCWSTR section);
  UINT GetProfileInt(LPCWSTR section, LPCWSTR entry, int defaultValue) const;
  BOOL WriteProfileInt(LPCWSTR section, LPCWSTR entry, int value);
  CString GetProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR defaultValue = nullptr) const;
  // A null value removes the entry.
  BOOL WriteProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR value);

  HICON LoadIcon(UINT id) const;
  HICON LoadStandardIcon(LPCWSTR name) const { return ::LoadIconW(nullptr, name); }
  HCURSOR LoadCursor(UINT id) const;
  HCURSOR LoadStandardCursor(LPCWSTR name) const { return ::LoadCursorW(nullptr, name); }

  HINSTANCE m_hInstance;
  CString m_strAppName;
  LPCWSTR m_pszAppName;

 private:
  unique_hkey OpenSection(LPCWSTR section, bool create) const;

  CString registryKey_;
  CString profileName_;
};

// The application of the module state in force; null before it is constructed.
CWinApp* AfxGetApp();
// The thread object of the application's message loop: the application itself.
CWinThread* AfxGetThread();
CWnd* AfxGetMainWnd();
LPCWSTR AfxGetAppName();
// Message pump steps, usable without an application object.
BOOL AfxPumpMessage();
BOOL AfxPreTranslateMessage(MSG* message);
