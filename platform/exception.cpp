#include "platform/exception.h"

int CFileException::OsErrorToException(LONG osError) {
  switch (osError) {
    case ERROR_SUCCESS: return none;
    case ERROR_FILE_NOT_FOUND: return fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE: return badPath;
    case ERROR_TOO_MANY_OPEN_FILES: return tooManyOpenFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_CANNOT_MAKE:
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS: return accessDenied;
    case ERROR_INVALID_HANDLE: return invalidFile;
    case ERROR_CURRENT_DIRECTORY: return removeCurrentDir;
    case ERROR_SEEK:
    case ERROR_NEGATIVE_SEEK: return badSeek;
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_CRC:
    case ERROR_NOT_READY: return hardIO;
    case ERROR_SHARING_VIOLATION: return sharingViolation;
    case ERROR_LOCK_VIOLATION: return lockViolation;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return diskFull;
    case ERROR_HANDLE_EOF: return endOfFile;
    default: return genericException;
  }
}

BOOL CFileException::GetErrorMessage(CString& text) const {
  wchar_t buffer[512];
  const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(m_lOsError), 0, buffer, ARRAYSIZE(buffer), nullptr);
  text = CString(buffer, static_cast<int>(length)).TrimRight();
  return length != 0;
}
