/* The records of Z_DlgPrintStitchedImages and Z_DlgPrintPreview. Note that the fields at 4 and 12 change places. */
#ifndef ZVFILEDLG_PRINT_H
#define ZVFILEDLG_PRINT_H

#include "include/zvfiledlg_base.h"
#include "services/zvdlgbase/zvdlgbase.h"

#pragma pack(push, 1)

typedef struct tagSTITCHEDPRINTDLGPARAMS {
  uint32_t uStructSize;            /*  0: 96 */
  HICON hIcon;                     /*  4: icon of the frame, or null */
  DLGBITMAPLIST* pBitmapList;      /* 12: the images that the user may place; they stay the caller's */
  HGLOBAL hDevMode;                /* 20: in and out: DEVMODE in global memory, or null */
  HGLOBAL hDevNames;               /* 28: in and out: DEVNAMES in global memory, or null */
  RECT rcMargin;                   /* 36: in and out: thousandths of an inch */
  RECT rcMinMargin;                /* 52: in and out: thousandths of an inch; no field above that of rcMargin */
  int32_t nCmdShow;                /* 68: how the frame shows at first; 0 means SW_SHOW */
  uint8_t reserved72[8];           /* 72 */
  DLGHELPCALLBACK pfnHelpCallback; /* 80 */
  void* pHelpUserData;             /* 88 */
} STITCHEDPRINTDLGPARAMS;
static_assert(sizeof(STITCHEDPRINTDLGPARAMS) == 96, "wire format");
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, hIcon, 4);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, pBitmapList, 12);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, hDevMode, 20);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, hDevNames, 28);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, rcMargin, 36);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, rcMinMargin, 52);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, nCmdShow, 68);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, pfnHelpCallback, 80);
ZV_WIRE_FIELD(STITCHEDPRINTDLGPARAMS, pHelpUserData, 88);

typedef struct tagPRINTPREVIEWDLGPARAMS {
  uint32_t uStructSize;  /*  0: 96 */
  BITMAPHANDLE* pBitmap; /*  4: the one image; it stays the caller's */
  HICON hIcon;           /* 12 */
  HGLOBAL hDevMode;      /* 20: from here on as above */
  HGLOBAL hDevNames;
  RECT rcMargin;
  RECT rcMinMargin;
  int32_t nCmdShow;
  uint8_t reserved72[8];
  DLGHELPCALLBACK pfnHelpCallback; /* 80 */
  void* pHelpUserData;
} PRINTPREVIEWDLGPARAMS;
static_assert(sizeof(PRINTPREVIEWDLGPARAMS) == 96, "wire format");
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, pBitmap, 4);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, hIcon, 12);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, hDevMode, 20);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, hDevNames, 28);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, rcMargin, 36);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, rcMinMargin, 52);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, nCmdShow, 68);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, pfnHelpCallback, 80);
ZV_WIRE_FIELD(PRINTPREVIEWDLGPARAMS, pHelpUserData, 88);

#pragma pack(pop)

#endif
