#include "property_grid.h"

// commctrl.h needs windows.h first.
#include <commctrl.h>

#include <algorithm>
#include <bit>

#include "property_value.h"

namespace designer {
namespace {

constexpr UINT_PTR kSubclass = 1;

// The colours that a list is drawn with.
COLORREF TextColour(bool selected, bool can_set) {
  return GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : can_set ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
}

void DrawIn(HDC dc, RECT rect, const std::wstring& text) {
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rect,
            DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

COLORREF ColourOf(std::uint32_t colour) {
  COLORREF result = 0;
  OleTranslateColor(colour, nullptr, &result);
  return result;
}

bool HasChoices(const Property& property) {
  return property.kind == Kind::Choice || property.kind == Kind::Truth || property.kind == Kind::Colour;
}

bool HasMore(const Property& property) {
  return property.has_page || property.kind == Kind::Colour || property.kind == Kind::Font;
}

std::vector<std::wstring> ChoicesOf(const Property& property) {
  if (property.kind == Kind::Truth) return {TruthText(false), TruthText(true)};
  if (property.kind == Kind::Colour) return SystemColourNames();
  std::vector<std::wstring> names;
  for (const Choice& choice : property.choices) names.push_back(choice.name);
  return names;
}

LRESULT Send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
  return SendMessageW(window, message, wparam, lparam);
}
LRESULT Send(HWND window, UINT message, WPARAM wparam, const std::wstring& text) {
  return SendMessageW(window, message, wparam, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace

PropertyGrid::PropertyGrid(GridOwner& owner, HWND parent, const Look& look) : owner_(owner), look_(look) {
  window_.Create({L"MarkletDesignerGrid", L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
                  GetSysColorBrush(COLOR_BTNFACE)},
                 parent, {}, [this](UINT message, WPARAM w, LPARAM l) { return Handle(message, w, l); });
  Child(L"COMBOBOX", kNames, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP | WS_VISIBLE);
  const HWND list = Child(L"LISTBOX", kList,
                          LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
                              WS_VSCROLL | WS_TABSTOP | WS_VISIBLE | WS_CLIPSIBLINGS,
                          WS_EX_CLIENTEDGE);
  const HWND edit = Child(L"EDIT", kEdit, ES_AUTOHSCROLL | WS_TABSTOP | WS_CLIPSIBLINGS);
  const HWND choices = Child(L"COMBOBOX", kChoices,
                             CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL | WS_TABSTOP | WS_CLIPSIBLINGS);
  Child(L"BUTTON", kMore, WS_CLIPSIBLINGS);
  Child(L"STATIC", kHelp, SS_NOPREFIX | WS_VISIBLE);
  SetWindowTextW(Item(kMore), L"...");
  Send(list, LB_SETITEMHEIGHT, 0, RowHeight());
  COMBOBOXINFO info = {};
  info.cbSize = sizeof info;
  GetComboBoxInfo(choices, &info);
  const auto self = reinterpret_cast<DWORD_PTR>(this);
  SetWindowSubclass(list, ListProcedure, kSubclass, self);
  for (const HWND text : {edit, info.hwndItem}) SetWindowSubclass(text, EditProcedure, kSubclass, self);
}

HWND PropertyGrid::Child(const wchar_t* kind, int id, DWORD style, DWORD extended) {
  const HWND child = CreateWindowExW(extended, kind, L"", WS_CHILD | style, 0, 0, 10, 10, Window(),
                                     std::bit_cast<HMENU>(INT_PTR{id}), GetModuleHandleW(nullptr), nullptr);
  if (!child) throw E_FAIL;
  Send(child, WM_SETFONT, reinterpret_cast<WPARAM>(look_.Font()));
  return child;
}

void PropertyGrid::Layout() {
  RECT inside = {};
  GetClientRect(Window(), &inside);
  const int gap = look_.Pixels(4), help = 4 * look_.LineHeight();
  const int names = look_.LineHeight() + look_.Pixels(10);
  const int width = inside.right - 2 * gap;
  MoveWindow(Item(kNames), gap, gap, width, look_.Pixels(240), TRUE);
  MoveWindow(Item(kList), gap, gap + names + gap, width,
             std::max<int>(0, inside.bottom - names - help - 4 * gap), TRUE);
  MoveWindow(Item(kHelp), gap, inside.bottom - help - gap, width, help, TRUE);
  PlaceEditor();
}

// --- What is shown ----------------------------------------------------------------------------------------

void PropertyGrid::ShowNames(const std::vector<std::wstring>& names, std::optional<std::size_t> selected) {
  Send(Item(kNames), CB_RESETCONTENT);
  for (const std::wstring& name : names) Send(Item(kNames), CB_ADDSTRING, 0, name);
  Send(Item(kNames), CB_SETCURSEL, selected ? *selected : static_cast<WPARAM>(-1));
}

void PropertyGrid::Show(Element* element) {
  Commit();
  HideEditor();
  element_ = element;
  values_.clear();
  if (element_)
    for (const Property& property : element_->Properties())
      values_.push_back(ReadValue(element_->Dispatch(), property));
  FillList();
}

void PropertyGrid::Select(const std::wstring& property) {
  last_ = property;
  last_is_heading_ = false;
  FillList();
}

// The property that was selected stays so, if this control has it.
void PropertyGrid::FillList() {
  std::vector<GridEntry> entries;
  if (element_)
    for (const Property& property : element_->Properties())
      entries.push_back({property.name, property.group});
  rows_ = RowsOf(entries, folded_);
  const HWND list = Item(kList);
  Send(list, WM_SETREDRAW, FALSE);
  Send(list, LB_RESETCONTENT);
  for (const GridRow& row : rows_) Send(list, LB_ADDSTRING, 0, row.text);
  const auto at = std::ranges::find_if(
      rows_, [&](const GridRow& row) { return row.text == last_ && row.is_heading == last_is_heading_; });
  Send(list, LB_SETCURSEL, at == rows_.end() ? 0 : static_cast<WPARAM>(at - rows_.begin()));
  Send(list, WM_SETREDRAW, TRUE);
  InvalidateRect(list, nullptr, TRUE);
  ShowEditor();
}

void PropertyGrid::Refresh(DISPID id) {
  if (!element_) return;
  const std::vector<Property>& properties = element_->Properties();
  for (std::size_t i = 0; i < properties.size(); ++i)
    if (id == DISPID_UNKNOWN || properties[i].id == id)
      values_[i] = ReadValue(element_->Dispatch(), properties[i]);
  InvalidateRect(Item(kList), nullptr, FALSE);
  const Property* current = CurrentProperty();
  if (!setting_ && current && (id == DISPID_UNKNOWN || id == current->id)) ShowEditor();
}

const GridRow* PropertyGrid::Current() const {
  const LRESULT row = Send(Item(kList), LB_GETCURSEL);
  return row >= 0 && static_cast<std::size_t>(row) < rows_.size() ? &rows_[static_cast<std::size_t>(row)]
                                                                  : nullptr;
}

const Property* PropertyGrid::CurrentProperty() const {
  const GridRow* row = Current();
  return row && !row->is_heading && element_ ? &element_->Properties()[row->entry] : nullptr;
}

void PropertyGrid::Fold(bool folded) {
  const GridRow* row = Current();
  if (!row || !row->is_heading || row->folded == folded) return;
  last_ = row->text;
  last_is_heading_ = true;
  if (folded)
    folded_.insert(row->text);
  else
    folded_.erase(row->text);
  FillList();
}

// --- The editor -------------------------------------------------------------------------------------------

HWND PropertyGrid::Editor() const {
  for (const int id : {kEdit, kChoices})
    if (GetWindowLongPtrW(Item(id), GWL_STYLE) & WS_VISIBLE) return Item(id);
  return nullptr;
}

void PropertyGrid::HideEditor() {
  const HWND focus = GetFocus();
  const bool had_focus = focus == Item(kEdit) || GetParent(focus) == Item(kChoices) || focus == Item(kMore);
  setting_ = true;  // it isn't left by the user
  for (const int id : {kEdit, kChoices, kMore}) ShowWindow(Item(id), SW_HIDE);
  setting_ = false;
  if (had_focus) Focus(Item(kList));
}

// In the row that is selected, with what the control says now.
void PropertyGrid::ShowEditor() {
  const Property* property = CurrentProperty();
  SetWindowTextW(Item(kHelp), property ? (property->name + L"\n" + property->help).c_str() : L"");
  if (!property || !property->can_set || property->kind == Kind::Other) return HideEditor();
  last_ = property->name;
  last_is_heading_ = false;
  const int shown = HasChoices(*property) ? kChoices : kEdit, other = shown == kEdit ? kChoices : kEdit;
  setting_ = true;
  ShowWindow(Item(other), SW_HIDE);
  if (shown == kChoices) {
    Send(Item(kChoices), CB_RESETCONTENT);
    for (const std::wstring& choice : ChoicesOf(*property)) Send(Item(kChoices), CB_ADDSTRING, 0, choice);
  }
  SetWindowTextW(Item(shown), Value(Current()->entry).c_str());
  ShowWindow(Item(shown), SW_SHOWNA);
  ShowWindow(Item(kMore), HasMore(*property) ? SW_SHOWNA : SW_HIDE);
  setting_ = false;
  PlaceEditor();
}

void PropertyGrid::PlaceEditor() {
  const HWND editor = Editor();
  if (!editor) return;
  RECT row = {}, list = {};
  Send(Item(kList), LB_GETITEMRECT, static_cast<WPARAM>(Send(Item(kList), LB_GETCURSEL)),
       reinterpret_cast<LPARAM>(&row));
  GetClientRect(Item(kList), &list);
  const int more = CurrentProperty() && HasMore(*CurrentProperty()) ? RowHeight() + look_.Pixels(4) : 0;
  const int height = static_cast<int>(row.bottom - row.top);
  row.left += NameWidth() + 1;
  if (row.top < 0 || row.bottom > list.bottom) row.top = -32000;  // scrolled out of sight
  MapWindowPoints(Item(kList), Window(), reinterpret_cast<POINT*>(&row), 2);
  const int width = static_cast<int>(row.right - row.left) - more;
  if (editor == Item(kChoices))
    Send(editor, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), height - look_.Pixels(6));
  const int inset = editor == Item(kEdit) ? look_.Pixels(3) : 0;
  SetWindowPos(editor, HWND_TOP, static_cast<int>(row.left) + inset, static_cast<int>(row.top) + inset,
               width - inset, editor == Item(kChoices) ? look_.Pixels(200) : height - inset - 1,
               SWP_NOACTIVATE);
  SetWindowPos(Item(kMore), HWND_TOP, static_cast<int>(row.right) - more, static_cast<int>(row.top), more,
               height, SWP_NOACTIVATE);
}

void PropertyGrid::BeginEdit(wchar_t first) {
  const HWND editor = Editor();
  if (!editor) return;
  SetFocus(editor);
  const HWND text = GetFocus();
  Send(text, EM_SETSEL, 0, -1);
  if (first) Send(text, WM_CHAR, first, 1);
}

void PropertyGrid::Commit() {
  const HWND editor = Editor();
  const GridRow* row = Current();
  if (setting_ || !editor || !row || row->is_heading) return;
  // A text that nobody touched isn't set: the control may show less than it holds.
  if (const std::wstring text = TextOf(editor); text != Value(row->entry)) Set(text);
}

// The row shows what the control says afterwards, whatever it was given.
void PropertyGrid::Set(const std::wstring& text) {
  const Property property = *CurrentProperty();
  setting_ = true;
  const example::ComPtr<IDispatch> control = &element_->Dispatch();  // it may be let go inside
  const auto complaint = WriteValue(*control.Get(), property, text);
  setting_ = false;
  owner_.OnTold(complaint ? property.name + L" stays as it was: " + *complaint : L"");
  Refresh(property.id);
}

void PropertyGrid::PressMore() {
  Commit();
  const Property* found = CurrentProperty();
  if (!found) return;
  const Property property = *found;
  if (property.kind == Kind::Colour) {
    const auto now = ParseColour(Value(Current()->entry));
    if (const auto colour = owner_.OnColourWanted(ColourOf(now.value_or(0)))) Set(ColourText(*colour));
  } else if (property.kind == Kind::Font) {
    const auto now = ReadFont(element_->Dispatch(), property);
    if (const auto font = owner_.OnFontWanted(now.value_or(FontValue{}))) Set(FontText(*font));
  } else {
    owner_.OnPageWanted(*element_, property.id);
  }
}

// --- Messages ---------------------------------------------------------------------------------------------

LRESULT PropertyGrid::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      Layout();
      return 0;
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return 0;
    case WM_MEASUREITEM:
      std::bit_cast<MEASUREITEMSTRUCT*>(lparam)->itemHeight = static_cast<UINT>(RowHeight());
      return TRUE;
    case WM_DRAWITEM:
      Draw(*std::bit_cast<const DRAWITEMSTRUCT*>(lparam));
      return TRUE;
    default:
      return window_.Default(message, wparam, lparam);
  }
}

void PropertyGrid::OnCommand(int id, int code) {
  if (id == kNames && code == CBN_SELCHANGE)
    owner_.OnChosen(static_cast<std::size_t>(Send(Item(kNames), CB_GETCURSEL)));
  else if (id == kList && code == LBN_SELCHANGE)
    ShowEditor();
  else if (id == kList && code == LBN_DBLCLK && Current())
    Current()->is_heading ? Fold(!Current()->folded) : BeginEdit(0);
  else if (id == kMore && code == BN_CLICKED)
    PressMore();
  else if ((id == kEdit && code == EN_KILLFOCUS) || (id == kChoices && code == CBN_KILLFOCUS))
    Commit();
  else if (id == kChoices && code == CBN_SELENDOK && !setting_) {
    // The text changes only after this message.
    const LRESULT chosen = Send(Item(kChoices), CB_GETCURSEL);
    const auto choices = CurrentProperty() ? ChoicesOf(*CurrentProperty()) : std::vector<std::wstring>();
    if (chosen >= 0 && static_cast<std::size_t>(chosen) < choices.size()) {
      const std::wstring& text = choices[static_cast<std::size_t>(chosen)];
      if (text != Value(Current()->entry)) Set(text);
    }
  }
}

LRESULT CALLBACK PropertyGrid::ListProcedure(HWND list, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                             DWORD_PTR grid) {
  auto& self = *std::bit_cast<PropertyGrid*>(grid);
  const auto* asked = std::bit_cast<const MSG*>(lparam);
  if (message == WM_GETDLGCODE && asked && asked->message == WM_KEYDOWN &&
      (asked->wParam == VK_RETURN || asked->wParam == VK_ESCAPE))
    return DLGC_WANTMESSAGE;
  if ((message == WM_KEYDOWN || message == WM_CHAR) && self.OnListKey(message, wparam)) return 0;
  if (message == WM_LBUTTONDOWN) self.Commit();
  const LRESULT result = DefSubclassProc(list, message, wparam, lparam);
  if (message == WM_VSCROLL || message == WM_MOUSEWHEEL || message == WM_KEYDOWN ||
      message == LB_SETTOPINDEX || message == WM_LBUTTONDOWN)
    self.PlaceEditor();
  return result;
}

// Whether the key was one of ours.
bool PropertyGrid::OnListKey(UINT message, WPARAM key) {
  if (message == WM_CHAR) {
    if (key < L' ') return true;
    BeginEdit(static_cast<wchar_t>(key));
    return true;
  }
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
      Fold(key == VK_LEFT);
      return true;
    case VK_RETURN:
    case VK_F2:
      if (Current() && Current()->is_heading)
        Fold(!Current()->folded);
      else
        BeginEdit(0);
      return true;
    case VK_ESCAPE:
      owner_.OnLeft();
      return true;
    default:
      return false;
  }
}

LRESULT CALLBACK PropertyGrid::EditProcedure(HWND edit, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                             DWORD_PTR grid) {
  auto& self = *std::bit_cast<PropertyGrid*>(grid);
  const auto* asked = std::bit_cast<const MSG*>(lparam);
  if (message == WM_GETDLGCODE && asked && (asked->wParam == VK_RETURN || asked->wParam == VK_ESCAPE))
    return DLGC_WANTMESSAGE;
  if (message == WM_CHAR && (wparam == L'\r' || wparam == L'\x1B')) return 0;  // no beep
  if (message == WM_KEYDOWN && self.OnEditKey(wparam)) return 0;
  return DefSubclassProc(edit, message, wparam, lparam);
}

bool PropertyGrid::OnEditKey(WPARAM key) {
  if (key == VK_RETURN) {
    Commit();
    Focus(Item(kList));
    return true;
  }
  if (key == VK_ESCAPE) {
    ShowEditor();  // with the value as it is
    Focus(Item(kList));
    return true;
  }
  const bool moves = (key == VK_UP || key == VK_DOWN) && Editor() == Item(kEdit);
  if (!moves) return false;
  Commit();
  Focus(Item(kList));
  Send(Item(kList), WM_KEYDOWN, key, 1);
  return true;
}

// --- Drawing ----------------------------------------------------------------------------------------------

int PropertyGrid::NameWidth() const {
  RECT inside = {};
  GetClientRect(Item(kList), &inside);
  return inside.right * 2 / 5;
}

void PropertyGrid::Draw(const DRAWITEMSTRUCT& item) {
  if (item.itemID >= rows_.size()) return;
  const GridRow& row = rows_[item.itemID];
  SetBkMode(item.hDC, TRANSPARENT);
  if (row.is_heading)
    DrawHeading(item.hDC, item.rcItem, row);
  else
    DrawProperty(item.hDC, item.rcItem, row, (item.itemState & ODS_SELECTED) != 0);
  if ((item.itemState & ODS_FOCUS) && row.is_heading) DrawFocusRect(item.hDC, &item.rcItem);
}

// With a minus before what can be folded, a plus before what is.
void PropertyGrid::DrawHeading(HDC dc, RECT rect, const GridRow& row) {
  FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE));
  const int box = look_.Pixels(9), middle = static_cast<int>(rect.top + rect.bottom) / 2;
  const int left = static_cast<int>(rect.left) + look_.Pixels(4), line = look_.Pixels(1);
  RECT frame = {left, middle - box / 2, left + box, middle - box / 2 + box};
  FillRect(dc, &frame, GetSysColorBrush(COLOR_WINDOW));
  FrameRect(dc, &frame, GetSysColorBrush(COLOR_BTNSHADOW));
  const int centre = static_cast<int>(frame.top) + box / 2, arm = look_.Pixels(2);
  RECT across = {left + arm, centre, left + box - arm, centre + line};
  FillRect(dc, &across, GetSysColorBrush(COLOR_WINDOWTEXT));
  if (row.folded) {
    RECT upright = {left + box / 2, frame.top + arm, left + box / 2 + line, frame.bottom - arm};
    FillRect(dc, &upright, GetSysColorBrush(COLOR_WINDOWTEXT));
  }
  rect.left = left + box + look_.Pixels(5);
  const HGDIOBJ old = SelectObject(dc, look_.Bold());
  SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
  DrawIn(dc, rect, row.text);
  SelectObject(dc, old);
}

void PropertyGrid::DrawProperty(HDC dc, const RECT& rect, const GridRow& row, bool selected) {
  const int middle = static_cast<int>(rect.left) + NameWidth();
  RECT name = {rect.left, rect.top, middle, rect.bottom},
       value = {middle + 1, rect.top, rect.right, rect.bottom};
  FillRect(dc, &rect, GetSysColorBrush(COLOR_WINDOW));
  if (selected) FillRect(dc, &name, GetSysColorBrush(COLOR_HIGHLIGHT));
  const RECT upright = {middle, rect.top, middle + 1, rect.bottom};
  const RECT below = {rect.left, rect.bottom - 1, rect.right, rect.bottom};
  FillRect(dc, &upright, GetSysColorBrush(COLOR_BTNFACE));
  FillRect(dc, &below, GetSysColorBrush(COLOR_BTNFACE));
  const bool can_set = element_ && element_->Properties()[row.entry].can_set;
  name.left += look_.Pixels(18);
  SetTextColor(dc, TextColour(selected, true));
  DrawIn(dc, name, row.text);
  SetTextColor(dc, TextColour(false, can_set));
  value.left += look_.Pixels(3);
  DrawValue(dc, value, row.entry);
}

// A colour with a sample of it.
void PropertyGrid::DrawValue(HDC dc, RECT rect, std::size_t entry) {
  const std::wstring value = Value(entry);
  const auto colour =
      element_ && element_->Properties()[entry].kind == Kind::Colour ? ParseColour(value) : std::nullopt;
  if (colour) {
    const int inset = look_.Pixels(3), height = static_cast<int>(rect.bottom - rect.top) - 2 * inset;
    RECT sample = {rect.left, rect.top + inset, rect.left + height * 3 / 2, rect.top + inset + height};
    const HBRUSH brush = CreateSolidBrush(ColourOf(*colour));
    FillRect(dc, &sample, brush);
    DeleteObject(brush);
    FrameRect(dc, &sample, GetSysColorBrush(COLOR_WINDOWTEXT));
    rect.left = sample.right + look_.Pixels(4);
  }
  DrawIn(dc, rect, value);
}

}  // namespace designer
