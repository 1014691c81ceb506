// What the two halves of the BMP codec share: the sizes of the headers and the names of the compressions.
#ifndef ZV_FILE_CODECS_BMP_H
#define ZV_FILE_CODECS_BMP_H

#include "services/zvfile/codec.h"

namespace zvfile {

inline constexpr uint32_t kBmpFileHeaderBytes = 14;
inline constexpr uint32_t kBmpCoreHeaderBytes = 12;  // OS/2 1.x
inline constexpr uint32_t kBmpInfoHeaderBytes = 40;
inline constexpr uint32_t kBmpMaskHeaderBytes = 52;   // with the three colour masks inside
inline constexpr uint32_t kBmpAlphaHeaderBytes = 56;  // and the alpha mask
inline constexpr uint32_t kBmpVersion4Bytes = 108;
inline constexpr uint32_t kBmpVersion5Bytes = 124;
inline constexpr double kBmpInchesPerMetre = 0.0254;

enum BmpCompression : uint32_t { kBmpPlain = 0, kBmpRle8 = 1, kBmpRle4 = 2, kBmpBitFields = 3, kBmpAlphaBitFields = 6 };

int32_t BmpSave(ByteSink& sink, const SaveRequest& request, RowSource& rows);

}  // namespace zvfile

#endif
