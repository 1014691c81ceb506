#include "services/zvcore/metadata.h"

#include <cstring>

#include "services/zvcore/memory.h"

namespace zvcore {
namespace {

MetadataSet* SetOf(const BITMAPHANDLE& bitmap) { return static_cast<MetadataSet*>(bitmap.metadata); }

bool IsKnownKind(int32_t kind) { return kind >= 0 && kind < METADATA_KIND_COUNT; }

void FreeSet(MetadataSet* set) {
  if (!set) return;
  for (MetadataBlock& block : set->blocks) Release(block.bytes);
  Release(set);
}

}  // namespace

void FreeMetadata(BITMAPHANDLE& bitmap) {
  FreeSet(SetOf(bitmap));
  bitmap.metadata = nullptr;
}

}  // namespace zvcore

int32_t SetBitmapMetadata(BITMAPHANDLE* bitmap, int32_t kind, const void* bytes, uint64_t size) {
  using namespace zvcore;
  if (!bitmap || !IsKnownKind(kind)) return ERROR_BAD_ARGUMENT;
  if (!bytes) size = 0;
  if (!bitmap->metadata) {
    if (size == 0) return SUCCESS;
    bitmap->metadata = AllocateZeroed(sizeof(MetadataSet));
    if (!bitmap->metadata) return ERROR_OUT_OF_MEMORY;
  }
  MetadataBlock fresh;
  if (size > 0) {
    fresh.bytes = static_cast<uint8_t*>(AllocateZeroed(size));
    if (!fresh.bytes) return ERROR_OUT_OF_MEMORY;
    fresh.size = size;
    std::memcpy(fresh.bytes, bytes, size);
  }
  MetadataBlock& place = SetOf(*bitmap)->blocks[kind];
  Release(place.bytes);
  place = fresh;
  return SUCCESS;
}

int32_t GetBitmapMetadata(const BITMAPHANDLE* bitmap, int32_t kind, const void** bytes, uint64_t* size) {
  using namespace zvcore;
  if (!bitmap || !bytes || !size || !IsKnownKind(kind)) return ERROR_BAD_ARGUMENT;
  const MetadataBlock block = bitmap->metadata ? SetOf(*bitmap)->blocks[kind] : MetadataBlock{};
  *bytes = block.bytes;
  *size = block.size;
  return SUCCESS;
}

int32_t CopyBitmapMetadata(BITMAPHANDLE* destination, const BITMAPHANDLE* source) {
  using namespace zvcore;
  if (!destination || !source) return ERROR_BAD_ARGUMENT;
  if (destination->metadata == source->metadata) return SUCCESS;
  BITMAPHANDLE copy = {};
  for (int32_t kind = 0; source->metadata && kind < METADATA_KIND_COUNT; ++kind) {
    const MetadataBlock& block = SetOf(*source)->blocks[kind];
    const int32_t result = SetBitmapMetadata(&copy, kind, block.bytes, block.size);
    if (result != SUCCESS) {
      FreeMetadata(copy);
      return result;
    }
  }
  FreeMetadata(*destination);
  destination->metadata = copy.metadata;
  return SUCCESS;
}
