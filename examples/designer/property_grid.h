// The properties of a control in a list of names and values. The value of the row that is selected can be
// edited in its place: it is set with Enter or by going elsewhere, and Escape brings back what it was. A
// value that the control refuses comes back of itself.
//
//   letters, F2, Enter   begin to edit
//   Left, Right          fold a group, unfold it
//   Escape               leaves the list
#pragma once

#include <windows.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "element.h"
#include "look.h"
#include "rows.h"
#include "window.h"

namespace designer {

class GridOwner {
 public:
  virtual void OnTold(const std::wstring& text) = 0;  // what the user should read
  virtual void OnLeft() = 0;                          // the keyboard is done here
  virtual void OnChosen(std::size_t name) = 0;        // of the names
  virtual void OnPageWanted(Element& element, DISPID id) = 0;
  // Nothing: the user chose none.
  virtual std::optional<COLORREF> OnColourWanted(COLORREF colour) = 0;
  virtual std::optional<FontValue> OnFontWanted(const FontValue& font) = 0;

 protected:
  ~GridOwner() = default;
};

class PropertyGrid {
 public:
  // The numbers of its windows.
  enum Item { kNames = 200, kList, kEdit, kChoices, kMore, kHelp };

  PropertyGrid(GridOwner& owner, HWND parent, const Look& look);
  PropertyGrid(const PropertyGrid&) = delete;
  PropertyGrid& operator=(const PropertyGrid&) = delete;

  HWND Window() const { return window_.Handle(); }
  HWND Item(int id) const { return GetDlgItem(Window(), id); }

  void ShowNames(const std::vector<std::wstring>& names, std::optional<std::size_t> selected);
  void Show(Element* element);  // null: nothing
  void Select(const std::wstring& property);
  // A property has another value; DISPID_UNKNOWN: all may have.
  void Refresh(DISPID id);
  // Sets what is being edited.
  void Commit();
  void TakeKeyboard() { Focus(Item(kList)); }

 private:
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void OnCommand(int id, int code);
  static LRESULT CALLBACK ListProcedure(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR grid);
  static LRESULT CALLBACK EditProcedure(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR grid);
  bool OnListKey(UINT message, WPARAM key);
  bool OnEditKey(WPARAM key);

  HWND Child(const wchar_t* kind, int id, DWORD style, DWORD extended = 0);
  void Layout();
  void FillList();
  void Fold(bool folded);
  void Draw(const DRAWITEMSTRUCT& item);
  void DrawHeading(HDC dc, RECT rect, const GridRow& row);
  void DrawProperty(HDC dc, const RECT& rect, const GridRow& row, bool selected);
  void DrawValue(HDC dc, RECT rect, std::size_t entry);

  void ShowEditor();
  void PlaceEditor();
  void HideEditor();
  void BeginEdit(wchar_t first);
  void PressMore();
  void Set(const std::wstring& text);
  HWND Editor() const;  // null: none is shown

  const GridRow* Current() const;
  const Property* CurrentProperty() const;
  std::wstring Value(std::size_t entry) const { return values_[entry]; }
  int NameWidth() const;
  int RowHeight() const { return look_.LineHeight() + look_.Pixels(6); }

  GridOwner& owner_;
  const Look& look_;
  OwnWindow window_;
  Element* element_ = nullptr;
  std::vector<std::wstring> values_;  // of the element's properties
  std::vector<GridRow> rows_;
  std::set<std::wstring> folded_;
  // The row that was selected last, also of another control: a group may be called as one of its properties
  // is.
  std::wstring last_;
  bool last_is_heading_ = false;
  bool setting_ = false;
};

}  // namespace designer
