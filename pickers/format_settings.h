// FormatSettings sets the process-wide load settings of a file's class from its record for the length of a scope, and puts
// the former ones back. Which record a class has is told in format_options.h.
#pragma once

#include "include/zvfiledlg_open.h"
#include "pickers/format_options.h"
#include "services/zvfile/zvfile.h"

class FormatSettings {
 public:
  // Reads entry.formatOptions, which may be null: then nothing is set. Where the settings decide the size of the picture,
  // entry.fileInfo is read anew with `option`, or marked as holding the size to load.
  FormatSettings(const OPENDLGFILEDATA& entry, const LOADFILEOPTION& option);
  FormatSettings(const FormatSettings&) = delete;
  FormatSettings& operator=(const FormatSettings&) = delete;
  ~FormatSettings();

 private:
  void Set(const void* options);
  void SetView(const VECTORFORMATOPTION& record);
  void SetPdf(const PDFFORMATOPTION& record);
  void SetBackground(const VECTORBACKGROUNDFORMATOPTION& record);
  void SetPens(const VECTORPENFORMATOPTION& record);
  void SetDpi(const PAIRFORMATOPTION& record);
  void SetSize(const PAIRFORMATOPTION& record);
  void SetXps(const XPSFORMATOPTION& record);
  void SetXls(const XLSFORMATOPTION& record);
  void RestoreView() const;

  FormatClass formatClass_;
  int32_t format_;
  int32_t formerX_ = 0, formerY_ = 0;  // view size, resolution or load size
  int32_t formerMode_ = 0;
  uint32_t formerBackground_ = 0;
  VECTORPENOPTION formerPens_ = {};
  PDFLOADOPTION formerPdf_ = {};
  XPSLOADOPTION formerXps_ = {};
  XLSLOADOPTION formerXls_ = {};
};
