// Where the next dialog of a picker family is placed: one point a family and process, the last call wins. An export stores
// its record's point before the dialog runs, and the dialog reads it when it first shows.
#pragma once

#include "platform/win32.h"

enum class PickerFamily { kDirectory, kOpen, kSave };

void StorePickerPosition(PickerFamily family, POINT position);
POINT StoredPickerPosition(PickerFamily family);
