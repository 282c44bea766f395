// One control on a window.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "site.h"

namespace example {

using Microsoft::WRL::ComPtr;

// Throws the result of a step that failed.
void Check(HRESULT result);

// How a control that was just created gets its first values: as a new one; as one from a saved form that
// holds nothing for it; from what it saved. Each throws.
using Start = std::function<void(IOleObject& object)>;
void StartNew(IOleObject& object);
void StartEmpty(IOleObject& object);
void StartFrom(IOleObject& object, std::span<const std::uint8_t> saved);

// What the control would save. Throws.
std::vector<std::uint8_t> Save(IOleObject& object);

// Creates the control, gives it a site and activates it in place; closes it at the end. Every failing step
// throws the HRESULT that it failed with.
class Control {
 public:
  // A Marklet control of a running form, activated.
  Control(HWND window, const RECT& place);
  // Any control, not yet activated.
  Control(const CLSID& id, HWND window, const RECT& place, const Ambients& ambients, const Start& start);
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // Shows the control's window.
  void Activate();

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

  IOleObject& Object() { return *object_.Get(); }
  IDispatch& Properties() { return *properties_.Get(); }
  Site& ItsSite() { return *site_.Get(); }
  HWND Window() const;  // null when it has none

 private:
  explicit Control(const CLSID& id);
  DISPID Find(const wchar_t* name);
  void Put(const wchar_t* name, VARIANT value);

  ComPtr<IOleObject> object_;
  ComPtr<IOleInPlaceObject> in_place_;  // null when it can't be activated
  ComPtr<IDispatch> properties_;
  ComPtr<Site> site_;
  HWND window_ = nullptr;
  ComPtr<IConnectionPoint> events_;
  DWORD connection_ = 0;
};

}  // namespace example
