#include "pickers/format_options.h"

#include "include/zvfiledlg_open.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvfile/zvfile.h"

namespace {

struct ClassPredicate {
  int32_t (*answers)(int32_t format);
  FormatClass formatClass;
};

constexpr ClassPredicate kPredicates[] = {
    {IsVectorViewFormat, FormatClass::kVectorView},
    {IsPDFFormat, FormatClass::kPdf},
    {IsVectorBackgroundFormat, FormatClass::kVectorBackground},
    {IsVectorPenFormat, FormatClass::kVectorPen},
    {IsDpiPairFormat, FormatClass::kDpiPair},
    {IsLoadSizeFormat, FormatClass::kLoadSize},
    {IsXPSFormat, FormatClass::kXps},
    {IsXLSFormat, FormatClass::kXls},
};

template <class Record>
Record* NewRecord(void** options) {
  auto* const record = static_cast<Record*>(::GlobalAlloc(GPTR, sizeof(Record)));
  *options = record;
  return record;
}

bool FillView(VECTORFORMATOPTION* record) {
  if (!record) {
    return false;
  }
  int32_t width = 0, height = 0, mode = 0;
  GetVectorViewSize(&width, &height);
  GetVectorViewMode(&mode);
  record->viewWidth = width;
  record->viewHeight = height;
  record->viewMode = mode;
  return true;
}

bool MakeBackgroundOptions(void** options) {
  auto* const record = NewRecord<VECTORBACKGROUNDFORMATOPTION>(options);
  if (!record || !FillView(&record->vector)) {
    return false;
  }
  uint32_t color = 0;
  GetVectorBackground(&color);
  record->background = color;
  return true;
}

bool MakePenOptions(void** options) {
  auto* const record = NewRecord<VECTORPENFORMATOPTION>(options);
  if (!record || !FillView(&record->vector)) {
    return false;
  }
  GetVectorPenOptions(&record->pens, sizeof(record->pens));
  return true;
}

bool MakePairOptions(int32_t format, bool isDpi, void** options) {
  auto* const record = NewRecord<PAIRFORMATOPTION>(options);
  if (!record) {
    return false;
  }
  int32_t x = 0, y = 0;
  if (isDpi) {
    GetLoadDpi(&x, &y);
  } else {
    GetLoadSize(format, &x, &y, nullptr);
  }
  record->x = x;
  record->y = y;
  return true;
}

// A record whose second word starts the file library's own record.
template <class Record, class Option>
bool MakeWrapped(Option Record::*option, int32_t (*read)(Option*, uint32_t), void** options) {
  auto* const record = NewRecord<Record>(options);
  if (!record) {
    return false;
  }
  read(&(record->*option), sizeof(Option));
  return true;
}

}  // namespace

FormatClass ClassOfFormat(int32_t format) {
  for (const ClassPredicate& predicate : kPredicates) {
    if (predicate.answers(format)) {
      return predicate.formatClass;
    }
  }
  return FormatClass::kNone;
}

bool MakeFormatOptions(int32_t format, void** options) {
  *options = nullptr;
  switch (ClassOfFormat(format)) {
    case FormatClass::kVectorView: return FillView(NewRecord<VECTORFORMATOPTION>(options));
    case FormatClass::kVectorBackground: return MakeBackgroundOptions(options);
    case FormatClass::kVectorPen: return MakePenOptions(options);
    case FormatClass::kDpiPair: return MakePairOptions(format, true, options);
    case FormatClass::kLoadSize: return MakePairOptions(format, false, options);
    case FormatClass::kPdf: return MakeWrapped(&PDFFORMATOPTION::pdf, GetPDFLoadOptions, options);
    case FormatClass::kXps: return MakeWrapped(&XPSFORMATOPTION::xps, GetXPSLoadOptions, options);
    case FormatClass::kXls: return MakeWrapped(&XLSFORMATOPTION::xls, GetXLSLoadOptions, options);
    case FormatClass::kNone: break;
  }
  return true;
}
