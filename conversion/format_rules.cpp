#include "conversion/format_rules.h"

#include "include/zvfiledlg_conversion.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

void SetFlag(uint32_t& flags, uint32_t bit, bool on) { flags = on ? flags | bit : flags & ~bit; }

}  // namespace

bool IsSettingsButtonEnabled(uint32_t settingsFlags, uint32_t uiFlags) {
  struct Pair {
    uint32_t ui;
    uint32_t setting;
  };
  constexpr Pair kPairs[] = {
      {CONVDLG_SHOW_PAGE_OPTIONS, SAVEOPT_PROGRESSIVE}, {CONVDLG_SHOW_FILE_INFO, SAVEOPT_MULTIPAGE},
      {CONVDLG_SHOW_PAGE_NAVIGATION, SAVEOPT_STAMP},    {CONVDLG_SHOW_ROTATE, SAVEOPT_J2K_DIALOG},
      {CONVDLG_SHOW_NAMING, SAVEOPT_COMPRESSION},       {CONVDLG_JBIG2_SETTINGS, SAVEOPT_JBIG2_DIALOG},
      {CONVDLG_OVERWRITE_SKIP, SAVEOPT_PDF_PROFILE},
  };
  if (settingsFlags == 0 || settingsFlags == SAVEOPT_QFACTOR_ZERO) {
    return false;
  }
  for (const Pair& pair : kPairs) {
    if ((uiFlags & pair.ui) && (settingsFlags & pair.setting)) {
      return true;
    }
  }
  return false;
}

void ApplyVariantFlags(CONVERSIONFORMATITEM& item) {
  uint32_t& flags = item.saveOption.flags;
  switch (item.fileFormat) {
    case FMT_GIF: SetFlag(flags, SAVEFILE_GIF_INTERLACED, item.subtype == 1); break;
    case FMT_EXIF_TIFF_RGB: SetFlag(flags, SAVEFILE_EXIF_CARRIER, false); break;
    case FMT_EXIF_TIFF_YCC:
      SetFlag(flags, SAVEFILE_EXIF_CARRIER, false);
      SetFlag(flags, SAVEFILE_EXIF_YCC, true);
      break;
    case FMT_EXIF_JPEG_422:
    case FMT_EXIF_JPEG_420: SetFlag(flags, SAVEFILE_EXIF_CARRIER, true); break;
    default: break;
  }
}

int32_t StartQuality(uint32_t settingsFlags, int32_t formatDefault) {
  return settingsFlags & SAVEOPT_QFACTOR_ZERO ? 0 : formatDefault;
}
