// Arithmetic for a row of buttons: where the remaining ones go when one of them is hidden. No window in it; units are
// those of the caller, pixels of a client area as a rule.
#pragma once

#include <span>
#include <vector>

#include "platform/win32.h"

// Moves the buttons sideways so that the group stands in the middle of [0, clientWidth), the first gap between
// neighbours being used for all of them. Order, sizes and tops stay. One button alone is simply centred.
void CentreButtonRow(std::span<RECT> buttons, int clientWidth);

// True when the two stand beside each other: more than half of the lower one's height is shared.
bool IsSameRow(const RECT& first, const RECT& second);
