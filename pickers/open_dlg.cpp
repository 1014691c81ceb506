#include "pickers/open_dlg.h"

#include <algorithm>

#include "include/zvfiledlg.h"
#include "pickers/common_dialog.h"
#include "pickers/load_settings_guard.h"
#include "pickers/navigating_mark.h"
#include "pickers/open_rules.h"
#include "pickers/picker_position.h"
#include "platform/afx.h"
#include "platform/data_exchange.h"
#include "platform/module_context.h"
#include "platform/win_app.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgutil/dialog_string.h"
#include "services/zvdlgwidgets/notifications.h"

namespace {

constexpr uint32_t kHelpNumber = 1;
constexpr UINT kPageDigits = 6;
constexpr wchar_t kSettingsSection[] = L"CZVOpenDlg Settings";
constexpr wchar_t kPaneSetting[] = L"Preview";
// The rows below the list move down by this much more when there is no Help button, in pixels.
constexpr int kShiftWithoutHelp = 10;
constexpr UINT_PTR kOuterSubclassId = 2;
// Asks for the settings section to be opened. Posted to the platform's dialog, which hands it to the hook.
constexpr UINT kOpenSettings = 0x8014;

// What only the platform's dialog hears of, but concerns the hook's map as well.
LRESULT CALLBACK ForwardOuterMessages(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR hook) {
  if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
    ::SendMessageW(reinterpret_cast<HWND>(hook), CZVOpenDlg::kMakeRoom, 0, 0);
  }
  const LRESULT result = ::DefSubclassProc(window, message, wParam, lParam);
  if (message == WM_GETMINMAXINFO || message == WM_ACTIVATE || message == WM_PALETTECHANGED ||
      message == kOpenSettings) {
    ::SendMessageW(reinterpret_cast<HWND>(hook), message, wParam, lParam);
  } else if (message == WM_NCDESTROY) {
    ::RemoveWindowSubclass(window, ForwardOuterMessages, kOuterSubclassId);
  }
  return result;
}

}  // namespace

IMPLEMENT_DYNAMIC(CZVOpenDlg, CFileDialog)

BEGIN_MESSAGE_MAP(CZVOpenDlg, CFileDialog)
  ON_WM_HELPINFO()
  ON_COMMAND(ID_HELP, OnHelp)
  ON_COMMAND(ID_OPEN_PREVIEW, OnTogglePreview)
  ON_COMMAND(ID_OPEN_FILE_INFO, OnFileInfo)
  ON_EN_CHANGE(IDE_OPEN_PAGE, OnPageChange)
  ON_CONTROL(ZVEN_VALUECOMMITTED, IDE_OPEN_PAGE, OnPageCommitted)
  ON_BN_CLICKED(IDB_OPEN_DELETE_PAGE, OnDeletePage)
  ON_WM_DESTROY()
  ON_WM_PAINT()
  ON_WM_SIZE()
  ON_WM_SETCURSOR()
  ON_WM_GETMINMAXINFO()
  ON_WM_ACTIVATE()
  ON_WM_PALETTECHANGED()
  ON_WM_CANCELMODE()
  ON_WM_LBUTTONDOWN()
  ON_WM_LBUTTONUP()
  ON_WM_MOUSEMOVE()
  ON_NOTIFY(ZVSBN_ITEMCLICKED, IDC_OPEN_PLACES, OnPlaceChosen)
  ON_MESSAGE(kOpenSettings, OnOpenSettings)
  ON_MESSAGE(kLayOutAgain, OnLayOutAgain)
  ON_MESSAGE(kMakeRoom, OnMakeRoom)
END_MESSAGE_MAP()

CZVOpenDlg::CZVOpenDlg(CWnd* parent, UINT viewCommand)
    : CFileDialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_ENABLETEMPLATE, nullptr, parent),
      viewCommand_(viewCommand),
      system_(SystemVersionOf(::GetVersion())),
      status_(SUCCESS) {
  pane_.dialog = this;
  viewers_.AddViewer(rasterViewer_);
}

int32_t CZVOpenDlg::PickFiles(OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS& params) {
  if (!openFileName) {
    return ERROR_BAD_ARGUMENT;
  }
  params_ = &params;
  PrepareCallerRecord(*openFileName);
  const LoadSettingsGuard settings;
  GetLoadDpi(&firstXDpi_, &firstYDpi_);
  PrepareDialog(*openFileName);

  const INT_PTR answer = DoModal();
  openFileName->nFilterIndex = m_ofn.nFilterIndex;
  if (answer == IDOK) {
    return status_;
  }
  return answer == IDCANCEL && ::CommDlgExtendedError() == 0 ? SUCCESS_DLG_CANCEL : ERROR_DIALOG_FAILED;
}

void CZVOpenDlg::PrepareCallerRecord(OPENFILENAMEW& caller) const {
  caller.lpstrFilter = ChooseOpenFilter(caller.lpstrFilter, params_->flags);
  caller.lpTemplateName = MAKEINTRESOURCEW(HasOldStyleShell() ? IDD_OPEN_OLD_SHELL : IDD_OPEN);
  caller.Flags = OpenDialogFlags(caller.Flags, params_->flags, params_->helpCallback != nullptr);
  caller.nMaxFile = SelectionLengthFor(caller.nMaxFile);
}

void CZVOpenDlg::PrepareDialog(const OPENFILENAMEW& caller) {
  selection_.assign(caller.nMaxFile, L'\0');
  if (caller.lpstrFile) {
    const std::wstring_view first(caller.lpstrFile);
    first.substr(0, selection_.size() - 1).copy(selection_.data(), selection_.size() - 1);
  }
  m_ofn.lpstrFile = selection_.data();
  m_ofn.nMaxFile = caller.nMaxFile;
  m_ofn.lpstrFilter = caller.lpstrFilter;
  m_ofn.lpstrCustomFilter = caller.lpstrCustomFilter;
  m_ofn.nMaxCustFilter = caller.nMaxCustFilter;
  m_ofn.lpstrTitle = caller.lpstrTitle;
  if (caller.lpstrFileTitle) {
    m_ofn.lpstrFileTitle = caller.lpstrFileTitle;
    m_ofn.nMaxFileTitle = caller.nMaxFileTitle;
  }
  m_ofn.hInstance = AfxGetResourceHandle();
  m_ofn.lpTemplateName = caller.lpTemplateName;
  m_ofn.Flags = caller.Flags;
  m_ofn.lpstrDefExt = caller.lpstrDefExt;
  m_ofn.nFileExtension = caller.nFileExtension;
  m_ofn.nFilterIndex = caller.nFilterIndex;
  m_ofn.lpstrInitialDir = caller.lpstrInitialDir;
  m_ofn.FlagsEx = HasOldStyleShell() ? OFN_EX_NOPLACESBAR : 0;
}

// The shell makes its view some time after the dialog is up, and tells nobody: every message is an occasion to look.
BOOL CZVOpenDlg::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (!shellViewSeen_) {
    shellViewSeen_ = OnShellViewReady();
  }
  return CFileDialog::OnWndMsg(message, wParam, lParam, result);
}

bool CZVOpenDlg::OnShellViewReady() {
  const HWND outer = Outer();
  // Some shells have their view before the dialog knows what it is to show.
  const HWND view = initDone_ ? ShellView(outer) : nullptr;
  if (!view) {
    return false;
  }
  // Set before anything below sends a message here.
  shellViewSeen_ = true;
  if (viewCommand_ != 0) {
    ::SendMessageW(view, WM_COMMAND, viewCommand_, 0);
  }
  ApplyDialogFont(outer);
  FitOwnRow();
  if (HasOldStyleShell()) {
    CreatePlacesBar();
  }
  firstViewSize_ = ShellRect(view).Size();
  if (const CWinApp* const application = AfxGetApp()) {
    settingsPaneShown_ = application->GetProfileInt(kSettingsSection, kPaneSetting, previewShown_) != 0;
  }
  ::PostMessageW(outer, kOpenSettings, 0, 0);
  return true;
}

void CZVOpenDlg::DoDataExchange(CDataExchange* exchange) {
  CFileDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDX_OPEN_LOAD_OPTIONS, loadOptionsSwitch_);
  DDX_Control(exchange, IDE_OPEN_PAGE, pageEdit_);
  DDX_Control(exchange, IDB_OPEN_DELETE_PAGE, deleteButton_);
}

BOOL CZVOpenDlg::OnInitDialog() {
  CFileDialog::OnInitDialog();
  previewAvailable_ = false;
  currentPage_ = std::max(currentPage_, 1);
  pageEdit_.SetNumericsOnly(true);
  pageEdit_.SetAcceptNegative(false);
  pageEdit_.SetAcceptFloat(false);
  pageEdit_.SetLimitText(kPageDigits);
  ShowPage(currentPage_);
  loadOptionsSwitch_.SetCheck(params_->showLoadOptions ? BST_CHECKED : BST_UNCHECKED);
  // The focus stays where the platform puts it.
  return FALSE;
}

void CZVOpenDlg::OnInitDone() {
  const HWND outer = Outer();
  PositionDialogWindow(outer, StoredPickerPosition(PickerFamily::kOpen));
  AddToolBarButtons();
  ::PostMessageW(outer, kOpenSettings, 0, 0);
  firstFolderChange_ = true;
  Centre();
  CRect frame, hook;
  ::GetWindowRect(outer, frame);
  GetClientRect(hook);
  paneRect_.left = hook.right - frame.Width() / 3;
  ApplyFlags();
  ApplyHelpStyle();
  SetTexts();
  DeriveDefaultExtension();
  ::SetWindowSubclass(outer, ForwardOuterMessages, kOuterSubclassId, reinterpret_cast<DWORD_PTR>(m_hWnd));
  CFileDialog::OnInitDone();
  GetClientRect(hook);
  lastClientSize_ = hook.Size();
  initDone_ = true;
}

void CZVOpenDlg::ApplyFlags() {
  fileInfoAvailable_ = Wants(DLG_OPEN_SHOW_FILE_INFO);
  previewAvailable_ = Wants(DLG_OPEN_SHOW_PREVIEW);
  PreviewRules& rules = producer_.rules;
  rules.useStamp = Wants(DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_PREVIEW_STAMP_ONLY);
  rules.useFullImage = previewAvailable_;
  rules.vectorOnly = Wants(DLG_OPEN_VECTOR_ONLY);
  rules.callback = params_->previewCallback;
  rules.callbackUserData = params_->previewCallbackUserData;
  if (rules.useStamp) {
    producer_.ExpectStamp();
  }
  initialPaneOpen_ = previewAvailable_ && params_->showPreview != 0;
  const bool showsPages = Wants(DLG_OPEN_SHOW_PAGE_CONTROLS);
  if (!showsPages) {
    currentPage_ = 1;
  }
  const auto show = [this](int id, bool shown) { ::ShowWindow(::GetDlgItem(m_hWnd, id), shown ? SW_SHOW : SW_HIDE); };
  show(IDE_OPEN_PAGE, showsPages);
  show(IDT_OPEN_PAGE, showsPages);
  show(IDB_OPEN_DELETE_PAGE, showsPages && Wants(DLG_OPEN_SHOW_DELETE_PAGE));
  show(IDX_OPEN_LOAD_OPTIONS, Wants(DLG_OPEN_SHOW_LOAD_OPTIONS));
}

// On the screen; over an owner on its own rectangle, which leaves it where it has been put. Never left of or above the main
// screen.
void CZVOpenDlg::Centre() {
  const HWND outer = Outer();
  RECT around, frame;
  ::GetWindowRect(::IsWindow(m_ofn.hwndOwner) ? outer : ::GetDesktopWindow(), &around);
  ::GetWindowRect(outer, &frame);
  const LONG left = (around.left + around.right - (frame.right - frame.left)) / 2;
  const LONG top = (around.top + around.bottom - (frame.bottom - frame.top)) / 2;
  ::SetWindowPos(outer, nullptr, std::max(left, 0L), std::max(top, 0L), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CZVOpenDlg::ApplyHelpStyle() {
  const HWND outer = ::GetParent(m_hWnd);
  const LONG style = ::GetWindowLongW(outer, GWL_EXSTYLE);
  const bool hasHelp = (m_ofn.Flags & OFN_SHOWHELP) != 0;
  ::SetWindowLongW(outer, GWL_EXSTYLE, hasHelp ? style | WS_EX_CONTEXTHELP : style & ~WS_EX_CONTEXTHELP);
  rowShift_ = hasHelp ? 0 : kShiftWithoutHelp;
}

void CZVOpenDlg::SetTexts() {
  SetControlText(kShellTypeLabel, LoadDialogString(IDS_OPEN_FILE_TYPE));
  SetControlText(kShellNameLabel, LoadDialogString(IDS_OPEN_FILE_NAME));
  SetControlText(kShellLookInLabel, LoadDialogString(IDS_OPEN_LOOK_IN));
  SetControlText(IDOK, LoadDialogString(IDS_OPEN_OK));
  SetControlText(IDCANCEL, LoadDialogString(IDS_CANCEL));
  SetControlText(kShellHelp, LoadDialogString(IDS_HELP));
  SetControlString(m_hWnd, IDT_OPEN_PAGE, IDS_OPEN_PAGE);
  SetControlString(m_hWnd, IDB_OPEN_DELETE_PAGE, IDS_OPEN_DELETE_PAGE);
  SetControlString(m_hWnd, IDX_OPEN_LOAD_OPTIONS, IDS_OPEN_SHOW_LOAD_OPTIONS);
}

void CZVOpenDlg::DeriveDefaultExtension() {
  const HWND box = ::GetDlgItem(Outer(), kShellTypeCombo);
  const auto ask = [=](UINT message) { return static_cast<int32_t>(::SendMessageW(box, message, 0, 0)); };
  const FileTypeRows rows = {m_ofn.lpstrFilter, m_ofn.lpstrCustomFilter, ask(CB_GETCOUNT)};
  if (const auto extension = DefaultExtension(rows, ask(CB_GETCURSEL))) {
    defaultExtension_ = *extension;
    SetDefExt(extension->empty() ? nullptr : extension->c_str());
  }
}

void CZVOpenDlg::OnTypeChange() {
  DeriveDefaultExtension();
  // The shell looks at the extension again when the name changes.
  const HWND box = FileNameBox(Outer());
  ::SetWindowTextW(box, WindowText(box));
}

BOOL CZVOpenDlg::OnHelpInfo(HELPINFO* info) {
  if (params_->helpCallback) {
    params_->helpCallback(kHelpNumber, info->iCtrlId, params_->helpUserData);
  }
  return TRUE;
}

void CZVOpenDlg::OnHelp() {
  if (params_->helpCallback) {
    params_->helpCallback(kHelpNumber, HELP_BUTTON_PRESSED, params_->helpUserData);
  }
}

LRESULT CZVOpenDlg::OnOpenSettings(WPARAM, LPARAM) {
  if (CWinApp* const application = AfxGetApp()) {
    const unique_hkey section(application->GetSectionKey(kSettingsSection));
  }
  return 0;
}

void CZVOpenDlg::OnDestroy() {
  if (CWinApp* const application = AfxGetApp()) {
    application->WriteProfileInt(kSettingsSection, kPaneSetting, previewShown_);
    application->WriteProfileInt(kSettingsSection, L"Preview Window Offset", 0);
  }
  // A journey that found no folder must not reach the next dialog.
  navigatingThroughNameBox = false;
  CFileDialog::OnDestroy();
}
