// Counts the GDI objects of this process: bitmaps, brushes, fonts, pens and contexts. For leak tests.
#pragma once

namespace marklet {

// Read from the handle table that GDI shares with every process, since GetGuiResources answers 0 on some
// systems. Only differences mean something: stock objects count too. Windows only.
int CountGdiHandles();

}  // namespace marklet
