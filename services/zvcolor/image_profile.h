// Profiles in images: which kinds of file are taken apart here, and how each gives and takes one. Reading gives the bytes as
// they stand; whether they are a profile is for profile_check.h to say. Writing copies the file with the profile in place of
// its own and leaves every other byte alone.
#pragma once

#include <string_view>

#include "services/zvcolor/profile_check.h"
#include "services/zvfile/byte_sink.h"

namespace zvcolor {

using zvfile::ByteSink;
using zvfile::ByteSource;

// page counts from 1. read: ERROR_PROFILE_MISSING, ERROR_FILE_DAMAGED, ERROR_PAGE_MISSING, ERROR_LIMIT_EXCEEDED. write gets a
// checked profile, and gives the codes of read but the first, ERROR_FEATURE_UNSUPPORTED for the wrong colours and
// ERROR_FILE_WRITE.
struct ImageContainer {
  bool (*recognise)(ByteView head);
  int32_t (*read)(ByteSource& source, int32_t page, Bytes& profile);
  int32_t (*write)(ByteSource& source, ByteSink& sink, int32_t page, ByteView profile);
};

extern const ImageContainer kJpegContainer;
extern const ImageContainer kPngContainer;
extern const ImageContainer kTiffContainer;
extern const ImageContainer kPsdContainer;

// The container of a file, told by its first bytes; null for other formats.
const ImageContainer* FindContainer(ByteSource& source);

// What the file library says of a file of another format: its profile, or ERROR_PROFILE_MISSING where it could have one,
// ERROR_PROFILE_REFUSED where it could not, ERROR_FILE_FORMAT when nobody knows the format.
int32_t ReadOtherProfile(const wchar_t* path, int32_t page, Bytes& profile);
// The reason why nothing can be written to such a file: ERROR_PROFILE_REFUSED, ERROR_FILE_FORMAT or another failure to read.
int32_t ExplainOtherFormat(const wchar_t* path);

// --- For the containers ---

// Reads count bytes at an offset; ERROR_FILE_DAMAGED when they are not all there, ERROR_LIMIT_EXCEEDED for more than a profile
// may have.
int32_t ReadBytes(ByteSource& source, uint64_t offset, uint64_t count, Bytes& bytes);
// Whether the source has exactly these characters at an offset; the text's terminator does not count.
bool HasText(ByteSource& source, uint64_t offset, std::string_view text);

}  // namespace zvcolor
