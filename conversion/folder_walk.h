// Finding the files of a folder, in the order in which the file system gives them.
#pragma once

#include "platform/array.h"
#include "platform/cstring.h"

// Appends the full paths of the files in `folder`, and with `recursive` of the folders below it. The first entry that the
// search gives is passed over; it is "." but in the root of a drive. Encrypted and sparse files and reparse points are left
// out.
void CollectFiles(const CString& folder, bool recursive, CStringArray& files);

// Whether the path is a folder that exists.
bool IsExistingFolder(const CString& path);
// Makes the folder and every missing one above it. False when the system refuses.
bool CreateFolderTree(const CString& path);
