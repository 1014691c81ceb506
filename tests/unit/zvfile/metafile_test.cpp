// Metafiles: drawn at the load resolution. They need the system's graphics, so there is nothing to test elsewhere.
#ifdef _WIN32
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

// Two by one inches, the left half red.
std::vector<uint8_t> MakeEmf() {
  const RECT frame = {0, 0, 5080, 2540};
  const HDC device = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  SetMapMode(device, MM_ANISOTROPIC);
  SetWindowExtEx(device, 200, 100, nullptr);
  // The viewport covers the frame: hundredths of a millimetre on the reference device.
  const int width = MulDiv(GetDeviceCaps(device, HORZRES), 5080, GetDeviceCaps(device, HORZSIZE) * 100);
  const int height = MulDiv(GetDeviceCaps(device, VERTRES), 2540, GetDeviceCaps(device, VERTSIZE) * 100);
  SetViewportExtEx(device, width, height, nullptr);
  const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
  const RECT half = {0, 0, 100, 100};
  FillRect(device, &half, red);
  DeleteObject(red);
  const HENHMETAFILE metafile = CloseEnhMetaFile(device);
  std::vector<uint8_t> bytes(GetEnhMetaFileBits(metafile, 0, nullptr));
  GetEnhMetaFileBits(metafile, static_cast<UINT>(bytes.size()), bytes.data());
  DeleteEnhMetaFile(metafile);
  return bytes;
}

void ExpectHalves(const BITMAPHANDLE& bitmap) {
  EXPECT_EQ(ColorAt(bitmap, bitmap.width / 4, bitmap.height / 2), (Color{65535, 0, 0, 65535}));
  EXPECT_EQ(ColorAt(bitmap, bitmap.width * 3 / 4, bitmap.height / 2), (Color{65535, 65535, 65535, 65535}));
}

TEST(Metafile, HasTheSizeOfTheLoadResolution) {
  TestFolder folder;
  const auto path = folder.Path(u"a.emf");
  WriteBytes(path, MakeEmf());
  int32_t oldX = 0, oldY = 0;
  ASSERT_EQ(GetLoadDpi(&oldX, &oldY), SUCCESS);
  for (const int32_t dpi : {50, 300}) {
    ASSERT_EQ(SetLoadDpi(dpi, dpi), SUCCESS);
    FILEINFO info;
    Picture loaded;
    EXPECT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.format, FMT_EMF);
    EXPECT_NEAR(info.width, 2 * dpi, 2);
    EXPECT_NEAR(info.height, dpi, 2);
    EXPECT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->width, info.width);
    ExpectHalves(loaded.bitmap);
  }
  SetLoadDpi(oldX, oldY);
}

TEST(Metafile, HasTheSizeOfAScreenWithoutALoadResolution) {
  TestFolder folder;
  const auto path = folder.Path(u"a.emf");
  WriteBytes(path, MakeEmf());
  int32_t oldX = 0, oldY = 0;
  ASSERT_EQ(GetLoadDpi(&oldX, &oldY), SUCCESS);
  ASSERT_EQ(SetLoadDpi(0, 0), SUCCESS);
  FILEINFO info;
  EXPECT_EQ(Info(path, info), SUCCESS);
  SetLoadDpi(oldX, oldY);
  EXPECT_NEAR(info.width, 2 * 96, 2);
  info.flags |= FILEINFO_LOAD_SIZE_GIVEN;
  Picture loaded;
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, nullptr, &info), SUCCESS);
  EXPECT_NEAR(loaded->width, 2 * 96, 2) << "a size that is given goes before the load resolution";
  ExpectHalves(loaded.bitmap);
}

TEST(Metafile, ResolutionOfTheLoadOptionComesFirst) {
  TestFolder folder;
  const auto path = folder.Path(u"a.emf");
  WriteBytes(path, MakeEmf());
  LOADFILEOPTION option = LoadOption();
  option.xResolution = option.yResolution = 20;
  Picture loaded;
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
  EXPECT_NEAR(loaded->width, 40, 2);
}

// A placeable metafile of two by one inches, the left half red.
std::vector<uint8_t> MakeWmf() {
  std::vector<uint8_t> bytes;
  const auto words = [&](std::initializer_list<int> values) {
    for (const int value : values) {
      bytes.push_back(static_cast<uint8_t>(value));
      bytes.push_back(static_cast<uint8_t>(value >> 8));
    }
  };
  words({0xCDD7, 0x9AC6, 0, 0, 0, 2000, 1000, 1000, 0, 0, 0});
  words({1, 9, 0x0300, 43, 0, 2, 8, 0, 0});  // header
  words({5, 0, 0x020B, 0, 0});               // window origin
  words({5, 0, 0x020C, 1000, 2000});         // window extent
  words({7, 0, 0x02FC, 0, 0x00FF, 0, 0});    // solid red brush
  words({4, 0, 0x012D, 0});                  // selected
  words({8, 0, 0x02FA, 5, 0, 0, 0, 0});      // pen without a line
  words({4, 0, 0x012D, 1});
  words({7, 0, 0x041B, 1000, 1000, 0, 0});  // rectangle: bottom, right, top, left
  words({3, 0, 0});
  return bytes;
}

TEST(Metafile, OfTheOldKindIsDrawnToo) {
  TestFolder folder;
  const auto path = folder.Path(u"a.wmf");
  WriteBytes(path, MakeWmf());
  LOADFILEOPTION option = LoadOption();
  option.xResolution = option.yResolution = 100;
  Picture loaded;
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_WMF);
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
  EXPECT_EQ(loaded->width, 200);
  EXPECT_EQ(loaded->height, 100);
  ExpectHalves(loaded.bitmap);
}

// Four by two inches with a line of letters in a font of 20 pixels.
std::vector<uint8_t> MakeText(bool old) {
  const RECT frame = {0, 0, 10160, 5080};
  const HDC device = old ? CreateMetaFileW(nullptr) : CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  SetMapMode(device, MM_ANISOTROPIC);
  SetWindowOrgEx(device, 0, 0, nullptr);
  SetWindowExtEx(device, 400, 200, nullptr);
  if (!old) {
    SetViewportExtEx(device, MulDiv(GetDeviceCaps(device, HORZRES), 10160, GetDeviceCaps(device, HORZSIZE) * 100),
                     MulDiv(GetDeviceCaps(device, VERTRES), 5080, GetDeviceCaps(device, VERTSIZE) * 100), nullptr);
  }
  LOGFONTW description = {};
  description.lfHeight = -20;
  lstrcpyW(description.lfFaceName, L"First Face");
  const HFONT font = CreateFontIndirectW(&description);
  const HGDIOBJ former = SelectObject(device, font);
  SetBkMode(device, TRANSPARENT);
  TextOutW(device, 10, 10, L"HHHH", 4);
  std::vector<uint8_t> bytes;
  if (old) {
    const HMETAFILE metafile = CloseMetaFile(device);
    bytes.resize(GetMetaFileBitsEx(metafile, 0, nullptr));
    GetMetaFileBitsEx(metafile, static_cast<UINT>(bytes.size()), bytes.data());
    DeleteMetaFile(metafile);
  } else {
    SelectObject(device, former);
    const HENHMETAFILE metafile = CloseEnhMetaFile(device);
    bytes.resize(GetEnhMetaFileBits(metafile, 0, nullptr));
    GetEnhMetaFileBits(metafile, static_cast<UINT>(bytes.size()), bytes.data());
    DeleteEnhMetaFile(metafile);
  }
  DeleteObject(font);
  return bytes;
}

int32_t InkedRows(const BITMAPHANDLE& bitmap) {
  int32_t rows = 0;
  for (int32_t y = 0; y < bitmap.height; ++y) {
    bool inked = false;
    for (int32_t x = 0; x < bitmap.width && !inked; ++x) inked = ColorAt(bitmap, x, y).red < 32768;
    rows += inked ? 1 : 0;
  }
  return rows;
}

struct FontChange {
  int32_t answer = SUCCESS;
  std::vector<std::wstring> faces;
};

// Makes letters three times as high.
int32_t ZV_CALL Enlarge(void* logFont, void* userData) {
  FontChange& change = *static_cast<FontChange*>(userData);
  LOGFONTW& font = *static_cast<LOGFONTW*>(logFont);
  change.faces.emplace_back(font.lfFaceName);
  font.lfHeight *= 3;
  return change.answer;
}

TEST(Metafile, IsDrawnWithTheFontsThatTheSubstitutionGives) {
  TestFolder folder;
  for (const bool old : {false, true}) {
    const auto path = folder.Path(old ? u"text.wmf" : u"text.emf");
    WriteBytes(path, MakeText(old));
    LOADFILEOPTION option = LoadOption();
    option.xResolution = option.yResolution = 100;
    const auto rows = [&] {
      Picture loaded;
      EXPECT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
      return InkedRows(loaded.bitmap);
    };
    const int32_t plain = rows();
    ASSERT_GT(plain, 5);
    FontChange change;
    ASSERT_EQ(SetVectorFontSubstitution(Enlarge, &change), SUCCESS);
    const int32_t enlarged = rows();
    EXPECT_GT(enlarged, 2 * plain) << (old ? "old" : "enhanced");
    EXPECT_EQ(change.faces, std::vector<std::wstring>{L"First Face"});
    change.answer = 0;
    EXPECT_EQ(rows(), plain) << "not taken";
    EXPECT_EQ(change.faces.size(), 2u);
    ASSERT_EQ(ResetVectorFontSubstitution(), SUCCESS);
    EXPECT_EQ(rows(), plain);
    EXPECT_EQ(change.faces.size(), 2u) << "not asked any more";
  }
}

TEST(Metafile, ThatIsCutShortOrChangedFails) {
  TestFolder folder;
  const auto path = folder.Path(u"a");
  for (const std::vector<uint8_t>& whole : {MakeEmf(), MakeWmf()}) {
    for (size_t sixteenth = 1; sixteenth < 16; ++sixteenth) {
      WriteBytes(path, {whole.begin(), whole.begin() + static_cast<ptrdiff_t>(whole.size() * sixteenth / 16)});
      Picture loaded;
      EXPECT_LT(Load(path, loaded), 0);
    }
  }
}

}  // namespace
#endif
