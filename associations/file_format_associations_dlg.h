// CZVFileFormatAssociationsDlg: a list of extensions with a box each; a checked box means that the caller's program owns the
// extension in the registry. The present state of every extension is read on a worker thread, since a registry with slow
// policies must not freeze the caller; the dialog is disabled meanwhile, and OK, Cancel and Esc are ignored. OK writes the
// changed rows. The dialog owns copies of all texts of the caller; the registry must outlive it.
//
// Of the members, the worker writes `states_`, and the dialog's thread reads them once `isListReady_` is set. The list view
// is filled on the dialog's thread with what the worker sends it.
#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "associations/association_rules.h"
#include "include/zvfiledlg_association.h"
#include "platform/controls.h"
#include "platform/unique_handle.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileFormatAssociationsDlg : public CZVBaseDialog {
 public:
  // With the built-in formats. A program identifier that is null or cannot be read counts as empty.
  CZVFileFormatAssociationsDlg(CWnd* parent, const wchar_t* programId, uint32_t flags,
                               CAssociationRegistry& registry = SystemAssociationRegistry());
  ~CZVFileFormatAssociationsDlg() override;

  // Replaces the formats; null leaves them.
  void SetFormats(const wchar_t* list);
  // Takes the record's formats and selection. ERROR_BAD_ARGUMENT when one of its texts cannot be read.
  int32_t ApplyParams(const FILEASSOCIATIONDLGPARAMS& params);

  const CFormatArray& Formats() const { return formats_; }

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  afx_msg void OnDestroy();
  afx_msg void OnSelectAll() { CheckAll(true); }
  afx_msg void OnSelectNone() { CheckAll(false); }
  afx_msg void OnItemChanging(NMHDR* notification, LRESULT* result);
  afx_msg LRESULT OnAddRows(WPARAM, LPARAM rows);
  afx_msg LRESULT OnListReady(WPARAM, LPARAM);

  // The thread that fills the list, null when the system gives none. Virtual, as is the next, because the system refuses
  // neither when a test asks it to.
  virtual unique_kernel_handle StartWorker();
  virtual bool EnterCom();
  // What the worker does; without a worker the dialog's thread does it.
  void FillList();

  DECLARE_MESSAGE_MAP()

 private:
  struct Row {
    int index;
    CString extension;
    int state;
    bool isChecked;
  };

  static unsigned __stdcall WorkerEntry(void* dialog);
  void PrepareList();
  void ReadRows();
  void SendRows(std::vector<Row>& rows);
  bool IsWorkerRunning();
  void WaitForWorker();
  void CheckAll(bool isChecked);
  AssociationOutcome WriteRows();

  CAssociationRegistry& registry_;
  CFormatArray formats_;
  std::vector<int> states_;  // one for each format
  CString selected_;
  CString programId_;
  uint32_t flags_;
  std::atomic<bool> isListReady_ = false;
  std::atomic<bool> stopsEarly_ = false;  // the window is going; nobody waits for the rest of the list
  std::mutex mutex_;                      // guards the next member alone
  bool isWorkerRunning_ = false;
  unique_kernel_handle worker_;
  CListCtrl list_;
  CImageList boxes_;
};
