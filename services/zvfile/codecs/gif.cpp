// GIF over giflib. A page is what is on show when its frame has been drawn. The parts stand beside this file: gif_blocks (the file
// as blocks), gif_decoder and gif_encoder (the library), gif_canvas (frames put together).
#include <algorithm>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/gif_blocks.h"
#include "services/zvfile/codecs/gif_canvas.h"
#include "services/zvfile/codecs/gif_decoder.h"
#include "services/zvfile/codecs/gif_encoder.h"

namespace zvfile {
namespace gif {
namespace {

// The most pixels that a byte of compressed data can become: a code of twelve bits stands for less than 4096.
constexpr uint32_t kExpansion = 2800;
// A screen may be mostly bare ground, but not beyond reason.
constexpr uint32_t kScreenExpansion = 1u << 17;

// --- State and callbacks are in gif_decoder and gif_encoder ---

int32_t CheckSizes(ByteSource& source, const LoadRequest& request, const File& file, const Frame& frame) {
  int32_t result = request.limits.CheckImage(file.width, file.height, 32);
  if (result == SUCCESS)
    result = request.limits.CheckPlausible(file.width, file.height, 8, source.Size(), kScreenExpansion);
  if (result != SUCCESS || frame.width == 0 || frame.height == 0) return result;
  return request.limits.CheckPlausible(frame.width, frame.height, 8, source.Size(), kExpansion);
}

int32_t Open(ByteSource& source, const LoadRequest& request, File& file, Composition& plan, ImageHeader& header) {
  const size_t page = static_cast<size_t>(std::max(request.page, 1));
  const size_t most = static_cast<size_t>(request.limits.maxPages);
  if (page > most) return ERROR_PAGE_MISSING;
  if (!Scan(source, request.countPages ? most : page + 1, file) || file.frames.empty()) return ERROR_FILE_DAMAGED;
  if (page > file.frames.size()) return ERROR_PAGE_MISSING;
  const Frame& frame = file.frames[page - 1];
  const int32_t result = CheckSizes(source, request, file, frame);
  if (result != SUCCESS) return result;
  plan = Plan(source, file, page - 1);
  header.format = FMT_GIF;
  header.compression = "LZW";
  header.width = file.width;
  header.height = file.height;
  header.layout = plan.layout;
  if (plan.indexed) header.palette = plan.palette;
  if (plan.transparent >= 0) header.flags |= FILEINFO_TRANSPARENT_COLOR;
  if (HasAlpha(plan.layout)) header.flags |= FILEINFO_HAS_ALPHA;
  if (frame.interlaced) header.flags |= FILEINFO_INTERLACED;
  if (file.looping || file.frames.size() > 1) header.flags |= FILEINFO_ANIMATED;
  header.pageNumber = static_cast<int32_t>(page);
  header.totalPages = request.countPages ? static_cast<int32_t>(file.frames.size()) : 1;
  header.metadata.comments[COMMENT_DESCRIPTION] = file.comment;
  return SUCCESS;
}

// --- Info ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  File file;
  Composition plan;
  return Open(source, request, file, plan, header);
}

// --- Load ---

// A single frame that fills the screen from the top goes through row by row.
int32_t LoadPlain(ByteSource& source, const File& file, const Composition& plan, RowSink& sink) {
  const Frame& frame = file.frames[plan.last];
  FrameDecoder decoder(source, file, frame);
  int32_t result = decoder.Begin();
  std::vector<uint8_t> indices(static_cast<size_t>(frame.width)), row(PackedRowBytes(plan.layout, frame.width));
  for (int32_t y = 0; y < frame.height && result == SUCCESS; ++y) {
    result = decoder.NextRow(indices.data());
    if (result != SUCCESS) break;
    PackIndices(indices.data(), frame.width, plan.layout, row.data());
    result = sink.Put(row.data(), static_cast<ptrdiff_t>(row.size()), 1);
  }
  return result;
}

int32_t LoadComposed(ByteSource& source, const File& file, const Composition& plan, RowSink& sink) {
  Canvas canvas(source, file, plan);
  int32_t result = canvas.Compose();
  std::vector<uint8_t> row(PackedRowBytes(plan.layout, file.width));
  for (int32_t y = 0; y < file.height && result == SUCCESS; ++y) {
    canvas.CopyRow(y, row.data());
    result = sink.Put(row.data(), static_cast<ptrdiff_t>(row.size()), 1);
  }
  return result;
}

int32_t Load(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  File file;
  Composition plan;
  ImageHeader header;
  int32_t result = Open(source, request, file, plan, header);
  if (result == SUCCESS) result = sink.Begin(header);
  if (result != SUCCESS) return result;
  const Frame& frame = file.frames[plan.last];
  const bool plain = plan.first == plan.last && plan.indexed && !frame.interlaced && frame.left == 0 &&
                     frame.top == 0 && frame.width == file.width && frame.height == file.height;
  return plain ? LoadPlain(source, file, plan, sink) : LoadComposed(source, file, plan, sink);
}

// --- Save ---

// Writes a frame of a one-frame file as a frame among others: its colours become a map of its own.
int32_t SpliceFrame(ByteSource& single, uint16_t delay, ByteSink& sink) {
  File file;
  if (!Scan(single, 1, file) || file.frames.empty()) return ERROR_FILE_WRITE;
  const Frame& frame = file.frames.front();
  const bool clear = frame.transparent >= 0;
  bool good = sink.WriteLe(0x04F921, 3) && sink.WriteLe((kKeep << 2) | (clear ? 1 : 0), 1) && sink.WriteLe(delay, 2) &&
              sink.WriteLe(clear ? static_cast<uint64_t>(frame.transparent) : 0, 1) && sink.WriteLe(0, 1);
  uint8_t head[10];
  good = good && single.ReadAt(frame.imageAt, head, sizeof head) == sizeof head;
  if (!good) return ERROR_FILE_WRITE;
  int power = 0;
  while ((2 << power) < file.mapSize) ++power;
  head[9] = static_cast<uint8_t>((head[9] & 0x40) | 0x80 | power);
  const uint64_t mapBytes = uint64_t{3} * file.mapSize;
  good = sink.Write(head, sizeof head) && sink.CopyFrom(single, file.headerEnd - mapBytes, mapBytes) &&
         sink.CopyFrom(single, frame.mapAt, frame.end - frame.mapAt);
  return good ? SUCCESS : ERROR_FILE_WRITE;
}

// Header and what stands ahead of the first frame, with a screen that holds width x height as well.
bool CopyHead(ByteSource& existing, const File& file, int32_t width, int32_t height, ByteSink& sink) {
  if (!sink.CopyFrom(existing, 0, file.frames.front().start)) return false;
  sink.Seek(0);
  const bool good = sink.Write("GIF89a", 6) && sink.WriteLe(static_cast<uint64_t>(std::max(file.width, width)), 2) &&
                    sink.WriteLe(static_cast<uint64_t>(std::max(file.height, height)), 2);
  sink.Seek(sink.Size());
  return good;
}

// Frame n from its control block on, with the blocks between it and the next frame.
bool CopyFrame(ByteSource& existing, const File& file, size_t index, ByteSink& sink) {
  const uint64_t start = file.frames[index].start;
  const uint64_t end = index + 1 < file.frames.size() ? file.frames[index + 1].start : file.trailerAt;
  return sink.CopyFrom(existing, start, end - start);
}

bool ScanForEditing(ByteSource& existing, File& file) {
  // A file that is cut short has no end to put anything behind.
  return Scan(existing, SIZE_MAX, file) && !file.frames.empty() && file.complete;
}

int32_t SaveAmong(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  ByteSource& existing = *request.existing;
  File file;
  if (!ScanForEditing(existing, file)) return ERROR_FILE_DAMAGED;
  const size_t page = static_cast<size_t>(std::max(request.page, 1));
  const bool replace = request.pageOp == PageOp::kReplace;
  size_t place = file.frames.size();
  if (request.pageOp != PageOp::kAppend) place = page - 1;
  if (place > file.frames.size() || (replace && place == file.frames.size())) return ERROR_PAGE_MISSING;
  MemorySink encoded;
  int32_t result = Encode(encoded, request, rows);
  if (result != SUCCESS) return result;
  MemorySource single(encoded.Bytes());
  if (!CopyHead(existing, file, rows.Width(), rows.Height(), sink)) return ERROR_FILE_WRITE;
  const uint16_t delay = file.frames[std::min(place, file.frames.size() - 1)].delay;
  for (size_t index = 0; index <= file.frames.size() && result == SUCCESS; ++index) {
    if (index == place) result = SpliceFrame(single, delay, sink);
    const bool copied = index < file.frames.size() && !(replace && index == place);
    if (result == SUCCESS && copied && !CopyFrame(existing, file, index, sink)) result = ERROR_FILE_WRITE;
  }
  if (result != SUCCESS) return result;
  return sink.WriteLe(0x3B, 1) ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t Save(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  const bool alone = !request.existing || request.pageOp == PageOp::kOverwrite;
  return alone ? Encode(sink, request, rows) : SaveAmong(sink, request, rows);
}

int32_t DeletePage(ByteSource& existing, int32_t page, ByteSink& sink) {
  File file;
  if (!ScanForEditing(existing, file)) return ERROR_FILE_DAMAGED;
  if (page < 1 || static_cast<size_t>(page) > file.frames.size()) return ERROR_PAGE_MISSING;
  if (file.frames.size() == 1) return ERROR_FEATURE_UNSUPPORTED;
  bool good = CopyHead(existing, file, 0, 0, sink);
  for (size_t index = 0; index < file.frames.size(); ++index) {
    if (index != static_cast<size_t>(page) - 1) good = good && CopyFrame(existing, file, index, sink);
  }
  return good && sink.WriteLe(0x3B, 1) ? SUCCESS : ERROR_FILE_WRITE;
}

// --- The row of the codec table ---

constexpr FormatRow kFormats[] = {{FMT_GIF, "gif", kSave1 | kSave4 | kSave8Index | kSave8Gray}};
constexpr Signature kSignatures[] = {{0, 6, "GIF87a"}, {0, 6, "GIF89a"}};

}  // namespace
}  // namespace gif

extern const Codec kGifCodec = {
    .name = "GIF",
    .formats = gif::kFormats,
    .signatures = gif::kSignatures,
    .extensions = "gif",
    .flags = kMultiPageSave | kPaletteAlpha,
    .probe = nullptr,
    .info = gif::Info,
    .load = gif::Load,
    .save = gif::Save,
    .deletePage = gif::DeletePage,
    .stamp = nullptr,
    .sizes = nullptr,
};

}  // namespace zvfile
