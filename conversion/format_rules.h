// Rules of a row of the File Type list that need no window: what a sub type means for the save options, and whether there is
// anything to set.
#pragma once

#include "conversion/records.h"

// Whether "Settings..." has something to offer. settingsFlags are the format's SAVEOPT_... flags, uiFlags the CONVDLG_...
// bits of the caller's record, of which some do double duty here.
bool IsSettingsButtonEnabled(uint32_t settingsFlags, uint32_t uiFlags);

// Puts the flags into the item's save options that tell its file format's variants apart.
void ApplyVariantFlags(CONVERSIONFORMATITEM& item);

// The quality that a row or a newly chosen sub type starts with. formatDefault is what the catalogue gives, 0 if nothing.
int32_t StartQuality(uint32_t settingsFlags, int32_t formatDefault);
