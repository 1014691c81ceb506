#include "common/main_app.h"

CZVMainApp::CZVMainApp() : CWinApp(L"zvfiledlg") { SetRegistryKey(L"Zorvane"); }

// Made when the module is loaded, before any export can be called.
static CZVMainApp theApp;
