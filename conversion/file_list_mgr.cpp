#include "conversion/file_list_mgr.h"

#include "platform/afx.h"

CZVFileListMgr::CZVFileListMgr(int32_t columnCount, const CString& firstTitle, const CString& secondTitle)
    : columnCount_(columnCount == 2 ? 2 : 1), firstColumnTitle_(firstTitle), secondColumnTitle_(secondTitle) {}

// The list may be gone by now: whoever owns it calls RemoveAll while it is there.
CZVFileListMgr::~CZVFileListMgr() {
  if (list_ && ::IsWindow(list_->GetSafeHwnd())) {
    RemoveAll();
  }
}

bool CZVFileListMgr::Attach(CListCtrl* list) {
  if (!AfxIsValidAddress(list, sizeof *list) || !::IsWindow(list->GetSafeHwnd())) {
    return false;
  }
  if (list_) {
    RemoveAll();
  }
  list_ = list;
  list_->DeleteAllItems();
  paths_.RemoveAll();
  pathCounts_.clear();
  displayFlags_ = kShowFullPath;
  CRect window;
  list_->GetWindowRect(&window);
  const int share = (window.Width() - 2) / 5;
  list_->InsertColumn(0, firstColumnTitle_, LVCFMT_LEFT, 4 * share);
  list_->InsertColumn(1, secondColumnTitle_, LVCFMT_LEFT, share);
  return true;
}

void CZVFileListMgr::SetDisplayFlags(uint32_t flags) {
  displayFlags_ = flags;
  RewriteRows();
}

void CZVFileListMgr::RewriteRows() {
  list_->SetRedraw(FALSE);
  for (int row = GetItemCount() - 1; row >= 0; --row) {
    list_->SetItemText(row, 0, FileRowText(GetPath(row), displayFlags_));
  }
  list_->SetRedraw(TRUE);
}

void CZVFileListMgr::SetRemoveCallback(FileListRemoveCallback callback, uint64_t userData) {
  removeCallback_ = callback;
  removeUserData_ = userData;
}

int CZVFileListMgr::GetItemCount() const { return list_ ? list_->GetItemCount() : 0; }

int CZVFileListMgr::GetFirstSelected() const { return list_->GetNextItem(-1, LVNI_SELECTED); }

bool CZVFileListMgr::SelectItem(int row) {
  if (row < 0 || row >= GetItemCount()) {
    return false;
  }
  constexpr UINT kState = LVIS_FOCUSED | LVIS_SELECTED;
  return list_->SetItemState(row, kState, kState) != FALSE;
}

void CZVFileListMgr::ClearSelection() { list_->SetItemState(-1, 0, LVIS_SELECTED); }

bool CZVFileListMgr::SetSubItemText(int row, int column, const CString& text) {
  if (row < 0 || row >= GetItemCount() || column < 0 || column >= columnCount_) {
    return false;
  }
  return list_->SetItemText(row, column, text) != FALSE;
}

bool CZVFileListMgr::DeleteColumn(int column) { return column >= 0 && list_->DeleteColumn(column); }

bool CZVFileListMgr::AddFile(const CString& path, int index) {
  if (index >= paths_.GetSize() || ((displayFlags_ & REFUSE_DUPLICATES) && ContainsPath(path))) {
    return false;
  }
  if (index < 0) {
    paths_.Add(path);
  } else {
    CountPath(paths_[index], -1);
    paths_[index] = path;
  }
  CountPath(path, 1);
  const CString text = FileRowText(path, displayFlags_);
  if (!text.IsEmpty()) {
    list_->InsertItem(index < 0 ? GetItemCount() : index, text);
  }
  AppendBlockToLastRow();
  return true;
}

// A row that has a block already, as the last one has when no row was inserted behind it, gets a new one.
void CZVFileListMgr::AppendBlockToLastRow() {
  const int last = GetItemCount() - 1;
  if (last < 0) {
    return;
  }
  delete Block(last);
  auto block = std::make_unique<ItemBlock>();
  block->options.loadXResolution = block->options.loadYResolution = block->options.loadPasses = 0;
  block->options.pageTotal = block->options.pageCount = 0;
  list_->SetItemData(last, reinterpret_cast<DWORD_PTR>(block.release()));
}

CZVFileListMgr::ItemBlock* CZVFileListMgr::Block(int row) const {
  return row < 0 || row >= GetItemCount() ? nullptr : reinterpret_cast<ItemBlock*>(list_->GetItemData(row));
}

void CZVFileListMgr::CountPath(const CString& path, int change) {
  const auto entry = pathCounts_.try_emplace(path, 0).first;
  entry->second += change;
  if (entry->second == 0) {
    pathCounts_.erase(entry);
  }
}

CString CZVFileListMgr::GetPath(int row) const { return row < 0 || row >= paths_.GetSize() ? CString() : paths_[row]; }

bool CZVFileListMgr::GetPath(CString& path, int row) const {
  if (row < 0 || row >= paths_.GetSize()) {
    return false;
  }
  path = paths_[row];
  return true;
}

bool CZVFileListMgr::ContainsPath(const CString& path) const { return pathCounts_.contains(path); }

bool CZVFileListMgr::GetItemOptions(int row, CONVERSIONFILEOPTIONS& options) const {
  const ItemBlock* const block = Block(row);
  if (block) {
    options = block->options;
  }
  return block != nullptr;
}

bool CZVFileListMgr::SetItemOptions(const CONVERSIONFILEOPTIONS& options, int row) {
  ItemBlock* const block = Block(row);
  if (block) {
    block->options = options;
  }
  return block != nullptr;
}

bool CZVFileListMgr::SetRemoveFlag(int32_t value, int row) {
  ItemBlock* const block = Block(row);
  if (block) {
    block->removeAfterRun = value;
  }
  return block != nullptr;
}

void CZVFileListMgr::RemoveFile(int row) {
  int32_t removed = row < 0 ? GetItemCount() - 1 : row;
  if (removed < 0 || removed >= GetItemCount()) {
    return;
  }
  if (removeCallback_) {
    removeCallback_(0, &removed, removeUserData_);
  }
  delete Block(removed);
  list_->DeleteItem(removed);
  if (removed < paths_.GetSize()) {
    CountPath(paths_[removed], -1);
    paths_.RemoveAt(removed);
  }
}

void CZVFileListMgr::RemoveFlagged() {
  for (int row = 0; row < GetItemCount();) {
    const ItemBlock* const block = Block(row);
    if (block && block->removeAfterRun) {
      RemoveFile(row);
    } else {
      ++row;
    }
  }
}

void CZVFileListMgr::RemoveAll() {
  paths_.RemoveAll();
  pathCounts_.clear();
  for (int row = GetItemCount() - 1; row >= 0; --row) {
    delete Block(row);
    list_->SetItemData(row, 0);
  }
  if (list_) {
    list_->DeleteAllItems();
  }
}
