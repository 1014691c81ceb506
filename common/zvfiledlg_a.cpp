// The 8-bit exports: each makes the wide record, calls the wide export and, where the caller expects it, brings the outcome
// back. The wide export enters the library and checks; a null record alone is answered here.
#include "include/zvfiledlg.h"

#include <cstring>
#include <new>

#include "common/ansi_file_data.h"
#include "common/ansi_open_file_name.h"
#include "common/ansi_text.h"
#include "platform/afx.h"

namespace {

// Position and help of the records that end with them.
template <class From, class To>
void CopyPlaceAndHelp(const From& from, To& to) {
  to.position = from.position;
  to.helpCallback = from.helpCallback;
  to.helpUserData = from.helpUserData;
}

// What the two open records have in common, in both directions. The status function and the view mode do not pass: the one
// is declared for 8-bit entries, the other has never been read here.
template <class From, class To>
void CopyOpenFields(const From& from, To& to) {
  to.fileCount = from.fileCount;
  to.showPreview = from.showPreview;
  to.showLoadOptions = from.showLoadOptions;
  to.previewCallback = from.previewCallback;
  to.previewCallbackUserData = from.previewCallbackUserData;
  std::memcpy(to.reserved40, from.reserved40, sizeof(to.reserved40));
  to.statusCallbackUserData = from.statusCallbackUserData;
  to.flags = from.flags;
  CopyPlaceAndHelp(from, to);
}

template <class From, class To>
void CopySaveFields(const From& from, To& to) {
  ConvertField(from.fileName, to.fileName);
  to.bitmap = from.bitmap;
  to.bitsPerPixel = from.bitsPerPixel;
  to.fileFormat = from.fileFormat;
  to.qFactor = from.qFactor;
  to.multipageOp = from.multipageOp;
  to.format2Mode = from.format2Mode;
  to.passes = from.passes;
  to.saveStamp = from.saveStamp;
  to.stampBits = from.stampBits;
  to.stampWidth = from.stampWidth;
  to.stampHeight = from.stampHeight;
  to.pageNumber = from.pageNumber;
  to.catalogueFormat = from.catalogueFormat;
  to.subType = from.subType;
  to.j2kOption = from.j2kOption;
  to.formats = from.formats;
  to.formatCount = from.formatCount;
  to.flags = from.flags;
  CopyPlaceAndHelp(from, to);
  to.jbig2Option = from.jbig2Option;
  to.viewMode = from.viewMode;
  to.pdfProfile = from.pdfProfile;
}

// Extensions, each followed by two zero bytes; an empty one ends the list.
CoreBlock<wchar_t> ConvertExtensionList(const char* list) {
  if (!list) {
    return nullptr;
  }
  size_t length = 0;
  while (list[length] != '\0') {
    length += strlen(list + length) + 2;
  }
  return ConvertBlock(list, length);
}

CoreBlock<wchar_t> ConvertList(const char* list) {
  return list ? ConvertBlock(list, ListLength(list)) : CoreBlock<wchar_t>();
}

}  // namespace

int32_t ZV_CALL Z_DlgGetDirectoryA(HWND parent, DIRECTORYDLGPARAMSA* params) {
  if (!params) {
    return ERROR_BAD_ARGUMENT;
  }
  DIRECTORYDLGPARAMS wide = {};
  wide.uStructSize = sizeof(wide);
  CoreBlock<wchar_t> folder;
  if (params->directoryBuffer && params->bufferLength > 0) {
    folder = NewCoreBlock<wchar_t>(static_cast<size_t>(params->bufferLength) + 1);
    if (!folder) {
      return ERROR_OUT_OF_MEMORY;
    }
    Z_A2W::Convert(params->directoryBuffer, folder.get(), params->bufferLength + 1);
  }
  const CoreBlock<wchar_t> filter = ConvertList(params->filter);
  if (params->filter) {
    MoveToLastString(&params->filter);
  }
  const WideDup title = ToWide(params->title);
  wide.directoryBuffer = folder.get();
  wide.bufferLength = params->bufferLength;
  wide.filter = filter.get();
  wide.filterIndex = params->filterIndex;
  wide.title = title.get();
  CopyPlaceAndHelp(*params, wide);

  const int32_t result = Z_DlgGetDirectory(parent, &wide);
  if (result == SUCCESS_DLG_OK) {
    params->uStructSize = sizeof(*params);
    Z_W2A::Convert(wide.directoryBuffer, params->directoryBuffer, params->bufferLength);
    params->bufferLength = wide.bufferLength;
    params->filterIndex = wide.filterIndex;
    CopyPlaceAndHelp(wide, *params);
  }
  return result;
}

int32_t ZV_CALL Z_DlgOpenA(HWND parent, OPENFILENAMEA* openFileName, OPENFILEDLGPARAMSA* params) {
  if (!params || !openFileName) {
    return ERROR_BAD_ARGUMENT;
  }
  WideOpenFileName wideName(*openFileName);
  OPENFILEDLGPARAMS wide = {};
  CopyOpenFields(*params, wide);
  wide.uStructSize = sizeof(wide);

  const int32_t result = Z_DlgOpen(parent, wideName.get(), &wide);
  if (result != SUCCESS_DLG_OK) {
    return result;
  }
  const int32_t converted = ConvertOpenedFiles(wide, *params);
  CopyOpenFields(wide, *params);
  return converted == SUCCESS ? result : converted;
}

int32_t ZV_CALL Z_DlgSaveA(HWND parent, OPENFILENAMEA* openFileName, SAVEFILEDLGPARAMSA* params) {
  if (!params || !openFileName) {
    return ERROR_BAD_ARGUMENT;
  }
  WideOpenFileName wideName(*openFileName);
  SAVEFILEDLGPARAMS wide = {};
  CopySaveFields(*params, wide);
  wide.uStructSize = sizeof(wide);

  const int32_t result = Z_DlgSave(parent, wideName.get(), &wide);
  if (result == SUCCESS_DLG_OK) {
    CopySaveFields(wide, *params);
    params->uStructSize = sizeof(*params);
  }
  return result;
}

// The wide dialog ends with SUCCESS_DLG_CLOSE and never with OK, so the caller's record keeps what it came with.
int32_t ZV_CALL Z_DlgICCProfileA(HWND parent, ICCPROFILEDLGPARAMSA* params) {
  if (!params) {
    return ERROR_BAD_ARGUMENT;
  }
  ICCPROFILEDLGPARAMS wide = {};
  wide.uStructSize = sizeof(wide);
  wide.iccProfile = params->iccProfile;
  ConvertField(params->loadPath, wide.loadPath);
  ConvertField(params->savePath, wide.savePath);
  wide.flags = params->flags;
  CopyPlaceAndHelp(*params, wide);
  const int32_t result = Z_DlgICCProfile(parent, &wide);
  // Nothing goes back to an 8-bit caller, so a profile that was loaded has no other owner.
  if (wide.iccProfile.data != params->iccProfile.data) {
    CoreFree(wide.iccProfile.data, __LINE__, __FILE__);
    CoreFree(wide.iccProfile.tags, __LINE__, __FILE__);
  }
  return result;
}

int32_t ZV_CALL Z_DlgFileConversionA(HWND parent, FILECONVERSIONDLGPARAMSA* params) {
  if (!params) {
    return ERROR_BAD_ARGUMENT;
  }
  const CoreBlock<wchar_t> fileList = ConvertList(params->fileList);
  FILECONVERSIONDLGPARAMS wide = {};
  wide.uStructSize = sizeof(wide);
  wide.overwriteMode = params->overwriteMode;
  wide.formats = params->formats;
  wide.formatCount = params->formatCount;
  ConvertField(params->destinationFolder, wide.destinationFolder);
  ConvertField(params->sourceFolder, wide.sourceFolder);
  wide.logReport = params->logReport;
  wide.deleteSource = params->deleteSource;
  wide.fullPath = params->fullPath;
  wide.useOriginalFolder = params->useOriginalFolder;
  wide.fileList = fileList.get();
  wide.uiFlags = params->uiFlags;
  CopyPlaceAndHelp(*params, wide);
  return Z_DlgFileConversion(parent, &wide);
}

int32_t ZV_CALL Z_DlgFilesAssociationA(HWND parent, FILEASSOCIATIONDLGPARAMSA* params) {
  if (!params) {
    return ERROR_BAD_ARGUMENT;
  }
  const CoreBlock<wchar_t> formats = ConvertList(params->pszFormats);
  const CoreBlock<wchar_t> selected = ConvertExtensionList(params->pszSelected);
  const WideDup program = ToWide(params->pszProgID);
  FILEASSOCIATIONDLGPARAMS wide = {};
  wide.uStructSize = sizeof(wide);
  wide.pszFormats = formats.get();
  wide.pszSelected = selected.get();
  wide.pszProgID = program.get();
  wide.uFlags = params->uFlags;
  wide.ptPosition = params->ptPosition;
  wide.pfnHelpCallback = params->pfnHelpCallback;
  wide.pHelpUserData = params->pHelpUserData;
  return Z_DlgFilesAssociation(parent, &wide);
}

// A copy, since nothing that the frame stores in its record goes back to an 8-bit caller. A list that cannot be converted
// goes on as it is, for the wide export to refuse.
int32_t ZV_CALL Z_DlgPrintStitchedImagesA(HWND parent, STITCHEDPRINTDLGPARAMSA* params) {
  if (!params) {
    return ERROR_BAD_ARGUMENT;
  }
  STITCHEDPRINTDLGPARAMS wide = *params;
  wide.uStructSize = sizeof(wide);
  DLGBITMAPLIST images = {};
  const bool converted = AfxIsValidAddress(params->pBitmapList, sizeof(DLGBITMAPLIST), FALSE) &&
                         ConvertImageListToWide(params->pBitmapList, &images) == SUCCESS;
  if (converted) {
    wide.pBitmapList = &images;
  }
  const int32_t result = Z_DlgPrintStitchedImages(parent, &wide);
  if (converted) {
    FreeWideImageList(&images);
  }
  return result;
}
