// CFile: the operations on a file by its path. Both throw a CFileException* when the system refuses; nothing is opened.
#pragma once

#include "platform/exception.h"

class CFile {
 public:
  static void Remove(LPCWSTR path);
  static void Rename(LPCWSTR from, LPCWSTR to);
};
