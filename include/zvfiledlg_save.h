/* The records of Z_DlgSave. */
#ifndef ZVFILEDLG_SAVE_H
#define ZVFILEDLG_SAVE_H

#include "include/zvfiledlg_base.h"
#include "services/zvfile/option_records.h"

#pragma pack(push, 1)

#define DLG_SAVE_WRITE_FILE 0x001u /* the dialog writes `bitmap` itself */
#define DLG_SAVE_CONTEXT_HELP 0x002u
#define DLG_SAVE_SHOW_PROGRESSIVE 0x004u
#define DLG_SAVE_SHOW_MULTIPAGE 0x008u
#define DLG_SAVE_SHOW_STAMP 0x010u
#define DLG_SAVE_SHOW_QFACTOR 0x020u
#define DLG_SAVE_SHOW_J2K 0x040u
#define DLG_SAVE_SHOW_COMPRESSION 0x080u
#define DLG_SAVE_RESIZABLE 0x100u
#define DLG_SAVE_SHOW_JBIG2 0x200u /* size tag 874 only */
#define DLG_SAVE_SHOW_PDF_PROFILE 0x400u

/* SAVEFILEDLGPARAMS.multipageOp */
#define DLG_MULTIPAGE_NONE 0
#define DLG_MULTIPAGE_OVERWRITE 1
#define DLG_MULTIPAGE_APPEND 2
#define DLG_MULTIPAGE_REPLACE 3
#define DLG_MULTIPAGE_INSERT 4

typedef struct tagSAVEBITDEPTHENTRY {
  uint32_t reserved0;
  int32_t bitsPerPixel; /* 4 */
  uint32_t subtypes;    /* 8: bit i allows the sub type 1 << i; 0 leaves the sub type list disabled */
} SAVEBITDEPTHENTRY;
static_assert(sizeof(SAVEBITDEPTHENTRY) == 12, "wire format");
ZV_WIRE_FIELD(SAVEBITDEPTHENTRY, bitsPerPixel, 4);
ZV_WIRE_FIELD(SAVEBITDEPTHENTRY, subtypes, 8);

typedef struct tagSAVEFORMATENTRY {
  uint32_t reserved0;
  int32_t format;                     /*  4: catalogue format id */
  int32_t bitDepthCount;              /*  8: may be 0 */
  const SAVEBITDEPTHENTRY* bitDepths; /* 12: may be null: all of the format's */
} SAVEFORMATENTRY;
static_assert(sizeof(SAVEFORMATENTRY) == 20, "wire format");
ZV_WIRE_FIELD(SAVEFORMATENTRY, format, 4);
ZV_WIRE_FIELD(SAVEFORMATENTRY, bitDepthCount, 8);
ZV_WIRE_FIELD(SAVEFORMATENTRY, bitDepths, 12);

typedef struct tagSAVEFILEDLGPARAMS {
  uint32_t uStructSize; /*   0: 874; 870, 813 and 796 are taken too, but all 874 bytes must be the caller's */
  wchar_t fileName[ZVDLG_PATH_LENGTH]; /*   4: out: the chosen path */
  BITMAPHANDLE* bitmap;                /* 532: to be saved; may be null without DLG_SAVE_WRITE_FILE */
  int32_t bitsPerPixel;                /* 540: in and out */
  int32_t fileFormat;                  /* 544: in and out: file format number */
  int32_t qFactor;                     /* 548: in and out */
  int32_t multipageOp;                 /* 552: DLG_MULTIPAGE_... */
  int32_t format2Mode;                 /* 556: out: GIF interlacing, 0 for all other formats */
  int32_t passes;                      /* 560: progressive passes */
  int32_t saveStamp;                   /* 564: out */
  int32_t stampBits;                   /* 568: 8 or 24 */
  int32_t stampWidth;                  /* 572 */
  int32_t stampHeight;                 /* 576 */
  int32_t pageNumber;                  /* 580 */
  int32_t catalogueFormat;             /* 584: in: entry of the filter list that starts selected; out: the chosen one */
  int32_t subType;                     /* 588: in: mask of sub types; out: id of the chosen one */
  J2KSAVEOPTION j2kOption;             /* 592 */
  const SAVEFORMATENTRY* formats;      /* 748: may be null: the whole catalogue */
  int32_t formatCount;                 /* 756 */
  uint32_t flags;                      /* 760: DLG_SAVE_... */
  POINT position;                      /* 764 */
  DLGHELPCALLBACK helpCallback;        /* 772 */
  void* helpUserData;                  /* 780 */
  JBIG2SAVEOPTION jbig2Option;         /* 788: size tag 874 only, as the two fields behind it */
  int32_t viewMode;                    /* 866: DLG_VIEW_... */
  int32_t pdfProfile;                  /* 870: 0 to 3 */
} SAVEFILEDLGPARAMS;
static_assert(sizeof(SAVEFILEDLGPARAMS) == 874, "wire format");
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, fileName, 4);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, bitmap, 532);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, bitsPerPixel, 540);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, fileFormat, 544);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, qFactor, 548);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, multipageOp, 552);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, format2Mode, 556);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, passes, 560);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, saveStamp, 564);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, stampBits, 568);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, stampWidth, 572);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, stampHeight, 576);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, pageNumber, 580);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, catalogueFormat, 584);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, subType, 588);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, j2kOption, 592);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, formats, 748);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, formatCount, 756);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, flags, 760);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, position, 764);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, helpCallback, 772);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, helpUserData, 780);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, jbig2Option, 788);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, viewMode, 866);
ZV_WIRE_FIELD(SAVEFILEDLGPARAMS, pdfProfile, 870);

#pragma pack(pop)

#endif
