#include "conversion/row_text.h"

namespace {

CString FolderPiece(const CString& path) {
  const int separator = path.ReverseFind(L'\\');
  return separator < 0 ? CString() : path.Left(separator);
}

// Empty for a name without a dot: the extension piece then carries the whole name.
CString NamePiece(const CString& path) {
  const CString name = path.Mid(path.ReverseFind(L'\\') + 1);
  const int dot = name.ReverseFind(L'.');
  return dot < 0 ? CString() : name.Left(dot);
}

CString ExtensionPiece(const CString& path) {
  const int dot = path.ReverseFind(L'.');
  if (dot >= 0) {
    return path.Mid(dot);
  }
  const int separator = path.ReverseFind(L'\\');
  return separator < 0 ? path : path.Mid(separator);
}

}  // namespace

CString FileRowText(const CString& path, uint32_t displayFlags) {
  const CString folder = displayFlags & SHOW_FOLDER ? FolderPiece(path) : CString();
  const CString name = displayFlags & SHOW_NAME ? NamePiece(path) : CString();
  const CString extension = displayFlags & SHOW_EXTENSION ? ExtensionPiece(path) : CString();
  const bool hasFile = !name.IsEmpty() || !extension.IsEmpty();
  return !folder.IsEmpty() && hasFile ? folder + L"\\" + name + extension : folder + name + extension;
}
