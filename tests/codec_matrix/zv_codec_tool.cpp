// Loads and saves image files through zvfile as a script tells, so that independent programs can be held against it. Reads
// commands from a file, one a line, fields between tabs, text in UTF-8; answers each with one line: the result code, then what
// the command found out.
//
//   info FILE PAGE            format width height bits pages flags perspective xdpi ydpi compression
//   load FILE PAGE OUT        writes the pixels as a portable map (PAM), upright
//   stamp FILE OUT            the same for the picture stored beside the image
//   save IN OUT FORMAT BITS QUALITY FLAGS PAGE   loads IN and saves it; FLAGS are those of SAVEFILEOPTION
//   delete FILE PAGE
//   comment FILE NUMBER       the comment's text
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "services/zvfile/zvfile.h"

namespace {

using Text = std::basic_string<ZVCHAR>;

// UTF-8 to UTF-16; the script writes nothing malformed.
Text Wide(const std::string& utf8) {
  Text wide;
  for (size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i++]);
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    uint32_t code = more == 3 ? lead & 7u : more == 2 ? lead & 15u : more == 1 ? lead & 31u : lead;
    for (int n = 0; n < more && i < utf8.size(); ++n) code = code << 6 | (static_cast<unsigned char>(utf8[i++]) & 63u);
    if (code < 0x10000) {
      wide += static_cast<ZVCHAR>(code);
    } else {
      wide += static_cast<ZVCHAR>(0xD800 + ((code - 0x10000) >> 10));
      wide += static_cast<ZVCHAR>(0xDC00 + ((code - 0x10000) & 0x3FF));
    }
  }
  return wide;
}

LOADFILEOPTION PageOption(int page) {
  LOADFILEOPTION option;
  GetDefaultLoadFileOption(&option, sizeof option);
  option.pageNumber = page;
  return option;
}

// Frees the pixels of a bitmap at the end of its scope.
struct Bitmap {
  BITMAPHANDLE handle = {};
  ~Bitmap() { FreeBitmap(&handle); }
};

void AppendPixel(const BITMAPHANDLE& bitmap, const std::vector<uint8_t>& row, int x, bool gray, bool alpha,
                 std::string& out) {
  const auto wordAt = [&](size_t index) { return static_cast<uint16_t>(row[index * 2] | row[index * 2 + 1] << 8); };
  const auto putWord = [&](uint16_t value) {
    out += static_cast<char>(value >> 8);
    out += static_cast<char>(value & 255);
  };
  const size_t at = static_cast<size_t>(x);
  const int bits = bitmap.bitsPerPixel;
  const bool rgb = bitmap.colorOrder == ORDER_RGB;
  if (bits <= 8) {
    const unsigned index = row[at * static_cast<size_t>(bits) / 8] >> (8 - bits - (x * bits) % 8) & ((1u << bits) - 1);
    if (gray) {
      out += static_cast<char>(index);
      return;
    }
    const ZVPALETTEENTRY color =
        static_cast<int>(index) < bitmap.paletteCount ? bitmap.palette[index] : ZVPALETTEENTRY{};
    for (const uint8_t channel : {color.red, color.green, color.blue}) out += static_cast<char>(channel);
  } else if (gray) {
    putWord(wordAt(at));
  } else if (bits == 24 || bits == 32) {
    const uint8_t* pixel = &row[at * static_cast<size_t>(bits / 8)];
    for (const int channel : {rgb ? 0 : 2, 1, rgb ? 2 : 0}) out += static_cast<char>(pixel[channel]);
    if (alpha) out += static_cast<char>(pixel[3]);
  } else {
    const size_t first = at * static_cast<size_t>(bits / 16);
    for (const size_t channel : {size_t{rgb ? 0u : 2u}, size_t{1}, size_t{rgb ? 2u : 0u}})
      putWord(wordAt(first + channel));
    if (alpha) putWord(wordAt(first + 3));
  }
}

bool WritePam(const BITMAPHANDLE& bitmap, const std::string& path) {
  const bool gray = bitmap.colorOrder == ORDER_GRAY && (bitmap.bitsPerPixel == 8 || bitmap.bitsPerPixel == 16);
  const bool alpha = (bitmap.flags & BITMAP_FLAG_ALPHA) && (bitmap.bitsPerPixel == 32 || bitmap.bitsPerPixel == 64);
  const bool deep = bitmap.bitsPerPixel == 48 || bitmap.bitsPerPixel == 64 || bitmap.bitsPerPixel == 16;
  std::ostringstream head;
  head << "P7\nWIDTH " << bitmap.width << "\nHEIGHT " << bitmap.height << "\nDEPTH "
       << (gray    ? 1
           : alpha ? 4
                   : 3)
       << "\nMAXVAL " << (deep ? 65535 : 255) << "\nTUPLTYPE "
       << (gray    ? "GRAYSCALE"
           : alpha ? "RGB_ALPHA"
                   : "RGB")
       << "\nENDHDR\n";
  std::string content = head.str();
  std::vector<uint8_t> row(static_cast<size_t>(bitmap.bytesPerLine));
  for (int y = 0; y < bitmap.height; ++y) {
    if (CopyBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine) < 1) return false;
    for (int x = 0; x < bitmap.width; ++x) AppendPixel(bitmap, row, x, gray, alpha, content);
  }
  std::ofstream file(std::filesystem::path(Wide(path)), std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  return file.good();
}

using Fields = std::vector<std::string>;

int32_t Info(const Fields& fields, std::ostream& answer) {
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  const LOADFILEOPTION option = PageOption(std::stoi(fields.at(2)));
  const int32_t result = GetFileInfo(Wide(fields.at(1)).c_str(), &info, sizeof info, 1, &option);
  if (result != SUCCESS) return result;
  answer << info.format << ' ' << info.width << ' ' << info.height << ' ' << info.bitsPerPixel << ' ' << info.totalPages
         << ' ' << info.flags << ' ' << info.viewPerspective << ' ' << info.xResolution << ' ' << info.yResolution
         << ' ';
  for (const ZVCHAR* c = info.compression; *c; ++c) answer << static_cast<char>(*c);
  return result;
}

int32_t LoadTo(const Fields& fields, std::ostream& answer) {
  Bitmap bitmap;
  LOADFILEOPTION option = PageOption(std::stoi(fields.at(2)));
  option.flags |= LOADFILE_ROTATED;
  const int32_t result = LoadBitmapFile(Wide(fields.at(1)).c_str(), &bitmap.handle, sizeof bitmap.handle, 0,
                                        ORDER_BGR_OR_GRAY, &option, nullptr);
  if (result != SUCCESS) return result;
  answer << bitmap.handle.bitsPerPixel;
  return WritePam(bitmap.handle, fields.at(3)) ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t StampTo(const Fields& fields, std::ostream& answer) {
  Bitmap bitmap;
  const int32_t result = ReadFileStamp(Wide(fields.at(1)).c_str(), &bitmap.handle, sizeof bitmap.handle, nullptr);
  if (result != SUCCESS) return result;
  answer << bitmap.handle.width << ' ' << bitmap.handle.height;
  return WritePam(bitmap.handle, fields.at(2)) ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t Save(const Fields& fields) {
  Bitmap bitmap;
  int32_t result = LoadBitmapFile(Wide(fields.at(1)).c_str(), &bitmap.handle, sizeof bitmap.handle, 0,
                                  ORDER_BGR_OR_GRAY, nullptr, nullptr);
  if (result != SUCCESS) return result;
  SAVEFILEOPTION option;
  GetDefaultSaveFileOption(&option, sizeof option);
  option.flags |= static_cast<uint32_t>(std::stoul(fields.at(6), nullptr, 0));
  option.pageNumber = std::stoi(fields.at(7));
  if (option.flags & SAVEFILE_STAMP) {
    option.stampWidth = option.stampHeight = 64;
    option.stampBitsPerPixel = 24;
  }
  return SaveBitmapToFile(Wide(fields.at(2)).c_str(), &bitmap.handle, std::stoi(fields.at(3)), std::stoi(fields.at(4)),
                          std::stoi(fields.at(5)), &option);
}

int32_t Comment(const Fields& fields, std::ostream& answer) {
  char text[264];
  const int32_t length =
      ReadFileComment(Wide(fields.at(1)).c_str(), std::stoi(fields.at(2)), text, sizeof text, nullptr);
  if (length > 0) answer << text;
  return length > 0 ? SUCCESS : length;
}

int32_t Run(const Fields& fields, std::ostream& answer) {
  const std::string& command = fields.at(0);
  if (command == "info") return Info(fields, answer);
  if (command == "load") return LoadTo(fields, answer);
  if (command == "stamp") return StampTo(fields, answer);
  if (command == "save") return Save(fields);
  if (command == "delete") return DeleteFilePage(Wide(fields.at(1)).c_str(), std::stoi(fields.at(2)), 0, nullptr);
  if (command == "comment") return Comment(fields, answer);
  return ERROR_BAD_ARGUMENT;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: zv_codec_tool COMMANDS\n";
    return 2;
  }
  std::ifstream commands(arguments[1], std::ios::binary);
  if (!commands) {
    std::cerr << "cannot read " << arguments[1] << '\n';
    return 2;
  }
  for (std::string line; std::getline(commands, line);) {
    Fields fields;
    std::istringstream parts(line);
    for (std::string field; std::getline(parts, field, '\t');) fields.push_back(field);
    if (fields.empty()) continue;
    std::ostringstream answer;
    const int32_t result = Run(fields, answer);
    std::cout << result << '\t' << answer.str() << std::endl;
  }
  return 0;
}
