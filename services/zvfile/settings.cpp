#include "services/zvfile/settings.h"

#include <algorithm>
#include <map>
#include <mutex>

#include "services/zvfile/operation.h"

namespace zvfile {
namespace {

constexpr int32_t kDefaultDpi = 150;
constexpr int32_t kMaxDpi = 100000;
constexpr size_t kMaxSaveSizes = 16;

template <typename Record>
Record Tagged() {
  Record record = {};
  record.uStructSize = sizeof record;
  return record;
}

// ISO/IEC 15444-1 leaves these free; they are what its reference coders begin with: five decompositions, 64 x 64 code blocks,
// layer progression, no tiles.
J2KSAVEOPTION DefaultJ2k() {
  J2KSAVEOPTION option = Tagged<J2KSAVEOPTION>();
  option.useColorTransform = 1;
  option.compressionControl = 3;
  option.compressionRatio = 20.0F;
  option.decompositionLevel = 5;
  option.codeBlockWidth = 64;
  option.codeBlockHeight = 64;
  option.guardBits = 2;
  option.roiWeight = 1.0F;
  option.alphaLossless = 1;
  option.alphaActiveBits = 8;
  return option;
}

// The adaptive template pixels at their nominal places (ITU-T T.88, 6.2.5.4), no loss, 300 dots per inch.
JBIG2SAVEOPTION DefaultJbig2() {
  JBIG2SAVEOPTION option = Tagged<JBIG2SAVEOPTION>();
  option.genericAT1X = option.textAT1X = 3;
  option.genericAT1Y = option.textAT1Y = -1;
  option.genericAT2X = option.textAT2X = -3;
  option.genericAT2Y = option.textAT2Y = -1;
  option.genericAT3X = option.textAT3X = 2;
  option.genericAT3Y = option.textAT3Y = -2;
  option.genericAT4X = option.textAT4X = -2;
  option.genericAT4Y = option.textAT4Y = -2;
  option.minArea = 1;
  option.minWidth = option.minHeight = 1;
  option.maxArea = 10000;
  option.maxWidth = option.maxHeight = 100;
  option.xResolution = option.yResolution = 300;
  return option;
}

PDFLOADOPTION DefaultPdf() {
  PDFLOADOPTION option = Tagged<PDFLOADOPTION>();
  option.xResolution = option.yResolution = kDefaultDpi;
  option.displayDepth = 24;
  option.textAlpha = option.graphicsAlpha = 4;
  return option;
}

XPSLOADOPTION DefaultXps() {
  XPSLOADOPTION option = Tagged<XPSLOADOPTION>();
  option.xResolution = option.yResolution = kDefaultDpi;
  return option;
}

VECTORPENOPTION DefaultPens() {
  VECTORPENOPTION option = Tagged<VECTORPENOPTION>();
  // By index: the record is packed, so no reference may be bound to its fields.
  // Not by a standard algorithm: the packed record gives no aligned reference to its arrays.
  for (size_t pen = 0; pen < sizeof option.width / sizeof option.width[0]; ++pen) option.width[pen] = 1;
  return option;
}

// A letter page, 8.5 x 11 inches without margins.
RASTERIZEDOCOPTION DefaultRasterizeDoc() {
  RASTERIZEDOCOPTION option = Tagged<RASTERIZEDOCOPTION>();
  option.pageWidth = 8.5;
  option.pageHeight = 11;
  option.unit = 1;
  option.xResolution = option.yResolution = kDefaultDpi;
  return option;
}

struct Settings {
  J2KSAVEOPTION j2k = DefaultJ2k();
  JBIG2SAVEOPTION jbig2 = DefaultJbig2();
  PDFLOADOPTION pdf = DefaultPdf();
  XPSLOADOPTION xps = DefaultXps();
  XLSLOADOPTION xls = Tagged<XLSLOADOPTION>();
  VECTORPENOPTION pens = DefaultPens();
  RASTERIZEDOCOPTION rasterizeDoc = DefaultRasterizeDoc();
  int32_t vectorWidth = 0, vectorHeight = 0;
  int32_t vectorMode = 0;
  uint32_t vectorBackground = 0x00FFFFFF;
  FontSubstitution fonts;
  int32_t xDpi = kDefaultDpi, yDpi = kDefaultDpi;
  std::map<int32_t, IMAGESIZE> loadSizes;
  std::vector<IMAGESIZE> saveSizes;
  void* redirect[2] = {nullptr, nullptr};
};

std::mutex settingsMutex;

Settings& Current() {
  static Settings settings;
  return settings;
}

template <typename Record>
int32_t ReadRecord(Record Settings::*member, Record* option, uint32_t size) {
  if (!option) return ERROR_BAD_ARGUMENT;
  if (size != sizeof(Record)) return ERROR_BAD_RECORD_SIZE;
  const std::lock_guard lock(settingsMutex);
  *option = Current().*member;
  return SUCCESS;
}

template <typename Record>
int32_t WriteRecord(Record Settings::*member, const Record* option) {
  if (!option) return ERROR_BAD_ARGUMENT;
  if (option->uStructSize != sizeof(Record)) return ERROR_BAD_RECORD_SIZE;
  const std::lock_guard lock(settingsMutex);
  Current().*member = *option;
  return SUCCESS;
}

template <typename Value>
int32_t ReadValue(Value Settings::*member, Value* value) {
  if (!value) return ERROR_BAD_ARGUMENT;
  const std::lock_guard lock(settingsMutex);
  *value = Current().*member;
  return SUCCESS;
}

template <typename Value>
int32_t WriteValue(Value Settings::*member, Value value) {
  const std::lock_guard lock(settingsMutex);
  Current().*member = value;
  return SUCCESS;
}

}  // namespace

void LoadDpiSetting(int32_t& x, int32_t& y) {
  const std::lock_guard lock(settingsMutex);
  x = Current().xDpi;
  y = Current().yDpi;
}

std::map<int32_t, IMAGESIZE> LoadSizeSettings() {
  const std::lock_guard lock(settingsMutex);
  return Current().loadSizes;
}

FontSubstitution FontSubstitutionSetting() {
  const std::lock_guard lock(settingsMutex);
  return Current().fonts;
}

J2KSAVEOPTION J2kSetting() {
  const std::lock_guard lock(settingsMutex);
  return Current().j2k;
}

std::vector<IMAGESIZE> SaveSizeListSetting() {
  const std::lock_guard lock(settingsMutex);
  return Current().saveSizes;
}

}  // namespace zvfile

using zvfile::Barrier;
using zvfile::Current;
using zvfile::ReadRecord;
using zvfile::ReadValue;
using zvfile::Settings;
using zvfile::settingsMutex;
using zvfile::WriteRecord;
using zvfile::WriteValue;

int32_t GetDefaultLoadFileOption(LOADFILEOPTION* option, uint32_t size) {
  if (!option) return ERROR_BAD_ARGUMENT;
  if (size != sizeof *option) return ERROR_BAD_RECORD_SIZE;
  *option = zvfile::Tagged<LOADFILEOPTION>();
  option->pageNumber = 1;
  return SUCCESS;
}

int32_t GetDefaultSaveFileOption(SAVEFILEOPTION* option, uint32_t size) {
  if (!option) return ERROR_BAD_ARGUMENT;
  if (size != sizeof *option) return ERROR_BAD_RECORD_SIZE;
  *option = zvfile::Tagged<SAVEFILEOPTION>();
  option->pageNumber = 1;
  option->stampWidth = 120;
  option->stampHeight = 120;
  option->stampBitsPerPixel = 24;
  return SUCCESS;
}

int32_t GetDefaultJ2KOptions(J2KSAVEOPTION* option, uint32_t size) {
  if (!option) return ERROR_BAD_ARGUMENT;
  if (size != sizeof *option) return ERROR_BAD_RECORD_SIZE;
  *option = zvfile::DefaultJ2k();
  return SUCCESS;
}

int32_t GetJ2KOptions(J2KSAVEOPTION* option, uint32_t size) { return ReadRecord(&Settings::j2k, option, size); }
int32_t SetJ2KOptions(const J2KSAVEOPTION* option) { return WriteRecord(&Settings::j2k, option); }
int32_t GetJBIG2Options(JBIG2SAVEOPTION* option, uint32_t size) { return ReadRecord(&Settings::jbig2, option, size); }
int32_t SetJBIG2Options(const JBIG2SAVEOPTION* option) { return WriteRecord(&Settings::jbig2, option); }
int32_t GetPDFLoadOptions(PDFLOADOPTION* option, uint32_t size) { return ReadRecord(&Settings::pdf, option, size); }
int32_t SetPDFLoadOptions(const PDFLOADOPTION* option) { return WriteRecord(&Settings::pdf, option); }
int32_t GetXPSLoadOptions(XPSLOADOPTION* option, uint32_t size) { return ReadRecord(&Settings::xps, option, size); }
int32_t SetXPSLoadOptions(const XPSLOADOPTION* option) { return WriteRecord(&Settings::xps, option); }
int32_t GetXLSLoadOptions(XLSLOADOPTION* option, uint32_t size) { return ReadRecord(&Settings::xls, option, size); }
int32_t SetXLSLoadOptions(const XLSLOADOPTION* option) { return WriteRecord(&Settings::xls, option); }
int32_t GetVectorPenOptions(VECTORPENOPTION* option, uint32_t size) {
  return ReadRecord(&Settings::pens, option, size);
}
int32_t SetVectorPenOptions(const VECTORPENOPTION* option) { return WriteRecord(&Settings::pens, option); }
int32_t GetRasterizeDocOptions(RASTERIZEDOCOPTION* option, uint32_t size) {
  return ReadRecord(&Settings::rasterizeDoc, option, size);
}
int32_t SetRasterizeDocOptions(const RASTERIZEDOCOPTION* option) {
  return WriteRecord(&Settings::rasterizeDoc, option);
}

int32_t GetVectorViewSize(int32_t* width, int32_t* height) {
  const int32_t result = ReadValue(&Settings::vectorWidth, width);
  return result == SUCCESS ? ReadValue(&Settings::vectorHeight, height) : result;
}

int32_t SetVectorViewSize(int32_t width, int32_t height) {
  if (width < 0 || height < 0) return ERROR_BAD_ARGUMENT;
  WriteValue(&Settings::vectorWidth, width);
  return WriteValue(&Settings::vectorHeight, height);
}

int32_t GetVectorViewMode(int32_t* mode) { return ReadValue(&Settings::vectorMode, mode); }
int32_t SetVectorViewMode(int32_t mode) { return WriteValue(&Settings::vectorMode, mode); }
int32_t GetVectorBackground(uint32_t* color) { return ReadValue(&Settings::vectorBackground, color); }
int32_t SetVectorBackground(uint32_t color) { return WriteValue(&Settings::vectorBackground, color); }

int32_t SetVectorFontSubstitution(FONTSUBSTITUTIONCALLBACK callback, void* userData) {
  if (!callback) return ERROR_BAD_ARGUMENT;
  const std::lock_guard lock(settingsMutex);
  Current().fonts = {callback, userData};
  return SUCCESS;
}

int32_t ResetVectorFontSubstitution(void) {
  const std::lock_guard lock(settingsMutex);
  Current().fonts = {};
  return SUCCESS;
}

int32_t GetLoadDpi(int32_t* x, int32_t* y) {
  const int32_t result = ReadValue(&Settings::xDpi, x);
  return result == SUCCESS ? ReadValue(&Settings::yDpi, y) : result;
}

int32_t SetLoadDpi(int32_t x, int32_t y) {
  const bool ownSize = x == 0 && y == 0;
  if (!ownSize && (x < 1 || y < 1 || x > zvfile::kMaxDpi || y > zvfile::kMaxDpi)) return ERROR_BAD_ARGUMENT;
  WriteValue(&Settings::xDpi, x);
  return WriteValue(&Settings::yDpi, y);
}

int32_t GetLoadSize(int32_t format, int32_t* width, int32_t* height, const LOADFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    if (!width || !height) return ERROR_BAD_ARGUMENT;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    const std::lock_guard lock(settingsMutex);
    const auto found = Current().loadSizes.find(format);
    const IMAGESIZE size = found == Current().loadSizes.end() ? IMAGESIZE{0, 0} : found->second;
    *width = size.width;
    *height = size.height;
    return SUCCESS;
  });
}

int32_t SetLoadSize(int32_t format, int32_t width, int32_t height) {
  return Barrier([&]() -> int32_t {
    if (width < 0 || height < 0) return ERROR_BAD_ARGUMENT;
    const std::lock_guard lock(settingsMutex);
    Current().loadSizes[format] = {width, height};
    return SUCCESS;
  });
}

int32_t GetSaveSizeList(int32_t* count, IMAGESIZE* sizes) {
  return Barrier([&]() -> int32_t {
    if (!count) return ERROR_BAD_ARGUMENT;
    const std::vector<IMAGESIZE> list = zvfile::SaveSizeListSetting();
    if (sizes) std::copy(list.begin(), list.end(), sizes);
    *count = static_cast<int32_t>(list.size());
    return SUCCESS;
  });
}

int32_t SetSaveSizeList(int32_t count, const IMAGESIZE* sizes) {
  return Barrier([&]() -> int32_t {
    if (count < 0 || static_cast<size_t>(count) > zvfile::kMaxSaveSizes || (count > 0 && !sizes))
      return ERROR_BAD_ARGUMENT;
    const bool bad = std::any_of(sizes, sizes + count, [](const IMAGESIZE& size) {
      return size.width < 1 || size.height < 1 || size.width > 256 || size.height > 256;
    });
    if (bad) return ERROR_BAD_ARGUMENT;
    const std::lock_guard lock(settingsMutex);
    Current().saveSizes.assign(sizes, sizes + count);
    return SUCCESS;
  });
}

int32_t GetLoadRedirect(void** first, void** second) {
  if (!first || !second) return ERROR_BAD_ARGUMENT;
  const std::lock_guard lock(settingsMutex);
  *first = Current().redirect[0];
  *second = Current().redirect[1];
  return SUCCESS;
}

int32_t SetLoadRedirect(void* first, void* second) {
  const std::lock_guard lock(settingsMutex);
  Current().redirect[0] = first;
  Current().redirect[1] = second;
  return SUCCESS;
}
