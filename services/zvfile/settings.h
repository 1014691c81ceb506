// The library-wide settings as the rest of the library reads them. The entry points that change them stand in settings.cpp; a
// read sees what the last write left, also from another thread.
#ifndef ZV_FILE_SETTINGS_H
#define ZV_FILE_SETTINGS_H

#include <map>
#include <vector>

#include "services/zvfile/codec.h"

namespace zvfile {

void LoadDpiSetting(int32_t& x, int32_t& y);
// By format number.
std::map<int32_t, IMAGESIZE> LoadSizeSettings();
FontSubstitution FontSubstitutionSetting();
J2KSAVEOPTION J2kSetting();
std::vector<IMAGESIZE> SaveSizeListSetting();

}  // namespace zvfile

#endif
