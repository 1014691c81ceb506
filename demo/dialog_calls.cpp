#include "demo/dialog_calls.h"

#include "demo/demo_ids.h"
#include "include/zvfiledlg.h"

namespace {

constexpr wchar_t kProgramId[] = L"Zorvane.ImageViewer";

constexpr DialogCall kCalls[] = {
    {ID_FILE_OPEN, L"Z_DlgOpen", CallOpen},
    {ID_FILE_SAVE_AS, L"Z_DlgSave", CallSave},
    {ID_FILE_CONVERT, L"Z_DlgFileConversion", CallFileConversion},
    {ID_FILE_CHOOSE_FOLDER, L"Z_DlgGetDirectory", CallGetDirectory},
    {ID_FILE_PRINT_PREVIEW, L"Z_DlgPrintPreview", CallPrintPreview},
    {ID_FILE_PRINT_STITCHED, L"Z_DlgPrintStitchedImages", CallPrintStitchedImages},
    {ID_TOOLS_ICC_PROFILE, L"Z_DlgICCProfile", CallICCProfile},
    {ID_TOOLS_ASSOCIATIONS, L"Z_DlgFilesAssociation", CallFilesAssociation},
    {ID_ANSI_OPEN, L"Z_DlgOpenA", CallOpenA},
    {ID_ANSI_SAVE, L"Z_DlgSaveA", CallSaveA},
    {ID_ANSI_CONVERT, L"Z_DlgFileConversionA", CallFileConversionA},
    {ID_ANSI_CHOOSE_FOLDER, L"Z_DlgGetDirectoryA", CallGetDirectoryA},
    {ID_ANSI_PRINT_STITCHED, L"Z_DlgPrintStitchedImagesA", CallPrintStitchedImagesA},
    {ID_ANSI_ICC_PROFILE, L"Z_DlgICCProfileA", CallICCProfileA},
    {ID_ANSI_ASSOCIATIONS, L"Z_DlgFilesAssociationA", CallFilesAssociationA},
};

// A profile that the dialog gave is ours. The colour library is found at run time, as the dialog does it, so that the viewer
// starts without it.
void FreeProfile(ICCPROFILEDATA& profile) {
  if (const HMODULE library = LoadLibraryW(L"zvcolor.dll")) {
    const auto free = reinterpret_cast<int32_t(ZV_CALL*)(ICCPROFILEDATA*)>(
        reinterpret_cast<void*>(GetProcAddress(library, "Z_FreeICCProfile")));
    if (free) free(&profile);
    FreeLibrary(library);
  }
}

}  // namespace

const DialogCall* FindDialogCall(int command) {
  for (const DialogCall& call : kCalls)
    if (call.command == command) return &call;
  return nullptr;
}

int32_t CallOpen(HWND parent, Picture&, std::wstring& chosen) {
  OPENFILENAMEW openFileName{};
  openFileName.lStructSize = sizeof openFileName;
  openFileName.Flags = OFN_EXPLORER;

  OPENFILEDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.showPreview = 1;
  params.flags = DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO | DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_RESIZABLE;
  const int32_t result = Z_DlgOpen(parent, &openFileName, &params);
  if (result != SUCCESS_DLG_OK) return result;

  if (params.fileCount > 0) chosen = params.files[0].fileName;
  for (int i = 0; i < params.fileCount; ++i) {
    GlobalFree(params.files[i].fileInfo);
    GlobalFree(params.files[i].formatOptions);
  }
  GlobalFree(params.files);
  return result;
}

int32_t CallSave(HWND parent, Picture& picture, std::wstring&) {
  OPENFILENAMEW openFileName{};
  openFileName.lStructSize = sizeof openFileName;
  openFileName.Flags = OFN_EXPLORER;

  SAVEFILEDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.bitmap = picture.IsEmpty() ? nullptr : picture.Bitmap();
  params.bitsPerPixel = picture.IsEmpty() ? 24 : picture.Bitmap()->bitsPerPixel;
  GetDefaultJ2KOptions(&params.j2kOption, sizeof params.j2kOption);
  return Z_DlgSave(parent, &openFileName, &params);
}

int32_t CallFileConversion(HWND parent, Picture& picture, std::wstring&) {
  std::wstring files;
  if (!picture.IsEmpty()) files = picture.Path() + L'\0' + L'\0';

  FILECONVERSIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.fileList = files.empty() ? nullptr : files.c_str();
  params.overwriteMode = OVERWRITE_ASK;
  params.logReport = 1;
  params.uiFlags = 0x0003FFFF & ~CONVDLG_CONTEXT_HELP;  // every control that the dialog has
  GetCurrentDirectoryW(ZVDLG_PATH_LENGTH, params.destinationFolder);
  GetCurrentDirectoryW(ZVDLG_PATH_LENGTH, params.sourceFolder);
  return Z_DlgFileConversion(parent, &params);
}

int32_t CallGetDirectory(HWND parent, Picture&, std::wstring&) {
  wchar_t folder[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, folder);

  DIRECTORYDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.directoryBuffer = folder;
  params.bufferLength = MAX_PATH;
  const int32_t result = Z_DlgGetDirectory(parent, &params);
  if (result == SUCCESS_DLG_OK) SetCurrentDirectoryW(folder);
  return result;
}

int32_t CallPrintPreview(HWND parent, Picture& picture, std::wstring&) {
  PRINTPREVIEWDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.pBitmap = picture.Bitmap();
  params.rcMargin = {500, 500, 500, 500};
  return Z_DlgPrintPreview(parent, &params);
}

int32_t CallPrintStitchedImages(HWND parent, Picture& picture, std::wstring&) {
  DLGBITMAPLISTITEM item{};
  item.uStructSize = sizeof item;
  item.bitmap = picture.Bitmap();
  DLGBITMAPLIST list{sizeof list, &item, 1};

  STITCHEDPRINTDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.pBitmapList = &list;
  params.rcMargin = {500, 500, 500, 500};
  return Z_DlgPrintStitchedImages(parent, &params);
}

int32_t CallICCProfile(HWND parent, Picture& picture, std::wstring&) {
  ICCPROFILEDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.flags = DLG_ICC_SHOW_LOAD | DLG_ICC_SHOW_SAVE;
  lstrcpynW(params.loadPath, picture.Path().c_str(), ZVDLG_PATH_LENGTH);
  const int32_t result = Z_DlgICCProfile(parent, &params);
  FreeProfile(params.iccProfile);
  return result;
}

int32_t CallFilesAssociation(HWND parent, Picture&, std::wstring&) {
  FILEASSOCIATIONDLGPARAMS params{};
  params.uStructSize = sizeof params;
  params.pszProgID = kProgramId;
  return Z_DlgFilesAssociation(parent, &params);
}
