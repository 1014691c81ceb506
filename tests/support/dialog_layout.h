// The layout faults of a dialog that a machine can see, found in its real windows: texts that do not fit their control,
// controls that overlap, straddle a group box or stand outside the dialog, keys that two controls share, a label whose key
// leads nowhere, a tab order against the reading order, a row of buttons without a default one. Only what shows counts, so
// a dialog that swaps sets of controls is looked at once for each set.
#pragma once

#include <windows.h>

#include <string>

namespace zvtest {

// A line for each fault; empty without any.
std::string LayoutFaults(HWND dialog);

// The parts of it. The first two also make sense for a template whose sets of controls stand on top of each other.
std::string TextFaults(HWND dialog);
std::string EdgeFaults(HWND dialog);
std::string OverlapFaults(HWND dialog);
std::string KeyFaults(HWND dialog);
std::string TabOrderFaults(HWND dialog);

}  // namespace zvtest
