// Windows icons and cursors: several sizes of one picture. The load size chooses among them, the largest and deepest being the
// default. Entries are bitmaps with a mask or whole PNG files; both are read and written.
#include <algorithm>
#include <cstring>

#include "services/zvfile/codec.h"

namespace zvfile {
namespace {

constexpr size_t kDirectoryBytes = 6;
constexpr size_t kEntryBytes = 16;
constexpr uint32_t kInfoHeaderBytes = 40;
constexpr int32_t kLargestSide = 256;
constexpr size_t kMostEntries = 1024;
constexpr int32_t kDefaultLevel = 6;

// --- State ---

uint32_t Le(const uint8_t* bytes, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value |= uint32_t{bytes[i]} << (8 * i);
  return value;
}

struct Entry {
  int32_t width = 0, height = 0;
  int32_t bits = 0;
  uint64_t offset = 0;
  uint64_t size = 0;
  bool png = false;
};

struct Directory {
  bool cursor = false;
  std::vector<Entry> entries;  // best first
};

// --- Probe ---

bool ProbeIcon(ByteSource& source) {
  uint8_t head[kDirectoryBytes + kEntryBytes];
  if (!source.ReadExactly(head, sizeof head)) return false;
  const uint32_t kind = Le(head + 2, 2), count = Le(head + 4, 2);
  const uint64_t offset = Le(head + 18, 4);
  const uint64_t size = Le(head + 14, 4);
  return Le(head, 2) == 0 && (kind == 1 || kind == 2) && count > 0 && count <= kMostEntries && head[9] == 0 &&
         offset >= kDirectoryBytes + kEntryBytes && offset < source.Size() && size >= kInfoHeaderBytes;
}

// --- Info ---

// The entry's own header knows its size; that of the directory has one byte a side and is often wrong.
bool ReadEntry(ByteSource& source, Entry& entry) {
  uint8_t head[kInfoHeaderBytes];
  if (entry.offset > source.Size() || entry.size > source.Size() - entry.offset) return false;
  if (source.ReadAt(entry.offset, head, sizeof head) != sizeof head) return false;
  entry.png = std::memcmp(head, "\x89PNG", 4) == 0;
  if (entry.png) {
    const auto be = [&](size_t at) {
      return static_cast<int32_t>(head[at] << 24 | head[at + 1] << 16 | head[at + 2] << 8 | head[at + 3]);
    };
    entry.width = be(16);
    entry.height = be(20);
    entry.bits = 32;
  } else {
    if (Le(head, 4) < kInfoHeaderBytes || Le(head + 16, 4) != 0) return false;
    entry.width = static_cast<int32_t>(Le(head + 4, 4));
    entry.height = static_cast<int32_t>(Le(head + 8, 4)) / 2;  // picture and mask count together
    entry.bits = static_cast<int32_t>(Le(head + 14, 2));
  }
  return entry.width > 0 && entry.height > 0;
}

int32_t ReadDirectory(ByteSource& source, const LoadRequest& request, Directory& directory) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  uint8_t head[kDirectoryBytes];
  if (source.ReadAt(0, head, sizeof head) != sizeof head) return ERROR_FILE_DAMAGED;
  directory.cursor = Le(head + 2, 2) == 2;
  const size_t count = std::min<size_t>(Le(head + 4, 2), kMostEntries);
  for (size_t i = 0; i < count; ++i) {
    uint8_t bytes[kEntryBytes];
    if (source.ReadAt(kDirectoryBytes + i * kEntryBytes, bytes, sizeof bytes) != sizeof bytes)
      return ERROR_FILE_DAMAGED;
    Entry entry;
    entry.size = Le(bytes + 8, 4);
    entry.offset = Le(bytes + 12, 4);
    if (!ReadEntry(source, entry)) return ERROR_FILE_DAMAGED;
    directory.entries.push_back(entry);
  }
  if (directory.entries.empty()) return ERROR_FILE_DAMAGED;
  std::stable_sort(directory.entries.begin(), directory.entries.end(), [](const Entry& a, const Entry& b) {
    const int64_t areaA = int64_t{a.width} * a.height, areaB = int64_t{b.width} * b.height;
    return areaA != areaB ? areaA > areaB : a.bits > b.bits;
  });
  return SUCCESS;
}

// The largest entry, or the smallest that is not smaller than asked for; a height of 0 asks for the width alone.
const Entry& Choose(const Directory& directory, const IMAGESIZE& wanted) {
  const Entry* chosen = &directory.entries.front();
  if (wanted.width < 1) return *chosen;
  for (const Entry& entry : directory.entries) {
    const bool smaller = int64_t{entry.width} * entry.height < int64_t{chosen->width} * chosen->height;
    if (smaller && entry.width >= wanted.width && entry.height >= wanted.height) chosen = &entry;
  }
  return *chosen;
}

// The best entry decides, whichever is loaded: a load size, which belongs to a number, leaves the number as it is.
int32_t FormatOf(const Directory& directory) {
  if (directory.cursor) return FMT_CUR;
  return directory.entries.front().png ? FMT_ICO_PNG : FMT_ICO;
}

void DescribeEntry(const Directory& directory, const Entry& entry, ImageHeader& header) {
  header.format = FormatOf(directory);
  header.width = entry.width;
  header.height = entry.height;
  header.layout = Layout::kBgra32;
  header.compression = entry.png ? "PNG" : "None";
}

int32_t IconInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Directory directory;
  const int32_t result = ReadDirectory(source, request, directory);
  if (result != SUCCESS) return result;
  const Entry& entry = Choose(directory, request.SizeFor(FormatOf(directory)));
  DescribeEntry(directory, entry, header);
  return request.limits.CheckImage(header.width, header.height, 32);
}

int32_t IconSizes(ByteSource& source, const LoadRequest& request, std::vector<IMAGESIZE>& sizes) {
  Directory directory;
  const int32_t result = ReadDirectory(source, request, directory);
  for (const Entry& entry : directory.entries) {
    const bool known = std::any_of(sizes.begin(), sizes.end(), [&](const IMAGESIZE& size) {
      return size.width == entry.width && size.height == entry.height;
    });
    if (!known) sizes.push_back({entry.width, entry.height});
  }
  return result;
}

// --- Load ---

// The parts of a bitmap entry: palette, picture and mask, each row padded to four bytes, bottom row first.
struct Parts {
  Palette palette;
  size_t pixelStride = 0, maskStride = 0;
  std::vector<uint8_t> pixels, mask;
};

int32_t ReadParts(ByteSource& source, const Entry& entry, Parts& parts) {
  uint8_t head[kInfoHeaderBytes];
  source.ReadAt(entry.offset, head, sizeof head);
  const uint32_t headerBytes = Le(head, 4);
  const int32_t bits = entry.bits;
  const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
  if (!known) return ERROR_FILE_DAMAGED;
  const uint32_t used = Le(head + 32, 4);
  const uint32_t colors = bits > 8 ? 0 : used == 0 ? 1u << bits : std::min(used, 1u << bits);
  uint64_t at = entry.offset + headerBytes;
  for (uint32_t i = 0; i < colors; ++i, at += 4) {
    uint8_t color[4];
    if (source.ReadAt(at, color, 4) != 4) return ERROR_FILE_DAMAGED;
    parts.palette.push_back({color[0], color[1], color[2], 255});
  }
  parts.pixelStride = (static_cast<size_t>(entry.width) * static_cast<size_t>(bits) + 31) / 32 * 4;
  parts.maskStride = (static_cast<size_t>(entry.width) + 31) / 32 * 4;
  const size_t height = static_cast<size_t>(entry.height);
  const uint64_t needed = parts.pixelStride * uint64_t{height};
  if (at + needed > source.Size()) return ERROR_FILE_DAMAGED;
  parts.pixels.resize(static_cast<size_t>(needed));
  parts.mask.resize(parts.maskStride * height);  // stays 0, opaque, where the file has none
  if (source.ReadAt(at, parts.pixels.data(), parts.pixels.size()) != parts.pixels.size()) return ERROR_FILE_DAMAGED;
  source.ReadAt(at + needed, parts.mask.data(), parts.mask.size());
  return SUCCESS;
}

bool HasOwnAlpha(const Parts& parts, const Entry& entry) {
  if (entry.bits != 32) return false;
  for (size_t i = 3; i < parts.pixels.size(); i += 4) {
    if (parts.pixels[i] != 0) return true;
  }
  return false;
}

int32_t LoadBitmapEntry(ByteSource& source, const Entry& entry, const ImageHeader& header, RowSink& sink) {
  Parts parts;
  int32_t result = ReadParts(source, entry, parts);
  if (result == SUCCESS) result = sink.Begin(header);
  if (result != SUCCESS) return result;
  const bool ownAlpha = HasOwnAlpha(parts, entry);
  const Layout layout = entry.bits == 32 ? Layout::kBgra32 : LayoutForDepth(entry.bits, false, false, false);
  RowConverter converter(layout, Layout::kBgra32, entry.width, parts.palette);
  for (int32_t y = 0; y < entry.height; ++y) {
    const size_t line = static_cast<size_t>(entry.height - 1 - y);
    uint8_t* row = sink.Row(y);
    converter.Convert(parts.pixels.data() + line * parts.pixelStride, row);
    const uint8_t* mask = parts.mask.data() + line * parts.maskStride;
    for (int32_t x = 0; x < entry.width && !ownAlpha; ++x) {
      row[x * 4 + 3] = (mask[x / 8] >> (7 - x % 8)) & 1 ? 0 : 255;
    }
    result = sink.Commit(1);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t IconLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Directory directory;
  const int32_t result = ReadDirectory(source, request, directory);
  if (result != SUCCESS) return result;
  const Entry& entry = Choose(directory, request.SizeFor(FormatOf(directory)));
  if (entry.png) {
    SubSource part(source, entry.offset, entry.size);
    sink.ReportFormat(FormatOf(directory));
    return kPngCodec.load(part, request, sink);
  }
  ImageHeader header;
  DescribeEntry(directory, entry, header);
  const int32_t checked = request.limits.CheckImage(header.width, header.height, 32);
  return checked == SUCCESS ? LoadBitmapEntry(source, entry, header, sink) : checked;
}

// --- Save ---

// A bitmap that frees itself.
struct Scratch {
  BITMAPHANDLE bitmap = {};
  ~Scratch() { FreeBitmap(&bitmap); }

  int32_t Allocate(int32_t width, int32_t height) {
    const int32_t result = CreateBitmap(&bitmap, sizeof bitmap, MEMORY_CONVENTIONAL, width, height, 32, ORDER_BGR,
                                        nullptr, VIEW_TOP_LEFT, nullptr, 0);
    bitmap.flags |= BITMAP_FLAG_ALPHA;
    return result;
  }
};

// The picture at a size: scaled to fit, centred on a transparent square where the shapes differ.
int32_t ScaleTo(const BITMAPHANDLE& picture, const IMAGESIZE& size, Scratch& scaled) {
  const double scale =
      std::min(static_cast<double>(size.width) / picture.width, static_cast<double>(size.height) / picture.height);
  const int32_t width = std::clamp(static_cast<int32_t>(picture.width * scale + 0.5), 1, size.width);
  const int32_t height = std::clamp(static_cast<int32_t>(picture.height * scale + 0.5), 1, size.height);
  Scratch fitted;
  int32_t result = fitted.Allocate(width, height);
  if (result == SUCCESS) result = ResizeBitmapInto(&picture, &fitted.bitmap, RESIZE_FAVOR_QUALITY);
  if (result == SUCCESS) result = scaled.Allocate(size.width, size.height);
  if (result != SUCCESS) return result;
  const size_t left = static_cast<size_t>(size.width - width) / 2;
  const int32_t top = (size.height - height) / 2;
  std::vector<uint8_t> row(static_cast<size_t>(size.width) * 4);
  for (int32_t y = 0; y < height; ++y) {
    CopyBitmapRow(&fitted.bitmap, row.data() + left * 4, y, width * 4);
    PutBitmapRow(&scaled.bitmap, row.data(), top + y, size.width * 4);
  }
  return SUCCESS;
}

int32_t EncodePng(BITMAPHANDLE& picture, int32_t level, MemorySink& sink) {
  SaveRequest request;
  request.format = FMT_PNG;
  request.quality = level;
  request.option = {};
  RowSource rows(&picture, nullptr, nullptr);
  const int32_t prepared = rows.Prepare(Layout::kBgra32);
  return prepared == SUCCESS ? kPngCodec.save(sink, request, rows) : prepared;
}

void EncodeBitmap(const BITMAPHANDLE& picture, MemorySink& sink) {
  sink.WriteLe(kInfoHeaderBytes, 4);
  sink.WriteLe(static_cast<uint32_t>(picture.width), 4);
  sink.WriteLe(static_cast<uint32_t>(picture.height) * 2, 4);
  sink.WriteLe(1, 2);
  sink.WriteLe(32, 2);
  for (int i = 0; i < 6; ++i) sink.WriteLe(0, 4);
  const size_t width = static_cast<size_t>(picture.width);
  const size_t maskStride = (width + 31) / 32 * 4;
  std::vector<uint8_t> row(width * 4);
  std::vector<uint8_t> mask(maskStride * static_cast<size_t>(picture.height));
  for (int32_t y = picture.height - 1; y >= 0; --y) {
    CopyBitmapRow(&picture, row.data(), y, static_cast<int32_t>(row.size()));
    sink.Write(row.data(), row.size());
    uint8_t* bits = mask.data() + maskStride * static_cast<size_t>(picture.height - 1 - y);
    for (size_t x = 0; x < width; ++x) {
      if (row[x * 4 + 3] == 0) bits[x / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
    }
  }
  sink.Write(mask.data(), mask.size());
}

std::vector<IMAGESIZE> SizesFor(const SaveRequest& request, const RowSource& rows) {
  if (!request.sizeList.empty()) return request.sizeList;
  const int32_t longest = std::max(rows.Width(), rows.Height());
  if (longest <= kLargestSide) return {IMAGESIZE{rows.Width(), rows.Height()}};
  const auto scaled = [&](int32_t side) {
    return std::max(1, static_cast<int32_t>((int64_t{side} * kLargestSide + longest / 2) / longest));
  };
  return {IMAGESIZE{scaled(rows.Width()), scaled(rows.Height())}};
}

int32_t ReadPicture(RowSource& rows, Scratch& picture) {
  int32_t result = rows.Begin(Layout::kBgra32);
  if (result == SUCCESS) result = picture.Allocate(rows.Width(), rows.Height());
  for (int32_t y = 0; y < rows.Height() && result == SUCCESS; ++y) {
    const uint8_t* row = rows.Next();
    if (!row) return rows.Error();
    PutBitmapRow(&picture.bitmap, row, y, rows.Width() * 4);
  }
  return result;
}

int32_t IconSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  Scratch picture;
  int32_t result = ReadPicture(rows, picture);
  if (result != SUCCESS) return result;
  const std::vector<IMAGESIZE> sizes = SizesFor(request, rows);
  sink.WriteLe(0, 2);
  sink.WriteLe(1, 2);
  sink.WriteLe(sizes.size(), 2);
  uint64_t offset = kDirectoryBytes + kEntryBytes * sizes.size();
  for (size_t i = 0; i < sizes.size(); ++i) {
    Scratch scaled;
    MemorySink entry;
    result = ScaleTo(picture.bitmap, sizes[i], scaled);
    if (result != SUCCESS) return result;
    if (request.format == FMT_ICO_PNG) {
      result = EncodePng(scaled.bitmap, request.quality < 0 ? kDefaultLevel : request.quality, entry);
      if (result != SUCCESS) return result;
    } else {
      EncodeBitmap(scaled.bitmap, entry);
    }
    sink.Seek(kDirectoryBytes + i * kEntryBytes);
    sink.WriteLe(static_cast<uint32_t>(sizes[i].width) & 0xFF, 1);  // 256 is written as 0
    sink.WriteLe(static_cast<uint32_t>(sizes[i].height) & 0xFF, 1);
    sink.WriteLe(0, 2);
    sink.WriteLe(1, 2);
    sink.WriteLe(32, 2);
    sink.WriteLe(entry.Size(), 4);
    sink.WriteLe(offset, 4);
    sink.Seek(offset);
    sink.Write(entry.Bytes().data(), entry.Bytes().size());
    offset += entry.Size();
  }
  return sink.Failed() ? ERROR_FILE_WRITE : SUCCESS;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_ICO, "ico", kSave32}, {FMT_ICO_PNG, "ico", kSave32}, {FMT_CUR, "cur", 0}};
constexpr Signature kSignatures[] = {{0, 4, "\0\0\1\0"}, {0, 4, "\0\0\2\0"}};

}  // namespace

const Codec kIconCodec = {"Icon",   kFormats, kSignatures, "ico;cur", 0,       ProbeIcon,
                          IconInfo, IconLoad, IconSave,    nullptr,   nullptr, IconSizes};

}  // namespace zvfile
