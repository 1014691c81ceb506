// Fills the record that crosses to the caller from what a codec found. Rules without files, shared by information and load.
#ifndef ZV_FILE_FILE_INFO_H
#define ZV_FILE_FILE_INFO_H

#include <string>

#include "services/zvfile/codec.h"

namespace zvfile {

// The fields that the header decides; name and sizes on disk are the caller's.
void FillFileInfo(const ImageHeader& header, FILEINFO& info);
// The name behind the last separator.
const ZVCHAR* NameOfPath(const ZVCHAR* path);
// The extension of a path in lower-case ASCII without the dot; empty when there is none or it has other characters.
std::string ExtensionOfPath(const ZVCHAR* path);
// A cleared record with name and size on disk. The load size that the caller may have put in is read before.
void StartFileInfo(const ZVCHAR* path, uint64_t fileSize, FILEINFO& info);

}  // namespace zvfile

#endif
