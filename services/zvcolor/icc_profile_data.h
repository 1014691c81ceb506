/* The record that holds a colour profile in memory: a wire format of zvcolor, which fills and frees it. Everybody else
 * copies it as a whole; with dataSize, data and tags all zero it holds no profile.
 */
#ifndef ZV_ICC_PROFILE_DATA_H
#define ZV_ICC_PROFILE_DATA_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#pragma pack(push, 1)
typedef struct tagICCPROFILEDATA {
  uint32_t uStructSize;  /*  0: 56 */
  uint8_t reserved4[16]; /*  4 */
  uint32_t dataSize;     /* 20: bytes at data */
  uint8_t reserved24[16];
  void* data; /* 40: the profile as it stands in a file, owned by the record */
  void* tags; /* 48: its tag table, owned by the record */
} ICCPROFILEDATA;
#pragma pack(pop)

static_assert(sizeof(ICCPROFILEDATA) == 56, "wire format");
static_assert(offsetof(ICCPROFILEDATA, dataSize) == 20, "wire format");
static_assert(offsetof(ICCPROFILEDATA, data) == 40, "wire format");
static_assert(offsetof(ICCPROFILEDATA, tags) == 48, "wire format");

#endif
