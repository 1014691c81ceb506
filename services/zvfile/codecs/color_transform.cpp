#include "services/zvfile/codecs/color_transform.h"

#include <lcms2.h>

namespace zvfile {
namespace {

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

template <typename In, typename Out>
void MixInks(const void* source, void* destination, uint32_t count, uint64_t inMax, uint64_t outMax) {
  const auto* in = static_cast<const In*>(source);
  auto* out = static_cast<Out*>(destination);
  const uint64_t divisor = inMax * inMax;
  for (uint32_t pixel = 0; pixel < count; ++pixel, in += 4, out += 3) {
    const uint64_t paper = inMax - in[3];
    for (int channel = 0; channel < 3; ++channel) {
      out[channel] = static_cast<Out>(((inMax - in[channel]) * paper * outMax + divisor / 2) / divisor);
    }
  }
}

}  // namespace

ColorTransform::ColorTransform(Input input, Output output, std::span<const uint8_t> bytes)
    : input_(input), output_(output) {
  const bool lab = input == Input::kLab;
  Profile source;
  if (lab) {
    source.reset(cmsCreateLab4Profile(nullptr));
  } else if (!bytes.empty()) {
    source.reset(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
    if (source && cmsGetColorSpace(source.get()) != cmsSigCmykData) source.reset();
  }
  if (!source) return;
  const Profile target(cmsCreate_sRGBProfile());
  const cmsUInt32Number from = lab ? TYPE_Lab_DBL : input == Input::kCmyk8 ? TYPE_CMYK_8 : TYPE_CMYK_16;
  const cmsUInt32Number to = output == Output::kRgb24 ? TYPE_RGB_8 : TYPE_RGB_16;
  // No cache: one transform then serves several threads, and neighbouring pixels of photographs seldom agree anyhow.
  transform_ = cmsCreateTransform(source.get(), from, target.get(), to, INTENT_PERCEPTUAL,
                                  cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION);
}

ColorTransform::~ColorTransform() {
  if (transform_) cmsDeleteTransform(transform_);
}

void ColorTransform::Convert(const void* source, void* destination, uint32_t count) const {
  if (transform_) {
    cmsDoTransform(transform_, source, destination, count);
    return;
  }
  const bool deepOut = output_ == Output::kRgb48;
  if (input_ == Input::kCmyk8) {
    deepOut ? MixInks<uint8_t, uint16_t>(source, destination, count, 255, 65535)
            : MixInks<uint8_t, uint8_t>(source, destination, count, 255, 255);
  } else if (input_ == Input::kCmyk16) {
    deepOut ? MixInks<uint16_t, uint16_t>(source, destination, count, 65535, 65535)
            : MixInks<uint16_t, uint8_t>(source, destination, count, 65535, 255);
  }
}

}  // namespace zvfile
