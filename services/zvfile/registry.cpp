// The codec table and the search in it.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "services/zvfile/codec.h"

namespace zvfile {
namespace {

// In order of preference: direct codecs first, the long tail last, since it knows the same signatures.
constexpr const Codec* kCodecs[] = {
    &kJpegCodec,     &kPngCodec, &kTiffCodec, &kGifCodec, &kBmpCodec, &kCmpCodec,
    &kWebpCodec,     &kJ2kCodec, &kIconCodec, &kPsdCodec, &kXwdCodec,
#ifdef _WIN32
    &kMetafileCodec,
#endif
    &kMagickCodec,
};

bool Matches(const Signature& signature, std::span<const uint8_t> head) {
  return signature.offset + uint64_t{signature.length} <= head.size() &&
         std::memcmp(head.data() + signature.offset, signature.bytes, signature.length) == 0;
}

bool KnowsContent(const Codec& codec, std::span<const uint8_t> head, ByteSource& source) {
  const bool signed_ = std::any_of(codec.signatures.begin(), codec.signatures.end(),
                                   [&](const Signature& signature) { return Matches(signature, head); });
  if (!signed_ && !codec.signatures.empty()) return false;
  if (!codec.probe) return signed_;
  source.Seek(0);
  return codec.probe(source);
}

bool KnowsExtension(const Codec& codec, std::string_view extension) {
  if (extension.empty()) return false;
  std::string_view rest = codec.extensions;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find(';'), rest.size());
    if (rest.substr(0, end) == extension) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

}  // namespace

std::span<const Codec* const> AllCodecs() { return kCodecs; }

const Codec* DetectCodec(ByteSource& source, const std::string& extension, const Codec* after) {
  uint8_t head[512];
  const size_t count = source.ReadAt(0, head, sizeof head);
  bool passed = after == nullptr;
  for (const bool byName : {false, true}) {
    for (const Codec* codec : kCodecs) {
      const bool known = KnowsContent(*codec, {head, count}, source);
      // The name decides last, and for formats without a signature alone: a signed format whose signature is not there is
      // something else, whatever the file is called.
      const bool named = !known && codec->signatures.empty() && KnowsExtension(*codec, extension);
      if (!(byName ? named : known)) continue;
      if (passed) return codec;
      passed = codec == after;
    }
  }
  return nullptr;
}

const FormatRow* FindFormatRow(const Codec& codec, int32_t format) {
  const auto found = std::find_if(codec.formats.begin(), codec.formats.end(),
                                  [&](const FormatRow& row) { return row.format == format; });
  return found == codec.formats.end() ? nullptr : &*found;
}

const Codec* CodecForSaving(int32_t format) {
  for (const Codec* codec : kCodecs) {
    const FormatRow* row = FindFormatRow(*codec, format);
    if (row && row->saveDepths != 0 && codec->save) return codec;
  }
  return nullptr;
}

}  // namespace zvfile
