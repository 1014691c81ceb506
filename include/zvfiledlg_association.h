/* The record of Z_DlgFilesAssociation. */
#ifndef ZVFILEDLG_ASSOCIATION_H
#define ZVFILEDLG_ASSOCIATION_H

#include "include/zvfiledlg_base.h"

#pragma pack(push, 1)

#define DLG_ASSOCIATION_CONTEXT_HELP 1u

typedef struct tagFILEASSOCIATIONDLGPARAMS {
  uint32_t uStructSize;       /*  0: 56 */
  const wchar_t* pszFormats;  /*  4: pairs of name and patterns, ended by an empty name; null for the built-in table */
  const wchar_t* pszSelected; /* 12: extensions checked at the start, each followed by two terminators, or null */
  const wchar_t* pszProgID;   /* 20: program identifier written to the registry */
  uint32_t uFlags;            /* 28: DLG_ASSOCIATION_... */
  const POINT* ptPosition;    /* 32: null leaves the placing to the dialog */
  DLGHELPCALLBACK pfnHelpCallback; /* 40 */
  void* pHelpUserData;             /* 48 */
} FILEASSOCIATIONDLGPARAMS;
static_assert(sizeof(FILEASSOCIATIONDLGPARAMS) == 56, "wire format");
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, pszFormats, 4);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, pszSelected, 12);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, pszProgID, 20);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, uFlags, 28);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, ptPosition, 32);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, pfnHelpCallback, 40);
ZV_WIRE_FIELD(FILEASSOCIATIONDLGPARAMS, pHelpUserData, 48);

#pragma pack(pop)

#endif
