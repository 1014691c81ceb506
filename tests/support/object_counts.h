// Counts the GDI and USER objects that this process holds, kind by kind, so that a test can say that none was left behind and,
// when some were, which. Reads only; owns nothing.
//
// Windows counts for us, without kinds. Wine 8 answers 0 to that question; there the process's table of GDI handles is read,
// and every value that a USER handle can have is probed: windows of all threads (message-only ones too), menus, icons and
// cursors, accelerator tables. Hooks and deferred window positions cannot be probed without being used up and stay uncounted.
#pragma once

#include <map>
#include <string>

namespace zvtest {

// From the name of the kind ("brush", "window") to the number that exists.
using ObjectCounts = std::map<std::string, int>;

ObjectCounts CountGdiObjects();
ObjectCounts CountUserObjects();

int Total(const ObjectCounts& counts);
// What there is more of in `after`, as "2 x brush, 1 x bitmap"; empty when nothing is.
std::string Growth(const ObjectCounts& before, const ObjectCounts& after);

}  // namespace zvtest
