// The framework's exceptions. They are thrown by pointer, as this framework's users expect: catch `CFileException* e`
// and end with e->Delete(), or use TRY, CATCH and END_CATCH, which do that. None of them may leave a window procedure,
// an export or a callback: CWnd's window procedure is the barrier for windows.
#pragma once

#include "platform/cstring.h"
#include "platform/object.h"

class CException : public CObject {
 public:
  void Delete() { delete this; }
  // The text for a user; false when there is none.
  virtual BOOL GetErrorMessage(CString& text) const {
    text.Empty();
    return FALSE;
  }
};

class CUserException : public CException {};
class CMemoryException : public CException {};
class CResourceException : public CException {};
class CNotSupportedException : public CException {};

class CFileException : public CException {
 public:
  enum {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  CFileException(int cause, LONG osError, LPCWSTR fileName)
      : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

  static int OsErrorToException(LONG osError);
  static void ThrowOsError(LONG osError, LPCWSTR fileName) {
    throw new CFileException(OsErrorToException(osError), osError, fileName);
  }
  // The system's own text for m_lOsError.
  BOOL GetErrorMessage(CString& text) const override;

  int m_cause;
  LONG m_lOsError;
  CString m_strFileName;
};

[[noreturn]] inline void AfxThrowUserException() { throw new CUserException; }
[[noreturn]] inline void AfxThrowMemoryException() { throw new CMemoryException; }
[[noreturn]] inline void AfxThrowResourceException() { throw new CResourceException; }
[[noreturn]] inline void AfxThrowNotSupportedException() { throw new CNotSupportedException; }

#define TRY try
#define CATCH(exceptionClass, e) \
  catch (exceptionClass * e) {   \
    [[maybe_unused]] CException* const caughtException = e;
#define AND_CATCH(exceptionClass, e) \
  caughtException->Delete();         \
  }                                  \
  CATCH(exceptionClass, e)
#define CATCH_ALL(e) CATCH(CException, e)
#define END_CATCH            \
  caughtException->Delete(); \
  }
#define END_CATCH_ALL END_CATCH
