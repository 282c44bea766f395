// The way to the hidden list of images that belongs to a control.
#pragma once

#include "activex/server.h"

namespace ocx_test {

struct Constituents : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE InternalAlphaImageList1(IUnknown** list) = 0;
};
constexpr IID kConstituentsId = {
    0x5E7C93A4, 0x8D1B, 0x4F66, {0xB0, 0xC2, 0x7A, 0x39, 0xD1, 0xE4, 0xF5, 0x08}};

inline ComPtr<IUnknown> HiddenListOf(IUnknown* control) {
  ComPtr<Constituents> constituents;
  EXPECT_EQ(S_OK,
            control->QueryInterface(kConstituentsId, reinterpret_cast<void**>(constituents.GetAddressOf())));
  ComPtr<IUnknown> list;
  if (constituents) {
    EXPECT_EQ(S_OK, constituents->InternalAlphaImageList1(list.GetAddressOf()));
  }
  return list;
}

}  // namespace ocx_test
