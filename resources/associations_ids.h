/* Template, control and art ids of the file association dialog. Plain macros alone: the resource compiler reads this too. */
#ifndef ZV_ASSOCIATIONS_IDS_H
#define ZV_ASSOCIATIONS_IDS_H

#define IDD_ASSOCIATIONS 5700
#define IDL_ASSOC_FORMATS 5701
#define IDB_ASSOC_SELECT_NONE 5702
#define IDB_ASSOC_SELECT_ALL 5704
#define IDI_ASSOC_CLEAR 5705
#define IDI_ASSOC_CHECKED 5706
#define IDB_ASSOC_HELP 9

#endif
