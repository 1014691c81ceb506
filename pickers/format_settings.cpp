#include "pickers/format_settings.h"

namespace {

// Gives the fonts of a drawing the name that userData, a VECTORFORMATOPTION, holds.
int32_t ZV_CALL SubstituteFace(void* logFont, void* userData) {
  const auto* const record = static_cast<const VECTORFORMATOPTION*>(userData);
  auto* const font = static_cast<LOGFONTW*>(logFont);
  for (int i = 0; i < LF_FACESIZE; ++i) {
    font->lfFaceName[i] = record->faceName[i];
  }
  font->lfFaceName[LF_FACESIZE - 1] = L'\0';
  return SUCCESS;
}

template <class Record>
const Record& As(const void* options) {
  return *static_cast<const Record*>(options);
}

}  // namespace

FormatSettings::FormatSettings(const OPENDLGFILEDATA& entry, const LOADFILEOPTION& option)
    : formatClass_(entry.formatOptions ? ClassOfFormat(entry.format) : FormatClass::kNone), format_(entry.format) {
  Set(entry.formatOptions);
  if (formatClass_ == FormatClass::kPdf || formatClass_ == FormatClass::kXps || formatClass_ == FormatClass::kXls ||
      formatClass_ == FormatClass::kDpiPair) {
    GetFileInfo(entry.fileName, entry.fileInfo, sizeof(FILEINFO), 0, &option);
  }
  if (formatClass_ == FormatClass::kDpiPair || formatClass_ == FormatClass::kLoadSize) {
    entry.fileInfo->flags = FILEINFO_LOAD_SIZE_GIVEN;
  }
}

void FormatSettings::Set(const void* options) {
  switch (formatClass_) {
    case FormatClass::kVectorView: return SetView(As<VECTORFORMATOPTION>(options));
    case FormatClass::kVectorBackground: return SetBackground(As<VECTORBACKGROUNDFORMATOPTION>(options));
    case FormatClass::kVectorPen: return SetPens(As<VECTORPENFORMATOPTION>(options));
    case FormatClass::kPdf: return SetPdf(As<PDFFORMATOPTION>(options));
    case FormatClass::kXps: return SetXps(As<XPSFORMATOPTION>(options));
    case FormatClass::kXls: return SetXls(As<XLSFORMATOPTION>(options));
    case FormatClass::kDpiPair: return SetDpi(As<PAIRFORMATOPTION>(options));
    case FormatClass::kLoadSize: return SetSize(As<PAIRFORMATOPTION>(options));
    case FormatClass::kNone: return;
  }
}

FormatSettings::~FormatSettings() {
  switch (formatClass_) {
    case FormatClass::kVectorView: RestoreView(); break;
    case FormatClass::kVectorBackground:
      SetVectorBackground(formerBackground_);
      RestoreView();
      break;
    case FormatClass::kVectorPen:
      SetVectorPenOptions(&formerPens_);
      RestoreView();
      break;
    case FormatClass::kPdf: SetPDFLoadOptions(&formerPdf_); break;
    case FormatClass::kXps: SetXPSLoadOptions(&formerXps_); break;
    case FormatClass::kXls: SetXLSLoadOptions(&formerXls_); break;
    case FormatClass::kDpiPair: SetLoadDpi(formerX_, formerY_); break;
    case FormatClass::kLoadSize: SetLoadSize(format_, formerX_, formerY_); break;
    case FormatClass::kNone: break;
  }
}

void FormatSettings::SetView(const VECTORFORMATOPTION& record) {
  GetVectorViewSize(&formerX_, &formerY_);
  GetVectorViewMode(&formerMode_);
  SetVectorViewSize(record.viewWidth, record.viewHeight);
  SetVectorViewMode(record.viewMode);
  SetVectorFontSubstitution(SubstituteFace, const_cast<VECTORFORMATOPTION*>(&record));
}

void FormatSettings::RestoreView() const {
  SetVectorViewSize(formerX_, formerY_);
  SetVectorViewMode(formerMode_);
  ResetVectorFontSubstitution();
}

void FormatSettings::SetBackground(const VECTORBACKGROUNDFORMATOPTION& record) {
  SetView(record.vector);
  GetVectorBackground(&formerBackground_);
  SetVectorBackground(record.background);
}

void FormatSettings::SetPens(const VECTORPENFORMATOPTION& record) {
  SetView(record.vector);
  GetVectorPenOptions(&formerPens_, sizeof(formerPens_));
  SetVectorPenOptions(&record.pens);
}

void FormatSettings::SetPdf(const PDFFORMATOPTION& record) {
  GetPDFLoadOptions(&formerPdf_, sizeof(formerPdf_));
  SetPDFLoadOptions(&record.pdf);
}

void FormatSettings::SetXps(const XPSFORMATOPTION& record) {
  GetXPSLoadOptions(&formerXps_, sizeof(formerXps_));
  SetXPSLoadOptions(&record.xps);
}

void FormatSettings::SetXls(const XLSFORMATOPTION& record) {
  GetXLSLoadOptions(&formerXls_, sizeof(formerXls_));
  SetXLSLoadOptions(&record.xls);
}

void FormatSettings::SetDpi(const PAIRFORMATOPTION& record) {
  GetLoadDpi(&formerX_, &formerY_);
  SetLoadDpi(record.x, record.y);
}

void FormatSettings::SetSize(const PAIRFORMATOPTION& record) {
  GetLoadSize(format_, &formerX_, &formerY_, nullptr);
  SetLoadSize(format_, record.x, record.y);
}
