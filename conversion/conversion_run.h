// CZVConversionRun: turns one entry of the queue into files. It loads the source, rotates, resizes and saves under a name
// made from the naming template, and says in log lines what became of each page. What it needs of the dialog (lists, texts,
// questions) it asks through CZVConversionHost; windows are none of its business. One run lives for the length of one
// progress dialog; host and settings must outlive it. Everything happens on the thread of the caller: the user interface
// stays alive because row callbacks report to the status callback, which may pump messages and may stop the file in work.
// A source is touched by nothing but DeleteSourceFile, and by that only once its conversion is safely on disk.
#pragma once

#include "conversion/records.h"

class CZVConversionHost {
 public:
  virtual CString GetSourcePath(int fileRow) = 0;
  // False when the row has no record; options are then as constructed.
  virtual bool GetSourceOptions(int fileRow, CONVERSIONFILEOPTIONS& options) = 0;
  // Null for a row that does not exist. The host keeps it.
  virtual const CONVERSIONFORMATITEM* GetFormatItem(int formatRow) = 0;
  // The folder that outputs go to, as it stands now; never empty.
  virtual CString GetDestinationFolder() = 0;
  // Expands the output template for a source name; each call counts on.
  virtual CString ExpandName(const CString& sourceName) = 0;
  // A path beside `destination` that is not taken; empty when there is none.
  virtual CString FindFreeName(const CString& destination) = 0;
  // One of OverwriteAnswer.
  virtual int32_t AskOverwrite(const CString& destination) = 0;
  virtual void ReportDeletionFailure(const CString& source) = 0;
  // The source of this row is gone: the row leaves the list after the run.
  virtual void MarkSourceDeleted(int fileRow) = 0;

 protected:
  ~CZVConversionHost() = default;
};

struct ConversionSettings {
  int32_t overwriteMode = OVERWRITE_ASK;
  bool deleteSource = false;
  bool useOriginalFolder = false;
  CONVERSIONROTATEOPTIONS rotate;
  CONVERSIONRESIZEOPTIONS resize;
};

class CZVConversionRun {
 public:
  // What ConvertPage says about the source.
  enum : int32_t { DELETE_SOURCE = 1, KEEP_SOURCE = 2 };

  CZVConversionRun(CZVConversionHost& host, const ConversionSettings& settings) : host_(host), settings_(settings) {}
  CZVConversionRun(const CZVConversionRun&) = delete;
  CZVConversionRun& operator=(const CZVConversionRun&) = delete;

  // Gets half the percentage of the load, then half that of the save; answers 1 to go on, ERROR_USER_ABORT to stop the file
  // in work. Null takes it away.
  void SetStatus(STATUSCALLBACK callback, void* userData);

  // All pages of one entry, and the deletion of its source. Adds at least one line to the log. Always 1.
  int32_t ConvertQueueItem(int fileRow, int formatRow, CArray<LOGREPORTITEM>& log);
  // Decides about an existing destination (which a free name may replace), converts, fills the line.
  int32_t ConvertPage(const CString& source, const LOADFILEOPTION& loadOption, CString& destination, int formatRow,
                      LOGREPORTITEM& line);
  // Load, transforms, save. SUCCESS, or the code of the service that failed.
  int32_t ConvertFile(const CString& source, const CString& destination, const LOADFILEOPTION& loadOption,
                      int formatRow);
  // Empty when no destination can be formed.
  CString BuildDestinationPath(const CString& source, int formatRow);

  // Whether the system finds the path; folders count.
  static bool FileExists(const CString& path);
  // False when the system refuses.
  static bool DeleteSourceFile(const CString& path);

 private:
  int32_t ConvertSelectedPages(const CString& source, const CONVERSIONFILEOPTIONS& options, int formatRow,
                               CArray<LOGREPORTITEM>& log);
  int32_t ConvertOnePage(const CString& source, const CONVERSIONFILEOPTIONS& options, int formatRow,
                         CArray<LOGREPORTITEM>& log);
  int32_t ConvertToFreePath(const CString& source, const LOADFILEOPTION& loadOption, const CString& destination,
                            int formatRow, bool mayDeleteSource, LOGREPORTITEM& line);
  int32_t TransformBitmap(BITMAPHANDLE& bitmap) const;
  int32_t ReportHalf(int percent) const;

  int32_t OnRowsLoaded(const FILEINFO& info, int32_t rowCount);
  int32_t OnRowsWanted(BITMAPHANDLE& bitmap, uint8_t* buffer, int32_t firstRow, int32_t rowCount);
  static int32_t ZV_CALL LoadRows(FILEINFO* info, BITMAPHANDLE* bitmap, uint8_t* buffer, uint32_t flags,
                                  int32_t firstRow, int32_t rowCount, void* userData);
  static int32_t ZV_CALL SaveRows(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t firstRow, int32_t rowCount,
                                  void* userData);

  CZVConversionHost& host_;
  const ConversionSettings& settings_;
  STATUSCALLBACK statusCallback_ = nullptr;
  void* statusUserData_ = nullptr;
  bool aborted_ = false;
  int32_t loadedRows_ = 0;
  int32_t savedRows_ = 0;
};
