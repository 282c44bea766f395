// One control on the form that is designed.
#pragma once

#include <string>
#include <vector>

#include "examples/shared/control.h"
#include "place.h"
#include "properties.h"

namespace designer {

class Element;

// What a control does of its own accord. Called from inside its calls: it must live on until they return.
class ElementOwner {
 public:
  virtual void OnChanged(Element& element, DISPID id) = 0;  // DISPID_UNKNOWN: several
  virtual void OnPlaced(Element& element) = 0;              // it has given itself another place
  virtual void OnClosed(Element& element) = 0;              // it is gone
  virtual bool OnPages(Element& element) = 0;               // it wants its pages shown

 protected:
  ~ElementOwner() = default;
};

class Element {
 public:
  // Throws an HRESULT when there is no such control. One that can't be activated in place has no window.
  Element(ElementOwner& owner, HWND surface, const CLSID& id, const std::wstring& name, const Place& place,
          const example::Start& start);
  ~Element();
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  LPARAM Number() const { return number_; }  // no other has the same, not even after it
  const std::wstring& Name() const { return name_; }
  const CLSID& ClassId() const { return id_; }
  const std::vector<Property>& Properties() const { return properties_; }
  IDispatch& Dispatch() { return control_.Properties(); }
  IOleObject& Object() { return control_.Object(); }
  example::Control& Control() { return control_; }
  HWND Window() const { return control_.Window(); }

  Place GetPlace() const;  // in pixels
  void Move(const Place& place);
  void Paint(HDC dc);  // of one without a window

  // Throws an HRESULT.
  std::vector<std::uint8_t> Save() { return example::Save(control_.Object()); }

 private:
  class Watcher;
  void Watch();

  LPARAM number_;
  CLSID id_;
  std::wstring name_;
  example::Control control_;
  std::vector<Property> properties_;
  example::ComPtr<Watcher> watcher_;
  example::ComPtr<IConnectionPoint> changes_;
  DWORD changes_cookie_ = 0, advise_cookie_ = 0;
};

RECT RectOf(const Place& place);
Place PlaceOf(const RECT& rect);

}  // namespace designer
