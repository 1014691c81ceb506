// CZVFileConversionDlgProgressDlg: shows a run and lets the user stop it. The run goes on inside this dialog's modal loop,
// started by a message that the dialog posts to itself, so that the window is up before the work begins; the row callbacks
// of the file in work come back here (Pump) and keep the window alive. No second thread exists. The run and its data are the
// caller's. The modal result says nothing.
#pragma once

#include "conversion/conversion_run.h"
#include "platform/controls.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileConversionDlgProgressDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgProgressDlg(CWnd* parent);

  // False when either cannot be read: the dialog is not to be shown then.
  bool Initialize(CZVConversionRun* run, CONVERSIONRUNDATA* data);

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnOK() override;
  void OnCancel() override;

  DECLARE_MESSAGE_MAP()

 private:
  static int32_t ZV_CALL Pump(int32_t percent, void* userData);
  int32_t OnProgress(int32_t percent);
  bool EmptyMessageQueue();
  int32_t StopFile();

  LRESULT OnStart(WPARAM, LPARAM);
  void ConvertAll();
  static void SetBar(CProgressCtrl& bar, int percent);
  void PaintProgress(bool atOnce);
  void OnAbort();
  void OnEnable(BOOL enabled);
  bool RequestEnd(int command);
  void EnableOwner(bool enable);

  CZVConversionRun* run_ = nullptr;
  CONVERSIONRUNDATA* data_ = nullptr;
  int32_t percent_ = 100;  // of the file in work; 100: none is
  bool stop_ = false;      // the file in work is to be stopped
  bool endRequested_ = false;
  int endCommand_ = IDCANCEL;
  bool aborted_ = false;
  bool running_ = false;
  int filePercent_ = 0;     // what the file's bar is to show when it is next painted
  ULONGLONG lastPump_ = 0;  // both in milliseconds since the system started
  ULONGLONG lastPaint_ = 0;

  CAnimateCtrl animation_;
  CProgressCtrl totalBar_;
  CProgressCtrl fileBar_;
  CStatic lastFile_;  // the paths of the file that was converted last
};
