/* Times what zvcore does with the pixels of a photograph of 24 megapixels in memory, one thread, and prints a table.
 * The row "copy" is a plain copy of the picture into fresh memory: what any operation that makes a new picture cannot
 * beat by much. Each time is the best of several runs. */
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "services/zvcore/zvcore.h"

namespace {

constexpr int32_t kWidth = 6000, kHeight = 4000;
constexpr double kNothingDone = 0.01;  // milliseconds

struct Format {
  const char* name;
  int32_t bits;
  int32_t order;
  uint32_t flags;
};

void Check(int32_t status, const char* what) {
  if (status == SUCCESS) return;
  std::fprintf(stderr, "%s failed: %d\n", what, status);
  std::exit(1);
}

// Smooth shapes under noise, as a camera gives them.
BITMAPHANDLE MakePhotograph(const Format& format) {
  BITMAPHANDLE bitmap;
  Check(InitBitmapHandle(&bitmap, sizeof bitmap, kWidth, kHeight, format.bits), "InitBitmapHandle");
  bitmap.colorOrder = format.order;
  bitmap.flags |= format.flags;
  Check(AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL), "AllocateBitmap");
  std::mt19937 random(1);
  for (int32_t y = 0; y < kHeight; ++y) {
    uint8_t* row = bitmap.data + static_cast<int64_t>(y) * bitmap.bytesPerLine;
    for (int32_t i = 0; i < bitmap.bytesPerLine; ++i)
      row[i] = static_cast<uint8_t>((i >> 6) + (y >> 3) + static_cast<int32_t>(random() & 15));
  }
  return bitmap;
}

// Milliseconds of the fastest of some runs, each on a copy of its own.
double Best(const BITMAPHANDLE& original, const std::function<int32_t(BITMAPHANDLE&)>& operation) {
  double best = 1e9;
  for (int run = 0; run < 5; ++run) {
    BITMAPHANDLE bitmap;
    Check(DuplicateBitmap(&bitmap, &original), "DuplicateBitmap");
    const auto start = std::chrono::steady_clock::now();
    Check(operation(bitmap), "operation");
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
    FreeBitmap(&bitmap);
    best = std::min(best, elapsed.count());
  }
  return best;
}

// Only the operations whose names hold one of the words, when there are any.
void Measure(const Format& format, const std::vector<std::string>& words) {
  BITMAPHANDLE photograph = MakePhotograph(format);
  const auto line = [&](const char* name, const std::function<int32_t(BITMAPHANDLE&)>& operation) {
    const bool wanted = std::any_of(words.begin(), words.end(),
                                    [&](const std::string& word) { return std::strstr(name, word.c_str()); });
    if (!words.empty() && !wanted) return;
    const double time = Best(photograph, operation);
    if (time < kNothingDone) return;  // the photograph is in that format already
    std::printf("%-14s %-28s %8.1f ms %8.0f MP/s\n", format.name, name, time,
                kWidth * static_cast<double>(kHeight) / 1000 / time);
    std::fflush(stdout);
  };
  line("copy", [&](BITMAPHANDLE&) {
    BITMAPHANDLE copy;
    const int32_t status = DuplicateBitmap(&copy, &photograph);
    FreeBitmap(&copy);
    return status;
  });
  BITMAPHANDLE target;
  Check(DuplicateBitmap(&target, &photograph), "DuplicateBitmap");
  line("memcpy", [&](BITMAPHANDLE& b) {
    std::memcpy(target.data, b.data, static_cast<size_t>(b.bytesPerLine) * kHeight);
    return SUCCESS;
  });
  FreeBitmap(&target);
  line("half size, area", [](BITMAPHANDLE& b) { return SizeBitmap(&b, kWidth / 2, kHeight / 2, SIZE_BICUBIC); });
  line("37 %, area", [](BITMAPHANDLE& b) { return SizeBitmap(&b, 2220, 1480, SIZE_BICUBIC); });
  line("thumbnail 160, area", [](BITMAPHANDLE& b) { return SizeBitmap(&b, 160, 107, SIZE_BICUBIC); });
  line("half size, bilinear", [](BITMAPHANDLE& b) { return SizeBitmap(&b, kWidth / 2, kHeight / 2, SIZE_BILINEAR); });
  line("half size, nearest", [](BITMAPHANDLE& b) { return SizeBitmap(&b, kWidth / 2, kHeight / 2, SIZE_NEAREST); });
  line("140 %, bicubic", [](BITMAPHANDLE& b) { return SizeBitmap(&b, 8400, 5600, SIZE_BICUBIC); });
  line("rotate 90", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 9000, 0, 0); });
  line("rotate 180", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 18000, 0, 0); });
  line("rotate 270", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 27000, 0, 0); });
  line("mirror", [](BITMAPHANDLE& b) { return MirrorBitmap(&b); });
  line("rotate 7, nearest", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 700, ROTATE_RESIZE, 0); });
  line("rotate 7, bicubic", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 700, ROTATE_RESIZE | ROTATE_BICUBIC, 0); });
  line("rotate 83, bicubic", [](BITMAPHANDLE& b) { return RotateBitmap(&b, 8300, ROTATE_RESIZE | ROTATE_BICUBIC, 0); });
  line("to 8 bits, best, dithered", [](BITMAPHANDLE& b) { return ConvertBitmapDepth(&b, 8, ORDER_BGR, nullptr, 1); });
  line("to 8 bits grey", [](BITMAPHANDLE& b) { return ConvertBitmapDepth(&b, 8, ORDER_GRAY, nullptr, 0); });
  line("to 32 bits", [](BITMAPHANDLE& b) { return ConvertBitmapDepth(&b, 32, ORDER_BGR, nullptr, 0); });
  FreeBitmap(&photograph);
}

}  // namespace

// Usage: zvresample_bench [format name [part of an operation's name...]]
int main(int argc, char** argv) {
  const Format formats[] = {{"24 bit", 24, ORDER_BGR, 0}, {"8 bit grey", 8, ORDER_GRAY, 0},
                            {"32 bit", 32, ORDER_BGR, 0}, {"32 bit alpha", 32, ORDER_BGR, BITMAP_FLAG_ALPHA},
                            {"48 bit", 48, ORDER_RGB, 0}, {"8 bit palette", 8, ORDER_BGR, 0},
                            {"1 bit", 1, ORDER_BGR, 0}};
  for (const Format& format : formats) {
    if (argc < 2 || std::strcmp(argv[1], format.name) == 0) Measure(format, {argv + std::min(argc, 2), argv + argc});
  }
  return 0;
}
