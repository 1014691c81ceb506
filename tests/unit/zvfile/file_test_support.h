// What the tests of the file library share: pictures, comparison, a folder of their own, and bitmaps that free themselves.
#ifndef ZV_TESTS_FILE_TEST_SUPPORT_H
#define ZV_TESTS_FILE_TEST_SUPPORT_H

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "services/zvfile/zvfile.h"

namespace zvtest {

using ZvText = std::basic_string<ZVCHAR>;

// A bitmap that frees itself.
struct Picture {
  Picture() : bitmap{} { bitmap.uStructSize = sizeof bitmap; }
  ~Picture() { FreeBitmap(&bitmap); }
  Picture(Picture&& other) noexcept : bitmap(other.bitmap) { other.bitmap.flags = 0, other.bitmap.metadata = nullptr; }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  BITMAPHANDLE* operator&() { return &bitmap; }
  BITMAPHANDLE* operator->() { return &bitmap; }

  BITMAPHANDLE bitmap;
};

// A folder under the working folder that exists as long as the object.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::filesystem::path Path(const std::u16string& name) const { return folder_ / std::filesystem::path(name); }
  const std::filesystem::path& Folder() const { return folder_; }
  size_t FileCount() const;

 private:
  std::filesystem::path folder_;
};

ZvText Text(const std::filesystem::path& path);

// A picture with gradients, edges and some noise, the same for the same arguments. order matters for 8 and 16 bits
// (ORDER_GRAY or a palette / 5-5-5); alpha for 32 and 64.
Picture MakePicture(int32_t width, int32_t height, int32_t bits, int32_t order = ORDER_BGR, bool alpha = false);

// The colour of a pixel as 16-bit red, green, blue, alpha, whatever the depth; alpha 65535 without alpha.
struct Color {
  uint16_t red, green, blue, alpha;
  bool operator==(const Color&) const = default;
};
Color ColorAt(const BITMAPHANDLE& bitmap, int32_t x, int32_t y);
// The number of pixels whose colours differ.
int64_t DifferentPixels(const BITMAPHANDLE& a, const BITMAPHANDLE& b);
// Peak signal to noise ratio over the colour channels, in dB; 100 for equal pictures.
double Psnr(const BITMAPHANDLE& a, const BITMAPHANDLE& b);

int32_t Save(const std::filesystem::path& path, Picture& picture, int32_t format, int32_t bits = 0, int32_t quality = 2,
             const SAVEFILEOPTION* option = nullptr);
int32_t Load(const std::filesystem::path& path, Picture& picture, int32_t bits = 0, int32_t order = ORDER_BGR_OR_GRAY,
             const LOADFILEOPTION* option = nullptr, FILEINFO* info = nullptr);
int32_t Info(const std::filesystem::path& path, FILEINFO& info, uint32_t flags = 0, int32_t page = 1);

LOADFILEOPTION LoadOption(int32_t page = 1);
SAVEFILEOPTION SaveOption();

std::vector<uint8_t> ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::vector<uint8_t>& bytes);

}  // namespace zvtest

#endif
