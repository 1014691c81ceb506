#include "conversion/folder_walk.h"

#include "platform/unique_handle.h"

namespace {

constexpr DWORD kPassedOver = FILE_ATTRIBUTE_ENCRYPTED | FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_SPARSE_FILE;

bool IsDots(const wchar_t* name) { return wcscmp(name, L".") == 0 || wcscmp(name, L"..") == 0; }

CString WithSeparator(const CString& folder) {
  const bool closed = !folder.IsEmpty() && folder[folder.GetLength() - 1] == L'\\';
  return closed ? folder : folder + L"\\";
}

bool IsPathSeparator(wchar_t character) { return character == L'\\' || character == L'/'; }

}  // namespace

void CollectFiles(const CString& folder, bool recursive, CStringArray& files) {
  const CString prefix = WithSeparator(folder);
  WIN32_FIND_DATAW entry;
  const unique_hfind search(::FindFirstFileW(prefix + L"*", &entry));
  if (!search) {
    return;
  }
  while (::FindNextFileW(search.get(), &entry)) {
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      if (recursive && !IsDots(entry.cFileName)) {
        CollectFiles(prefix + entry.cFileName, recursive, files);
      }
    } else if (!(entry.dwFileAttributes & kPassedOver)) {
      files.Add(prefix + entry.cFileName);
    }
  }
}

bool IsExistingFolder(const CString& path) {
  const DWORD attributes = ::GetFileAttributesW(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool CreateFolderTree(const CString& path) {
  if (path.IsEmpty()) {
    return false;
  }
  if (IsExistingFolder(path)) {
    return true;
  }
  int end = path.GetLength();
  while (end > 0 && IsPathSeparator(path[end - 1])) {
    --end;
  }
  int parentEnd = end;
  while (parentEnd > 0 && !IsPathSeparator(path[parentEnd - 1])) {
    --parentEnd;
  }
  const CString parent = path.Left(parentEnd);
  if (parentEnd > 1 && parentEnd < path.GetLength() && !CreateFolderTree(parent)) {
    return false;
  }
  return ::CreateDirectoryW(path.Left(end), nullptr) || IsExistingFolder(path);
}
