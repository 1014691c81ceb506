/* The records of Z_DlgFileConversion. */
#ifndef ZVFILEDLG_CONVERSION_H
#define ZVFILEDLG_CONVERSION_H

#include "include/zvfiledlg_base.h"

#pragma pack(push, 1)

/* overwriteMode: what happens to a destination file that exists. */
#define OVERWRITE_ASK 0
#define OVERWRITE_SKIP 1
#define OVERWRITE_REPLACE 2
#define OVERWRITE_RENAME 3

#define CONVDLG_CONTEXT_HELP 0x00000001u
#define CONVDLG_SHOW_PREVIEW 0x00000002u
#define CONVDLG_SHOW_PAGE_OPTIONS 0x00000004u
#define CONVDLG_SHOW_FILE_INFO 0x00000008u
#define CONVDLG_SHOW_PAGE_NAVIGATION 0x00000010u
#define CONVDLG_SHOW_RESIZE 0x00000020u
#define CONVDLG_SHOW_ROTATE 0x00000040u
#define CONVDLG_SHOW_NAMING 0x00000080u
#define CONVDLG_SHOW_OVERWRITE 0x00000100u
#define CONVDLG_OVERWRITE_ASK 0x00000200u /* CONVDLG_OVERWRITE bits: the choices that are offered */
#define CONVDLG_OVERWRITE_SKIP 0x00000400u
#define CONVDLG_OVERWRITE_REPLACE 0x00000800u
#define CONVDLG_OVERWRITE_RENAME 0x00001000u
#define CONVDLG_SHOW_ADD_FILE 0x00002000u
#define CONVDLG_SHOW_ADD_FOLDER 0x00004000u
#define CONVDLG_SHOW_REMOVE 0x00008000u
#define CONVDLG_SHOW_SELECT_ALL 0x00010000u
#define CONVDLG_SHOW_DELETE_SOURCE 0x00020000u
#define CONVDLG_JBIG2_SETTINGS 0x00040000u

typedef struct tagFILECONVERSIONBPP {
  uint32_t reserved0;
  int32_t bitsPerPixel; /* 4 */
  uint32_t subtypes;    /* 8: mask of sub types to offer at that depth */
} FILECONVERSIONBPP;
static_assert(sizeof(FILECONVERSIONBPP) == 12, "wire format");
ZV_WIRE_FIELD(FILECONVERSIONBPP, bitsPerPixel, 4);
ZV_WIRE_FIELD(FILECONVERSIONBPP, subtypes, 8);

typedef struct tagFILECONVERSIONFORMAT {
  uint32_t reserved0;
  int32_t format;                /*  4: catalogue format id */
  int32_t bppCount;              /*  8: 0 or below offers all depths of the format */
  const FILECONVERSIONBPP* bpps; /* 12 */
} FILECONVERSIONFORMAT;
static_assert(sizeof(FILECONVERSIONFORMAT) == 20, "wire format");
ZV_WIRE_FIELD(FILECONVERSIONFORMAT, format, 4);
ZV_WIRE_FIELD(FILECONVERSIONFORMAT, bppCount, 8);
ZV_WIRE_FIELD(FILECONVERSIONFORMAT, bpps, 12);

typedef struct tagFILECONVERSIONDLGPARAMS {
  uint32_t uStructSize;                         /*    0: 1128 */
  int32_t overwriteMode;                        /*    4: in and out: OVERWRITE_... */
  const FILECONVERSIONFORMAT* formats;          /*    8: null for the whole catalogue */
  int32_t formatCount;                          /*   16 */
  wchar_t destinationFolder[ZVDLG_PATH_LENGTH]; /*   20: in and out; empty means C:\ */
  wchar_t sourceFolder[ZVDLG_PATH_LENGTH];      /*  548: in and out: where browsing starts; empty means C:\ */
  int32_t logReport;                            /* 1076: in and out: the log report shows after a run */
  int32_t deleteSource;                         /* 1080: in and out: a source is deleted once it is converted */
  int32_t fullPath;                             /* 1084: in and out: the list shows full paths */
  int32_t useOriginalFolder;                    /* 1088: in and out: each file is written next to its source */
  const wchar_t* fileList;                      /* 1092: paths, ended by an empty string; null starts with no files */
  uint32_t uiFlags;                             /* 1100: CONVDLG_... */
  const POINT* position;                        /* 1104: null leaves the placing to the dialog */
  DLGHELPCALLBACK helpCallback;                 /* 1112 */
  void* helpUserData;                           /* 1120 */
} FILECONVERSIONDLGPARAMS;
static_assert(sizeof(FILECONVERSIONDLGPARAMS) == 1128, "wire format");
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, overwriteMode, 4);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, formats, 8);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, formatCount, 16);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, destinationFolder, 20);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, sourceFolder, 548);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, logReport, 1076);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, deleteSource, 1080);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, fullPath, 1084);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, useOriginalFolder, 1088);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, fileList, 1092);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, uiFlags, 1100);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, position, 1104);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, helpCallback, 1112);
ZV_WIRE_FIELD(FILECONVERSIONDLGPARAMS, helpUserData, 1120);

#pragma pack(pop)

#endif
