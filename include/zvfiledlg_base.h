/* What all records of zvfiledlg share.
 *
 * The records are byte-packed: a pointer may stand at offset 4. A caller clears a record and sets uStructSize to its size
 * before a call. Strings are null-terminated UTF-16, in the records whose names end in A 8-bit text in the system's code
 * page. A record belongs to the caller throughout; the library keeps no pointer to it after the call. What the library
 * allocates for the caller is said at the field.
 */
#ifndef ZVFILEDLG_BASE_H
#define ZVFILEDLG_BASE_H

#include "services/zvcore/zvcore.h"
#include "services/zvdlgcommon/help_callback.h"

/* Room of the path fields, in characters, terminator included. */
#define ZVDLG_PATH_LENGTH 264

/* viewMode of the open and save dialogs: how the file list shows at first. Any other value leaves the shell's choice. */
#define DLG_VIEW_LIST 0
#define DLG_VIEW_LARGE_ICONS 1
#define DLG_VIEW_TILES 2
#define DLG_VIEW_THUMBNAILS 3

typedef HELPCALLBACK DLGHELPCALLBACK;

/* Pins a documented field to its place in the wire format. */
#define ZV_WIRE_FIELD(record, field, at) static_assert(offsetof(record, field) == (at), #record "." #field " moved")

#endif
