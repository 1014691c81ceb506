#include "conversion/progress_dlg.h"

#include "conversion/run_rules.h"
#include "platform/afx.h"
#include "platform/scope_exit.h"
#include "platform/win_app.h"
#include "resources/conversion_ids.h"
#include "services/zvcore/zvcore.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/general.h"

namespace {

constexpr UINT kHelpNumber = 114;
constexpr UINT kStoppedMessage = WM_USER + 1;  // tells whoever watches the window; nobody here handles it
constexpr int kLeft = 2;                       // the modal result of a run that is over

// A file calls back a hundred times, and there can be hundreds of small files a second; looking for messages and moving the
// file's bar each time, or painting what each file changes, would cost more than the conversion. A user notices neither below
// these many milliseconds.
constexpr ULONGLONG kPumpInterval = 25;
constexpr ULONGLONG kPaintInterval = 100;

// Whether the interval is over; it begins anew then.
bool IsDue(ULONGLONG& last, ULONGLONG interval) {
  const ULONGLONG now = ::GetTickCount64();
  const bool due = now - last >= interval;
  if (due) {
    last = now;
  }
  return due;
}

// Changes a control that is painted later: a bar or a label would paint itself at once.
template <typename Change>
void ChangeUnpainted(const CWnd& control, const Change& change) {
  control.SetRedraw(FALSE);
  change();
  control.SetRedraw(TRUE);
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
  DDX_Control(exchange, IDT_CONV_LAST_FILE, lastFile_);
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
  {
    run_->SetStatus(&Pump, this);
    KeepPixelMemory(1);
    running_ = true;
    const scope_exit restore([this] {
      running_ = false;
      KeepPixelMemory(0);
      run_->SetStatus(nullptr, nullptr);
      EnableOwner(true);
    });
    ConvertAll();
  }
  animation_.Stop();
  animation_.Close();
  EndDialog(kLeft);
  return 0;
}

// Whether to go on is looked at before the pause, in which the user's clicks arrive: after one there, the next file is begun.
void CZVFileConversionDlgProgressDlg::ConvertAll() {
  const int count = static_cast<int>(data_->queue.GetSize());
  for (int i = 0; i < count; ++i) {
    const CONVERSIONLISTITEM& item = data_->queue[i];
    SetBar(fileBar_, filePercent_ = 0);
    run_->ConvertQueueItem(item.fileRow, item.formatRow, data_->log);
    percent_ = 100;
    // The line of the entry's number, which is another entry's once an entry has given several lines.
    const LOGREPORTITEM& line = data_->log[i];
    if (line.status == CONVERSION_ABORTED || aborted_) {
      fileBar_.SetPos(100);
      totalBar_.SetPos(100);
      return;
    }
    CString text;
    text.Format(GetDlgString(IDS_PROGRESS_LINE), line.source, line.destination);
    ChangeUnpainted(lastFile_, [&] { lastFile_.SetWindowText(text); });
    PaintProgress(false);
    CZVGeneral::WaitForAppIdle();
    SetBar(totalBar_, Percent(i, count));
  }
}

void CZVFileConversionDlgProgressDlg::SetBar(CProgressCtrl& bar, int percent) {
  ChangeUnpainted(bar, [&] { bar.SetPos(percent); });
}

// Moves the file's bar and paints what has changed, at once or when it is time.
void CZVFileConversionDlgProgressDlg::PaintProgress(bool atOnce) {
  if (IsDue(lastPaint_, kPaintInterval) || atOnce) {
    fileBar_.SetPos(filePercent_);
    fileBar_.RedrawWindow();
    totalBar_.RedrawWindow();
    lastFile_.RedrawWindow();
  }
}

// A question about a file opens over the dialog and stands as long as the user likes: what is below it must be true.
void CZVFileConversionDlgProgressDlg::OnEnable(BOOL enabled) {
  CZVBaseDialog::OnEnable(enabled);
  if (!enabled) {
    PaintProgress(true);
  }
}

int32_t ZV_CALL CZVFileConversionDlgProgressDlg::Pump(int32_t percent, void* userData) {
  return userData ? static_cast<CZVFileConversionDlgProgressDlg*>(userData)->OnProgress(percent) : ERROR_USER_ABORT;
}

int32_t CZVFileConversionDlgProgressDlg::OnProgress(int32_t percent) {
  if (percent >= 0 && percent <= 100) {
    percent_ = filePercent_ = percent;
    PaintProgress(false);
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
    EnableOwner(!running_);
  }
}

void CZVFileConversionDlgProgressDlg::OnCancel() {
  aborted_ = true;
  if (RequestEnd(IDCANCEL)) {
    CZVBaseDialog::OnCancel();
    EnableOwner(!running_);
  }
}

// A dialog that is closed between two files is gone at once, yet one more file is converted: in its time the window below must
// not take the click that would begin a second run inside this one.
void CZVFileConversionDlgProgressDlg::EnableOwner(bool enable) {
  ::EnableWindow(::GetWindow(m_hWnd, GW_OWNER), enable);
}
