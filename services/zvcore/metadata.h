/* What a file said beside its pixels, as blocks of bytes by kind. A handle owns one such set through its metadata
 * field, from the first block on; the set owns its blocks. Callers of the module use SetBitmapMetadata and its
 * siblings. */
#ifndef ZV_ZVCORE_METADATA_H
#define ZV_ZVCORE_METADATA_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

struct MetadataBlock {
  uint8_t* bytes = nullptr;
  uint64_t size = 0;
};

struct MetadataSet {
  MetadataBlock blocks[METADATA_KIND_COUNT];
};

void FreeMetadata(BITMAPHANDLE& bitmap);

}  // namespace zvcore

#endif
