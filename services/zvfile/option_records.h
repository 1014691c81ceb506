/* The records that cross to the file library: what a file says of itself, how it is to be loaded and saved, and the
 * library-wide options of single formats. All are byte-packed wire formats; the caller clears a record and sets its size tag.
 */
#ifndef ZV_OPTION_RECORDS_H
#define ZV_OPTION_RECORDS_H

#include "services/zvcore/zvcore.h"

/* FILEINFO.flags. */
#define FILEINFO_HAS_ALPHA 0x00000010u
#define FILEINFO_HAS_PROFILE 0x00000020u
#define FILEINFO_TRANSPARENT_COLOR 0x00000040u
#define FILEINFO_ANIMATED 0x00000080u
#define FILEINFO_REDUCED 0x00000100u /* set by a load with LOADFILE_MAY_REDUCE that came in at a smaller scale */
#define FILEINFO_PROGRESSIVE 0x00000400u
#define FILEINFO_LOAD_SIZE_GIVEN 0x00001000u /* set by callers: the load size is given */
#define FILEINFO_INTERLACED 0x00002000u
#define FILEINFO_HAS_STAMP 0x00008000u

/* LOADFILEOPTION.flags. */
#define LOADFILE_ROTATED 0x00000010u      /* load upright: the view perspective is applied to the pixels */
#define LOADFILE_USE_POSITION 0x00000400u /* continue at filePosition */
#define LOADFILE_DEFERRED 0x00800000u

/* SAVEFILEOPTION.flags. */
#define SAVEFILE_GIF_INTERLACED 0x00000010u
#define SAVEFILE_STAMP 0x00000080u
#define SAVEFILE_EXIF_YCC 0x00000200u
#define SAVEFILE_REPLACE_PAGE 0x00000400u
#define SAVEFILE_INSERT_PAGE 0x00000800u
#define SAVEFILE_EXIF_CARRIER 0x00001000u

/* LoadImageFile flags. */
#define LOADFILE_ALLOCATE 1u /* allocate the bitmap */
#define LOADFILE_STORE 2u    /* store the rows in it */
#define LOADFILE_COMPRESSED \
  64u /* keep the compressed stream where the format can; read as a plain load by the others */
/* A smaller picture will do: the load may be at any scale that leaves no side below the bitmap's width and height as given */
#define LOADFILE_MAY_REDUCE 128u

/* SaveFile flags. */
#define SAVEFILE_ROWS_FROM_CALLBACK 2u

#pragma pack(push, 1)

typedef struct tagFILEINFO {
  uint32_t uStructSize;       /*    0: 2212 */
  int32_t format;             /*    4: file format number */
  ZVCHAR name[512];           /*    8: file name without folder */
  int32_t width;              /* 1032: pixels of a stored row */
  int32_t height;             /* 1036: stored rows */
  int32_t bitsPerPixel;       /* 1040 */
  uint64_t firstSize;         /* 1044: bytes on disk */
  uint64_t secondSize;        /* 1052: bytes in memory */
  ZVCHAR compression[20];     /* 1060 */
  int32_t viewPerspective;    /* 1100: VIEW_... */
  int32_t colorOrder;         /* 1104 */
  int32_t pageNumber;         /* 1108: page that this record describes, from 1 */
  int32_t totalPages;         /* 1112: 1 unless the count was asked for */
  int32_t xResolution;        /* 1116: dots per inch, 0 unknown */
  int32_t yResolution;        /* 1120 */
  uint32_t flags;             /* 1124: FILEINFO_... */
  uint8_t reserved1128[1040]; /* 1128 */
  uint64_t filePosition;      /* 2168: where the next page continues, 0 when there is none */
  uint8_t reserved2176[12];   /* 2176 */
  int32_t rasterizable;       /* 2188: non-zero: a document format that can be rasterised */
  uint8_t reserved2192[20];   /* 2192 */
} FILEINFO;

typedef struct tagLOADFILEOPTION {
  uint32_t uStructSize;  /*  0: 48 */
  int32_t xResolution;   /*  4: carried by the conversion dialog; below 1: the library-wide load resolution */
  int32_t yResolution;   /*  8 */
  uint32_t flags;        /* 12: LOADFILE_... */
  int32_t passes;        /* 16: progressive passes; 0 the final image alone */
  int32_t pageNumber;    /* 20: from 1 */
  int32_t reserved24;    /* 24 */
  uint64_t filePosition; /* 28: from FILEINFO.filePosition of the page before */
  uint8_t reserved36[12];
} LOADFILEOPTION;

typedef struct tagSAVEFILEOPTION {
  uint32_t uStructSize; /*    0: 1909 */
  uint32_t reserved4[2];
  uint32_t flags;     /*   12: SAVEFILE_... */
  int32_t passes;     /*   16: -1 meaningful only, -2 all, 1 to 10, 0 not progressive */
  int32_t pageNumber; /*   20: 1 overwrites the file, 2 and above without a page flag append */
  uint8_t reserved24[1040];
  int32_t stampWidth;        /* 1064 */
  int32_t stampHeight;       /* 1068 */
  int32_t stampBitsPerPixel; /* 1072: 8 or 24 */
  uint8_t reserved1076[829];
  uint32_t secondFlags; /* 1905: 0x100, 0x200, 0x400 PDF profile 1, 2, 3; 0x10 PNG-compressed icon entries */
} SAVEFILEOPTION;

typedef struct tagJ2KSAVEOPTION {
  uint32_t uStructSize; /*   0: 156 */
  uint32_t useColorTransform;
  uint32_t useDerivedQuantization;
  uint32_t compressionControl; /*  12: 0 lossless, 1 ratio, 2 target size, 3 quality factor */
  float compressionRatio;
  uint64_t targetFileSize; /*  20: bytes */
  uint32_t imageOffsetX;
  uint32_t imageOffsetY;
  uint32_t tileWidth; /*  36 */
  uint32_t tileHeight;
  uint32_t tileOffsetX;
  uint32_t tileOffsetY;
  uint32_t carried52[6];       /*  52 */
  uint32_t decompositionLevel; /*  76 */
  uint32_t progressionOrder;   /*  80 */
  uint32_t codeBlockWidth;
  uint32_t codeBlockHeight;
  uint32_t codeBlockFlags;
  uint32_t guardBits;
  uint32_t derivedBaseMantissa; /* 100 */
  uint32_t derivedBaseExponent;
  uint32_t useSOPMarker;
  uint32_t useEPHMarker;
  uint32_t roiControl; /* 116 */
  uint32_t useROI;
  float roiWeight;
  uint32_t roiLeft, roiTop, roiRight, roiBottom; /* 128 */
  uint32_t alphaLossless;                        /* 144 */
  uint32_t alphaActiveBits;
  uint32_t precinctSize;
} J2KSAVEOPTION;

typedef struct tagJBIG2SAVEOPTION {
  uint32_t uStructSize; /*  0: 78 */
  uint32_t generalFlags;
  uint8_t genericTemplate;
  int8_t genericAT1X, genericAT1Y, genericAT2X, genericAT2Y, genericAT3X, genericAT3Y, genericAT4X, genericAT4Y;
  int32_t genericQFactor;     /* 17 */
  uint32_t dictionarySymbols; /* 21 */
  uint8_t textTemplate;       /* 25 */
  int8_t textAT1X, textAT1Y, textAT2X, textAT2Y, textAT3X, textAT3Y, textAT4X, textAT4Y;
  uint32_t minArea; /* 34 */
  uint32_t minWidth, minHeight;
  uint32_t maxArea; /* 46 */
  uint32_t maxWidth, maxHeight;
  uint32_t differenceThreshold; /* 58 */
  int32_t textQFactor;
  uint32_t xResolution, yResolution; /* 66, 70 */
  uint32_t textFlags;                /* 74 */
} JBIG2SAVEOPTION;

typedef struct tagPDFLOADOPTION {
  uint32_t uStructSize; /*  0: 648 */
  uint32_t reserved4;
  int32_t xResolution;   /*  8 */
  int32_t yResolution;   /* 12 */
  int32_t displayDepth;  /* 16 */
  int32_t textAlpha;     /* 20 */
  int32_t graphicsAlpha; /* 24 */
  uint8_t reserved28[620];
} PDFLOADOPTION;

typedef struct tagXPSLOADOPTION {
  uint32_t uStructSize; /* 0: 12 */
  int32_t xResolution;
  int32_t yResolution;
} XPSLOADOPTION;

typedef struct tagXLSLOADOPTION {
  uint32_t uStructSize; /* 0: 8 */
  uint32_t flags;       /* 4: 1 multi-page sheet */
} XLSLOADOPTION;

typedef struct tagVECTORPENOPTION {
  uint32_t uStructSize; /*  0: 72 */
  int32_t width[8];     /*  4 */
  uint32_t color[8];    /* 36: COLORREF */
  uint8_t reserved68[4];
} VECTORPENOPTION;

typedef struct tagRASTERIZEDOCOPTION {
  uint32_t uStructSize; /*  0: 72 */
  uint32_t enabled;
  double pageWidth; /*  8 */
  double pageHeight;
  double leftMargin, topMargin, rightMargin, bottomMargin; /* 24 */
  uint32_t unit;                                           /* 56: 0 pixels, 1 inches, 2 millimetres */
  uint32_t xResolution;
  uint32_t yResolution;
  uint32_t sizeMode;
} RASTERIZEDOCOPTION;

/* The number of sizes at which a file can be loaded, from GetFormatResolutions. It has no size tag. The first call, without
 * an array, leaves in it what the second one is to be given: the room in the array. */
typedef struct tagFORMATRESOLUTIONS {
  int32_t count;         /* 0 */
  uint8_t reserved4[76]; /* 4: neither read nor written */
} FORMATRESOLUTIONS;

typedef struct tagIMAGESIZE {
  int32_t width, height;
} IMAGESIZE;

#pragma pack(pop)

static_assert(sizeof(FILEINFO) == 2212, "wire format");
static_assert(offsetof(FILEINFO, width) == 1032, "wire format");
static_assert(offsetof(FILEINFO, height) == 1036, "wire format");
static_assert(offsetof(FILEINFO, bitsPerPixel) == 1040, "wire format");
static_assert(offsetof(FILEINFO, firstSize) == 1044, "wire format");
static_assert(offsetof(FILEINFO, secondSize) == 1052, "wire format");
static_assert(offsetof(FILEINFO, compression) == 1060, "wire format");
static_assert(offsetof(FILEINFO, viewPerspective) == 1100, "wire format");
static_assert(offsetof(FILEINFO, pageNumber) == 1108, "wire format");
static_assert(offsetof(FILEINFO, totalPages) == 1112, "wire format");
static_assert(offsetof(FILEINFO, xResolution) == 1116, "wire format");
static_assert(offsetof(FILEINFO, flags) == 1124, "wire format");
static_assert(offsetof(FILEINFO, filePosition) == 2168, "wire format");
static_assert(offsetof(FILEINFO, rasterizable) == 2188, "wire format");
static_assert(sizeof(LOADFILEOPTION) == 48, "wire format");
static_assert(offsetof(LOADFILEOPTION, flags) == 12, "wire format");
static_assert(offsetof(LOADFILEOPTION, passes) == 16, "wire format");
static_assert(offsetof(LOADFILEOPTION, pageNumber) == 20, "wire format");
static_assert(offsetof(LOADFILEOPTION, filePosition) == 28, "wire format");
static_assert(sizeof(SAVEFILEOPTION) == 1909, "wire format");
static_assert(offsetof(SAVEFILEOPTION, flags) == 12, "wire format");
static_assert(offsetof(SAVEFILEOPTION, passes) == 16, "wire format");
static_assert(offsetof(SAVEFILEOPTION, pageNumber) == 20, "wire format");
static_assert(offsetof(SAVEFILEOPTION, stampWidth) == 1064, "wire format");
static_assert(offsetof(SAVEFILEOPTION, stampBitsPerPixel) == 1072, "wire format");
static_assert(offsetof(SAVEFILEOPTION, secondFlags) == 1905, "wire format");
static_assert(sizeof(J2KSAVEOPTION) == 156, "wire format");
static_assert(offsetof(J2KSAVEOPTION, decompositionLevel) == 76, "wire format");
static_assert(offsetof(J2KSAVEOPTION, roiLeft) == 128, "wire format");
static_assert(offsetof(J2KSAVEOPTION, precinctSize) == 152, "wire format");
static_assert(sizeof(JBIG2SAVEOPTION) == 78, "wire format");
static_assert(offsetof(JBIG2SAVEOPTION, genericQFactor) == 17, "wire format");
static_assert(offsetof(JBIG2SAVEOPTION, minArea) == 34, "wire format");
static_assert(offsetof(JBIG2SAVEOPTION, textFlags) == 74, "wire format");
static_assert(sizeof(PDFLOADOPTION) == 648, "wire format");
static_assert(sizeof(XPSLOADOPTION) == 12, "wire format");
static_assert(sizeof(XLSLOADOPTION) == 8, "wire format");
static_assert(sizeof(VECTORPENOPTION) == 72, "wire format");
static_assert(offsetof(VECTORPENOPTION, color) == 36, "wire format");
static_assert(sizeof(RASTERIZEDOCOPTION) == 72, "wire format");
static_assert(offsetof(RASTERIZEDOCOPTION, unit) == 56, "wire format");
static_assert(sizeof(FORMATRESOLUTIONS) == 80, "wire format");
static_assert(offsetof(FORMATRESOLUTIONS, count) == 0, "wire format");
static_assert(sizeof(IMAGESIZE) == 8, "wire format");

#endif
