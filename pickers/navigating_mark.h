// The mark that the open dialog is on its way to a folder through its name box: what stands there is a path of ours and none
// that the user has typed. One for the process. Set when the path is put into the box; cleared by whoever takes it out again.
#pragma once

inline bool navigatingThroughNameBox = false;
