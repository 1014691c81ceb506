/* Template and control ids of the dialogs that the batch conversion dialog's buttons open: page selection, log report,
 * resize and rotate. Prefixes as in conversion_ids.h. Plain macros alone: the resource compiler reads this too. */
#ifndef ZV_CONVERSION_TOOLS_IDS_H
#define ZV_CONVERSION_TOOLS_IDS_H

#define IDD_PAGES 5000
#define IDG_PAGES 5001
#define IDX_PAGES_ALL 5002
#define IDX_PAGES_LIST 5003
#define IDE_PAGES_LIST 5004
#define IDT_PAGES_HINT 5005

#define IDD_LOG 5100
#define IDL_LOG 5103
#define IDX_LOG_FULL_PATH 5104
#define IDB_LOG_ART_FAILED 5105
#define IDB_LOG_ART_SUCCEEDED 5106

#define IDD_RESIZE 5400
#define IDT_RESIZE_WIDTH 5401
#define IDC_RESIZE_WIDTH 5402
#define IDT_RESIZE_WIDTH_PERCENT 5403
#define IDT_RESIZE_HEIGHT 5404
#define IDC_RESIZE_HEIGHT 5405
#define IDT_RESIZE_HEIGHT_PERCENT 5406
#define IDX_RESIZE_ENABLE 5407
#define IDT_RESIZE_METHOD 5408
#define IDC_RESIZE_METHOD 5409
#define IDT_RESIZE_UNIT 5410
#define IDC_RESIZE_UNIT 5411

#define IDD_ROTATE 5500
#define IDX_ROTATE_RESIZE 5501
#define IDS_ROTATE_ANGLE_BAR 5502
#define IDG_ROTATE_ANGLE 5503
#define IDE_ROTATE_ANGLE 5504
#define IDT_ROTATE_INTERPOLATION 5505
#define IDC_ROTATE_INTERPOLATION 5506
#define IDB_ROTATE_COLOR 5507
#define IDT_ROTATE_COLOR 5508

#define IDB_TOOLS_HELP 9

#endif
