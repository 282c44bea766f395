// OLE's headers, after sdk.h: automation, controls, type libraries and ComPtr.
#pragma once

#include "platform/win32/sdk.h"
// These headers use the macros that sdk.h removes; they come back for as long.
#define S_OK ((HRESULT)0L)
#define S_FALSE ((HRESULT)1L)

#include <objbase.h>
#include <objsafe.h>
#include <ole2.h>
#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

#include "platform/win32/undefine.h"
