#include "platform/file.h"

void CFile::Remove(LPCWSTR path) {
  if (!::DeleteFileW(path)) {
    CFileException::ThrowOsError(static_cast<LONG>(::GetLastError()), path);
  }
}

void CFile::Rename(LPCWSTR from, LPCWSTR to) {
  if (!::MoveFileW(from, to)) {
    CFileException::ThrowOsError(static_cast<LONG>(::GetLastError()), from);
  }
}
