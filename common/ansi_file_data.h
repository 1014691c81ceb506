// The 8-bit forms of what the open dialog says of each file.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_ansi.h"

// When the name does not go over whole, its compression stays empty; nothing else is left out.
void ConvertFileInfo(const FILEINFO& wide, FILEINFOA& ansi);

// Fills an entry from a wide one. Bitmap, thumbnail and load options without text pass over; file information and load
// options with a face name become new blocks of the core module, and their wide forms are freed. What memory does not
// suffice for stays null.
void ConvertFileData(OPENDLGFILEDATA& wide, OPENDLGFILEDATAA& ansi);

// Turns all entries of a wide record into those of the 8-bit one, whose array is made when it has none, and frees the wide
// array. Without memory for the array the wide record ends without files, all that they held is freed, and the code is
// ERROR_OUT_OF_MEMORY.
int32_t ConvertOpenedFiles(OPENFILEDLGPARAMS& wide, OPENFILEDLGPARAMSA& ansi);
