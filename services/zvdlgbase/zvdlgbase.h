/* zvdlgbase: the dialog kernel. Readiness, the table of texts that the dialogs show, the catalogue of formats that can
 * be saved, the classes of file formats, and the placing of dialog windows. One set of texts and one catalogue per
 * process.
 */
#ifndef ZVDLGBASE_H
#define ZVDLGBASE_H

#include "services/zvcore/zvcore.h"
#include "services/zvfile/file_formats.h"

#ifdef ZVDLGBASE_BUILD
#define ZVDLGBASE_API __declspec(dllexport)
#else
#define ZVDLGBASE_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Option flags of a catalogue entry. */
#define SAVEOPT_PROGRESSIVE 0x001u
#define SAVEOPT_QFACTOR 0x002u
#define SAVEOPT_MULTIPAGE 0x004u
#define SAVEOPT_STAMP 0x008u
#define SAVEOPT_QFACTOR_ZERO 0x010u
#define SAVEOPT_COMPRESSION 0x020u
#define SAVEOPT_J2K_DIALOG 0x040u
#define SAVEOPT_JBIG2_DIALOG 0x080u
#define SAVEOPT_J2K_ALPHA 0x100u
#define SAVEOPT_PDF_PROFILE 0x200u

/* FORMATSTAMPLIMITS.bitDepthMask. */
#define STAMP_DEPTH_8 1u
#define STAMP_DEPTH_24 2u

/* Bits of GetFormatMultipageOps. */
#define MULTIPAGE_OVERWRITE 1u
#define MULTIPAGE_APPEND 2u
#define MULTIPAGE_REPLACE 4u
#define MULTIPAGE_INSERT 8u

#pragma pack(push, 1)
/* format is an index into the catalogue, fileFormat a number of the file library: two different numbers. Where a format
 * has sub types, every one of its bit depths has, the list begins with sub type 1, and extension, file format and
 * option flags are those of the sub type. */
typedef struct tagFORMATINFO {
  uint32_t uStructSize; /*  0: 24 */
  int32_t format;       /*  4 */
  int32_t nameStringId; /*  8 */
  int32_t defaultBitsPerPixel;
  int32_t fileFormat; /* 16 */
  int32_t bppCount;   /* 20 */
} FORMATINFO;

typedef struct tagFORMATBPPINFO {
  uint32_t uStructSize; /*  0: 24 */
  int32_t bitsPerPixel; /*  4 */
  int32_t reserved8;
  int32_t extensionStringId; /* 12: negative: look in sub type 1 */
  int32_t subtypeCount;      /* 16 */
  uint32_t optionFlags;      /* 20: SAVEOPT_... */
} FORMATBPPINFO;

typedef struct tagFORMATSUBTYPEINFO {
  uint32_t uStructSize; /*  0: 24 */
  int32_t subtype;      /*  4: 1, 2, 4, 8 and so on in the order of the list, so that a mask can name several */
  int32_t nameStringId; /*  8 */
  int32_t extensionStringId;
  int32_t fileFormat;   /* 16 */
  uint32_t optionFlags; /* 20 */
} FORMATSUBTYPEINFO;

typedef struct tagFORMATSTAMPLIMITS {
  uint32_t uStructSize; /* 0: 24 */
  int32_t minimumWidth, maximumWidth, minimumHeight, maximumHeight;
  uint32_t bitDepthMask; /* 20: STAMP_DEPTH_... */
} FORMATSTAMPLIMITS;

typedef struct tagDLGBITMAPLISTITEM {
  uint32_t uStructSize;
  BITMAPHANDLE* bitmap; /* 4 */
  uint8_t reserved12[16];
} DLGBITMAPLISTITEM;

typedef struct tagDLGBITMAPLIST {
  uint32_t uStructSize;     /* 0: 16 */
  DLGBITMAPLISTITEM* items; /* 4 */
  int32_t count;            /* 12 */
} DLGBITMAPLIST;
#pragma pack(pop)

static_assert(sizeof(FORMATINFO) == 24 && offsetof(FORMATINFO, fileFormat) == 16, "wire format");
static_assert(sizeof(FORMATBPPINFO) == 24 && offsetof(FORMATBPPINFO, extensionStringId) == 12, "wire format");
static_assert(sizeof(FORMATSUBTYPEINFO) == 24 && offsetof(FORMATSUBTYPEINFO, fileFormat) == 16, "wire format");
static_assert(sizeof(FORMATSTAMPLIMITS) == 24 && offsetof(FORMATSTAMPLIMITS, bitDepthMask) == 20, "wire format");
static_assert(sizeof(DLGBITMAPLIST) == 16 && offsetof(DLGBITMAPLIST, count) == 12, "wire format");
static_assert(sizeof(DLGBITMAPLISTITEM) == 28 && offsetof(DLGBITMAPLISTITEM, bitmap) == 4, "wire format");

/* SUCCESS when the string table and the catalogue can be served. */
ZVDLGBASE_API int32_t DialogKernelReady(void);

/* --- Texts: overlay first, then the string table resources --- */

/* Length without terminator. SUCCESS, or ERROR_BAD_ARGUMENT for an unknown id or a null pointer. */
ZVDLGBASE_API int32_t GetDialogStringLength(uint32_t id, uint32_t* length);
/* Copies the text into a buffer of bufferLength characters, terminator included. ERROR_BUFFER_TOO_SMALL leaves an empty
 * text. */
ZVDLGBASE_API int32_t GetDialogStringText(uint32_t id, wchar_t* buffer, uint32_t bufferLength);
/* Replaces a text for later readers of this process; null takes that back. Applications may add ids. */
ZVDLGBASE_API int32_t SetDialogStringText(uint32_t id, const wchar_t* text);

/* --- Windows --- */

/* The font for all child controls of the common dialogs, or null to leave them alone. Owned by the kernel. */
ZVDLGBASE_API HFONT GetDialogFont(void);
/* Puts a top-level window's upper left corner at a screen point, moved so far that the window stands in the work area
 * of the monitor nearest to the point. */
ZVDLGBASE_API int32_t PositionDialogWindow(HWND window, POINT position);

/* --- Image lists --- */

/* Makes the wide form of an image list that an ANSI caller holds: a list of its own with copies of the items. The
 * bitmaps stay the caller's. On failure the wide list is empty. ERROR_BAD_ARGUMENT for a null list, a count below 0 or
 * a missing item array, ERROR_BAD_RECORD_SIZE for a wrong size tag. */
ZVDLGBASE_API int32_t ConvertImageListToWide(const DLGBITMAPLIST* ansi, DLGBITMAPLIST* wide);
/* Frees the items of such a list and empties it. */
ZVDLGBASE_API int32_t FreeWideImageList(DLGBITMAPLIST* wide);

/* --- Catalogue ---
 * ERROR_BAD_RECORD_SIZE for a record without its size tag, ERROR_BAD_ARGUMENT for what the catalogue does not hold. */

ZVDLGBASE_API int32_t GetFormatInfo(int32_t format, FORMATINFO* info);
/* A walk: position = GetFirstFormatPosition(); while (position >= 0) { GetNextFormat(&info, &position); ... }
 * The position before the step is the id of the entry that it gives. */
ZVDLGBASE_API int32_t GetFirstFormatPosition(void);
ZVDLGBASE_API int32_t GetNextFormat(FORMATINFO* info, int32_t* position);
ZVDLGBASE_API int32_t GetFormatBppInfo(int32_t format, int32_t bitsPerPixel, FORMATBPPINFO* info);
ZVDLGBASE_API int32_t GetFirstFormatBppPosition(int32_t format);
ZVDLGBASE_API int32_t GetNextFormatBpp(int32_t format, FORMATBPPINFO* info, int32_t* position);
ZVDLGBASE_API int32_t GetFormatSubtypeInfo(int32_t format, int32_t bitsPerPixel, int32_t subtype,
                                           FORMATSUBTYPEINFO* info);
ZVDLGBASE_API int32_t GetFirstFormatSubtypePosition(int32_t format, int32_t bitsPerPixel);
ZVDLGBASE_API int32_t GetNextFormatSubtype(int32_t format, int32_t bitsPerPixel, FORMATSUBTYPEINFO* info,
                                           int32_t* position);
/* Non-zero: the entry is left out of the lists, since nothing here can write it. */
ZVDLGBASE_API int32_t IsFormatExcludedFromList(int32_t fileFormat);
/* ERROR_FEATURE_UNSUPPORTED, and *qFactor untouched, when the format has no quality. */
ZVDLGBASE_API int32_t GetFormatDefaultQFactor(int32_t fileFormat, int32_t* qFactor);
/* MULTIPAGE_... bits; ERROR_FEATURE_UNSUPPORTED, and 0, when the format has one page only. */
ZVDLGBASE_API int32_t GetFormatMultipageOps(int32_t fileFormat, uint32_t* mask);
/* ERROR_FEATURE_UNSUPPORTED when the format carries no stamp. */
ZVDLGBASE_API int32_t GetFormatStampLimits(int32_t fileFormat, FORMATSTAMPLIMITS* limits);
/* String id of a file format's display name, also of formats that can only be read. */
ZVDLGBASE_API int32_t GetFormatStringId(int32_t fileFormat, uint32_t* id);

/* --- Classes of file formats: non-zero for a member --- */
ZVDLGBASE_API int32_t IsVectorViewFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsVectorBackgroundFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsVectorPenFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsDpiPairFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsDpiSingleFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsLoadSizeFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsPDFFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsXPSFormat(int32_t fileFormat);
ZVDLGBASE_API int32_t IsXLSFormat(int32_t fileFormat);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
