// The property sheet of the driver's target (/wizard, /sheet).
#pragma once
#include <windows.h>

namespace lpdrivertarget {

// Shows the two pages as a wizard (Back, Next, Finish) or as a sheet with tabs (OK,
// Cancel, Apply) and answers the exit code that tells how it ended.
int ShowSheet(HINSTANCE instance, bool wizard);

}  // namespace lpdrivertarget
