// Counts the objects of the window manager: windows, menus, icons and cursors, accelerator tables, hooks. For
// leak tests. (Timers have no handles: those of a window end with it.)
#pragma once

namespace marklet {

// What the system itself counts for this process; where it doesn't (GetGuiResources answers 0 there), the
// entries in use of the table that hands out the handles. That one belongs to the session: its other
// programs, of which a test has none that does anything, are in the count too, so that only differences mean
// something. Windows only.
int CountUserHandles();

}  // namespace marklet
