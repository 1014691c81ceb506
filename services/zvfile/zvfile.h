/* zvfile: reading and writing image files, what a file says of itself, and the library-wide load and save settings.
 *
 * Usable from C and C++. Every operation returns a 32-bit code, 1 (SUCCESS) for success. Formats are recognised by content
 * first and by the name's extension last. Paths are full paths, of any length that the system takes. A source file is never
 * written to but by DeleteFilePage and by saves that name it; a save that fails or is aborted leaves the destination as it
 * was and no other file behind. The settings are one set per process: whoever changes them for an operation puts them back;
 * a read sees what the last write left.
 */
#ifndef ZVFILE_H
#define ZVFILE_H

#include "services/zvcore/zvcore.h"
#include "services/zvfile/file_formats.h"
#include "services/zvfile/option_records.h"

#ifdef _WIN32
#ifdef ZVFILE_BUILD
#define ZVFILE_API __declspec(dllexport)
#else
#define ZVFILE_API __declspec(dllimport)
#endif
#else
#define ZVFILE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Rows have come in: rows [firstRow, firstRow + rowCount) of the image stand in buffer, row 0 being the top, in the
 * bitmap's layout. Each row is delivered exactly once, from the top, also for interlaced and progressive files. Any answer
 * but 1 ends the load with that code. */
typedef int32_t(ZV_CALL* FILELOADCALLBACK)(FILEINFO* info, BITMAPHANDLE* bitmap, uint8_t* buffer, uint32_t flags,
                                           int32_t firstRow, int32_t rowCount, void* userData);
/* Rows are wanted: fill buffer with stored rows [firstRow, firstRow + rowCount), bytesPerLine of the bitmap apart. Rows are
 * asked for once each, from the top. Any answer but 1 ends the save with that code. */
typedef int32_t(ZV_CALL* FILESAVECALLBACK)(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t firstRow, int32_t rowCount,
                                           void* userData);

/* Reads the header of a page (option's pageNumber, 1 without an option). flags 1 counts the pages as well; without it
 * totalPages is 1, or the number when the header gives it for free. ERROR_FILE_MISSING, ERROR_FILE_EMPTY,
 * ERROR_FILE_FORMAT, ERROR_FILE_DAMAGED, ERROR_LIMIT_EXCEEDED, ERROR_PAGE_MISSING, ERROR_BAD_ARGUMENT. */
ZVFILE_API int32_t GetFileInfo(const ZVCHAR* path, FILEINFO* info, uint32_t recordSize, uint32_t flags,
                               const LOADFILEOPTION* option);
/* Loads a page. bitsPerPixel 0 keeps the file's depth (a depth that BITMAPHANDLE does not know is widened); order is one of
 * ORDER_...; flags are LOADFILE_ALLOCATE and LOADFILE_STORE, with LOADFILE_COMPRESSED where wanted; callback may be null;
 * option and info may be null, info is filled when given. On failure the bitmap owns nothing.
 * LOADFILE_MAY_REDUCE is for thumbnails: where decoding at a smaller scale is cheaper (JPEG, at eighths), the whole page comes
 * in at a scale that leaves no stored side below the width and height that the bitmap holds on entry. bitmap and info then
 * have the size loaded. Averaged over the decoder's blocks, not resampled: resize it from at least twice the size that is
 * wanted, and the result differs from that of the whole image by less than 2 of 255 levels on average. */
ZVFILE_API int32_t LoadImageFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t bitsPerPixel,
                                 int32_t order, uint32_t flags, FILELOADCALLBACK callback, void* userData,
                                 const LOADFILEOPTION* option, FILEINFO* info);
/* Loads the first page into a new bitmap. */
ZVFILE_API int32_t LoadBitmapFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t bitsPerPixel,
                                  int32_t order, const LOADFILEOPTION* option, FILEINFO* info);
/* Reads the small picture stored in the file beside the image: Exif thumbnail, reduced-resolution page, container stamp.
 * ERROR_NO_STAMP when there is none. Costs a small fraction of a full load. */
ZVFILE_API int32_t ReadFileStamp(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize,
                                 const LOADFILEOPTION* option);
/* Reads comment `number` (COMMENT_...) as text in the system's 8-bit code page into buffer, cut to size bytes with its
 * terminator. Gives the length of the whole comment with its terminator, or a code below 1 when it is absent. */
ZVFILE_API int32_t ReadFileComment(const ZVCHAR* path, int32_t number, char* buffer, int32_t size,
                                   const LOADFILEOPTION* option);
#define COMMENT_DESCRIPTION 0
#define COMMENT_AUTHOR 1
#define COMMENT_SOFTWARE 2
#define COMMENT_COPYRIGHT 3
#define COMMENT_DATE 4
#define COMMENT_MAKE 5
#define COMMENT_MODEL 6
#define COMMENT_TITLE 7
#define COMMENT_COMMENT 8
#define COMMENT_SOURCE 9
#define COMMENT_DISCLAIMER 10
#define COMMENT_WARNING 11
#define COMMENT_COUNT 12
/* The numbers under which PNG has been asked for its own keywords; the same texts as above. */
#define COMMENT_PNG_TITLE 175
#define COMMENT_PNG_WARNING 176
#define COMMENT_PNG_DISCLAIMER 177
#define COMMENT_PNG_COMMENT 178

/* Deletes a page of a multi-page file, atomically. ERROR_PAGE_MISSING, ERROR_FEATURE_UNSUPPORTED when the format has no
 * pages or this is the last one. */
ZVFILE_API int32_t DeleteFilePage(const ZVCHAR* path, int32_t page, uint32_t flags, const SAVEFILEOPTION* option);
/* Writes a bitmap, asking for its rows through the callback (null: rows are taken from the bitmap). bitsPerPixel 0 keeps the
 * bitmap's depth, or the nearest that the format can hold; else the rows are converted on the way, and ERROR_BIT_DEPTH
 * is the answer when the format cannot hold that depth. The picture is
 * written upright: the view perspective is applied. quality is the format's own: JPEG family and CMP 2 (best) to 255, PNG 0
 * to 9, others see the format table. */
ZVFILE_API int32_t SaveFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, int32_t format, int32_t bitsPerPixel,
                            int32_t quality, uint32_t flags, FILESAVECALLBACK callback, void* userData,
                            const SAVEFILEOPTION* option);
ZVFILE_API int32_t SaveBitmapToFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, int32_t format, int32_t bitsPerPixel,
                                    int32_t quality, const SAVEFILEOPTION* option);

/* Fill a record with the defaults. ERROR_BAD_RECORD_SIZE when size is not the record's. */
ZVFILE_API int32_t GetDefaultLoadFileOption(LOADFILEOPTION* option, uint32_t size);
ZVFILE_API int32_t GetDefaultSaveFileOption(SAVEFILEOPTION* option, uint32_t size);
ZVFILE_API int32_t GetDefaultJ2KOptions(J2KSAVEOPTION* option, uint32_t size);

/* Library-wide option records. */
ZVFILE_API int32_t GetJ2KOptions(J2KSAVEOPTION* option, uint32_t size);
ZVFILE_API int32_t SetJ2KOptions(const J2KSAVEOPTION* option);
ZVFILE_API int32_t GetJBIG2Options(JBIG2SAVEOPTION* option, uint32_t size);
ZVFILE_API int32_t SetJBIG2Options(const JBIG2SAVEOPTION* option);
ZVFILE_API int32_t GetPDFLoadOptions(PDFLOADOPTION* option, uint32_t size);
ZVFILE_API int32_t SetPDFLoadOptions(const PDFLOADOPTION* option);
ZVFILE_API int32_t GetXPSLoadOptions(XPSLOADOPTION* option, uint32_t size);
ZVFILE_API int32_t SetXPSLoadOptions(const XPSLOADOPTION* option);
ZVFILE_API int32_t GetXLSLoadOptions(XLSLOADOPTION* option, uint32_t size);
ZVFILE_API int32_t SetXLSLoadOptions(const XLSLOADOPTION* option);
ZVFILE_API int32_t GetVectorPenOptions(VECTORPENOPTION* option, uint32_t size);
ZVFILE_API int32_t SetVectorPenOptions(const VECTORPENOPTION* option);
ZVFILE_API int32_t GetRasterizeDocOptions(RASTERIZEDOCOPTION* option, uint32_t size);
ZVFILE_API int32_t SetRasterizeDocOptions(const RASTERIZEDOCOPTION* option);

/* Library-wide vector drawing. color is a COLORREF. */
ZVFILE_API int32_t GetVectorViewSize(int32_t* width, int32_t* height);
ZVFILE_API int32_t SetVectorViewSize(int32_t width, int32_t height);
ZVFILE_API int32_t GetVectorViewMode(int32_t* mode);
ZVFILE_API int32_t SetVectorViewMode(int32_t mode);
ZVFILE_API int32_t GetVectorBackground(uint32_t* color);
ZVFILE_API int32_t SetVectorBackground(uint32_t color);
/* Gets each font of a drawing that is loaded, on the thread of the load, as a LOGFONTW to change; answers 1 to use it,
 * anything else to draw with the font as it was. Metafiles are the drawings that are read. It holds until it is reset. */
typedef int32_t(ZV_CALL* FONTSUBSTITUTIONCALLBACK)(void* logFont, void* userData);
ZVFILE_API int32_t SetVectorFontSubstitution(FONTSUBSTITUTIONCALLBACK callback, void* userData);
ZVFILE_API int32_t ResetVectorFontSubstitution(void);

/* Library-wide load resolution of formats without a size of their own, in dots per inch; (0, 0) is that of a screen, 96. Later
 * GetFileInfo calls compute the size at it. */
ZVFILE_API int32_t GetLoadDpi(int32_t* x, int32_t* y);
ZVFILE_API int32_t SetLoadDpi(int32_t x, int32_t y);
/* Load size of formats that keep several: the smallest that is not smaller comes in, the largest when there is none such.
 * (0, 0) is the largest, a height of 0 leaves the width alone to decide. It holds for files of exactly that format number,
 * as GetFileInfo tells it; 80 is all of Photo CD. GetFileInfo tells the size that would be loaded, and the size goes before
 * the one of a FILEINFO with FILEINFO_LOAD_SIZE_GIVEN. option may be null. */
ZVFILE_API int32_t GetLoadSize(int32_t format, int32_t* width, int32_t* height, const LOADFILEOPTION* option);
ZVFILE_API int32_t SetLoadSize(int32_t format, int32_t width, int32_t height);
/* The sizes at which a file can be loaded, largest first; a format with one size has that alone. Call it with sizes null to
 * learn the count, then with an array of count elements. ERROR_BUFFER_TOO_SMALL when resolutions->count is less than there
 * are: as many as fit are in the array, and count stays. option may be null. */
ZVFILE_API int32_t GetFormatResolutions(const ZVCHAR* path, IMAGESIZE* sizes, FORMATRESOLUTIONS* resolutions,
                                        const LOADFILEOPTION* option);
/* The sizes written to an icon file; at most 16. */
ZVFILE_API int32_t GetSaveSizeList(int32_t* count, IMAGESIZE* sizes);
ZVFILE_API int32_t SetSaveSizeList(int32_t count, const IMAGESIZE* sizes);
/* Two library-wide values that a caller may clear around a page probe and put back. */
ZVFILE_API int32_t GetLoadRedirect(void** first, void** second);
ZVFILE_API int32_t SetLoadRedirect(void* first, void* second);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
