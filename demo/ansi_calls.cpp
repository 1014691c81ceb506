// The same calls through the entries for programs that still hold 8-bit text.
#include "demo/dialog_calls.h"
#include "include/zvfiledlg.h"

namespace {

std::string ToAnsi(const std::wstring& text) {
  std::string ansi(text.size() * 2 + 1, '\0');
  Z_W2A::Convert(text.c_str(), ansi.data(), int32_t(ansi.size()));
  ansi.resize(strlen(ansi.c_str()));
  return ansi;
}

std::wstring ToWide(const char* text) {
  std::wstring wide(strlen(text) + 1, L'\0');
  Z_A2W::Convert(text, wide.data(), int32_t(wide.size()));
  wide.resize(wcslen(wide.c_str()));
  return wide;
}

}  // namespace

int32_t CallOpenA(HWND parent, Picture&, std::wstring& chosen) {
  OPENFILENAMEA openFileName{};
  openFileName.lStructSize = sizeof openFileName;
  openFileName.Flags = OFN_EXPLORER;

  OPENFILEDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.flags = DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO | DLG_OPEN_SHOW_PAGE_CONTROLS;
  const int32_t result = Z_DlgOpenA(parent, &openFileName, &params);
  if (result != SUCCESS_DLG_OK) return result;

  if (params.fileCount > 0) chosen = ToWide(params.files[0].fileName);
  for (int i = 0; i < params.fileCount; ++i) CoreFree(params.files[i].fileInfo, __LINE__, __FILE__);
  CoreFree(params.files, __LINE__, __FILE__);
  return result;
}

int32_t CallSaveA(HWND parent, Picture& picture, std::wstring&) {
  OPENFILENAMEA openFileName{};
  openFileName.lStructSize = sizeof openFileName;
  openFileName.Flags = OFN_EXPLORER;

  SAVEFILEDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.bitmap = picture.IsEmpty() ? nullptr : picture.Bitmap();
  params.bitsPerPixel = 24;
  return Z_DlgSaveA(parent, &openFileName, &params);
}

int32_t CallFileConversionA(HWND parent, Picture& picture, std::wstring&) {
  std::string files;
  if (!picture.IsEmpty()) files = ToAnsi(picture.Path()) + '\0' + '\0';

  FILECONVERSIONDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.fileList = files.empty() ? nullptr : files.c_str();
  params.uiFlags = 0x0003FFFF & ~CONVDLG_CONTEXT_HELP;
  GetCurrentDirectoryA(ZVDLG_PATH_LENGTH, params.destinationFolder);
  return Z_DlgFileConversionA(parent, &params);
}

int32_t CallGetDirectoryA(HWND parent, Picture&, std::wstring&) {
  char folder[MAX_PATH];
  GetCurrentDirectoryA(MAX_PATH, folder);

  DIRECTORYDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.directoryBuffer = folder;
  params.bufferLength = MAX_PATH;
  const int32_t result = Z_DlgGetDirectoryA(parent, &params);
  if (result == SUCCESS_DLG_OK) SetCurrentDirectoryA(folder);
  return result;
}

int32_t CallPrintStitchedImagesA(HWND parent, Picture& picture, std::wstring&) {
  DLGBITMAPLISTITEM item{};
  item.uStructSize = sizeof item;
  item.bitmap = picture.Bitmap();
  DLGBITMAPLIST list{sizeof list, &item, 1};

  STITCHEDPRINTDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.pBitmapList = &list;
  params.rcMargin = {500, 500, 500, 500};
  return Z_DlgPrintStitchedImagesA(parent, &params);
}

int32_t CallICCProfileA(HWND parent, Picture& picture, std::wstring&) {
  ICCPROFILEDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.flags = DLG_ICC_SHOW_LOAD | DLG_ICC_SHOW_SAVE;
  lstrcpynA(params.loadPath, ToAnsi(picture.Path()).c_str(), ZVDLG_PATH_LENGTH);
  return Z_DlgICCProfileA(parent, &params);
}

int32_t CallFilesAssociationA(HWND parent, Picture&, std::wstring&) {
  FILEASSOCIATIONDLGPARAMSA params{};
  params.uStructSize = sizeof params;
  params.pszProgID = "Zorvane.ImageViewer";
  return Z_DlgFilesAssociationA(parent, &params);
}
