// Windows metafiles, drawn by GDI at the load resolution or load size on a white ground: enhanced, placeable and plain ones, and those that
// are packed with gzip. GDI trusts what it plays, so the chain of records is checked before.
#include <windows.h>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "services/zvfile/codec.h"

namespace zvfile {
namespace {

constexpr uint64_t kMostFileBytes = 256u << 20;
constexpr size_t kMostUnpackedBytes = 256u << 20;
constexpr double kHundredthsOfMillimetre = 2540.0;  // an inch has them
constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;
constexpr size_t kPlaceableBytes = 22;
constexpr size_t kWmfHeaderBytes = 18;
constexpr size_t kEmfHeaderBytes = 88;
constexpr uint32_t kEmfSignature = 0x464D4520;  // " EMF"
constexpr uint32_t kEndOfEmf = 14;
constexpr double kDefaultInches = 4.0;  // of a plain metafile, which does not tell its size
constexpr int32_t kScreenDpi = 96;      // what drawings are shown at that are to come in their own size

// --- State ---

uint32_t Le(std::span<const uint8_t> bytes, size_t at, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value |= uint32_t{bytes[at + static_cast<size_t>(i)]} << (8 * i);
  return value;
}

struct MetafileDeleter {
  using pointer = HENHMETAFILE;
  void operator()(HENHMETAFILE metafile) const { DeleteEnhMetaFile(metafile); }
};
using Metafile = std::unique_ptr<HENHMETAFILE, MetafileDeleter>;

enum class Kind { kNone, kEnhanced, kPlaceable, kPlain };

struct Opened {
  Metafile metafile;
  int32_t format = FMT_EMF;
  double widthInches = 0, heightInches = 0;
};

Kind KindOf(std::span<const uint8_t> bytes) {
  if (bytes.size() >= kEmfHeaderBytes && Le(bytes, 0, 4) == 1 && Le(bytes, 40, 4) == kEmfSignature)
    return Kind::kEnhanced;
  if (bytes.size() >= kPlaceableBytes + kWmfHeaderBytes && Le(bytes, 0, 4) == kPlaceableKey) return Kind::kPlaceable;
  const bool plain = bytes.size() >= kWmfHeaderBytes && (Le(bytes, 0, 2) == 1 || Le(bytes, 0, 2) == 2) &&
                     Le(bytes, 2, 2) == 9 && (Le(bytes, 4, 2) == 0x0300 || Le(bytes, 4, 2) == 0x0100);
  return plain ? Kind::kPlain : Kind::kNone;
}

bool IsPacked(std::span<const uint8_t> bytes) { return bytes.size() > 18 && bytes[0] == 0x1F && bytes[1] == 0x8B; }

// Unpacks at most `most` bytes of a gzip file; what is damaged ends early.
std::vector<uint8_t> Unpack(std::span<const uint8_t> packed, size_t most) {
  constexpr int kGzip = 15 + 16;
  constexpr size_t kStep = 64 * 1024;
  std::vector<uint8_t> result;
  z_stream stream = {};
  if (inflateInit2(&stream, kGzip) != Z_OK) return result;
  stream.next_in = const_cast<Bytef*>(packed.data());
  stream.avail_in = static_cast<uInt>(packed.size());
  int status = Z_OK;
  while (status == Z_OK && result.size() < most) {
    const size_t start = result.size();
    result.resize(std::min(start + kStep, most));
    stream.next_out = result.data() + start;
    stream.avail_out = static_cast<uInt>(result.size() - start);
    status = inflate(&stream, Z_NO_FLUSH);
    result.resize(result.size() - stream.avail_out);
    if (result.size() == start) break;
  }
  inflateEnd(&stream);
  return result;
}

// --- Probe ---

bool ProbeMetafile(ByteSource& source) {
  uint8_t head[512];
  const std::span<const uint8_t> bytes(head, source.Read(head, sizeof head));
  return KindOf(bytes) != Kind::kNone || (IsPacked(bytes) && KindOf(Unpack(bytes, 128)) != Kind::kNone);
}

// --- Info ---

// Every record lies inside the file and the last one says that it is.
bool HasSoundEmfRecords(std::span<const uint8_t> bytes) {
  for (size_t at = 0; at + 8 <= bytes.size();) {
    const uint32_t type = Le(bytes, at, 4), size = Le(bytes, at + 4, 4);
    if (size < 8 || size % 4 != 0 || size > bytes.size() - at) return false;
    if (type == kEndOfEmf) return true;
    at += size;
  }
  return false;
}

bool HasSoundWmfRecords(std::span<const uint8_t> bytes) {
  for (size_t at = kWmfHeaderBytes; at + 6 <= bytes.size();) {
    const uint64_t size = uint64_t{Le(bytes, at, 4)} * 2;
    if (size < 6 || size > bytes.size() - at) return false;
    if (Le(bytes, at + 4, 2) == 0) return true;
    at += static_cast<size_t>(size);
  }
  return false;
}

int32_t OpenEnhanced(std::span<const uint8_t> bytes, Opened& opened) {
  if (!HasSoundEmfRecords(bytes)) return ERROR_FILE_DAMAGED;
  opened.metafile.reset(SetEnhMetaFileBits(static_cast<UINT>(bytes.size()), bytes.data()));
  ENHMETAHEADER header = {};
  if (!opened.metafile || !GetEnhMetaFileHeader(opened.metafile.get(), sizeof header, &header))
    return ERROR_FILE_DAMAGED;
  opened.format = FMT_EMF;
  opened.widthInches = (int64_t{header.rclFrame.right} - header.rclFrame.left) / kHundredthsOfMillimetre;
  opened.heightInches = (int64_t{header.rclFrame.bottom} - header.rclFrame.top) / kHundredthsOfMillimetre;
  return SUCCESS;
}

int32_t OpenOld(std::span<const uint8_t> bytes, Kind kind, Opened& opened) {
  opened.format = FMT_WMF;
  opened.widthInches = opened.heightInches = kDefaultInches;
  if (kind == Kind::kPlaceable) {
    const auto signedWord = [&](size_t at) { return static_cast<int16_t>(Le(bytes, at, 2)); };
    const double perInch = std::max<uint32_t>(Le(bytes, 14, 2), 1);
    opened.widthInches = (signedWord(10) - signedWord(6)) / perInch;
    opened.heightInches = (signedWord(12) - signedWord(8)) / perInch;
    bytes = bytes.subspan(kPlaceableBytes);
  }
  if (!HasSoundWmfRecords(bytes)) return ERROR_FILE_DAMAGED;
  const auto hundredths = [](double inches) { return static_cast<LONG>(inches * kHundredthsOfMillimetre + 0.5); };
  const METAFILEPICT picture = {MM_ANISOTROPIC, hundredths(opened.widthInches), hundredths(opened.heightInches),
                                nullptr};
  const UINT count = static_cast<UINT>(bytes.size());
  opened.metafile.reset(SetWinMetaFileBits(count, bytes.data(), nullptr, &picture));
  return opened.metafile ? SUCCESS : ERROR_FILE_DAMAGED;
}

int32_t OpenMetafile(ByteSource& source, const LoadRequest& request, Opened& opened) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  std::vector<uint8_t> storage, unpacked;
  std::span<const uint8_t> bytes;
  if (!source.ReadAll(storage, bytes, kMostFileBytes)) return ERROR_LIMIT_EXCEEDED;
  const bool packed = IsPacked(bytes);
  if (packed) {
    unpacked = Unpack(bytes, kMostUnpackedBytes);
    bytes = unpacked;
  }
  const Kind kind = KindOf(bytes);
  if (kind == Kind::kNone) return ERROR_FILE_FORMAT;
  const int32_t result = kind == Kind::kEnhanced ? OpenEnhanced(bytes, opened) : OpenOld(bytes, kind, opened);
  if (packed) opened.format = FMT_WMZ;
  return result;
}

int32_t Describe(const Opened& opened, const LoadRequest& request, ImageHeader& header) {
  const auto pixels = [](int32_t given, double inches, int32_t dpi) -> int64_t {
    if (given > 0) return given;
    return static_cast<int64_t>(std::clamp(inches * dpi, 0.0, 1e9) + 0.5);
  };
  const int32_t xDpi = request.xDpi > 0 ? request.xDpi : kScreenDpi;
  const int32_t yDpi = request.yDpi > 0 ? request.yDpi : kScreenDpi;
  const IMAGESIZE wanted = request.SizeFor(opened.format);
  const int64_t width = pixels(wanted.width, opened.widthInches, xDpi);
  const int64_t height = pixels(wanted.height, opened.heightInches, yDpi);
  const int32_t result = request.limits.CheckImage(width, height, 32);
  if (result != SUCCESS) return result;
  header.format = opened.format;
  header.width = static_cast<int32_t>(width);
  header.height = static_cast<int32_t>(height);
  header.layout = Layout::kBgr24;
  header.compression = opened.format == FMT_WMZ ? "Deflate" : "None";
  header.xResolution = xDpi;
  header.yResolution = yDpi;
  return SUCCESS;
}

int32_t MetafileInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Opened opened;
  const int32_t result = OpenMetafile(source, request, opened);
  return result == SUCCESS ? Describe(opened, request, header) : result;
}

// --- Load ---

// A memory device with a white top-down bitmap of 32 bits selected into it.
class Canvas {
 public:
  Canvas(int32_t width, int32_t height) : stride_(static_cast<ptrdiff_t>(width) * 4) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    device_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(device_, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(&pixels_), nullptr, 0);
    if (!bitmap_) return;
    old_ = SelectObject(device_, bitmap_);
    std::memset(pixels_, 0xFF, static_cast<size_t>(stride_) * static_cast<size_t>(height));
  }
  ~Canvas() {
    if (old_) SelectObject(device_, old_);
    if (bitmap_) DeleteObject(bitmap_);
    if (device_) DeleteDC(device_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  bool Valid() const { return bitmap_ && old_; }
  HDC Device() const { return device_; }
  const uint8_t* Row(int32_t y) const { return pixels_ + stride_ * y; }

 private:
  ptrdiff_t stride_;
  HDC device_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ old_ = nullptr;
  uint8_t* pixels_ = nullptr;
};

// Plays a record; one that makes a font, in the form that the substitution gives it. Nothing may be thrown here: the frames
// above are the system's.
int CALLBACK PlayWithFonts(HDC device, HANDLETABLE* handles, const ENHMETARECORD* record, int handleCount,
                           LPARAM fonts) {
  constexpr size_t kFontAt = offsetof(EMREXTCREATEFONTINDIRECTW, elfw.elfLogFont);
  const auto count = static_cast<UINT>(handleCount);
  if (record->iType != EMR_EXTCREATEFONTINDIRECTW || record->nSize < kFontAt + sizeof(LOGFONTW)) {
    PlayEnhMetaFileRecord(device, handles, record, count);
    return TRUE;
  }
  const std::unique_ptr<uint8_t[]> copy(new (std::nothrow) uint8_t[record->nSize]);
  if (!copy) return FALSE;
  std::memcpy(copy.get(), record, record->nSize);
  LOGFONTW font;
  std::memcpy(&font, copy.get() + kFontAt, sizeof font);
  const auto& substitution = *reinterpret_cast<const FontSubstitution*>(fonts);
  if (substitution.change(&font, substitution.userData) == SUCCESS) {
    std::memcpy(copy.get() + kFontAt, &font, sizeof font);
  }
  PlayEnhMetaFileRecord(device, handles, reinterpret_cast<const ENHMETARECORD*>(copy.get()), count);
  return TRUE;
}

// A record that cannot be played makes the system's answer FALSE; the picture then has the others, as in any viewer.
void Play(HDC device, HENHMETAFILE metafile, const RECT& frame, FontSubstitution fonts) {
  if (fonts.change) {
    EnumEnhMetaFile(device, metafile, PlayWithFonts, &fonts, &frame);
  } else {
    PlayEnhMetaFile(device, metafile, &frame);
  }
  GdiFlush();
}

int32_t MetafileLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Opened opened;
  ImageHeader header;
  int32_t result = OpenMetafile(source, request, opened);
  if (result == SUCCESS) result = Describe(opened, request, header);
  if (result == SUCCESS) result = sink.Begin(header);
  if (result != SUCCESS) return result;
  const Canvas canvas(header.width, header.height);
  if (!canvas.Valid()) return ERROR_OUT_OF_MEMORY;
  const RECT frame = {0, 0, header.width, header.height};
  Play(canvas.Device(), opened.metafile.get(), frame, request.fonts);
  RowConverter converter(Layout::kBgrx32, Layout::kBgr24, header.width, {});
  for (int32_t y = 0; y < header.height; ++y) {
    converter.Convert(canvas.Row(y), sink.Row(y));
    result = sink.Commit(1);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_EMF, "emf", 0}, {FMT_WMF, "wmf", 0}, {FMT_WMZ, "wmz", 0}};
constexpr Signature kSignatures[] = {{40, 4, " EMF"},
                                     {0, 4, "\xD7\xCD\xC6\x9A"},
                                     {0, 4, "\x01\x00\x09\x00"},
                                     {0, 4, "\x02\x00\x09\x00"},
                                     {0, 2, "\x1F\x8B"}};

}  // namespace

const Codec kMetafileCodec = {"Windows metafile", kFormats,     kSignatures, "emf;wmf;wmz;emz", 0,       ProbeMetafile,
                              MetafileInfo,       MetafileLoad, nullptr,     nullptr,           nullptr, nullptr};

}  // namespace zvfile
