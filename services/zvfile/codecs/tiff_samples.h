// Turns rows of TIFF samples, of any depth and kind, into rows of the layout that was promised.
#ifndef ZV_FILE_TIFF_SAMPLES_H
#define ZV_FILE_TIFF_SAMPLES_H

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "services/zvfile/codecs/color_transform.h"
#include "services/zvfile/codecs/tiff_page.h"

namespace zvfile::tiff {

class RowTransform {
 public:
  // picture must outlive the transform; profile is read for inks alone.
  RowTransform(const Picture& picture, std::span<const uint8_t> profile);
  // True when stored rows are rows of the layout already.
  bool IsIdentity() const { return identity_; }
  void Convert(const uint8_t* stored, uint8_t* row);

 private:
  void ReadSamples(const uint8_t* stored);
  void ConvertSamples(uint8_t* row) const;
  void ConvertPalette(uint8_t* row) const;
  void ConvertInks(uint8_t* row);
  void ConvertLab(uint8_t* row);
  void ConvertLibrary(const uint8_t* stored, uint8_t* row) const;

  const Picture& picture_;
  bool identity_ = false;
  std::vector<uint16_t> samples_;  // of one row: 8-bit values of layouts with 8 bits, else 16-bit; indices of palettes
  std::vector<uint16_t> inks_;     // CMYK alone, as bytes or words
  std::vector<double> lab_;
  std::vector<uint16_t> colors_;  // RGB from inks
  std::unique_ptr<ColorTransform> transform_;
};

}  // namespace zvfile::tiff

#endif
