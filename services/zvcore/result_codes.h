/* The result codes that all modules share: plain signed 32-bit numbers, SUCCESS for success, negative for failure. A
 * module passes another's failure on unchanged. */
#ifndef ZV_RESULT_CODES_H
#define ZV_RESULT_CODES_H

#define SUCCESS 1
#define ERROR_OUT_OF_MEMORY (-1)           /* an allocation failed */
#define ERROR_NO_IMAGE (-2)                /* a bitmap handle that the call requires is null or not allocated */
#define ERROR_FILE_READ (-7)               /* the file is there but reading it failed */
#define ERROR_FILE_WRITE (-8)              /* writing failed: disk full, no right to write, path gone */
#define ERROR_FILE_MISSING (-10)           /* no such file, or it is a folder */
#define ERROR_FILE_EMPTY (-11)             /* the file holds no bytes */
#define ERROR_BAD_ARGUMENT (-13)           /* null or unreadable record or field, or a bad field value */
#define ERROR_FILE_FORMAT (-14)            /* the content is of no known format */
#define ERROR_FILE_DAMAGED (-15)           /* a known format, but the content is damaged or cut short */
#define ERROR_LIMIT_EXCEEDED (-16)         /* dimensions, pages or bytes beyond what is accepted */
#define ERROR_PAGE_MISSING (-17)           /* the file has no page of that number */
#define ERROR_NO_STAMP (-18)               /* the file carries no stamp */
#define ERROR_FEATURE_UNSUPPORTED (-19)    /* the format cannot do what was asked */
#define ERROR_BIT_DEPTH (-20)              /* the format cannot hold that many bits per pixel */
#define ERROR_USER_ABORT (-100)            /* a callback asked to stop */
#define ERROR_DIALOG_FAILED (-150)         /* unusable parent window, or a dialog failed to run */
#define ERROR_KERNEL_NOT_READY (-152)      /* DialogKernelReady() did not return 1 */
#define ERROR_COLOR_LIBRARY_MISSING (-154) /* the run-time colour library could not be used */
#define ERROR_BUFFER_TOO_SMALL (-290)      /* the result does not fit the caller's buffer */
#define ERROR_BAD_RECORD_SIZE (-789)       /* the size tag is not among the accepted sizes */
#define ERROR_BITMAP_REFUSED (-1360)       /* print preview was given a bitmap with flag bit 9 set */

#endif
