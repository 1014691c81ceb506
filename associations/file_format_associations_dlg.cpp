#include "associations/file_format_associations_dlg.h"

#include <objbase.h>
#include <process.h>

#include "platform/afx.h"
#include "resources/associations_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

constexpr UINT kHelpNumber = 57;
constexpr COLORREF kListBackground = 0xC0C0C0;
constexpr COLORREF kListText = 0;  // readable on that background whatever the user's colours are
constexpr int kBoxSize = 16;
constexpr size_t kRowsPerMessage = 128;  // a message between threads costs far more than a row

constexpr UINT kAddRowsMessage = WM_APP + 1;    // lParam: std::vector<Row>*
constexpr UINT kListReadyMessage = WM_APP + 2;  // posted once

bool IsNullOrReadable(const wchar_t* text) { return !text || AfxIsValidString(text); }

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileFormatAssociationsDlg, CZVBaseDialog)
  ON_WM_DESTROY()
  ON_BN_CLICKED(IDB_ASSOC_SELECT_ALL, OnSelectAll)
  ON_BN_CLICKED(IDB_ASSOC_SELECT_NONE, OnSelectNone)
  ON_NOTIFY(LVN_ITEMCHANGING, IDL_ASSOC_FORMATS, OnItemChanging)
  ON_MESSAGE(kAddRowsMessage, OnAddRows)
  ON_MESSAGE(kListReadyMessage, OnListReady)
END_MESSAGE_MAP()

CZVFileFormatAssociationsDlg::CZVFileFormatAssociationsDlg(CWnd* parent, const wchar_t* programId, uint32_t flags,
                                                           CAssociationRegistry& registry)
    : CZVBaseDialog(IDD_ASSOCIATIONS, parent, kHelpNumber), registry_(registry), flags_(flags) {
  if (AfxIsValidString(programId)) {
    programId_ = programId;
  }
  SetFormats(kBuiltInFormats);
}

CZVFileFormatAssociationsDlg::~CZVFileFormatAssociationsDlg() { WaitForWorker(); }

void CZVFileFormatAssociationsDlg::SetFormats(const wchar_t* list) {
  if (list) {
    formats_.RemoveAll();
    ParseFormats(list, formats_);
    states_.assign(static_cast<size_t>(formats_.GetSize()), kUnclaimed);
  }
}

int32_t CZVFileFormatAssociationsDlg::ApplyParams(const FILEASSOCIATIONDLGPARAMS& params) {
  if (!IsNullOrReadable(params.pszFormats) || !IsNullOrReadable(params.pszSelected) ||
      !IsNullOrReadable(params.pszProgID)) {
    return ERROR_BAD_ARGUMENT;
  }
  SetFormats(params.pszFormats);
  selected_ = JoinSelected(params.pszSelected);
  return SUCCESS;
}

BOOL CZVFileFormatAssociationsDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  isListReady_ = false;
  PrepareList();
  EnableWindow(FALSE);
  {
    const std::lock_guard lock(mutex_);
    isWorkerRunning_ = true;
  }
  worker_ = StartWorker();
  if (!worker_) {
    EnableWindow(TRUE);
    {
      const std::lock_guard lock(mutex_);
      isWorkerRunning_ = false;
    }
    FillList();
  }
  if (flags_ & DLG_ASSOCIATION_CONTEXT_HELP) {
    AddContextHelpStyle();
  }
  return TRUE;
}

void CZVFileFormatAssociationsDlg::PrepareList() {
  list_.SetExtendedStyle(list_.GetExtendedStyle() | LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_HEADERDRAGDROP |
                         LVS_EX_FULLROWSELECT);
  list_.SetBkColor(kListBackground);
  list_.SetTextBkColor(kListBackground);
  list_.SetTextColor(kListText);
  CRect client;
  list_.GetClientRect(&client);
  list_.InsertColumn(0, GetDlgString(IDS_ASSOC_COLUMN_EXTENSION), LVCFMT_LEFT, client.Width() / 3 + 20);
  list_.InsertColumn(1, GetDlgString(IDS_ASSOC_COLUMN_FORMAT), LVCFMT_LEFT, client.Width() * 2 / 3);
  boxes_.Create(kBoxSize, kBoxSize, ILC_COLOR24 | ILC_MASK, 2, 1);
  for (const int id : {IDI_ASSOC_CLEAR, IDI_ASSOC_CHECKED}) {
    const unique_hicon icon(static_cast<HICON>(
        ::LoadImageW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id), IMAGE_ICON, kBoxSize, kBoxSize, LR_DEFAULTCOLOR)));
    boxes_.Add(icon.get());
  }
  // The list that comes back is the one that the check box style made; nobody else knows it.
  const unique_himagelist former(ListView_SetImageList(list_, boxes_.GetSafeHandle(), LVSIL_STATE));
}

void CZVFileFormatAssociationsDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_ASSOC_TITLE));
  SetControlString(IDB_ASSOC_SELECT_ALL, IDS_ASSOC_SELECT_ALL);
  SetControlString(IDB_ASSOC_SELECT_NONE, IDS_ASSOC_SELECT_NONE);
}

void CZVFileFormatAssociationsDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDL_ASSOC_FORMATS, list_);
}

unique_kernel_handle CZVFileFormatAssociationsDlg::StartWorker() {
  // The Ex form, whose handle can be waited for: the other one's may be closed at any time.
  return unique_kernel_handle(reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, &WorkerEntry, this, 0, nullptr)));
}

bool CZVFileFormatAssociationsDlg::EnterCom() { return SUCCEEDED(::CoInitialize(nullptr)); }

unsigned __stdcall CZVFileFormatAssociationsDlg::WorkerEntry(void* dialog) {
  static_cast<CZVFileFormatAssociationsDlg*>(dialog)->FillList();
  return 0;
}

void CZVFileFormatAssociationsDlg::FillList() {
  ::EnableWindow(m_hWnd, FALSE);
  if (EnterCom()) {
    try {
      ReadRows();
    } catch (...) {
      // Out of memory on a thread of our own: the list stays as far as it came, and OK writes those rows.
    }
    ::CoUninitialize();
  }
  isListReady_ = true;
  {
    const std::lock_guard lock(mutex_);
    isWorkerRunning_ = false;
  }
  // Last, so that no click on an enabled button finds the worker still running and is lost.
  ::EnableWindow(m_hWnd, TRUE);
  ::PostMessageW(m_hWnd, kListReadyMessage, 0, 0);
}

void CZVFileFormatAssociationsDlg::ReadRows() {
  std::vector<Row> rows;
  rows.reserve(kRowsPerMessage);
  for (int i = 0; i < formats_.GetSize() && !stopsEarly_; ++i) {
    const CString& extension = formats_[i].extension;
    const int state = ReadAssociationState(registry_, extension, programId_);
    rows.push_back({i, CString(extension).MakeUpper(), state, StartsChecked(state, extension, selected_)});
    if (rows.size() == kRowsPerMessage) {
      SendRows(rows);
    }
  }
  SendRows(rows);
}

void CZVFileFormatAssociationsDlg::SendRows(std::vector<Row>& rows) {
  ::SendMessageW(m_hWnd, kAddRowsMessage, 0, reinterpret_cast<LPARAM>(&rows));
  rows.clear();
}

LRESULT CZVFileFormatAssociationsDlg::OnAddRows(WPARAM, LPARAM rows) {
  list_.SetRedraw(FALSE);
  for (const Row& row : *reinterpret_cast<const std::vector<Row>*>(rows)) {
    list_.InsertItem(row.index, row.extension);
    list_.SetItemText(row.index, 1, formats_[row.index].name);
    states_[static_cast<size_t>(row.index)] = row.state;
    list_.SetCheck(row.index, row.isChecked);
  }
  list_.SetRedraw(TRUE);
  return 0;
}

// A disabled dialog has no focus; it comes back with the list.
LRESULT CZVFileFormatAssociationsDlg::OnListReady(WPARAM, LPARAM) {
  if (::GetActiveWindow() == m_hWnd && !::IsChild(m_hWnd, ::GetFocus())) {
    GotoDlgCtrl(&list_);
  }
  return 0;
}

void CZVFileFormatAssociationsDlg::OnItemChanging(NMHDR* notification, LRESULT* result) {
  const int row = reinterpret_cast<NMLISTVIEW*>(notification)->iItem;
  const bool isRow = row >= 0 && row < static_cast<int>(states_.size());
  *result = isListReady_ && isRow && IsLocked(states_[static_cast<size_t>(row)]);
}

void CZVFileFormatAssociationsDlg::CheckAll(bool isChecked) {
  for (int row = 0; row < list_.GetItemCount(); ++row) {
    list_.SetCheck(row, isChecked);
  }
}

bool CZVFileFormatAssociationsDlg::IsWorkerRunning() {
  const std::lock_guard lock(mutex_);
  return isWorkerRunning_;
}

void CZVFileFormatAssociationsDlg::OnOK() {
  const CWaitCursor hourGlass;
  if (IsWorkerRunning()) {
    return;
  }
  const AssociationOutcome outcome = WriteRows();
  boxes_.DeleteImageList();
  registry_.NotifyShell();
  if (outcome.hasFailed) {
    MessageBox(GetDlgString(IDS_ASSOC_FAILED_TEXT), GetDlgString(IDS_ASSOC_FAILED_CAPTION), MB_ICONHAND);
  } else if (outcome.isDenied) {
    MessageBox(GetDlgString(IDS_ASSOC_DENIED_TEXT), GetDlgString(IDS_ASSOC_DENIED_CAPTION), MB_ICONHAND);
  }
  CZVBaseDialog::OnOK();
}

// The rows that stand in the list: none of them when COM could not be entered.
AssociationOutcome CZVFileFormatAssociationsDlg::WriteRows() {
  AssociationOutcome outcome;
  for (int row = 0; row < list_.GetItemCount(); ++row) {
    const AssociationChange change = ChangeFor(states_[static_cast<size_t>(row)], list_.GetCheck(row));
    ApplyChange(registry_, change, formats_[row].extension, programId_, outcome);
  }
  return outcome;
}

void CZVFileFormatAssociationsDlg::OnCancel() {
  if (IsWorkerRunning()) {
    return;
  }
  boxes_.DeleteImageList();
  CZVBaseDialog::OnCancel();
}

void CZVFileFormatAssociationsDlg::OnDestroy() {
  WaitForWorker();
  CZVBaseDialog::OnDestroy();
}

// The worker may be in the middle of sending us rows: those messages are answered while we wait for it.
void CZVFileFormatAssociationsDlg::WaitForWorker() {
  stopsEarly_ = true;
  HANDLE worker = worker_.get();
  while (worker && ::MsgWaitForMultipleObjects(1, &worker, FALSE, INFINITE, QS_SENDMESSAGE) == WAIT_OBJECT_0 + 1) {
    MSG message;
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
  }
  worker_.reset();
}
