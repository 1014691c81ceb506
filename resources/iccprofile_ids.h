/* Template, control and art ids of the ICC profile dialog. Plain macros alone: the resource compiler reads this too. */
#ifndef ZV_ICCPROFILE_IDS_H
#define ZV_ICCPROFILE_IDS_H

#define IDD_ICC 10000
#define IDC_ICC_LOAD_TYPE 10001
#define IDE_ICC_LOAD_PATH 10002
#define IDC_ICC_SAVE_TYPE 10003
#define IDE_ICC_SAVE_PATH 10004
#define IDB_ICC_LOAD 10005
#define IDB_ICC_SAVE 10006
#define IDG_ICC_LOAD 10007
#define IDG_ICC_SAVE 10008
#define IDB_ICC_LOAD_BROWSE 10009
#define IDB_ICC_SAVE_BROWSE 10010
#define IDE_ICC_LOAD_PAGE 10011
#define IDT_ICC_LOAD_PAGE 10012
#define IDT_ICC_SAVE_PAGE 10013
#define IDE_ICC_SAVE_PAGE 10014
#define IDT_ICC_LINE 10015
#define IDB_ICC_CLOSE 1 /* IDOK */
#define IDB_ICC_HELP 9

/* Bitmaps, which count on their own. */
#define IDB_ICC_ART_LOAD_OFF 10000
#define IDB_ICC_ART_LOAD 10001
#define IDB_ICC_ART_SAVE 10003
#define IDB_ICC_ART_SAVE_OFF 1002

#endif
