/* The records of the exports whose names end in A: 8-bit text in the system's code page instead of UTF-16.
 *
 * Only the records that differ are given anew; fields mean what they mean in the wide record of the same name. Notes that
 * hold for the 8-bit exports alone:
 * - lpstrFilter of an OPENFILENAMEA and filter of a DIRECTORYDLGPARAMSA stand behind the last string but one after the call:
 *   keep a pointer of your own to the list.
 * - Nothing of an OPENFILENAMEA is written back; files come back through OPENFILEDLGPARAMSA.files alone.
 * - No status report is made through Z_DlgOpenA, and viewMode is not used.
 */
#ifndef ZVFILEDLG_ANSI_H
#define ZVFILEDLG_ANSI_H

#include "include/zvfiledlg_association.h"
#include "include/zvfiledlg_conversion.h"
#include "include/zvfiledlg_directory.h"
#include "include/zvfiledlg_open.h"
#include "include/zvfiledlg_print.h"
#include "include/zvfiledlg_profile.h"
#include "include/zvfiledlg_save.h"

#pragma pack(push, 1)

typedef struct tagDIRECTORYDLGPARAMSA {
  uint32_t uStructSize; /*  0: 60 */
  char* directoryBuffer;
  int32_t bufferLength; /* 12: bytes, terminator included */
  const char* filter;
  int32_t filterIndex;
  const char* title;
  POINT position;
  DLGHELPCALLBACK helpCallback;
  void* helpUserData;
} DIRECTORYDLGPARAMSA;
static_assert(sizeof(DIRECTORYDLGPARAMSA) == 60, "wire format");
ZV_WIRE_FIELD(DIRECTORYDLGPARAMSA, filter, 16);
ZV_WIRE_FIELD(DIRECTORYDLGPARAMSA, position, 36);

typedef struct tagFILEINFOA {
  uint32_t uStructSize;    /*    0: 2212, as in the wide record */
  int32_t format;          /*    4 */
  char name[512];          /*    8 */
  int32_t width;           /*  520 */
  int32_t height;          /*  524 */
  int32_t bitsPerPixel;    /*  528 */
  uint64_t firstSize;      /*  532 */
  uint64_t secondSize;     /*  540 */
  char compression[20];    /*  548 */
  int32_t viewPerspective; /*  568: eleven words from here on, as from 1100 on in the wide record */
  int32_t colorOrder;
  int32_t pageNumber; /*  576 */
  int32_t totalPages;
  int32_t xResolution;
  int32_t yResolution;
  uint32_t flags; /*  592 */
  uint8_t reserved596[16];
  uint8_t reserved612[1024]; /*  612 */
  uint64_t filePosition;     /* 1636 */
  uint8_t reserved1644[12];  /* 1644 */
  uint8_t reserved1656[24];  /* 1656 */
} FILEINFOA;
static_assert(sizeof(FILEINFOA) == 1680, "wire format");
ZV_WIRE_FIELD(FILEINFOA, name, 8);
ZV_WIRE_FIELD(FILEINFOA, width, 520);
ZV_WIRE_FIELD(FILEINFOA, height, 524);
ZV_WIRE_FIELD(FILEINFOA, bitsPerPixel, 528);
ZV_WIRE_FIELD(FILEINFOA, firstSize, 532);
ZV_WIRE_FIELD(FILEINFOA, secondSize, 540);
ZV_WIRE_FIELD(FILEINFOA, compression, 548);
ZV_WIRE_FIELD(FILEINFOA, viewPerspective, 568);
ZV_WIRE_FIELD(FILEINFOA, reserved612, 612);
ZV_WIRE_FIELD(FILEINFOA, filePosition, 1636);
ZV_WIRE_FIELD(FILEINFOA, reserved1644, 1644);

/* The load options that hold a face name. */
typedef struct tagVECTORFORMATOPTIONA {
  uint32_t uStructSize; /*  0 */
  int32_t viewWidth;
  int32_t viewHeight;
  int32_t viewMode;
  char faceName[32]; /* 16 */
} VECTORFORMATOPTIONA;
static_assert(sizeof(VECTORFORMATOPTIONA) == 48, "wire format");
ZV_WIRE_FIELD(VECTORFORMATOPTIONA, faceName, 16);

typedef struct tagVECTORBACKGROUNDFORMATOPTIONA {
  VECTORFORMATOPTIONA vector;
  uint32_t background; /* 48 */
} VECTORBACKGROUNDFORMATOPTIONA;
static_assert(sizeof(VECTORBACKGROUNDFORMATOPTIONA) == 52, "wire format");

typedef struct tagVECTORPENFORMATOPTIONA {
  VECTORFORMATOPTIONA vector;
  VECTORPENOPTION pens; /* 48 */
} VECTORPENFORMATOPTIONA;
static_assert(sizeof(VECTORPENFORMATOPTIONA) == 120, "wire format");

/* Every pointer is the caller's to free: files, fileInfo and vector formatOptions with CoreFree, all else as in
 * OPENDLGFILEDATA. */
typedef struct tagOPENDLGFILEDATAA {
  uint32_t uStructSize;             /*   0: 396 */
  char fileName[ZVDLG_PATH_LENGTH]; /*   4 */
  BITMAPHANDLE* bitmap;             /* 268 */
  BITMAPHANDLE* thumbnail;          /* 276 */
  FILEINFOA* fileInfo;              /* 284 */
  int32_t pageNumber;               /* 292 */
  int32_t passes;
  int32_t loadCompressed;
  int32_t loadRotated;
  uint32_t optionFlags;            /* 308 */
  int32_t format;                  /* 312 */
  void* formatOptions;             /* 316 */
  RASTERIZEDOCOPTION rasterizeDoc; /* 324 */
} OPENDLGFILEDATAA;
static_assert(sizeof(OPENDLGFILEDATAA) == 396, "wire format");
ZV_WIRE_FIELD(OPENDLGFILEDATAA, bitmap, 268);
ZV_WIRE_FIELD(OPENDLGFILEDATAA, fileInfo, 284);
ZV_WIRE_FIELD(OPENDLGFILEDATAA, pageNumber, 292);
ZV_WIRE_FIELD(OPENDLGFILEDATAA, optionFlags, 308);
ZV_WIRE_FIELD(OPENDLGFILEDATAA, formatOptions, 316);

typedef int32_t(ZV_CALL* OPENDLGSTATUSCALLBACKA)(OPENDLGFILEDATAA* file, int32_t overallPercent, int32_t filePercent,
                                                 void* userData);

typedef struct tagOPENFILEDLGPARAMSA {
  uint32_t uStructSize;    /*   0: 104 or 100 */
  OPENDLGFILEDATAA* files; /*   4: out: pass null; the array is freed with CoreFree */
  int32_t fileCount;
  int32_t showPreview;
  int32_t showLoadOptions;
  OPENDLGPREVIEWCALLBACK previewCallback; /*  24: gets the wide request */
  void* previewCallbackUserData;
  uint8_t reserved40[16];
  OPENDLGSTATUSCALLBACKA statusCallback; /*  56: never called */
  void* statusCallbackUserData;
  uint32_t flags; /*  72 */
  POINT position;
  DLGHELPCALLBACK helpCallback;
  void* helpUserData;
  int32_t viewMode; /* 100 */
} OPENFILEDLGPARAMSA;
static_assert(sizeof(OPENFILEDLGPARAMSA) == 104, "wire format");
ZV_WIRE_FIELD(OPENFILEDLGPARAMSA, statusCallback, 56);
ZV_WIRE_FIELD(OPENFILEDLGPARAMSA, flags, 72);
ZV_WIRE_FIELD(OPENFILEDLGPARAMSA, viewMode, 100);

typedef struct tagSAVEFILEDLGPARAMSA {
  uint32_t uStructSize;             /*   0: 610 */
  char fileName[ZVDLG_PATH_LENGTH]; /*   4 */
  BITMAPHANDLE* bitmap;             /* 268 */
  int32_t bitsPerPixel;             /* 276 */
  int32_t fileFormat;
  int32_t qFactor;
  int32_t multipageOp;
  int32_t format2Mode;
  int32_t passes;
  int32_t saveStamp;
  int32_t stampBits;
  int32_t stampWidth;
  int32_t stampHeight;
  int32_t pageNumber;
  int32_t catalogueFormat;
  int32_t subType;                /* 324 */
  J2KSAVEOPTION j2kOption;        /* 328 */
  const SAVEFORMATENTRY* formats; /* 484 */
  int32_t formatCount;
  uint32_t flags; /* 496 */
  POINT position;
  DLGHELPCALLBACK helpCallback;
  void* helpUserData;
  JBIG2SAVEOPTION jbig2Option; /* 524 */
  int32_t viewMode;            /* 602 */
  int32_t pdfProfile;
} SAVEFILEDLGPARAMSA;
static_assert(sizeof(SAVEFILEDLGPARAMSA) == 610, "wire format");
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, bitsPerPixel, 276);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, j2kOption, 328);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, formats, 484);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, flags, 496);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, jbig2Option, 524);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMSA, viewMode, 602);

typedef struct tagICCPROFILEDLGPARAMSA {
  uint32_t uStructSize;             /*   0: 616 */
  ICCPROFILEDATA iccProfile;        /*   4 */
  char loadPath[ZVDLG_PATH_LENGTH]; /*  60 */
  char savePath[ZVDLG_PATH_LENGTH]; /* 324 */
  uint32_t flags;                   /* 588 */
  const POINT* position;            /* 592 */
  DLGHELPCALLBACK helpCallback;
  void* helpUserData;
} ICCPROFILEDLGPARAMSA;
static_assert(sizeof(ICCPROFILEDLGPARAMSA) == 616, "wire format");
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMSA, flags, 588);
ZV_WIRE_FIELD(ICCPROFILEDLGPARAMSA, position, 592);

typedef struct tagFILECONVERSIONDLGPARAMSA {
  uint32_t uStructSize;                      /*   0: 600 */
  int32_t overwriteMode;                     /*   4 */
  const FILECONVERSIONFORMAT* formats;       /*   8 */
  int32_t formatCount;                       /*  16 */
  char destinationFolder[ZVDLG_PATH_LENGTH]; /*  20 */
  char sourceFolder[ZVDLG_PATH_LENGTH];      /* 284 */
  int32_t logReport;                         /* 548 */
  int32_t deleteSource;
  int32_t fullPath;
  int32_t useOriginalFolder;
  const char* fileList;  /* 564 */
  uint32_t uiFlags;      /* 572 */
  const POINT* position; /* 576 */
  DLGHELPCALLBACK helpCallback;
  void* helpUserData;
} FILECONVERSIONDLGPARAMSA;
static_assert(sizeof(FILECONVERSIONDLGPARAMSA) == 600, "wire format");
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, destinationFolder, 20);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, sourceFolder, 284);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, logReport, 548);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, fileList, 564);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, uiFlags, 572);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMSA, position, 576);

typedef struct tagFILEASSOCIATIONDLGPARAMSA {
  uint32_t uStructSize; /*  0: 56 */
  const char* pszFormats;
  const char* pszSelected;
  const char* pszProgID;
  uint32_t uFlags;
  const POINT* ptPosition;
  DLGHELPCALLBACK pfnHelpCallback;
  void* pHelpUserData;
} FILEASSOCIATIONDLGPARAMSA;
static_assert(sizeof(FILEASSOCIATIONDLGPARAMSA) == 56, "wire format");

/* Holds no text. */
typedef STITCHEDPRINTDLGPARAMS STITCHEDPRINTDLGPARAMSA;

#pragma pack(pop)

#endif
