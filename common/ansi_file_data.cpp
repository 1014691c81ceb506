#include "common/ansi_file_data.h"

#include <algorithm>
#include <cstring>

#include "common/ansi_text.h"
#include "platform/afx.h"

namespace {

constexpr uint32_t kOptionsSettled = 16;
constexpr int32_t kVectorViewFormats[] = {56, 62, 123, 136, 144, 145, 169, 247, 251, 255, 260, 261};
constexpr int32_t kVectorBackgroundFormats[] = {58, 124, 290};
constexpr int32_t kVectorPenFormat = 137;

template <class Record>
Record* NewRecord() {
  return reinterpret_cast<Record*>(NewCoreBlock<uint8_t>(sizeof(Record)).release());
}

void ConvertVector(const VECTORFORMATOPTION& wide, uint32_t size, VECTORFORMATOPTIONA& ansi) {
  ansi.uStructSize = size;
  ansi.viewWidth = wide.viewWidth;
  ansi.viewHeight = wide.viewHeight;
  ansi.viewMode = wide.viewMode;
  ConvertField(wide.faceName, ansi.faceName);
}

void* ConvertVectorOption(const void* options) {
  auto* const ansi = NewRecord<VECTORFORMATOPTIONA>();
  if (ansi) {
    ConvertVector(*static_cast<const VECTORFORMATOPTION*>(options), sizeof(*ansi), *ansi);
  }
  return ansi;
}

void* ConvertBackgroundOption(const void* options) {
  const auto& wide = *static_cast<const VECTORBACKGROUNDFORMATOPTION*>(options);
  auto* const ansi = NewRecord<VECTORBACKGROUNDFORMATOPTIONA>();
  if (ansi) {
    ConvertVector(wide.vector, sizeof(*ansi), ansi->vector);
    ansi->background = wide.background;
  }
  return ansi;
}

void* ConvertPenOption(const void* options) {
  const auto& wide = *static_cast<const VECTORPENFORMATOPTION*>(options);
  auto* const ansi = NewRecord<VECTORPENFORMATOPTIONA>();
  if (ansi) {
    ConvertVector(wide.vector, sizeof(*ansi), ansi->vector);
    ansi->pens = wide.pens;
  }
  return ansi;
}

using OptionConversion = void* (*)(const void* options);

// Null for formats whose options hold no text.
OptionConversion ConversionFor(int32_t format) {
  if (std::ranges::find(kVectorViewFormats, format) != std::end(kVectorViewFormats)) {
    return ConvertVectorOption;
  }
  if (std::ranges::find(kVectorBackgroundFormats, format) != std::end(kVectorBackgroundFormats)) {
    return ConvertBackgroundOption;
  }
  return format == kVectorPenFormat ? ConvertPenOption : nullptr;
}

void ConvertOptions(OPENDLGFILEDATA& wide, OPENDLGFILEDATAA& ansi) {
  const OptionConversion convert = wide.formatOptions ? ConversionFor(wide.format) : nullptr;
  if (!convert) {
    ansi.formatOptions = wide.formatOptions;
    return;
  }
  ansi.formatOptions = convert(wide.formatOptions);
  ::GlobalFree(wide.formatOptions);
  wide.formatOptions = nullptr;
}

// A name that did not go over whole is the last one: the field behind it stays empty.
void ConvertNames(const FILEINFO& wide, FILEINFOA& ansi) {
  if (ConvertField(wide.name, ansi.name) == SUCCESS) {
    ConvertField(wide.compression, ansi.compression);
  }
}

void FreeBitmapHandle(BITMAPHANDLE* bitmap) {
  if (bitmap) {
    FreeBitmap(bitmap);
    ::GlobalFree(bitmap);
  }
}

void FreeOpenedFiles(OPENFILEDLGPARAMS& params) {
  for (int32_t i = 0; i < params.fileCount; ++i) {
    const OPENDLGFILEDATA& file = params.files[i];
    FreeBitmapHandle(file.bitmap);
    FreeBitmapHandle(file.thumbnail);
    ::GlobalFree(file.fileInfo);
    ::GlobalFree(file.formatOptions);
  }
  ::GlobalFree(params.files);
  params.files = nullptr;
  params.fileCount = 0;
}

}  // namespace

void ConvertFileInfo(const FILEINFO& wide, FILEINFOA& ansi) {
  ansi = {};
  ansi.uStructSize = sizeof(FILEINFO);
  ansi.format = wide.format;
  ansi.width = wide.width;
  ansi.height = wide.height;
  ansi.bitsPerPixel = wide.bitsPerPixel;
  ansi.firstSize = wide.firstSize;
  ansi.secondSize = wide.secondSize;
  // From here on both records run in step: eleven words, then what is carried unread.
  constexpr size_t kWords = 44;
  constexpr size_t kCarried = 1024;
  const auto* const wideBytes = reinterpret_cast<const uint8_t*>(&wide);
  auto* const ansiBytes = reinterpret_cast<uint8_t*>(&ansi);
  std::memcpy(ansiBytes + offsetof(FILEINFOA, viewPerspective), wideBytes + offsetof(FILEINFO, viewPerspective),
              kWords + kCarried);
  ansi.filePosition = wide.filePosition;
  std::memcpy(ansi.reserved1644, wide.reserved2176, sizeof(wide.reserved2176));
  ConvertNames(wide, ansi);
}

void ConvertFileData(OPENDLGFILEDATA& wide, OPENDLGFILEDATAA& ansi) {
  ansi = {};
  ansi.uStructSize = sizeof(ansi);
  ConvertField(wide.fileName, ansi.fileName);
  ansi.bitmap = wide.bitmap;
  ansi.thumbnail = wide.thumbnail;
  if (wide.fileInfo) {
    ansi.fileInfo = NewRecord<FILEINFOA>();
    if (ansi.fileInfo) {
      ConvertFileInfo(*wide.fileInfo, *ansi.fileInfo);
    }
    ::GlobalFree(wide.fileInfo);
    wide.fileInfo = nullptr;
  }
  ansi.pageNumber = wide.pageNumber;
  ansi.passes = wide.passes;
  ansi.loadCompressed = wide.loadCompressed;
  ansi.loadRotated = wide.loadRotated;
  ansi.optionFlags = kOptionsSettled;
  ansi.format = wide.format;
  ConvertOptions(wide, ansi);
}

int32_t ConvertOpenedFiles(OPENFILEDLGPARAMS& wide, OPENFILEDLGPARAMSA& ansi) {
  const size_t count = static_cast<size_t>(wide.fileCount);
  if (!AfxIsValidAddress(ansi.files, count * sizeof(OPENDLGFILEDATAA))) {
    ansi.files = NewCoreBlock<OPENDLGFILEDATAA>(count).release();
  }
  if (!ansi.files) {
    FreeOpenedFiles(wide);
    return ERROR_OUT_OF_MEMORY;
  }
  for (size_t i = 0; i < count; ++i) {
    ConvertFileData(wide.files[i], ansi.files[i]);
  }
  ::GlobalFree(wide.files);
  wide.files = nullptr;
  return SUCCESS;
}
