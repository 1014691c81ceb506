#include "conversion/conversion_run.h"

#include "conversion/clear_palette.h"
#include "conversion/run_rules.h"
#include "platform/file.h"
#include "platform/scope_exit.h"
#include "platform/unique_handle.h"
#include "services/zvdlgutil/dialog_string.h"
#include "services/zvdlgutil/file_name_utility.h"

namespace {

LOADFILEOPTION DefaultLoadOption() {
  LOADFILEOPTION option = {};
  ::GetDefaultLoadFileOption(&option, sizeof option);
  return option;
}

void CarryLoadValues(const CONVERSIONFILEOPTIONS& values, LOADFILEOPTION& option) {
  option.uStructSize = sizeof option;
  option.xResolution = values.loadXResolution;
  option.yResolution = values.loadYResolution;
  option.flags = values.loadFlags;
  option.passes = values.loadPasses;
  option.reserved24 = values.loadReserved;
  option.filePosition = values.loadFilePosition;
}

void FillLine(LOGREPORTITEM& line, const CString& source, const CString& destination, ConversionStatus status) {
  line.source = source;
  line.destination = destination;
  line.status = status;
}

}  // namespace

void CZVConversionRun::SetStatus(STATUSCALLBACK callback, void* userData) {
  statusCallback_ = callback;
  statusUserData_ = userData;
}

int32_t CZVConversionRun::ConvertQueueItem(int fileRow, int formatRow, CArray<LOGREPORTITEM>& log) {
  const CString source = host_.GetSourcePath(fileRow);
  CONVERSIONFILEOPTIONS options;
  host_.GetSourceOptions(fileRow, options);
  const int32_t outcome = options.pageCount >= 2 ? ConvertSelectedPages(source, options, formatRow, log)
                                                 : ConvertOnePage(source, options, formatRow, log);
  if (outcome == DELETE_SOURCE) {
    if (DeleteSourceFile(source)) {
      host_.MarkSourceDeleted(fileRow);
    } else {
      host_.ReportDeletionFailure(source);
    }
  }
  return SUCCESS;
}

// The last page alone decides about the source.
int32_t CZVConversionRun::ConvertSelectedPages(const CString& source, const CONVERSIONFILEOPTIONS& options,
                                               int formatRow, CArray<LOGREPORTITEM>& log) {
  int32_t outcome = KEEP_SOURCE;
  for (int32_t i = 0; i < options.pageCount; ++i) {
    LOGREPORTITEM line;
    LOADFILEOPTION loadOption = DefaultLoadOption();
    CString destination = BuildDestinationPath(source, formatRow);
    if (options.pages[i] <= options.pageTotal) {
      CarryLoadValues(options, loadOption);
      loadOption.pageNumber = options.pages[i];
      outcome = ConvertPage(source, loadOption, destination, formatRow, line);
    } else {
      FillLine(line, source, destination, CONVERSION_FAILED);
      outcome = KEEP_SOURCE;
    }
    log.Add(line);
    if (line.status == CONVERSION_ABORTED) {
      return KEEP_SOURCE;
    }
  }
  return outcome;
}

int32_t CZVConversionRun::ConvertOnePage(const CString& source, const CONVERSIONFILEOPTIONS& options, int formatRow,
                                         CArray<LOGREPORTITEM>& log) {
  LOGREPORTITEM line;
  LOADFILEOPTION loadOption = DefaultLoadOption();
  CString destination = BuildDestinationPath(source, formatRow);
  // A selection of which the file has no page leaves an array without entries.
  loadOption.pageNumber = options.pages && options.pageCount > 0 ? options.pages[0] : 1;
  const int32_t outcome = ConvertPage(source, loadOption, destination, formatRow, line);
  log.Add(line);
  return outcome;
}

CString CZVConversionRun::BuildDestinationPath(const CString& source, int formatRow) {
  const CONVERSIONFORMATITEM* const format = host_.GetFormatItem(formatRow);
  if (!format || source.IsEmpty()) {
    return CString();
  }
  const CString folder =
      settings_.useOriginalFolder ? CZVFileNameUtility::ExtractFilePath(source) + L"\\" : host_.GetDestinationFolder();
  const CString extension = LoadDialogString(static_cast<UINT>(format->extensionStringId));
  if (extension.IsEmpty()) {
    return CString();
  }
  return JoinDestinationPath(folder, host_.ExpandName(CZVFileNameUtility::ExtractFileName(source)), extension);
}

int32_t CZVConversionRun::ConvertPage(const CString& source, const LOADFILEOPTION& loadOption, CString& destination,
                                      int formatRow, LOGREPORTITEM& line) {
  if (destination.IsEmpty()) {
    FillLine(line, source, destination, CONVERSION_FAILED);
    return KEEP_SOURCE;
  }
  if (!FileExists(destination)) {
    return ConvertToFreePath(source, loadOption, destination, formatRow, true, line);
  }
  int32_t mode = settings_.overwriteMode;
  if (mode == OVERWRITE_ASK) {
    const int32_t answer = host_.AskOverwrite(destination);
    if (answer == ANSWER_ABORT) {
      FillLine(line, CString(), CString(), CONVERSION_ABORTED);
      return KEEP_SOURCE;
    }
    mode = OverwriteModeOfAnswer(answer);
  }
  CString freeName;
  if (mode == OVERWRITE_RENAME) {
    freeName = host_.FindFreeName(destination);
  }
  const OverwriteDecision decision = DecideOverwrite(mode, source, destination, freeName);
  if (!decision.goAhead) {
    FillLine(line, source, destination, CONVERSION_SKIPPED);
    return KEEP_SOURCE;
  }
  if (mode == OVERWRITE_RENAME) {
    destination = freeName;
  }
  return ConvertToFreePath(source, loadOption, destination, formatRow, decision.mayDeleteSource, line);
}

int32_t CZVConversionRun::ConvertToFreePath(const CString& source, const LOADFILEOPTION& loadOption,
                                            const CString& destination, int formatRow, bool mayDeleteSource,
                                            LOGREPORTITEM& line) {
  if (destination.GetLength() >= kDestinationPathLimit) {
    FillLine(line, source, destination, CONVERSION_PATH_TOO_LONG);
    return KEEP_SOURCE;
  }
  if (ConvertFile(source, destination, loadOption, formatRow) != SUCCESS) {
    FillLine(line, source, destination, CONVERSION_FAILED);
    return KEEP_SOURCE;
  }
  FillLine(line, source, destination, CONVERSION_OK);
  return settings_.deleteSource && mayDeleteSource ? DELETE_SOURCE : KEEP_SOURCE;
}

int32_t CZVConversionRun::ConvertFile(const CString& source, const CString& destination,
                                      const LOADFILEOPTION& loadOption, int formatRow) {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof bitmap;
  const CONVERSIONFORMATITEM* const format = host_.GetFormatItem(formatRow);
  if (!format) {
    return ERROR_BAD_ARGUMENT;
  }
  J2KSAVEOPTION formerJ2k = {};
  ::GetJ2KOptions(&formerJ2k, sizeof formerJ2k);
  ::SetJ2KOptions(&format->j2kOption);
  STATUSCALLBACK formerStatus = nullptr;
  void* formerUserData = nullptr;
  ::SetStatusCallback(nullptr, nullptr, &formerStatus, &formerUserData);
  const scope_exit restore([&] {
    if (bitmap.flags & BITMAP_FLAG_ALLOCATED) {
      ::FreeBitmap(&bitmap);
    }
    ::SetStatusCallback(formerStatus, formerUserData, nullptr, nullptr);
    ::SetJ2KOptions(&formerJ2k);
  });

  loadedRows_ = savedRows_ = 0;
  aborted_ = false;
  int32_t result = ::LoadImageFile(source, &bitmap, sizeof bitmap, 0, ORDER_BGR_OR_GRAY,
                                   LOADFILE_ALLOCATE | LOADFILE_STORE, &LoadRows, this, &loadOption, nullptr);
  if (result == SUCCESS) {
    result = TransformBitmap(bitmap);
  }
  if (result == SUCCESS) {
    result = ::SaveFile(destination, &bitmap, format->fileFormat, format->bitsPerPixel, format->qFactor,
                        SAVEFILE_ROWS_FROM_CALLBACK, &SaveRows, this, &format->saveOption);
  }
  return result;
}

// A resize that succeeds makes good for a rotation that failed.
int32_t CZVConversionRun::TransformBitmap(BITMAPHANDLE& bitmap) const {
  const CONVERSIONROTATEOPTIONS& rotate = settings_.rotate;
  if (BlendsPixels(rotate, settings_.resize) && HasClearPalette(bitmap)) {
    const int32_t unfolded = UnfoldClearPalette(bitmap);
    if (unfolded != SUCCESS) {
      return unfolded;
    }
  }
  int32_t result = ::RotateBitmap(&bitmap, rotate.angle, rotate.flags, rotate.fillColor);
  if (settings_.resize.enabled) {
    const PixelSize size = ResizedSize(settings_.resize, bitmap);
    result = ::SizeBitmap(&bitmap, size.width, size.height, SizeMethod(settings_.resize.method));
  }
  return result;
}

int32_t CZVConversionRun::ReportHalf(int percent) const {
  return statusCallback_ ? statusCallback_(percent / 2, statusUserData_) : SUCCESS;
}

int32_t ZV_CALL CZVConversionRun::LoadRows(FILEINFO* info, BITMAPHANDLE*, uint8_t*, uint32_t, int32_t, int32_t rowCount,
                                           void* userData) {
  if (!userData || !info) {
    return ERROR_USER_ABORT;
  }
  try {
    return static_cast<CZVConversionRun*>(userData)->OnRowsLoaded(*info, rowCount);
  } catch (...) {
    return ERROR_OUT_OF_MEMORY;
  }
}

int32_t CZVConversionRun::OnRowsLoaded(const FILEINFO& info, int32_t rowCount) {
  if (aborted_) {
    return ERROR_USER_ABORT;
  }
  loadedRows_ += rowCount;
  const int percent = Percent(loadedRows_, info.height);
  if (percent > 100) {
    aborted_ = true;
    return ERROR_USER_ABORT;
  }
  if (!IsReportedPercent(percent)) {
    return SUCCESS;
  }
  const int32_t answer = ReportHalf(percent);
  aborted_ = answer == ERROR_USER_ABORT;
  return answer;
}

int32_t ZV_CALL CZVConversionRun::SaveRows(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t firstRow, int32_t rowCount,
                                           void* userData) {
  if (!userData || !bitmap) {
    return ERROR_USER_ABORT;
  }
  try {
    return static_cast<CZVConversionRun*>(userData)->OnRowsWanted(*bitmap, buffer, firstRow, rowCount);
  } catch (...) {
    return ERROR_OUT_OF_MEMORY;
  }
}

int32_t CZVConversionRun::OnRowsWanted(BITMAPHANDLE& bitmap, uint8_t* buffer, int32_t firstRow, int32_t rowCount) {
  const int total = ExchangesSides(bitmap.viewPerspective) ? bitmap.width : bitmap.height;
  for (int32_t row = firstRow; row < firstRow + rowCount; ++row) {
    ::LockBitmapRows(&bitmap);
    const int32_t copied = ::CopyBitmapRow(&bitmap, buffer, row, bitmap.bytesPerLine);
    ::UnlockBitmapRows(&bitmap);
    if (copied < 1) {
      return copied;
    }
    buffer += bitmap.bytesPerLine;
    const int percent = Percent(++savedRows_, total);
    if (percent <= 100 && IsReportedPercent(percent) && ReportHalf(percent) == ERROR_USER_ABORT) {
      return ERROR_USER_ABORT;
    }
  }
  return SUCCESS;
}

bool CZVConversionRun::FileExists(const CString& path) {
  WIN32_FIND_DATAW found;
  return static_cast<bool>(unique_hfind(::FindFirstFileW(path, &found)));
}

bool CZVConversionRun::DeleteSourceFile(const CString& path) {
  try {
    CFile::Remove(path);
    return true;
  } catch (CFileException* exception) {
    exception->Delete();
    return false;
  }
}
