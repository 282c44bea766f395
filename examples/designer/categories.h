// Groups of properties, which the platform's own headers don't have.
#pragma once

#include <windows.h>

#include <oaidl.h>

using PROPCAT = int;
MIDL_INTERFACE("4D07FC10-F931-11CE-B001-00AA006884E5")
ICategorizeProperties : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE MapPropertyToCategory(DISPID id, PROPCAT * category) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCategoryName(PROPCAT category, LCID locale, BSTR * name) = 0;
};
__CRT_UUID_DECL(ICategorizeProperties, 0x4D07FC10, 0xF931, 0x11CE, 0xB0, 0x01, 0x00, 0xAA, 0x00, 0x68, 0x84,
                0xE5)
