/* A dialog kernel that is not ready, built as zvdlgbase.dll in a folder of its own. All its other operations are one that
 * counts: nothing of a kernel that is not ready may be used. */
static int touched = 0;

int DialogKernelReady(void) { return 0; }
int TouchAnything(void) { return ++touched, 0; }
int CountTouches(void) { return touched; }
