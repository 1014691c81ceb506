#include "pickers/picker_position.h"

namespace {
POINT positions[3] = {};
}

void StorePickerPosition(PickerFamily family, POINT position) { positions[static_cast<int>(family)] = position; }

POINT StoredPickerPosition(PickerFamily family) { return positions[static_cast<int>(family)]; }
