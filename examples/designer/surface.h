// The form that is designed: a window with controls, over which lies a sheet of glass that takes the mouse
// and the keys, and on that the handles of the control that is selected.
//
//   a click              selects; a drag moves, or changes the size by a handle; Ctrl leaves the grid
//   arrows               move by the grid, with Ctrl by a pixel, with Shift change the size
//   Tab, Shift+Tab       select the next control, the one before
//   Delete, Escape       delete the selected control, select none
//   a double click       asks for the control's pages
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "element.h"
#include "file_format.h"
#include "handles.h"
#include "refusal.h"
#include "window.h"

namespace designer {

// A control that forms may have.
struct Tool {
  CLSID id;
  std::wstring name;  // controls are called after it: name1, name2...
};

class SurfaceOwner {
 public:
  virtual void OnSelected() = 0;
  virtual void OnFormChanged() = 0;  // anything that would be saved
  virtual void OnFormSized() = 0;
  virtual void OnPropertyChanged(Element& element, DISPID id) = 0;
  virtual bool OnShowPages(Element& element) = 0;
  virtual void OnRemoved(const std::wstring& name) = 0;  // by itself

 protected:
  ~SurfaceOwner() = default;
};

class Surface final : public ElementOwner {
 public:
  Surface(SurfaceOwner& owner, HWND parent, int per_inch);
  ~Surface();
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  HWND Window() const { return form_.Handle(); }
  HWND Glass() const { return glass_.Handle(); }
  const std::vector<std::unique_ptr<Element>>& Elements() const { return elements_; }
  Element* Selected() const { return selected_; }
  void Select(Element* element);
  void SelectNext(bool back);

  // Throws a Refusal.
  Element& PlaceNew(const Tool& tool);
  void DeleteSelected();

  // In pixels.
  SIZE Size() const;
  void Resize(SIZE size);

  // What is on the form, and what shall be. Throw a Refusal, and then the form is as it was.
  SavedForm Saved() const;
  void Load(const SavedForm& form, const std::vector<Tool>& tools);
  void Clear();

 private:
  struct Drag {
    Grip grip;
    Point from;
    Place before;
  };

  LRESULT OnForm(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnGlass(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnFrame(UINT message, WPARAM wparam, LPARAM lparam);
  void PaintForm(HDC dc);
  void PaintFrame(HDC dc);
  void OnButton(Point point);
  void OnMouse(Point point, bool off_grid);
  void EndDrag(bool keep);
  void OnKey(WPARAM key);
  void OnArrow(WPARAM key);
  void ShowCursor();
  void MoveSelected(const Place& place);
  void ShowFrame();
  void RaiseGlass();
  void RemoveClosed(LPARAM number);

  Element* At(Point point) const;
  Place NewPlace() const;
  std::wstring NewName(const Tool& tool) const;
  int Pixels(int at_96) const { return Scaled(at_96, per_inch_, 96); }
  int Grid() const { return Pixels(8); }
  int HandleSize() const { return Pixels(7); }

  // ElementOwner
  void OnChanged(Element& element, DISPID id) override;
  void OnPlaced(Element& element) override;
  void OnClosed(Element& element) override;
  bool OnPages(Element& element) override { return owner_.OnShowPages(element); }

  SurfaceOwner& owner_;
  int per_inch_;
  OwnWindow form_, glass_, frame_;
  std::vector<std::unique_ptr<Element>> elements_;  // the lowest first
  Element* selected_ = nullptr;
  std::optional<Drag> drag_;
  bool moving_ = false;  // a place comes from us
};

}  // namespace designer
