// The Windows headers, without the macros that collide with names of ours.
//
// This is the only way to windows.h. It works whether our own headers come before or after it. Inside
// namespace marklet our HDC, RECT and the rest hide the platform's, which are then spelt ::HDC, ::RECT; so
// are its functions. What was a macro and is gone is there as a typed constant in namespace marklet (types.h,
// text.h, uniscribe.h).
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// usp10.h needs windows.h first.
#include <usp10.h>

#include "platform/win32/undefine.h"
