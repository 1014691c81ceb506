// Every entry that the catalogue lists is written by the file library and read back as what it is listed as.
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvfile/zvfile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

template <class Record>
Record Tagged() {
  Record record{};
  record.uStructSize = sizeof record;
  return record;
}

struct Entry {
  int32_t fileFormat;
  int32_t bitsPerPixel;
  int32_t subtype;
  int32_t extensionStringId;
};

std::vector<Entry> ListedEntries() {
  std::vector<Entry> entries;
  for (int32_t position = GetFirstFormatPosition(); position >= 0;) {
    FORMATINFO format = Tagged<FORMATINFO>();
    EXPECT_EQ(SUCCESS, GetNextFormat(&format, &position));
    if (IsFormatExcludedFromList(format.fileFormat)) {
      continue;
    }
    for (int32_t bppPosition = GetFirstFormatBppPosition(format.format); bppPosition >= 0;) {
      FORMATBPPINFO bpp = Tagged<FORMATBPPINFO>();
      EXPECT_EQ(SUCCESS, GetNextFormatBpp(format.format, &bpp, &bppPosition));
      int32_t subtypePosition = GetFirstFormatSubtypePosition(format.format, bpp.bitsPerPixel);
      if (subtypePosition < 0) {
        entries.push_back({format.fileFormat, bpp.bitsPerPixel, -1, bpp.extensionStringId});
      }
      while (subtypePosition >= 0) {
        FORMATSUBTYPEINFO subtype = Tagged<FORMATSUBTYPEINFO>();
        EXPECT_EQ(SUCCESS, GetNextFormatSubtype(format.format, bpp.bitsPerPixel, &subtype, &subtypePosition));
        entries.push_back({subtype.fileFormat, bpp.bitsPerPixel, subtype.subtype, subtype.extensionStringId});
      }
    }
  }
  return entries;
}

// A file in the system's folder for such, gone when the object goes.
class TemporaryFile {
 public:
  explicit TemporaryFile(int32_t extensionStringId) {
    wchar_t folder[MAX_PATH], extension[20] = L"";
    ::GetTempPathW(MAX_PATH, folder);
    EXPECT_EQ(SUCCESS, GetDialogStringText(static_cast<uint32_t>(extensionStringId), extension, 20));
    path_ = std::wstring(folder) + L"catalogue_" + std::to_wstring(::GetCurrentProcessId()) + L"." + extension;
    ::DeleteFileW(path_.c_str());
  }
  ~TemporaryFile() { ::DeleteFileW(path_.c_str()); }

  const wchar_t* path() const { return path_.c_str(); }

 private:
  std::wstring path_;
};

// A picture with some structure. For depths that have alpha it has some: without it a format may leave the channel out.
class Picture {
 public:
  explicit Picture(int32_t bitsPerPixel) {
    const bool hasAlpha = bitsPerPixel == 32 || bitsPerPixel == 64;
    const int32_t channels = hasAlpha ? 4 : 3;
    EXPECT_EQ(SUCCESS, CreateBitmap(&handle, sizeof handle, MEMORY_CONVENTIONAL, kSide, kSide, channels * 8, ORDER_BGR,
                                    nullptr, VIEW_TOP_LEFT, nullptr, 0));
    handle.flags |= hasAlpha ? BITMAP_FLAG_ALPHA : 0;
    for (int32_t y = 0; y < kSide; ++y) {
      std::vector<uint8_t> row(static_cast<size_t>(handle.bytesPerLine));
      for (size_t x = 0; x < static_cast<size_t>(kSide * channels); ++x) {
        row[x] = static_cast<uint8_t>(x * 5 + static_cast<size_t>(y) * 3);
      }
      EXPECT_GE(PutBitmapRow(&handle, row.data(), y, handle.bytesPerLine), 1);
    }
  }
  ~Picture() { FreeBitmap(&handle); }

  static constexpr int32_t kSide = 48;
  BITMAPHANDLE handle{};
};

SAVEFILEOPTION OptionFor(const Entry& entry) {
  SAVEFILEOPTION option{};
  EXPECT_EQ(SUCCESS, GetDefaultSaveFileOption(&option, sizeof option));
  if (entry.fileFormat == FMT_GIF && entry.subtype == 1) {
    option.flags |= SAVEFILE_GIF_INTERLACED;
  }
  return option;
}

// What makes a TIFF an Exif one is the Exif data in it, which this picture has none of.
int32_t AsRead(int32_t fileFormat) {
  switch (fileFormat) {
    case FMT_EXIF_TIFF_RGB: return FMT_TIFF;
    case FMT_EXIF_TIFF_YCC: return FMT_TIFF_YCC;
    default: return fileFormat;
  }
}

class CatalogueSave : public testing::TestWithParam<Entry> {};

TEST_P(CatalogueSave, IsWrittenAndReadBackAsItself) {
  const Entry& entry = GetParam();
  const TemporaryFile file(entry.extensionStringId);
  Picture picture(entry.bitsPerPixel);
  int32_t quality = 0;
  GetFormatDefaultQFactor(entry.fileFormat, &quality);
  const SAVEFILEOPTION option = OptionFor(entry);
  ASSERT_EQ(SUCCESS,
            SaveBitmapToFile(file.path(), &picture.handle, entry.fileFormat, entry.bitsPerPixel, quality, &option));
  FILEINFO info{};
  ASSERT_EQ(SUCCESS, GetFileInfo(file.path(), &info, sizeof info, 1, nullptr));
  EXPECT_EQ(AsRead(entry.fileFormat), info.format);
  EXPECT_EQ(entry.bitsPerPixel, info.bitsPerPixel);
  EXPECT_EQ(1, info.totalPages);
  BITMAPHANDLE loaded = Tagged<BITMAPHANDLE>();
  ASSERT_EQ(SUCCESS, LoadBitmapFile(file.path(), &loaded, sizeof loaded, 0, ORDER_BGR_OR_GRAY, nullptr, nullptr));
  EXPECT_GE(loaded.width, 1);
  FreeBitmap(&loaded);
}

INSTANTIATE_TEST_SUITE_P(AllListed, CatalogueSave, testing::ValuesIn(ListedEntries()), [](const auto& test) {
  return "Format" + std::to_string(test.param.fileFormat) + "Bits" + std::to_string(test.param.bitsPerPixel) +
         "Subtype" + (test.param.subtype < 0 ? "None" : std::to_string(test.param.subtype));
});

// Pages: what the catalogue says a format takes is what a second page meets.
TEST(CataloguePages, AppendWorksWhereItIsListed) {
  for (const Entry& entry : ListedEntries()) {
    SCOPED_TRACE(entry.fileFormat);
    const TemporaryFile file(entry.extensionStringId);
    Picture picture(entry.bitsPerPixel);
    int32_t quality = 0;
    GetFormatDefaultQFactor(entry.fileFormat, &quality);
    uint32_t operations = 0;
    if (GetFormatMultipageOps(entry.fileFormat, &operations) != SUCCESS) {
      continue;
    }
    SAVEFILEOPTION option = OptionFor(entry);
    ASSERT_EQ(SUCCESS,
              SaveBitmapToFile(file.path(), &picture.handle, entry.fileFormat, entry.bitsPerPixel, quality, &option));
    option.pageNumber = 2;
    ASSERT_EQ(SUCCESS,
              SaveBitmapToFile(file.path(), &picture.handle, entry.fileFormat, entry.bitsPerPixel, quality, &option));
    FILEINFO info{};
    ASSERT_EQ(SUCCESS, GetFileInfo(file.path(), &info, sizeof info, 1, nullptr));
    EXPECT_EQ(2, info.totalPages);
  }
}

// Stamps: the same for the small picture beside the image.
TEST(CatalogueStamps, StampIsWrittenWhereItIsListed) {
  for (const Entry& entry : ListedEntries()) {
    SCOPED_TRACE(entry.fileFormat);
    FORMATSTAMPLIMITS limits = Tagged<FORMATSTAMPLIMITS>();
    if (GetFormatStampLimits(entry.fileFormat, &limits) != SUCCESS) {
      continue;
    }
    const TemporaryFile file(entry.extensionStringId);
    Picture picture(entry.bitsPerPixel);
    int32_t quality = 0;
    GetFormatDefaultQFactor(entry.fileFormat, &quality);
    SAVEFILEOPTION option = OptionFor(entry);
    option.flags |= SAVEFILE_STAMP;
    option.stampWidth = option.stampHeight = limits.minimumWidth;
    option.stampBitsPerPixel = limits.bitDepthMask & STAMP_DEPTH_24 ? 24 : 8;
    ASSERT_EQ(SUCCESS,
              SaveBitmapToFile(file.path(), &picture.handle, entry.fileFormat, entry.bitsPerPixel, quality, &option));
    BITMAPHANDLE stamp = Tagged<BITMAPHANDLE>();
    ASSERT_EQ(SUCCESS, ReadFileStamp(file.path(), &stamp, sizeof stamp, nullptr));
    EXPECT_EQ(limits.minimumWidth, stamp.width);
    FreeBitmap(&stamp);
  }
}

}  // namespace
