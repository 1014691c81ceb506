#include "conversion/progress_dlg.h"

#include "conversion/run_rules.h"
#include "platform/afx.h"
#include "platform/win_app.h"
#include "resources/conversion_ids.h"
#include "services/zvcore/zvcore.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/general.h"

namespace {

constexpr UINT kHelpNumber = 114;
constexpr UINT kStoppedMessage = WM_USER + 1;  // tells whoever watches the window; nobody here handles it
constexpr int kLeft = 2;                       // the modal result of a run that is over

// A file calls back for each of its rows, which can be many thousand times a second; looking for messages so often, or
// painting the bars and the line for each of many small files, would cost more than the conversion. A user notices neither
// below these many milliseconds.
constexpr ULONGLONG kPumpInterval = 25;
constexpr ULONGLONG kShowInterval = 100;

// Whether the interval is over; it begins anew then.
bool IsDue(ULONGLONG& last, ULONGLONG interval) {
  const ULONGLONG now = ::GetTickCount64();
  const bool due = now - last >= interval;
  if (due) {
    last = now;
  }
  return due;
}

const UINT kStartMessage = ::RegisterWindowMessageW(L"ZV_DLG_FILECONVERSIONDLGPROGRESSDLG_STARTCONVERT");

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgProgressDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDB_CONV_ABORT, OnAbort)
  ON_WM_ENABLE()
  ON_REGISTERED_MESSAGE(kStartMessage, OnStart)
END_MESSAGE_MAP()

CZVFileConversionDlgProgressDlg::CZVFileConversionDlgProgressDlg(CWnd* parent)
    : CZVBaseDialog(IDD_CONV_PROGRESS, parent, kHelpNumber) {}

bool CZVFileConversionDlgProgressDlg::Initialize(CZVConversionRun* run, CONVERSIONRUNDATA* data) {
  if (!AfxIsValidAddress(run, sizeof *run) || !AfxIsValidAddress(data, sizeof *data)) {
    return false;
  }
  run_ = run;
  data_ = data;
  return true;
}

void CZVFileConversionDlgProgressDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDA_CONV, animation_);
  DDX_Control(exchange, IDP_CONV_TOTAL, totalBar_);
  DDX_Control(exchange, IDP_CONV_FILE, fileBar_);
}

void CZVFileConversionDlgProgressDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_PROGRESS_TITLE));
  SetControlString(IDT_CONV_CONVERTING, IDS_PROGRESS_MESSAGE);
  SetControlString(IDB_CONV_ABORT, IDS_PROGRESS_ABORT);
}

BOOL CZVFileConversionDlgProgressDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  totalBar_.SetRange32(0, 100);
  fileBar_.SetRange32(0, 100);
  animation_.Open(IDA_CONV_CLIP);
  PostMessage(kStartMessage);
  return TRUE;
}

LRESULT CZVFileConversionDlgProgressDlg::OnStart(WPARAM, LPARAM) {
  ShowWindow(SW_SHOW);
  RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  data_->log.RemoveAll();
  run_->SetStatus(&Pump, this);
  KeepPixelMemory(1);
  ConvertAll();
  KeepPixelMemory(0);
  run_->SetStatus(nullptr, nullptr);
  animation_.Stop();
  animation_.Close();
  EndDialog(kLeft);
  return 0;
}

void CZVFileConversionDlgProgressDlg::ConvertAll() {
  const int count = static_cast<int>(data_->queue.GetSize());
  for (int i = 0; i < count; ++i) {
    const CONVERSIONLISTITEM& item = data_->queue[i];
    shown_.filePercent = 0;
    run_->ConvertQueueItem(item.fileRow, item.formatRow, data_->log);
    percent_ = 100;
    // The line of the entry's number, which is another entry's once an entry has given several lines.
    const LOGREPORTITEM& line = data_->log[i];
    if (line.status != CONVERSION_ABORTED && !aborted_) {
      shown_.line.Format(GetDlgString(IDS_PROGRESS_LINE), line.source, line.destination);
      shown_.totalPercent = Percent(i, count);
      ShowProgress(i + 1 == count);
      CZVGeneral::WaitForAppIdle();
    }
    if (line.status == CONVERSION_ABORTED || aborted_) {
      shown_.totalPercent = shown_.filePercent = 100;
      ShowProgress(true);
      return;
    }
  }
}

// Brings the controls up to date, at once or when it is time.
void CZVFileConversionDlgProgressDlg::ShowProgress(bool atOnce) {
  if (!IsDue(lastShow_, kShowInterval) && !atOnce) {
    return;
  }
  fileBar_.SetPos(shown_.filePercent);
  totalBar_.SetPos(shown_.totalPercent);
  if (shown_.line != line_) {
    line_ = shown_.line;
    SetDlgItemText(IDT_CONV_LAST_FILE, line_);
  }
}

// A question about a file opens over the dialog and stands as long as the user likes: what is below it must be true.
void CZVFileConversionDlgProgressDlg::OnEnable(BOOL enabled) {
  CZVBaseDialog::OnEnable(enabled);
  if (!enabled) {
    ShowProgress(true);
  }
}

int32_t ZV_CALL CZVFileConversionDlgProgressDlg::Pump(int32_t percent, void* userData) {
  return userData ? static_cast<CZVFileConversionDlgProgressDlg*>(userData)->OnProgress(percent) : ERROR_USER_ABORT;
}

int32_t CZVFileConversionDlgProgressDlg::OnProgress(int32_t percent) {
  if (percent >= 0 && percent <= 100) {
    percent_ = shown_.filePercent = percent;
    ShowProgress(false);
  }
  if (percent == 100) {
    return SUCCESS;
  }
  if (!endRequested_ && IsDue(lastPump_, kPumpInterval) && !EmptyMessageQueue()) {
    // The program is ending, and the run with it.
    stop_ = false;
    percent_ = 100;
    aborted_ = true;
    return ERROR_USER_ABORT;
  }
  return stop_ ? StopFile() : SUCCESS;
}

// False at the end of the queue; the message that says so is put back for the loops around this one.
bool CZVFileConversionDlgProgressDlg::EmptyMessageQueue() {
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      ::PostQuitMessage(static_cast<int>(message.wParam));
      return false;
    }
    // The framework's idle kick must not start idle work in the middle of a file.
    if (message.message != WM_KICKIDLE && !AfxPreTranslateMessage(&message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  }
  return true;
}

int32_t CZVFileConversionDlgProgressDlg::StopFile() {
  stop_ = false;
  percent_ = 100;
  if (endRequested_) {
    PostMessage(WM_COMMAND, static_cast<WPARAM>(endCommand_));
  } else {
    PostMessage(kStoppedMessage);
  }
  return ERROR_USER_ABORT;
}

void CZVFileConversionDlgProgressDlg::OnAbort() {
  stop_ = true;
  aborted_ = true;
}

// Whether the dialog may end at once; otherwise it ends when the file in work has been stopped.
bool CZVFileConversionDlgProgressDlg::RequestEnd(int command) {
  if (percent_ == 100) {
    return true;
  }
  stop_ = true;
  endRequested_ = true;
  endCommand_ = command;
  return false;
}

void CZVFileConversionDlgProgressDlg::OnOK() {
  aborted_ = true;
  if (RequestEnd(IDOK)) {
    CZVBaseDialog::OnOK();
  }
}

void CZVFileConversionDlgProgressDlg::OnCancel() {
  aborted_ = true;
  if (RequestEnd(IDCANCEL)) {
    CZVBaseDialog::OnCancel();
  }
}
