// CZVFileListMgr: ties a report list on the screen to the full paths behind it and to one record for each row. The list
// shows a shortened path; the full one stays here, so that changing the display rewrites texts only. Row n of the list and
// path n stand for the same file as long as rows are only appended and removed. The list control is borrowed; the rows'
// records are owned, but for their page arrays, which belong to whoever sets the remove callback. Adding costs the same
// however many rows there are.
#pragma once

#include <memory>
#include <unordered_map>

#include "conversion/records.h"
#include "conversion/row_text.h"
#include "platform/controls.h"

// Called while the row's record can still be read. The first argument is always 0, the second points at the row.
using FileListRemoveCallback = void (*)(int32_t zero, int32_t* row, uint64_t userData);

class CZVFileListMgr {
 public:
  // columnCount is 1 or 2; anything else means 1.
  CZVFileListMgr(int32_t columnCount, const CString& firstTitle, const CString& secondTitle);
  CZVFileListMgr(const CZVFileListMgr&) = delete;
  CZVFileListMgr& operator=(const CZVFileListMgr&) = delete;
  virtual ~CZVFileListMgr();

  // Empties list and paths, shows full paths, and makes both columns whatever the column count says. False without a window.
  bool Attach(CListCtrl* list);
  // Bits of FileRowDisplay; rewrites all rows.
  void SetDisplayFlags(uint32_t flags);
  void SetRemoveCallback(FileListRemoveCallback callback, uint64_t userData);

  int GetItemCount() const;
  int GetFirstSelected() const;
  bool SelectItem(int row);
  void ClearSelection();
  bool SetSubItemText(int row, int column, const CString& text);
  bool DeleteColumn(int column);

  // With a negative index, appends; a path that is there already is refused while REFUSE_DUPLICATES is set. An index of a
  // path replaces that path but adds a row, and so parts the rows from their paths.
  bool AddFile(const CString& path, int index = -1);
  // Empty for a row that does not exist.
  CString GetPath(int row) const;
  bool GetPath(CString& path, int row) const;
  bool ContainsPath(const CString& path) const;

  bool GetItemOptions(int row, CONVERSIONFILEOPTIONS& options) const;
  bool SetItemOptions(const CONVERSIONFILEOPTIONS& options, int row);
  bool SetRemoveFlag(int32_t value, int row);

  // A negative row is the last one.
  void RemoveFile(int row);
  void RemoveFlagged();
  // The remove callback is not asked.
  void RemoveAll();

 private:
  // The remove flag stands beside the record, so that copying a record in or out leaves it alone.
  struct ItemBlock {
    CONVERSIONFILEOPTIONS options;
    int32_t removeAfterRun = 0;
  };

  ItemBlock* Block(int row) const;
  void AppendBlockToLastRow();
  void CountPath(const CString& path, int change);
  void RewriteRows();

  CListCtrl* list_ = nullptr;
  CStringArray paths_;
  std::unordered_map<CString, int> pathCounts_;  // how often each path stands in paths_
  FileListRemoveCallback removeCallback_ = nullptr;
  uint64_t removeUserData_ = 0;
  int32_t columnCount_;
  CString firstColumnTitle_;
  CString secondColumnTitle_;
  uint32_t displayFlags_ = kShowFullPath;
};
