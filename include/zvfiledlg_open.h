/* The records of Z_DlgOpen: what the caller asks for, and one record for each file that the user chose. */
#ifndef ZVFILEDLG_OPEN_H
#define ZVFILEDLG_OPEN_H

#include "include/zvfiledlg_base.h"
#include "services/zvfile/option_records.h"

#pragma pack(push, 1)

#define DLG_OPEN_CONTEXT_HELP 0x00000001u         /* the dialogs started from here get the context-help button */
#define DLG_OPEN_LOADPAGE_PROGRESSIVE 0x00000002u /* LOADPAGE bits: what the load options dialog offers */
#define DLG_OPEN_SHOW_PAGE_CONTROLS 0x00000004u   /* the page number can be chosen */
#define DLG_OPEN_LOADPAGE_ROTATED 0x00000008u
#define DLG_OPEN_LOADPAGE_COMPRESSED 0x00000010u
#define DLG_OPEN_SHOW_FILE_INFO 0x00000020u    /* offers the file information button */
#define DLG_OPEN_SHOW_PREVIEW 0x00000040u      /* offers the preview pane */
#define DLG_OPEN_SHOW_DELETE_PAGE 0x00000080u  /* with the page controls: a page can be deleted */
#define DLG_OPEN_SHOW_LOAD_OPTIONS 0x00000100u /* offers the load options switch */
#define DLG_OPEN_LOADPAGE_RASTER 0x00000200u
#define DLG_OPEN_LOADPAGE_PDF 0x00000400u
#define DLG_OPEN_LOADPAGE_VECTOR 0x00000800u
#define DLG_OPEN_FULL_FILE_INFO 0x00010000u /* pages are counted */
#define DLG_OPEN_RESIZABLE 0x00020000u
#define DLG_OPEN_FILE_MAY_NOT_EXIST 0x00040000u
#define DLG_OPEN_PATH_MAY_NOT_EXIST 0x00080000u
#define DLG_OPEN_PREVIEW_STAMP_ONLY 0x00100000u
#define DLG_OPEN_LOAD_BITMAP 0x00200000u    /* each file is loaded into `bitmap` */
#define DLG_OPEN_MAKE_THUMBNAIL 0x00400000u /* each file gets a `thumbnail` that fits 150 x 150 */
#define DLG_OPEN_LOAD_COMPRESSED 0x00800000u
#define DLG_OPEN_LOAD_ROTATED 0x01000000u
#define DLG_OPEN_TOLERATE_FAILED_FILES 0x04000000u /* a file that cannot be read does not fail the whole call */
#define DLG_OPEN_LOADPAGE_XPS 0x08000000u
#define DLG_OPEN_LOADPAGE_XLS 0x10000000u
#define DLG_OPEN_LOADPAGE_RASTERIZEDOC 0x20000000u
#define DLG_OPEN_VECTOR_ONLY 0x80000000u /* default filter of vector formats; no others are accepted */

/* One opened file. Every pointer is a block of GlobalAlloc that the caller frees with GlobalFree; the pixels of bitmap and
 * thumbnail are freed with FreeBitmap before. */
typedef struct tagOPENDLGFILEDATA {
  uint32_t uStructSize;                /*   0: 660 */
  wchar_t fileName[ZVDLG_PATH_LENGTH]; /*   4: full path */
  BITMAPHANDLE* bitmap;                /* 532: null unless DLG_OPEN_LOAD_BITMAP */
  BITMAPHANDLE* thumbnail;             /* 540: null unless DLG_OPEN_MAKE_THUMBNAIL */
  FILEINFO* fileInfo;                  /* 548 */
  int32_t pageNumber;                  /* 556: page to load, from 1 */
  int32_t passes;                      /* 560: progressive passes of the load option record */
  int32_t loadCompressed;              /* 564: non-zero: load with LOADFILE_COMPRESSED */
  int32_t loadRotated;                 /* 568: non-zero: load with LOADFILE_ROTATED */
  uint32_t optionFlags;                /* 572: 16 once formatOptions is settled */
  int32_t format;                      /* 576: file format number */
  void* formatOptions;                 /* 580: one of the ...FORMATOPTION records by the class of format, or null */
  RASTERIZEDOCOPTION rasterizeDoc;     /* 588 */
} OPENDLGFILEDATA;
static_assert(sizeof(OPENDLGFILEDATA) == 660, "wire format");
ZV_WIRE_FIELD(OPENDLGFILEDATA, fileName, 4);
ZV_WIRE_FIELD(OPENDLGFILEDATA, bitmap, 532);
ZV_WIRE_FIELD(OPENDLGFILEDATA, thumbnail, 540);
ZV_WIRE_FIELD(OPENDLGFILEDATA, fileInfo, 548);
ZV_WIRE_FIELD(OPENDLGFILEDATA, pageNumber, 556);
ZV_WIRE_FIELD(OPENDLGFILEDATA, passes, 560);
ZV_WIRE_FIELD(OPENDLGFILEDATA, loadCompressed, 564);
ZV_WIRE_FIELD(OPENDLGFILEDATA, loadRotated, 568);
ZV_WIRE_FIELD(OPENDLGFILEDATA, optionFlags, 572);
ZV_WIRE_FIELD(OPENDLGFILEDATA, format, 576);
ZV_WIRE_FIELD(OPENDLGFILEDATA, formatOptions, 580);
ZV_WIRE_FIELD(OPENDLGFILEDATA, rasterizeDoc, 588);

/* formatOptions by class of format (the Is...Format predicates of zvdlgbase tell the class). The size word is set only in records
 * that the user has edited; those filled from the library-wide settings have 0 there. */
typedef struct tagVECTORFORMATOPTION { /* IsVectorViewFormat */
  uint32_t uStructSize;                /*  0: 80 */
  int32_t viewWidth;                   /*  4 */
  int32_t viewHeight;                  /*  8 */
  int32_t viewMode;                    /* 12 */
  wchar_t faceName[32];                /* 16: the face that all fonts of the drawing get */
} VECTORFORMATOPTION;
static_assert(sizeof(VECTORFORMATOPTION) == 80, "wire format");
ZV_WIRE_FIELD(VECTORFORMATOPTION, faceName, 16);

typedef struct tagVECTORBACKGROUNDFORMATOPTION { /* IsVectorBackgroundFormat */
  VECTORFORMATOPTION vector;
  uint32_t background; /* 80: COLORREF */
} VECTORBACKGROUNDFORMATOPTION;
static_assert(sizeof(VECTORBACKGROUNDFORMATOPTION) == 84, "wire format");
ZV_WIRE_FIELD(VECTORBACKGROUNDFORMATOPTION, background, 80);

typedef struct tagVECTORPENFORMATOPTION { /* IsVectorPenFormat */
  VECTORFORMATOPTION vector;
  VECTORPENOPTION pens; /* 80 */
} VECTORPENFORMATOPTION;
static_assert(sizeof(VECTORPENFORMATOPTION) == 152, "wire format");
ZV_WIRE_FIELD(VECTORPENFORMATOPTION, pens, 80);

typedef struct tagPAIRFORMATOPTION { /* IsDpiPairFormat: dots per inch; IsLoadSizeFormat: pixels */
  uint32_t uStructSize;              /* 0: 12 */
  int32_t x;
  int32_t y;
} PAIRFORMATOPTION;
static_assert(sizeof(PAIRFORMATOPTION) == 12, "wire format");

typedef struct tagPDFFORMATOPTION { /* IsPDFFormat */
  uint32_t uStructSize;             /* 0: 652 */
  PDFLOADOPTION pdf;
} PDFFORMATOPTION;
static_assert(sizeof(PDFFORMATOPTION) == 652, "wire format");

typedef struct tagXPSFORMATOPTION { /* IsXPSFormat */
  uint32_t uStructSize;             /* 0: 16 */
  XPSLOADOPTION xps;
} XPSFORMATOPTION;
static_assert(sizeof(XPSFORMATOPTION) == 16, "wire format");

typedef struct tagXLSFORMATOPTION { /* IsXLSFormat */
  uint32_t uStructSize;             /* 0: 12 */
  XLSLOADOPTION xls;
} XLSFORMATOPTION;
static_assert(sizeof(XLSFORMATOPTION) == 12, "wire format");

/* Asks the caller for a picture of a file that the library cannot read; also of a folder. The pixels of an allocated bitmap pass
 * to the library, which frees them; the record that points to them stays the callback's. As the file counts as unreadable all
 * the same, the pane shows no picture after that. */
typedef struct tagOPENDLGPREVIEWREQUEST {
  uint32_t uStructSize;                /*   0: 544 */
  wchar_t fileName[ZVDLG_PATH_LENGTH]; /*   4: full path */
  int32_t pageNumber;                  /* 532: from 1 */
  BITMAPHANDLE* bitmap;                /* 536: null; filled in by the callback */
} OPENDLGPREVIEWREQUEST;
static_assert(sizeof(OPENDLGPREVIEWREQUEST) == 544, "wire format");
ZV_WIRE_FIELD(OPENDLGPREVIEWREQUEST, fileName, 4);
ZV_WIRE_FIELD(OPENDLGPREVIEWREQUEST, pageNumber, 532);
ZV_WIRE_FIELD(OPENDLGPREVIEWREQUEST, bitmap, 536);

/* Its answer is ignored. */
typedef int32_t(ZV_CALL* OPENDLGPREVIEWCALLBACK)(OPENDLGPREVIEWREQUEST* request, void* userData);
/* Progress of the load at OK, in percent of all files and of this one. ERROR_USER_ABORT stops, 1 goes on. */
typedef int32_t(ZV_CALL* OPENDLGSTATUSCALLBACK)(OPENDLGFILEDATA* file, int32_t overallPercent, int32_t filePercent,
                                                void* userData);

typedef struct tagOPENFILEDLGPARAMS {
  uint32_t uStructSize;    /*   0: 104, or 100 for the revision that ends before viewMode */
  OPENDLGFILEDATA* files;  /*   4: out: array of fileCount entries, a block of GlobalAlloc for the caller */
  int32_t fileCount;       /*  12: out: number of entries; 0 whenever files comes back null */
  int32_t showPreview;     /*  16: in: the pane starts open; out: its state at OK */
  int32_t showLoadOptions; /*  20: in: the load options switch starts on; out: its state at OK */
  OPENDLGPREVIEWCALLBACK previewCallback; /*  24: may be null */
  void* previewCallbackUserData;          /*  32 */
  uint8_t reserved40[16];                 /*  40 */
  OPENDLGSTATUSCALLBACK statusCallback;   /*  56: may be null */
  void* statusCallbackUserData;           /*  64 */
  uint32_t flags;                         /*  72: DLG_OPEN_... */
  POINT position;                         /*  76 */
  DLGHELPCALLBACK helpCallback;           /*  84: null hides the Help button */
  void* helpUserData;                     /*  92 */
  int32_t viewMode;                       /* 100: DLG_VIEW_... */
} OPENFILEDLGPARAMS;
static_assert(sizeof(OPENFILEDLGPARAMS) == 104, "wire format");
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, files, 4);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, fileCount, 12);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, showPreview, 16);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, showLoadOptions, 20);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, previewCallback, 24);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, previewCallbackUserData, 32);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, statusCallback, 56);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, statusCallbackUserData, 64);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, flags, 72);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, position, 76);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, helpCallback, 84);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, helpUserData, 92);
ZV_WIRE_FIELD(OPENFILEDLGPARAMS, viewMode, 100);

#pragma pack(pop)

#endif
