// Writes the inputs that fuzzing begins with: a small picture in every format and depth that the library can save, and files of a
// few bytes that claim gigabytes.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "services/zvfile/codec.h"

namespace {

using namespace zvfile;

bool MakePicture(int32_t bits, BITMAPHANDLE& bitmap) {
  if (CreateBitmap(&bitmap, sizeof bitmap, MEMORY_CONVENTIONAL, 37, 23, bits, ORDER_BGR, nullptr, VIEW_TOP_LEFT,
                   nullptr, 0) != SUCCESS) {
    return false;
  }
  for (uint64_t i = 0; i < bitmap.dataSize; ++i) bitmap.data[i] = static_cast<uint8_t>(i * 7 ^ (i >> 5));
  constexpr char kText[] = "a picture for the fuzzer";
  SetBitmapMetadata(&bitmap, METADATA_COMMENT + COMMENT_AUTHOR, kText, sizeof kText - 1);
  return true;
}

// One seed; the byte behind the file chooses extension and page in the fuzz target.
void WriteSeed(const std::filesystem::path& folder, int32_t format, int32_t bits, int32_t passes) {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof bitmap;
  SAVEFILEOPTION option;
  GetDefaultSaveFileOption(&option, sizeof option);
  option.passes = passes;
  option.flags |= SAVEFILE_STAMP;
  const auto path = folder / (std::to_string(format) + "_" + std::to_string(bits) + "_" + std::to_string(passes + 2));
  const std::u16string name = path.u16string();
  if (MakePicture(bits, bitmap) && SaveBitmapToFile(name.c_str(), &bitmap, format, bits, 20, &option) == SUCCESS) {
    std::ofstream(path, std::ios::binary | std::ios::app).put('\0');
  }
  FreeBitmap(&bitmap);
}

struct Forgery {
  const char* name;
  std::string_view bytes;
  char choice;  // the byte behind the file
};
using namespace std::string_view_literals;
constexpr Forgery kForgeries[] = {
    {"text_of_2_gb.png",
     "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x25\0\0\0\x17\x10\x06\0\0\0\xDC\xBC\x5A\xE6\x71\x01\0\0tEXtAuthor\0"sv, 0},
    {"16000_x_16000.tga", "\0\0\2\0\0\0\0\0\0\0\0\0\x80\x3E\x80\x3E\x18\0\x01\x02\x03"sv, 1},
};

void WriteForgery(const std::filesystem::path& folder, const Forgery& forgery) {
  std::ofstream(folder / forgery.name, std::ios::binary) << forgery.bytes << forgery.choice;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: make_seeds FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = arguments[1];
  std::filesystem::create_directories(folder);
  for (const Codec* codec : AllCodecs()) {
    for (const FormatRow& row : codec->formats) {
      for (const int32_t bits : {1, 4, 8, 16, 24, 32, 48, 64}) {
        if (row.saveDepths != 0) WriteSeed(folder, row.format, bits, 0);
      }
      if (row.saveDepths != 0) WriteSeed(folder, row.format, 24, -1);
    }
  }
  for (const Forgery& forgery : kForgeries) WriteForgery(folder, forgery);
  return 0;
}
