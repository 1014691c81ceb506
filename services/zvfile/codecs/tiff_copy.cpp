#include "services/zvfile/codecs/tiff_copy.h"

#include <algorithm>
#include <numeric>

#include "services/zvfile/zvfile.h"

namespace zvfile::tiff {
namespace {

constexpr int kMaxDepth = 4;  // page, sub-image, Exif, interoperability
constexpr uint64_t kMaxValueBytes = uint64_t{64} << 20;

int32_t WriteFailure(const ByteSource& source) { return source.Failed() ? ERROR_FILE_READ : ERROR_FILE_WRITE; }

}  // namespace

size_t SinkSource::ReadAt(uint64_t offset, void* buffer, size_t bytes) {
  sink_.Seek(offset);
  return sink_.Read(buffer, bytes);
}

Copier::Copier(Stream& from, ByteSink& to, Variant variant, std::span<const uint16_t> tags)
    : from_(from), to_(to), variant_(variant), tags_(tags), budget_(2 * from.Source().Size()) {}

int32_t Copier::Copy(const Directory& directory, uint64_t& offset, uint64_t& nextAt) {
  return CopyDirectory(directory, 0, offset, nextAt);
}

int32_t Copier::CopyDirectory(const Directory& directory, int depth, uint64_t& offset, uint64_t& nextAt) {
  std::vector<Value> values;
  for (const Entry& entry : directory.entries) {
    const bool wanted = depth > 0 || tags_.empty() || std::find(tags_.begin(), tags_.end(), entry.tag) != tags_.end();
    if (!wanted) continue;
    if (const int32_t result = CopyValue(directory, entry, depth, values); result != SUCCESS) return result;
  }
  if (values.empty()) return ERROR_FILE_DAMAGED;
  return WriteDirectory(values, offset, nextAt);
}

int32_t Copier::CopyValue(const Directory& directory, const Entry& entry, int depth, std::vector<Value>& values) {
  switch (entry.tag) {
    case kStripOffsets: return CopyBlocks(entry, directory.Find(kStripByteCounts), 0, values);
    case kTileOffsets: return CopyBlocks(entry, directory.Find(kTileByteCounts), 0, values);
    case kJpegStream: return CopyBlocks(entry, directory.Find(kJpegStreamLength), 0, values);
    case kJpegQTables: return CopyBlocks(entry, nullptr, 64, values);
    case kJpegDcTables:
    case kJpegAcTables: return CopyBlocks(entry, nullptr, 0, values);
    case kSubIfds:
    case kExifIfd:
    case kGpsIfd:
    case kInteropIfd: return CopySubDirectories(entry, depth, values);
    case kFreeOffsets:
    case kFreeByteCounts: return SUCCESS;  // the copy has no gaps
    default: return CopyPlain(entry, values);
  }
}

int32_t Copier::CopyPlain(const Entry& entry, std::vector<Value>& values) {
  if (entry.Bytes() > kMaxValueBytes) return ERROR_LIMIT_EXCEEDED;
  Value value{entry.tag, entry.type, entry.count, std::vector<uint8_t>(entry.Bytes())};
  from_.Source().Seek(entry.valueAt);
  if (!from_.Source().ReadExactly(value.bytes.data(), value.bytes.size())) return ERROR_FILE_DAMAGED;
  const uint32_t unit = SwapUnit(entry.type);
  if (unit > 1 && variant_.bigEndian != from_.GetVariant().bigEndian) {
    for (size_t at = 0; at + unit <= value.bytes.size(); at += unit) {
      std::reverse(value.bytes.begin() + at, value.bytes.begin() + at + unit);
    }
  }
  values.push_back(std::move(value));
  return SUCCESS;
}

// A DC or AC table stands in the file as 16 code counts followed by that many symbols.
uint64_t Copier::HuffmanTableSize(uint64_t offset) {
  uint8_t counts[16];
  from_.Source().Seek(offset);
  if (!from_.Source().ReadExactly(counts, sizeof counts)) return 0;
  return std::accumulate(std::begin(counts), std::end(counts), uint64_t{sizeof counts});
}

int32_t Copier::CopyBlocks(const Entry& offsets, const Entry* sizes, uint64_t fixedSize, std::vector<Value>& values) {
  Value value{offsets.tag, static_cast<uint16_t>(variant_.big ? kLong8 : kLong), offsets.count, {}};
  const bool sized = offsets.tag != kJpegQTables && offsets.tag != kJpegDcTables && offsets.tag != kJpegAcTables;
  if (sized && !sizes) return ERROR_FEATURE_UNSUPPORTED;
  for (uint64_t i = 0; i < offsets.count; ++i) {
    uint64_t offset = 0, size = fixedSize;
    if (!from_.Number(offsets, i, offset) || (sized && !from_.Number(*sizes, i, size))) return ERROR_FILE_DAMAGED;
    if (!sized && size == 0) size = HuffmanTableSize(offset);
    if (size > budget_) return ERROR_FILE_DAMAGED;
    budget_ -= size;
    if (const int32_t result = Align(); result != SUCCESS) return result;
    AppendNumber(value.bytes, size == 0 ? 0 : to_.Size(), variant_.OffsetSize());
    to_.Seek(to_.Size());
    if (offset > from_.Source().Size() || size > from_.Source().Size() - offset) return ERROR_FILE_DAMAGED;
    if (size > 0 && !to_.CopyFrom(from_.Source(), offset, size)) return WriteFailure(from_.Source());
  }
  values.push_back(std::move(value));
  return SUCCESS;
}

int32_t Copier::CopySubDirectories(const Entry& entry, int depth, std::vector<Value>& values) {
  if (depth >= kMaxDepth) return ERROR_FILE_DAMAGED;
  const bool list = entry.tag == kSubIfds;
  Value value{entry.tag, static_cast<uint16_t>(variant_.big ? (list ? kIfd8 : kLong8) : (list ? kIfd : kLong)), 0, {}};
  for (uint64_t i = 0; i < entry.count; ++i) {
    uint64_t offset = 0, copy = 0, nextAt = 0;
    Directory directory;
    // A pointer that leads nowhere is left behind; the page is good without it.
    if (!from_.Number(entry, i, offset) || !from_.ReadDirectory(offset, directory)) continue;
    const int32_t result = CopyDirectory(directory, depth + 1, copy, nextAt);
    if (result != SUCCESS) return result;
    AppendNumber(value.bytes, copy, variant_.OffsetSize());
    ++value.count;
  }
  if (value.count > 0) values.push_back(std::move(value));
  return SUCCESS;
}

void Copier::AppendNumber(std::vector<uint8_t>& bytes, uint64_t value, uint32_t size) const {
  for (uint32_t i = 0; i < size; ++i) {
    const uint32_t shift = 8 * (variant_.bigEndian ? size - 1 - i : i);
    bytes.push_back(static_cast<uint8_t>(value >> shift));
  }
}

int32_t Copier::Align() {
  if (!variant_.big && to_.Size() > 0xFFFFFF00u) return ERROR_LIMIT_EXCEEDED;
  to_.Seek(to_.Size());
  if (to_.Size() % 2 != 0 && !to_.Write("", 1)) return ERROR_FILE_WRITE;
  return SUCCESS;
}

int32_t Copier::WriteDirectory(std::vector<Value>& values, uint64_t& offset, uint64_t& nextAt) {
  std::stable_sort(values.begin(), values.end(), [](const Value& a, const Value& b) { return a.tag < b.tag; });
  const uint32_t fieldSize = variant_.OffsetSize();
  std::vector<uint8_t> table;
  AppendNumber(table, values.size(), variant_.big ? 8 : 2);
  for (Value& value : values) {
    AppendNumber(table, value.tag, 2);
    AppendNumber(table, value.type, 2);
    AppendNumber(table, value.count, fieldSize);
    if (value.bytes.size() <= fieldSize) {
      value.bytes.resize(fieldSize);
      table.insert(table.end(), value.bytes.begin(), value.bytes.end());
      continue;
    }
    if (const int32_t result = Align(); result != SUCCESS) return result;
    AppendNumber(table, to_.Size(), fieldSize);
    if (!to_.Write(value.bytes.data(), value.bytes.size())) return ERROR_FILE_WRITE;
  }
  if (const int32_t result = Align(); result != SUCCESS) return result;
  offset = to_.Size();
  nextAt = offset + table.size();
  AppendNumber(table, 0, fieldSize);
  return to_.Write(table.data(), table.size()) ? SUCCESS : ERROR_FILE_WRITE;
}

bool WriteHeader(ByteSink& sink, Variant variant) {
  sink.Seek(0);
  bool good = sink.Write(variant.bigEndian ? "MM" : "II", 2);
  const auto put = [&](uint64_t value, int bytes) {
    good = good && (variant.bigEndian ? sink.WriteBe(value, bytes) : sink.WriteLe(value, bytes));
  };
  put(variant.big ? 43 : 42, 2);
  if (variant.big) {
    put(8, 2);
    put(0, 2);
  }
  put(0, static_cast<int>(variant.OffsetSize()));
  return good;
}

bool PutOffset(ByteSink& sink, Variant variant, uint64_t at, uint64_t offset) {
  sink.Seek(at);
  const int bytes = static_cast<int>(variant.OffsetSize());
  return variant.bigEndian ? sink.WriteBe(offset, bytes) : sink.WriteLe(offset, bytes);
}

int32_t CopyPagesExcept(Stream& from, const std::vector<Page>& pages, size_t leftOut, ByteSink& sink) {
  const Variant variant = from.GetVariant();
  if (!WriteHeader(sink, variant)) return ERROR_FILE_WRITE;
  Copier copier(from, sink, variant);
  uint64_t slot = variant.big ? 8 : 4;
  for (size_t index = 0; index < pages.size(); ++index) {
    if (index == leftOut) continue;
    for (const uint64_t at : pages[index].group) {
      Directory directory;
      if (!from.ReadDirectory(at, directory)) return ERROR_FILE_DAMAGED;
      uint64_t offset = 0, nextAt = 0;
      if (const int32_t result = copier.Copy(directory, offset, nextAt); result != SUCCESS) return result;
      if (!PutOffset(sink, variant, slot, offset)) return ERROR_FILE_WRITE;
      slot = nextAt;
    }
  }
  return SUCCESS;
}

int32_t MoveLastPageTo(ByteSink& sink, size_t index) {
  SinkSource source(sink);
  Stream stream(source);
  std::vector<Page> pages;
  if (!stream.Open() || !WalkPages(stream, SIZE_MAX, pages)) return ERROR_FILE_DAMAGED;
  if (index + 1 >= pages.size()) return SUCCESS;
  const Page& moved = pages.back();
  Directory last;
  if (!stream.ReadDirectory(moved.group.back(), last)) return ERROR_FILE_DAMAGED;
  const Variant variant = stream.GetVariant();
  const bool good = PutOffset(sink, variant, moved.slotAt, 0) &&
                    PutOffset(sink, variant, last.nextAt, pages[index].groupStart) &&
                    PutOffset(sink, variant, pages[index].slotAt, moved.groupStart);
  return good ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t RenumberPages(ByteSink& sink) {
  SinkSource source(sink);
  Stream stream(source);
  std::vector<Page> pages;
  if (!stream.Open() || !WalkPages(stream, SIZE_MAX, pages)) return ERROR_FILE_DAMAGED;
  const bool bigEndian = stream.GetVariant().bigEndian;
  for (size_t index = 0; index < pages.size(); ++index) {
    Directory directory;
    if (!stream.ReadDirectory(pages[index].offset, directory)) return ERROR_FILE_DAMAGED;
    const Entry* entry = directory.Find(kPageNumber);
    if (!entry || entry->type != kShort || entry->count != 2) continue;
    sink.Seek(entry->valueAt);
    for (const uint64_t number : {uint64_t{index}, uint64_t{pages.size()}}) {
      if (!(bigEndian ? sink.WriteBe(number, 2) : sink.WriteLe(number, 2))) return ERROR_FILE_WRITE;
    }
  }
  return SUCCESS;
}

}  // namespace zvfile::tiff
