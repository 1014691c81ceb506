/* zvcore: memory, bitmap handles, resampling and rotation, text conversion and the status channel.
 *
 * Usable from C and C++. Every operation that can fail returns a 32-bit code, 1 for success. A BITMAPHANDLE is a
 * value record: copying it copies the reference to the pixels, never the pixels, and exactly one copy may be freed.
 * Nothing here keeps a pointer to a caller's record. All operations may be called from any thread, but not two at
 * once on one bitmap; the status channel is one per process.
 */
#ifndef ZVCORE_H
#define ZVCORE_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#include <windows.h>
typedef wchar_t ZVCHAR; /* one UTF-16 unit */
#define ZV_CALL __stdcall
#ifdef ZVCORE_BUILD
#define ZVCORE_API __declspec(dllexport)
#else
#define ZVCORE_API __declspec(dllimport)
#endif
#else
#ifdef __cplusplus
typedef char16_t ZVCHAR;
#else
typedef uint16_t ZVCHAR;
#endif
#define ZV_CALL
#define ZVCORE_API
#endif

#include "services/zvcore/result_codes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bits of BITMAPHANDLE.flags. */
#define BITMAP_FLAG_ALLOCATED 0x00000001u /* the handle owns pixels */
#define BITMAP_FLAG_TOP_DOWN 0x00000002u  /* row 0 of the memory is the top row; clear: the bottom row, as in a DIB */
#define BITMAP_FLAG_ALPHA 0x00000004u     /* the fourth channel of 32 or 64 bits per pixel is alpha, not padding */
#define BITMAP_FLAG_PREMULTIPLIED 0x00000008u
#define BITMAP_FLAG_COMPRESSED 0x00000200u /* bit 9: the memory holds a compressed stream; painting refuses it */

/* BITMAPHANDLE.colorOrder. ORDER_BGR_OR_GRAY is for requests only: a grey image loads grey, any other in BGR order. */
#define ORDER_RGB 0
#define ORDER_BGR 1
#define ORDER_GRAY 2
#define ORDER_BGR_OR_GRAY 4

/* Memory kinds for CreateBitmap and AllocateBitmap. */
#define MEMORY_CONVENTIONAL 1u

/* What is accepted as a bitmap: pixels a side, and bytes of pixels. */
#define BITMAP_MAX_SIDE 1000000
#define BITMAP_MAX_BYTES ((uint64_t)16 << 30)

/* Kinds of metadata. METADATA_COMMENT + n, n from 0 to 11, is comment n of ReadFileComment: 8-bit text, UTF-8, without
 * terminator. */
#define METADATA_ICC_PROFILE 0
#define METADATA_EXIF 1 /* from the TIFF header on, without the "Exif\0\0" of JPEG */
#define METADATA_XMP 2
#define METADATA_IPTC 3
#define METADATA_COMMENT 8
#define METADATA_KIND_COUNT 24

/* SizeBitmap methods. */
#define SIZE_NEAREST 0
#define SIZE_BILINEAR 3
#define SIZE_BICUBIC 5 /* area average where the image gets smaller */

/* ResizeBitmapInto flags. */
#define RESIZE_FAVOR_QUALITY 2u

/* RotateBitmap flags. */
#define ROTATE_RESIZE 1u   /* the canvas grows to hold the whole result */
#define ROTATE_RESAMPLE 2u /* bilinear */
#define ROTATE_BICUBIC 4u

/* How the stored rows are to be looked at; the numbers and their meaning are those of the orientation tag (0x0112) of
 * TIFF 6.0 and Exif 2.3. 5 to 8 exchange width and height. 0 reads as 1. */
enum {
  VIEW_TOP_LEFT = 1,
  VIEW_TOP_RIGHT = 2,
  VIEW_BOTTOM_RIGHT = 3,
  VIEW_BOTTOM_LEFT = 4,
  VIEW_LEFT_TOP = 5,
  VIEW_RIGHT_TOP = 6,
  VIEW_RIGHT_BOTTOM = 7,
  VIEW_LEFT_BOTTOM = 8
};

/* One colour of a palette, in the byte order of a DIB colour table. */
typedef struct tagZVPALETTEENTRY {
  uint8_t blue, green, red, alpha;
} ZVPALETTEENTRY;

/* A rectangle of pixels; right and bottom are just outside. */
typedef struct tagZVRECT {
  int32_t left, top, right, bottom;
} ZVRECT;

#pragma pack(push, 1)
/* An image in memory. width, height and bytesPerLine describe the stored rows, whatever viewPerspective says. Pixel
 * layouts: 1 and 4 bits are palette indices, most significant bit first; 8 is a palette index, or grey when
 * colorOrder is ORDER_GRAY; 16 is grey when ORDER_GRAY, else 5-5-5 in BGR order of a DIB; 24 and 32 are 8-bit
 * channels in colour order; 48 and 64 are 16-bit channels in colour order, native byte order. Rows start at multiples
 * of 4 bytes. */
typedef struct tagBITMAPHANDLE {
  uint32_t uStructSize;    /*   0: 272 */
  int32_t lockCount;       /*   4 */
  uint8_t* data;           /*   8: pixels, owned when BITMAP_FLAG_ALLOCATED is set */
  uint32_t memoryFlags;    /*  16 */
  int32_t width;           /*  20: pixels of a stored row */
  int32_t height;          /*  24: stored rows */
  int32_t bitsPerPixel;    /*  28 */
  int32_t bytesPerLine;    /*  32 */
  int32_t paletteCount;    /*  36: entries of palette; 0 without one */
  ZVPALETTEENTRY* palette; /*  40: owned together with data */
  uint32_t flags;          /*  48: BITMAP_FLAG_... */
  int32_t xResolution;     /*  52: dots per inch, 0 unknown */
  int32_t yResolution;     /*  56 */
  uint32_t reserved60;     /*  60 */
  int32_t viewPerspective; /*  64: VIEW_... */
  int32_t colorOrder;      /*  68: ORDER_... */
  uint64_t dataSize;       /*  72: bytes at data */
  void* metadata;         /*  80: what the file said beside its pixels (profile, Exif, XMP), owned together with data */
  uint32_t reserved88[3]; /*  88 */
  int32_t carriedValues[2]; /* 100: copied to resampled copies, unread otherwise */
  int32_t viewValueA;       /* 108: display settings kept by zvdisplay, neutral 0, 100, 0 */
  int32_t viewValueB;       /* 112 */
  int32_t viewValueC;       /* 116 */
  uint8_t reserved120[152]; /* 120 */
} BITMAPHANDLE;
#pragma pack(pop)

static_assert(sizeof(BITMAPHANDLE) == 272, "the handle record is a wire format");
static_assert(offsetof(BITMAPHANDLE, width) == 20, "wire format");
static_assert(offsetof(BITMAPHANDLE, height) == 24, "wire format");
static_assert(offsetof(BITMAPHANDLE, bitsPerPixel) == 28, "wire format");
static_assert(offsetof(BITMAPHANDLE, bytesPerLine) == 32, "wire format");
static_assert(offsetof(BITMAPHANDLE, flags) == 48, "wire format");
static_assert(offsetof(BITMAPHANDLE, viewPerspective) == 64, "wire format");
static_assert(offsetof(BITMAPHANDLE, colorOrder) == 68, "wire format");
static_assert(offsetof(BITMAPHANDLE, carriedValues) == 100, "wire format");
static_assert(offsetof(BITMAPHANDLE, viewValueA) == 108, "wire format");

/* --- Memory --- */

/* count * elementSize zeroed bytes, or null when they cannot be had. line and file tag the block for debugging and
 * may be 0 and null. Free with CoreFree. */
ZVCORE_API void* CoreAlloc(size_t count, size_t elementSize, int32_t line, const char* file);
/* Frees a block of CoreAlloc; null is allowed. Returns SUCCESS. */
ZVCORE_API int32_t CoreFree(void* block, int32_t line, const char* file);
/* The same; kept apart because the failure paths of the string copies call it. */
ZVCORE_API int32_t CoreFreeBuffer(void* block, int32_t line, const char* file);
/* Debug bookkeeping of a block that outlives a step; no ownership passes. Always SUCCESS. */
ZVCORE_API int32_t TrackAllocation(int32_t kind, const void* block, int32_t line, const char* file);
ZVCORE_API int32_t TrackFree(int32_t kind, const void* block, int32_t line, const char* file);

/* keep 1 begins, 0 ends a time in which the pixels of a large bitmap that was freed wait for the next one of their size,
 * instead of going back to the system: for going through many photographs, where that costs a third of the loading. Such times
 * nest; the end of the last frees what waits. */
ZVCORE_API void KeepPixelMemory(int32_t keep);
/* Blocks of CoreAlloc and the string copies, and pixel blocks, that have not been freed: what a leak check compares. */
ZVCORE_API int64_t CoreBlockCount(void);

/* --- Text: 8-bit text is in the system's ANSI code page on Windows, UTF-8 elsewhere --- */

/* A converted copy, or null for null or when memory runs out. Release both with FreeWideDup. */
ZVCORE_API ZVCHAR* AnsiToWideDup(const char* text);
ZVCORE_API char* WideToAnsiDup(const ZVCHAR* text);
ZVCORE_API void FreeWideDup(void* text);
/* Converts a null-terminated text into a buffer of count elements, terminator included. ERROR_BAD_ARGUMENT for a null
 * pointer or a count below 1, ERROR_BUFFER_TOO_SMALL when the text was cut; the result is always terminated. */
ZVCORE_API int32_t ConvertAnsiToWide(const char* source, ZVCHAR* destination, int32_t count);
ZVCORE_API int32_t ConvertWideToAnsi(const ZVCHAR* source, char* destination, int32_t count);

/* --- Bitmaps --- */

/* The memory kind that suits this machine. */
ZVCORE_API int32_t GetDefaultBitmapMemoryFlags(uint32_t* flags);
/* Fills a handle without pixels: size tag, geometry, view perspective 1, BGR order (grey for 16 bits is asked for by
 * setting colorOrder afterwards), top-down. ERROR_BAD_ARGUMENT for a null handle, a record size other than 272, a
 * width or height below 1 or above 1,000,000, or bits other than 1, 4, 8, 16, 24, 32, 48, 64. */
ZVCORE_API int32_t InitBitmapHandle(BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t width, int32_t height,
                                    int32_t bitsPerPixel);
/* Allocates zeroed pixels for an initialised handle, and a grey ramp as palette for 1, 4 and 8 bits.
 * ERROR_OUT_OF_MEMORY; ERROR_LIMIT_EXCEEDED beyond BITMAP_MAX_BYTES; ERROR_BAD_ARGUMENT, also for a handle that already
 * owns pixels. */
ZVCORE_API int32_t AllocateBitmap(BITMAPHANDLE* bitmap, uint32_t memoryFlags);
/* InitBitmapHandle and AllocateBitmap in one. palette may be null (2^bits entries otherwise, 1 to 8 bits only); data
 * may be null, else dataSize bytes of rows, bytesPerLine apart, are copied in. The export is Z_CreateBitmap, since
 * the platform owns the short name; C++ callers have it as an overload of CreateBitmap. */
ZVCORE_API int32_t Z_CreateBitmap(BITMAPHANDLE* bitmap, uint32_t recordSize, uint32_t memoryFlags, int32_t width,
                                  int32_t height, int32_t bitsPerPixel, int32_t order, const ZVPALETTEENTRY* palette,
                                  int32_t viewPerspective, const uint8_t* data, uint64_t dataSize);
/* Frees pixels, palette and metadata and clears the allocated flag; the rest of the record stays. A handle without
 * pixels is left alone. */
ZVCORE_API int32_t FreeBitmap(BITMAPHANDLE* bitmap);
/* Copy the handle record; the pixels are shared, not copied. After the move the source no longer owns them. */
ZVCORE_API int32_t CopyBitmapHandle(BITMAPHANDLE* destination, const BITMAPHANDLE* source, uint32_t recordSize);
ZVCORE_API int32_t MoveBitmapHandle(BITMAPHANDLE* destination, BITMAPHANDLE* source, uint32_t recordSize);
/* A full copy: pixels, palette and metadata. */
ZVCORE_API int32_t DuplicateBitmap(BITMAPHANDLE* destination, const BITMAPHANDLE* source);
/* Attaches a copy of size bytes under a METADATA_ kind, in place of what was there; null or 0 bytes takes it off. The
 * handle owns the copy, allocated or not; FreeBitmap ends it. ERROR_OUT_OF_MEMORY, ERROR_BAD_ARGUMENT. */
ZVCORE_API int32_t SetBitmapMetadata(BITMAPHANDLE* bitmap, int32_t kind, const void* bytes, uint64_t size);
/* Looks at the block of a kind; it stays the bitmap's and is valid until it is replaced. SUCCESS, or
 * ERROR_BAD_ARGUMENT for an unknown kind; *bytes null and *size 0 when there is none. */
ZVCORE_API int32_t GetBitmapMetadata(const BITMAPHANDLE* bitmap, int32_t kind, const void** bytes, uint64_t* size);
/* Replaces all metadata of the destination by copies of the source's. */
ZVCORE_API int32_t CopyBitmapMetadata(BITMAPHANDLE* destination, const BITMAPHANDLE* source);
/* Carries the colour table over: a copy, cut to what the destination's depth can hold. A source without a palette
 * takes the destination's away. Depths above 8 bits have none, and are left as they are. */
ZVCORE_API int32_t CopyBitmapPalette(BITMAPHANDLE* destination, const BITMAPHANDLE* source);
/* Fills the whole bitmap with a COLORREF (0x00BBGGRR), the nearest palette entry for 1 to 8 bits; alpha becomes
 * opaque. */
ZVCORE_API int32_t FillBitmap(BITMAPHANDLE* bitmap, uint32_t color);
/* Resamples the stored rows of the source into the size of the allocated destination, which must have the source's
 * depth; it takes over whether there is alpha, and keeps its own order and palette. RESIZE_FAVOR_QUALITY resamples as
 * SIZE_BICUBIC, no flag as SIZE_NEAREST. Reports progress; when that stops it, the destination is half done. */
ZVCORE_API int32_t ResizeBitmapInto(const BITMAPHANDLE* source, BITMAPHANDLE* destination, uint32_t flags);
/* Resizes in place to width x height as shown, that is with view perspectives 5 to 8 exchanged; reports progress to the
 * status channel. Palette images of 1, 4 and 8 bits keep their depth; with a method above nearest they are resampled in
 * colour and mapped back to their palette. Until the new pixels are complete the bitmap is unchanged. */
ZVCORE_API int32_t SizeBitmap(BITMAPHANDLE* bitmap, int32_t width, int32_t height, int32_t method);
/* Makes a new bitmap of a part of what SizeBitmap would make of the source at fullWidth x fullHeight, without the
 * cost of the rest: for painting. All sizes are of stored rows, the perspective is kept. Indices and 5-5-5 words
 * become 8-bit channels, that is 8-bit grey when the palette is all grey and 24 bits in BGR order otherwise, so that
 * blends stay what they are. Reports no progress. part lies inside the full size. ERROR_BAD_ARGUMENT, ERROR_NO_IMAGE,
 * ERROR_OUT_OF_MEMORY. */
ZVCORE_API int32_t ResampleBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, int32_t fullWidth,
                                      int32_t fullHeight, const ZVRECT* part, int32_t method);
/* Makes a new bitmap of a rectangle of the stored rows, in the same format and with the same perspective. */
ZVCORE_API int32_t CopyBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, const ZVRECT* part);
/* Writes all of the source over the stored rows of the destination, its upper left pixel at (left, top). Both have
 * the same depth, and the source lies inside; order and palette are not looked at. ERROR_BAD_ARGUMENT,
 * ERROR_NO_IMAGE. */
ZVCORE_API int32_t PutBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, int32_t left, int32_t top);
/* Where a rectangle of the picture as shown is stored, in a picture of width x height stored pixels under a view
 * perspective. */
ZVCORE_API int32_t MapShownRect(int32_t viewPerspective, int32_t width, int32_t height, const ZVRECT* shown,
                                ZVRECT* stored);
/* Rotates in place, clockwise as shown, by hundredths of a degree, -36000 to 36000. fillColor (COLORREF) goes where
 * no source pixel lies, opaque. Multiples of 90 degrees are exact; with other angles and no ROTATE_RESIZE the canvas
 * keeps its size. Angle 0 changes nothing. Reports progress to the status channel; on failure the bitmap is
 * unchanged. ERROR_LIMIT_EXCEEDED when the grown canvas is too large. */
ZVCORE_API int32_t RotateBitmap(BITMAPHANDLE* bitmap, int32_t angle, uint32_t flags, uint32_t fillColor);
/* Mirror left to right, and flip top to bottom, as shown. */
ZVCORE_API int32_t MirrorBitmap(BITMAPHANDLE* bitmap);
ZVCORE_API int32_t FlipBitmap(BITMAPHANDLE* bitmap);
/* Turns the pixels so that view perspective 1 shows what the former one did. Like mirroring it reports no progress. */
ZVCORE_API int32_t ApplyViewPerspective(BITMAPHANDLE* bitmap);
/* Changes depth and order in place. For 1 to 8 bits palette gives 2^bits colours; null takes a grey ramp with
 * ORDER_GRAY (8 bits then are grey without indices), else the best colours of the image, which are its own when they
 * are few enough. dither non-zero diffuses the error. Grey is Rec. 601 luma. What has alpha is laid over white when
 * the new depth has none; a new fourth channel is opaque. Reports progress; on failure the bitmap is unchanged. */
ZVCORE_API int32_t ConvertBitmapDepth(BITMAPHANDLE* bitmap, int32_t bitsPerPixel, int32_t order,
                                      const ZVPALETTEENTRY* palette, int32_t dither);
/* Converts one row of pixels between two formats: depth, colour order, alpha flags and palette come from the two
 * handles, whose pixels and sizes are not looked at. To 1 to 8 bits it takes the nearest colour of the destination's
 * palette. ERROR_BAD_ARGUMENT for null, fewer than 1 pixels, an unknown depth, or indices without a palette. */
ZVCORE_API int32_t ConvertPixelRow(const BITMAPHANDLE* sourceFormat, const void* source,
                                   const BITMAPHANDLE* destinationFormat, void* destination, int32_t pixels);
/* Fills an allocated destination of the same stored size with the source's pixels, converted like that. Reports no
 * progress. ERROR_BAD_ARGUMENT, ERROR_NO_IMAGE, ERROR_OUT_OF_MEMORY. */
ZVCORE_API int32_t ConvertBitmapInto(const BITMAPHANDLE* source, BITMAPHANDLE* destination);
/* Make rows reachable and end that; they nest. ERROR_NO_IMAGE without pixels. */
ZVCORE_API int32_t LockBitmapRows(BITMAPHANDLE* bitmap);
ZVCORE_API int32_t UnlockBitmapRows(BITMAPHANDLE* bitmap);
/* Copies the first bytes of stored row `row`, 0 being the top, whatever the memory order. Gives the bytes copied (at
 * most bytesPerLine), or a code below 1. */
ZVCORE_API int32_t CopyBitmapRow(const BITMAPHANDLE* bitmap, void* buffer, int32_t row, int32_t bytes);
/* The reverse: replaces stored row `row` with the first bytes of buffer. */
ZVCORE_API int32_t PutBitmapRow(BITMAPHANDLE* bitmap, const void* buffer, int32_t row, int32_t bytes);

/* --- Status channel --- */

/* Gets a percentage 0 to 100 and its user data; answers 1 to go on, anything else stops the work with
 * ERROR_USER_ABORT. */
typedef int32_t(ZV_CALL* STATUSCALLBACK)(int32_t percent, void* userData);
/* Swaps the process-wide status function; (null, null) clears it. The old pair goes to the out arguments when they are
 * given, and whoever swaps puts it back. */
ZVCORE_API int32_t SetStatusCallback(STATUSCALLBACK function, void* userData, STATUSCALLBACK* oldFunction,
                                     void** oldUserData);
/* Reports to the current function; SUCCESS without one. */
ZVCORE_API int32_t ReportStatus(int32_t percent);

#ifdef _WIN32
/* Screen or window device context, tagged for debugging; every one is given back with ReleaseTrackedDC. */
ZVCORE_API HDC GetTrackedDC(HWND window, int32_t line, const char* file);
ZVCORE_API int32_t ReleaseTrackedDC(HWND window, HDC device, int32_t line, const char* file);
#endif

#ifdef __cplusplus
} /* extern "C" */

inline int32_t CreateBitmap(BITMAPHANDLE* bitmap, uint32_t recordSize, uint32_t memoryFlags, int32_t width,
                            int32_t height, int32_t bitsPerPixel, int32_t order, const ZVPALETTEENTRY* palette,
                            int32_t viewPerspective, const uint8_t* data, uint64_t dataSize) {
  return Z_CreateBitmap(bitmap, recordSize, memoryFlags, width, height, bitsPerPixel, order, palette, viewPerspective,
                        data, dataSize);
}

struct Z_A2W {
  static int32_t Convert(const char* source, ZVCHAR* destination, int32_t count) {
    return ConvertAnsiToWide(source, destination, count);
  }
};
struct Z_W2A {
  static int32_t Convert(const ZVCHAR* source, char* destination, int32_t count) {
    return ConvertWideToAnsi(source, destination, count);
  }
};
#endif

#endif
