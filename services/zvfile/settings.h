// The library-wide settings as the rest of the library reads them. The entry points that change them stand in settings.cpp; a
// read sees what the last write left, also from another thread.
#ifndef ZV_FILE_SETTINGS_H
#define ZV_FILE_SETTINGS_H

#include <vector>

#include "services/zvfile/codec.h"

namespace zvfile {

void LoadDpiSetting(int32_t& x, int32_t& y);
// The load size set for any of the codec's format numbers; (0, 0) when none is.
IMAGESIZE LoadSizeSetting(const Codec& codec);
J2KSAVEOPTION J2kSetting();
std::vector<IMAGESIZE> SaveSizeListSetting();

}  // namespace zvfile

#endif
