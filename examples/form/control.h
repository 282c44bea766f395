// One Marklet control on a window.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include "site.h"

namespace form {

using Microsoft::WRL::ComPtr;

// Creates the control, gives it a site and activates it in place; closes it at the end. Every failing step
// throws the HRESULT that it failed with.
class Control {
 public:
  Control(HWND window, const RECT& place);
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // Sets a property by name.
  void Set(const wchar_t* name, const wchar_t* text);
  void Set(const wchar_t* name, LONG number);
  void Set(const wchar_t* name, bool truth);

  // Adds an image file to the control's list under a key; false when it doesn't take it.
  bool LoadImage(const wchar_t* file, const wchar_t* key);

  // Connects a sink for the control's events until the control goes.
  void Listen(IDispatch* sink);

  // Moves the control to another place in its window.
  void Move(const RECT& place);

 private:
  DISPID Find(const wchar_t* name);
  void Put(const wchar_t* name, VARIANT value);

  ComPtr<IOleObject> object_;
  ComPtr<IOleInPlaceObject> in_place_;
  ComPtr<IDispatch> properties_;
  ComPtr<Site> site_;
  ComPtr<IConnectionPoint> events_;
  DWORD connection_ = 0;
};

}  // namespace form
