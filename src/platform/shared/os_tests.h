// The tests of the operating system on which the choice of text route, and that of compositing, depends.
//
// Each answer but IsNT4OrLater's is cached once per thread. ForgetOsTests empties the caches, for tests that
// change the configured system.
#pragma once

namespace marklet {

bool IsNT4OrLater();
bool IsWindows2000Family();  // the first call of a thread answers false on any system
bool IsXPOrLater();          // false on a system whose minor version is 0, 6.0 and 10.0 among them
bool IsVistaOrLater();
bool IsUnicodeCapable();

void ForgetOsTests();

}  // namespace marklet
