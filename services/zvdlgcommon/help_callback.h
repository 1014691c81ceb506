/* The help callback that an application hands to a dialog. Usable from C and C++. The dialog calls it on the
 * user-interface thread while its window is up; it owns neither the function nor the user data, and no answer is
 * expected.
 */
#ifndef ZV_HELP_CALLBACK_H
#define ZV_HELP_CALLBACK_H

#include <stdint.h>

/* dialogNumber names the dialog. controlId is HELP_BUTTON_PRESSED when the Help button was pressed, else the control
 * for which context help was asked (F1 or the question mark of the title bar). */
typedef void (*HELPCALLBACK)(uint32_t dialogNumber, int32_t controlId, void* userData);

#define HELP_BUTTON_PRESSED (-1)

#endif
