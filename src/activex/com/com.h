// OLE for this room: its headers, and the few result codes that the seam has as typed constants.
#pragma once

#include <string>
#include <string_view>

#include "platform/win32/handles.h"
#include "platform/win32/sdk_ole.h"

namespace marklet::activex {

using Microsoft::WRL::ComPtr;
using win32::Native;
using win32::Wrap;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;

// Takes over a reference. ComPtr's own Attach counts one more in some versions of its header.
template <typename Interface>
ComPtr<Interface> Adopt(Interface* object) {
  ComPtr<Interface> result;
  *result.GetAddressOf() = object;
  return result;
}

// The tables hold their names in ASCII.
inline std::wstring Wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }
inline std::wstring Wide(std::u16string_view text) { return {text.begin(), text.end()}; }

}  // namespace marklet::activex
