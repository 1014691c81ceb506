// Brings rows of colours that a bitmap does not know, inks and CIE L*a*b*, to sRGB. With an ICC profile the transform is the
// profile's, perceptual with black-point compensation; inks without one mix as R = (1 - C) (1 - K) and so on, which is what
// other readers do.
#ifndef ZV_FILE_COLOR_TRANSFORM_H
#define ZV_FILE_COLOR_TRANSFORM_H

#include <cstdint>
#include <memory>
#include <span>

namespace zvfile {

class ColorTransform {
 public:
  enum class Input {
    kCmyk8,   // bytes C M Y K, 0 no ink
    kCmyk16,  // 16-bit samples, native order
    kLab      // doubles L (0 to 100), a, b; D50
  };
  enum class Output { kRgb24, kRgb48 };

  // profile may be empty, and is then ignored, as it is when it is damaged or of another colour space.
  ColorTransform(Input input, Output output, std::span<const uint8_t> profile);
  ~ColorTransform();
  ColorTransform(const ColorTransform&) = delete;
  ColorTransform& operator=(const ColorTransform&) = delete;

  // Converts `count` pixels; source and destination must not overlap.
  void Convert(const void* source, void* destination, uint32_t count) const;

 private:
  Input input_;
  Output output_;
  void* transform_ = nullptr;  // cmsHTRANSFORM; null: plain mixing
};

}  // namespace zvfile

#endif
