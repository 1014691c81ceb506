#include "services/zvdlgutil/bitmap.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

constexpr COLORREF kLeft = RGB(200, 0, 0);
constexpr COLORREF kRight = RGB(0, 0, 200);

// Left half one colour, right half the other.
BITMAPHANDLE TwoHalves(int width, int height) {
  BITMAPHANDLE bitmap{};
  EXPECT_EQ(SUCCESS, CreateBitmap(&bitmap, sizeof bitmap, MEMORY_CONVENTIONAL, width, height, 24, ORDER_BGR, nullptr,
                                  VIEW_TOP_LEFT, nullptr, 0));
  std::string row(static_cast<size_t>(bitmap.bytesPerLine), '\0');
  for (int x = 0; x < width; ++x) {
    const COLORREF color = x < width / 2 ? kLeft : kRight;
    row[static_cast<size_t>(x) * 3] = static_cast<char>(GetBValue(color));
    row[static_cast<size_t>(x) * 3 + 1] = static_cast<char>(GetGValue(color));
    row[static_cast<size_t>(x) * 3 + 2] = static_cast<char>(GetRValue(color));
  }
  for (int y = 0; y < height; ++y) {
    EXPECT_GE(PutBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine), 1);
  }
  return bitmap;
}

CZVBitmap Owned(BITMAPHANDLE bitmap) {
  CZVBitmap owner;
  owner.Attach(bitmap);
  return owner;
}

// What the bitmap paints at a point of a 40 x 20 white canvas that it is stretched over.
COLORREF PaintedAt(const CZVBitmap& bitmap, int x, int y) {
  const unique_window_dc screen(nullptr);
  const unique_hdc canvas(::CreateCompatibleDC(screen.get()));
  const unique_hbitmap pixels(::CreateCompatibleBitmap(screen.get(), 40, 20));
  const dc_selection selected(canvas.get(), pixels.get());
  const RECT all = {0, 0, 40, 20};
  ::FillRect(canvas.get(), &all, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  EXPECT_EQ(SUCCESS, bitmap.Paint(canvas.get(), nullptr, nullptr, &all));
  return ::GetPixel(canvas.get(), x, y);
}

class TemporaryTiff {
 public:
  TemporaryTiff() {
    wchar_t folder[MAX_PATH];
    ::GetTempPathW(MAX_PATH, folder);
    path_ = std::wstring(folder) + L"zvdlgutil_" + std::to_wstring(::GetCurrentProcessId()) + L".tif";
    ::DeleteFileW(path());
  }
  ~TemporaryTiff() { ::DeleteFileW(path()); }

  void AddPage(int page, int width, int height) const {
    SAVEFILEOPTION option{};
    ASSERT_EQ(SUCCESS, GetDefaultSaveFileOption(&option, sizeof option));
    option.pageNumber = page;
    BITMAPHANDLE bitmap = TwoHalves(width, height);
    EXPECT_EQ(SUCCESS, SaveBitmapToFile(path(), &bitmap, FMT_TIFF, 24, 0, &option));
    FreeBitmap(&bitmap);
  }
  const wchar_t* path() const { return path_.c_str(); }

 private:
  std::wstring path_;
};

TEST(Bitmap, NewObjectIsEmpty) {
  CZVBitmap bitmap;
  EXPECT_TRUE(bitmap.IsEmpty());
  EXPECT_EQ(CSize(0, 0), bitmap.GetSize());
  EXPECT_EQ(nullptr, bitmap.GetPalette());
  EXPECT_EQ(ERROR_NO_IMAGE, bitmap.Paint(nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(ERROR_NO_IMAGE, bitmap.Rotate(9000));
  EXPECT_EQ(ERROR_NO_IMAGE, bitmap.FlipHorz());
  EXPECT_EQ(ERROR_NO_IMAGE, bitmap.FlipVert());
}

TEST(Bitmap, AttachTakesThePixelsOver) {
  BITMAPHANDLE handle = TwoHalves(4, 2);
  const uint8_t* const pixels = handle.data;
  CZVBitmap bitmap;
  bitmap.Attach(handle);
  EXPECT_EQ(pixels, bitmap.GetHandle().data);
  EXPECT_FALSE(handle.flags & BITMAP_FLAG_ALLOCATED);
}

TEST(Bitmap, AssignedHandleIsCopiedAndStaysItsOwners) {
  BITMAPHANDLE handle = TwoHalves(4, 2);
  CZVBitmap bitmap;
  bitmap = handle;
  EXPECT_NE(handle.data, bitmap.GetHandle().data);
  EXPECT_TRUE(handle.flags & BITMAP_FLAG_ALLOCATED);
  FreeBitmap(&handle);
  EXPECT_EQ(kLeft, PaintedAt(bitmap, 5, 10));
}

TEST(Bitmap, AssigningAHandleWithoutPixelsEmpties) {
  CZVBitmap bitmap = Owned(TwoHalves(4, 2));
  const BITMAPHANDLE none{};
  bitmap = none;
  EXPECT_TRUE(bitmap.IsEmpty());
}

TEST(Bitmap, DetachedPixelsAreTheCallers) {
  CZVBitmap bitmap = Owned(TwoHalves(4, 2));
  BITMAPHANDLE detached = bitmap.Detach();
  EXPECT_TRUE(bitmap.IsEmpty());
  ASSERT_TRUE(detached.flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(4, detached.width);
  EXPECT_EQ(SUCCESS, FreeBitmap(&detached));
}

TEST(Bitmap, MoveLeavesNothingBehind) {
  CZVBitmap first = Owned(TwoHalves(4, 2));
  CZVBitmap second = std::move(first);
  EXPECT_TRUE(first.IsEmpty());
  EXPECT_EQ(CSize(4, 2), second.GetSize());
  first = std::move(second);
  EXPECT_EQ(CSize(4, 2), first.GetSize());
}

TEST(Bitmap, SizeIsThatOfThePictureAsShown) {
  CZVBitmap bitmap = Owned(TwoHalves(4, 2));
  bitmap.GetHandle().viewPerspective = VIEW_RIGHT_TOP;
  EXPECT_EQ(CSize(2, 4), bitmap.GetSize());
}

TEST(Bitmap, TurningAndMirroringShowInThePicture) {
  CZVBitmap bitmap = Owned(TwoHalves(40, 20));
  EXPECT_EQ(kLeft, PaintedAt(bitmap, 5, 10));
  EXPECT_EQ(SUCCESS, bitmap.FlipHorz());
  EXPECT_EQ(kRight, PaintedAt(bitmap, 5, 10));
  EXPECT_EQ(SUCCESS, bitmap.FlipVert());
  EXPECT_EQ(kRight, PaintedAt(bitmap, 5, 10));
  EXPECT_EQ(SUCCESS, bitmap.Rotate(9000));
  EXPECT_EQ(CSize(20, 40), bitmap.GetSize());
}

TEST(Bitmap, PaintingStaysInsideARegionUntilItIsFreed) {
  CZVBitmap bitmap = Owned(TwoHalves(40, 20));
  bitmap.SetRgn(unique_hrgn(::CreateRectRgn(30, 0, 40, 20)));
  EXPECT_EQ(RGB(255, 255, 255), PaintedAt(bitmap, 5, 10));
  EXPECT_EQ(kRight, PaintedAt(bitmap, 35, 10));
  bitmap.FreeRgn();
  EXPECT_EQ(kLeft, PaintedAt(bitmap, 5, 10));
}

TEST(Bitmap, ReadsThePageThatIsAskedFor) {
  const TemporaryTiff file;
  file.AddPage(1, 10, 5);
  file.AddPage(2, 20, 8);
  CZVBitmap bitmap;
  ASSERT_EQ(SUCCESS, bitmap.Read(file.path()));
  EXPECT_EQ(CSize(10, 5), bitmap.GetSize());
  ASSERT_EQ(SUCCESS, bitmap.Read(file.path(), 2));
  EXPECT_EQ(CSize(20, 8), bitmap.GetSize());
  LOADFILEOPTION option{};
  ASSERT_EQ(SUCCESS, GetDefaultLoadFileOption(&option, sizeof option));
  option.pageNumber = 2;
  ASSERT_EQ(SUCCESS, bitmap.Read(file.path(), -1, 0, &option));
  EXPECT_EQ(CSize(20, 8), bitmap.GetSize());
}

TEST(Bitmap, FailedReadLeavesItEmpty) {
  const TemporaryTiff file;
  CZVBitmap bitmap = Owned(TwoHalves(4, 2));
  EXPECT_EQ(ERROR_FILE_MISSING, bitmap.Read(file.path()));
  EXPECT_TRUE(bitmap.IsEmpty());
  file.AddPage(1, 10, 5);
  EXPECT_EQ(ERROR_PAGE_MISSING, bitmap.Read(file.path(), 9));
  EXPECT_TRUE(bitmap.IsEmpty());
}

}  // namespace
