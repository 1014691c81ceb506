// Writes the inputs that fuzzing begins with: a small picture in every format and depth that the library can save.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

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
  return 0;
}
