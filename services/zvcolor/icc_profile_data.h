/* The record that holds a colour profile in memory: a wire format of zvcolor, which fills and frees it. Everybody else
 * copies it as a whole; with dataSize, data and tags all zero it holds no profile. data and tags are blocks of CoreAlloc. A
 * copy shares the memory: exactly one of the copies may be freed.
 */
#ifndef ZV_ICC_PROFILE_DATA_H
#define ZV_ICC_PROFILE_DATA_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#pragma pack(push, 1)
/* An entry of the tag table, in native byte order. Names and places are those of ICC.1:2010, section 7.3. */
typedef struct tagICCPROFILETAG {
  uint32_t signature;
  uint32_t offset; /* from the beginning of data */
  uint32_t size;   /* bytes */
} ICCPROFILETAG;

/* The numbers repeat what stands in the profile's header, in native byte order, for a quick look. */
typedef struct tagICCPROFILEDATA {
  uint32_t uStructSize;     /*  0: 56 */
  uint32_t version;         /*  4: 0x02400000 is 2.4 */
  uint32_t deviceClass;     /*  8: four letters, as 'mntr' */
  uint32_t colorSpace;      /* 12: of the device side, as 'RGB ' */
  uint32_t connectionSpace; /* 16: 'XYZ ' or 'Lab ' */
  uint32_t dataSize;        /* 20: bytes at data */
  uint32_t tagCount;        /* 24: entries at tags */
  uint32_t renderingIntent; /* 28: 0 perceptual, 1 relative, 2 saturation, 3 absolute */
  uint8_t reserved32[8];
  void* data;          /* 40: the profile as it stands in a file, owned by the record */
  ICCPROFILETAG* tags; /* 48: its tag table, owned by the record */
} ICCPROFILEDATA;
#pragma pack(pop)

static_assert(sizeof(ICCPROFILETAG) == 12, "wire format");
static_assert(sizeof(ICCPROFILEDATA) == 56, "wire format");
static_assert(offsetof(ICCPROFILEDATA, version) == 4, "wire format");
static_assert(offsetof(ICCPROFILEDATA, deviceClass) == 8, "wire format");
static_assert(offsetof(ICCPROFILEDATA, colorSpace) == 12, "wire format");
static_assert(offsetof(ICCPROFILEDATA, connectionSpace) == 16, "wire format");
static_assert(offsetof(ICCPROFILEDATA, dataSize) == 20, "wire format");
static_assert(offsetof(ICCPROFILEDATA, tagCount) == 24, "wire format");
static_assert(offsetof(ICCPROFILEDATA, renderingIntent) == 28, "wire format");
static_assert(offsetof(ICCPROFILEDATA, data) == 40, "wire format");
static_assert(offsetof(ICCPROFILEDATA, tags) == 48, "wire format");

#endif
