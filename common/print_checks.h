// What the print exports ask of their records beyond size and parent: SUCCESS, or the code of the first check that fails.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_print.h"

int32_t CheckStitchedPrint(const STITCHEDPRINTDLGPARAMS& params);
int32_t CheckPrintPreview(const PRINTPREVIEWDLGPARAMS& params);
