/* zvcolor: ICC profiles in memory, in ICC files and in images.
 *
 * Usable from C and C++, by linking or by finding the six names at run time. Every operation returns a 32-bit code, 1
 * (SUCCESS) for success. A profile in memory belongs to the record that holds it, whoever filled it, until Z_FreeICCProfile;
 * its memory outlives the unloading of this module. Profiles are of the versions 2 and 4 of the ICC's format and are checked
 * before they are taken in or written: sizes, tag table, the tags that the colours need, and the profile's own checksum where
 * it has one. Writing replaces a file in one step; a failure leaves the old one as it was. Any thread may call, but not two
 * at once with one record.
 */
#ifndef ZVCOLOR_H
#define ZVCOLOR_H

#include "services/zvcolor/icc_profile_data.h"
#include "services/zvfile/option_records.h"

#ifdef ZVCOLOR_BUILD
#define ZVCOLOR_API __declspec(dllexport)
#else
#define ZVCOLOR_API __declspec(dllimport)
#endif

#define ERROR_FILE_OPEN (-5)          /* no such file, a folder, or no right to read or write it */
#define ERROR_PROFILE_MISSING (-812)  /* the image holds no profile */
#define ERROR_PROFILE_DAMAGED (-813)  /* sizes, tags or checksum of the profile are not what they should be */
#define ERROR_PROFILE_REFUSED (-817)  /* files of this format cannot hold a profile, or none is written to them here */
#define ERROR_PROFILE_VERSION (-1153) /* a version other than 2 and 4 */
#define ERROR_PROFILE_EMPTY (-1154)   /* the record holds no profile */

/* The largest profile that is taken in, in bytes; ERROR_LIMIT_EXCEEDED beyond it. */
#define ICC_PROFILE_MAX_BYTES 0x04000000u

#ifdef __cplusplus
extern "C" {
#endif

/* Makes a record that holds no profile; what stood in it is not freed. recordSize is 56, else ERROR_BAD_RECORD_SIZE.
 * ERROR_BAD_ARGUMENT for a null record. */
ZVCOLOR_API int32_t ZV_CALL Z_InitICCProfile(ICCPROFILEDATA* profile, uint32_t recordSize);
/* Reads an ICC file into an initialised record, whose former profile is not freed. On failure the record is as it was.
 * ERROR_FILE_OPEN; ERROR_FILE_FORMAT when it is no ICC file; ERROR_PROFILE_DAMAGED, ERROR_PROFILE_VERSION,
 * ERROR_LIMIT_EXCEEDED, ERROR_OUT_OF_MEMORY, ERROR_BAD_ARGUMENT. */
ZVCOLOR_API int32_t ZV_CALL Z_FillICCProfileFromICCFile(const wchar_t* path, ICCPROFILEDATA* profile);
/* Frees the profile and leaves an empty record. A record without one, or null, is left alone. */
ZVCOLOR_API int32_t ZV_CALL Z_FreeICCProfile(ICCPROFILEDATA* profile);
/* Writes the profile to an ICC file, replacing what is there. ERROR_PROFILE_EMPTY, ERROR_FILE_OPEN, ERROR_FILE_WRITE, and the
 * codes of a bad profile. */
ZVCOLOR_API int32_t ZV_CALL Z_GenerateICCFile(const ICCPROFILEDATA* profile, const wchar_t* path);
/* Reads the profile of an image: JPEG, TIFF, PNG and PSD from the file's structure alone, other formats that can hold one
 * through the file library. option (null: page 1) gives the page. Otherwise as Z_FillICCProfileFromICCFile, and
 * ERROR_PROFILE_MISSING, ERROR_PROFILE_REFUSED, ERROR_FILE_FORMAT for an unknown format, ERROR_FILE_DAMAGED,
 * ERROR_PAGE_MISSING. */
ZVCOLOR_API int32_t ZV_CALL Z_LoadICCProfile(const wchar_t* path, ICCPROFILEDATA* profile,
                                             const LOADFILEOPTION* option);
/* Puts the profile into an existing JPEG, TIFF, PNG or PSD, in place of the one that the page has. Pixels and everything else
 * that the file holds stay as they are, byte for byte; PNG loses its sRGB chunk, which contradicts a profile.
 * ERROR_PROFILE_EMPTY; ERROR_FEATURE_UNSUPPORTED when the profile is for other colours than the image has (RGB, grey, CMYK,
 * Lab), or of a class that describes no image; ERROR_LIMIT_EXCEEDED when the format has no room for it (JPEG: 255 segments;
 * TIFF: 4 GB); ERROR_FILE_OPEN, ERROR_FILE_WRITE, and the codes of Z_LoadICCProfile. */
ZVCOLOR_API int32_t ZV_CALL Z_SaveICCProfile(const wchar_t* path, const ICCPROFILEDATA* profile,
                                             const SAVEFILEOPTION* option);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
