#include "surface.h"

#include <windowsx.h>

#include <algorithm>
#include <array>
#include <bit>

#include "property_value.h"

namespace designer {
namespace {

constexpr UINT kRemoveClosed = WM_APP + 1;
constexpr int kDefaultWidth = 480, kDefaultHeight = 320;  // of a form, at 96 pixels an inch
constexpr int kNewWidth = 160, kNewHeight = 32;
constexpr int kLeast = 8;

Point PointOf(LPARAM position) { return {GET_X_LPARAM(position), GET_Y_LPARAM(position)}; }

// By the grip that the pointer is on.
constexpr WORD kArrow = 32512, kFalling = 32642, kRising = 32643, kAcross = 32644, kUpright = 32645,
               kAll = 32646;
constexpr WORD kCursors[] = {kFalling, kUpright, kRising,  kAcross, kAcross,
                             kRising,  kUpright, kFalling, kAll,    kArrow};
static_assert(std::size(kCursors) == static_cast<std::size_t>(Grip::None) + 1);

bool IsDown(int key) { return GetKeyState(key) < 0; }

}  // namespace

Surface::Surface(SurfaceOwner& owner, HWND parent, int per_inch) : owner_(owner), per_inch_(per_inch) {
  constexpr DWORD kChild = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
  form_.Create({L"MarkletDesignerForm", L"Form", kChild | WS_CLIPCHILDREN | WS_CAPTION | WS_THICKFRAME},
               parent, {}, [this](UINT message, WPARAM w, LPARAM l) { return OnForm(message, w, l); });
  glass_.Create({L"MarkletDesignerGlass", L"", kChild | WS_TABSTOP, WS_EX_TRANSPARENT}, Window(), {},
                [this](UINT message, WPARAM w, LPARAM l) { return OnGlass(message, w, l); });
  frame_.Create({L"MarkletDesignerFrame", L"", WS_CHILD | WS_CLIPSIBLINGS}, Window(), {},
                [this](UINT message, WPARAM w, LPARAM l) { return OnFrame(message, w, l); });
  form_.Default(WM_NCACTIVATE, TRUE, 0);  // its title is that of a window in use
  Resize({Pixels(kDefaultWidth), Pixels(kDefaultHeight)});
}

// Controls go before the windows that they are in.
Surface::~Surface() {
  selected_ = nullptr;
  elements_.clear();
}

// --- What is on the form ----------------------------------------------------------------------------------

Element* Surface::At(Point point) const {
  for (auto element = elements_.rbegin(); element != elements_.rend(); ++element)
    if ((*element)->GetPlace().Has(point)) return element->get();
  return nullptr;
}

void Surface::Select(Element* element) {
  if (element == selected_) return;
  EndDrag(true);
  selected_ = element;
  ShowFrame();
  owner_.OnSelected();
}

void Surface::SelectNext(bool back) {
  if (elements_.empty()) return;
  const auto at = std::ranges::find(elements_, selected_, &std::unique_ptr<Element>::get);
  const std::size_t count = elements_.size();
  std::size_t next = back ? count - 1 : 0;
  if (at != elements_.end())
    next = (static_cast<std::size_t>(at - elements_.begin()) + (back ? count - 1 : 1)) % count;
  Select(elements_[next].get());
}

std::wstring Surface::NewName(const Tool& tool) const {
  for (int number = 1;; ++number) {
    std::wstring name = tool.name + std::to_wstring(number);
    if (std::ranges::none_of(elements_, [&](const auto& element) { return element->Name() == name; }))
      return name;
  }
}

// The first step of the stairs down from the corner on which nothing stands.
Place Surface::NewPlace() const {
  const SIZE size = Size();
  const int step = Grid() * 2;
  Place place = {step, step, Pixels(kNewWidth), Pixels(kNewHeight)};
  const auto taken = [&](const Place& other) { return other.left == place.left && other.top == place.top; };
  while (std::ranges::any_of(elements_, [&](const auto& element) { return taken(element->GetPlace()); })) {
    place.top += place.height + Grid();
    if (place.Bottom() <= size.cy) continue;
    place.top = step;
    place.left += step;
  }
  return KeptOn(place, size.cx, size.cy, Pixels(kLeast));
}

Element& Surface::PlaceNew(const Tool& tool) {
  if (elements_.size() >= kMostControls) throw Refusal{L"The form is full."};
  try {
    auto element =
        std::make_unique<Element>(*this, Window(), tool.id, NewName(tool), NewPlace(), example::StartNew);
    elements_.push_back(std::move(element));
  } catch (HRESULT result) {
    throw Refusal{L"The control " + tool.name + L" can't be created. " + FailureText(result)};
  }
  RaiseGlass();
  Select(elements_.back().get());
  owner_.OnFormChanged();
  return *elements_.back();
}

void Surface::DeleteSelected() {
  const auto at = std::ranges::find(elements_, selected_, &std::unique_ptr<Element>::get);
  if (!selected_ || at == elements_.end()) return;
  Select(nullptr);
  const std::unique_ptr<Element> gone = std::move(*at);
  elements_.erase(at);
  owner_.OnFormChanged();
  InvalidateRect(Window(), nullptr, TRUE);
}

void Surface::Clear() {
  Select(nullptr);
  elements_.clear();
  Resize({Pixels(kDefaultWidth), Pixels(kDefaultHeight)});
}

// --- Saved forms ------------------------------------------------------------------------------------------

SavedForm Surface::Saved() const {
  const SIZE size = Size();
  SavedForm form = {ToTwips(size.cx, per_inch_), ToTwips(size.cy, per_inch_), {}};
  for (const auto& element : elements_) {
    SavedControl control;
    control.class_id = std::bit_cast<decltype(control.class_id)>(element->ClassId());
    control.name.assign(element->Name().begin(), element->Name().end());
    control.place = ToTwips(element->GetPlace(), per_inch_);
    try {
      control.state = element->Save();
    } catch (HRESULT result) {
      throw Refusal{element->Name() + L" can't be saved. " + FailureText(result)};
    }
    form.controls.push_back(std::move(control));
  }
  return form;
}

// A class that nobody offers isn't created, whatever a file says.
void Surface::Load(const SavedForm& form, const std::vector<Tool>& tools) {
  std::vector<std::unique_ptr<Element>> loaded;
  for (const SavedControl& control : form.controls) {
    const auto id = std::bit_cast<CLSID>(control.class_id);
    const std::wstring name(control.name.begin(), control.name.end());
    if (std::ranges::none_of(tools, [&](const Tool& tool) { return tool.id == id; }))
      throw Refusal{name + L" is a control that this program doesn't offer."};
    try {
      loaded.push_back(
          std::make_unique<Element>(*this, Window(), id, name, ToPixels(control.place, per_inch_),
                                    [&](IOleObject& object) { example::StartFrom(object, control.state); }));
    } catch (HRESULT result) {
      throw Refusal{name + L" can't be loaded. " + FailureText(result)};
    }
  }
  Select(nullptr);
  elements_ = std::move(loaded);
  Resize({ToPixels(form.width, per_inch_), ToPixels(form.height, per_inch_)});
  RaiseGlass();
}

// --- What controls do -------------------------------------------------------------------------------------

void Surface::OnChanged(Element& element, DISPID id) {
  owner_.OnPropertyChanged(element, id);
  owner_.OnFormChanged();
}

void Surface::OnPlaced(Element& element) {
  if (moving_) return;
  if (&element == selected_) ShowFrame();
  owner_.OnFormChanged();
}

// The control still runs: it is let go when its call has ended.
void Surface::OnClosed(Element& element) { PostMessageW(Window(), kRemoveClosed, 0, element.Number()); }

void Surface::RemoveClosed(LPARAM number) {
  const auto at = std::ranges::find(elements_, number, [](const auto& element) { return element->Number(); });
  if (at == elements_.end()) return;
  if (at->get() == selected_) Select(nullptr);
  const std::unique_ptr<Element> gone = std::move(*at);
  elements_.erase(at);
  owner_.OnRemoved(gone->Name());
  owner_.OnFormChanged();
}

// --- The form's window ------------------------------------------------------------------------------------

SIZE Surface::Size() const {
  RECT inside = {};
  GetClientRect(Window(), &inside);
  return {inside.right, inside.bottom};
}

void Surface::Resize(SIZE size) {
  RECT outside = {0, 0, size.cx, size.cy};
  AdjustWindowRectEx(&outside, static_cast<DWORD>(GetWindowLongPtrW(Window(), GWL_STYLE)), FALSE, 0);
  SetWindowPos(Window(), nullptr, 0, 0, outside.right - outside.left, outside.bottom - outside.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT Surface::OnForm(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_ERASEBKGND:
    case WM_PRINTCLIENT:  // for controls that show what lies behind them
      PaintForm(std::bit_cast<HDC>(wparam));
      return 1;
    case WM_PAINT: {
      const Painting painting(Window());
      for (const auto& element : elements_)
        if (!element->Window()) element->Paint(painting.Dc());
      return 0;
    }
    case WM_SIZE:
      SetWindowPos(Glass(), nullptr, 0, 0, LOWORD(lparam), HIWORD(lparam),
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      owner_.OnFormSized();
      return 0;
    case WM_EXITSIZEMOVE:
      owner_.OnFormChanged();
      return 0;
    case WM_NCHITTEST: {  // its corner stays; the other edges can be dragged
      const LRESULT hit = form_.Default(message, wparam, lparam);
      return hit == HTRIGHT || hit == HTBOTTOM || hit == HTBOTTOMRIGHT || hit == HTCLIENT ? hit : HTBORDER;
    }
    case kRemoveClosed:
      RemoveClosed(lparam);
      return 0;
    default:
      return form_.Default(message, wparam, lparam);
  }
}

void Surface::PaintForm(HDC dc) {
  const SIZE size = Size();
  const RECT all = {0, 0, size.cx, size.cy};
  FillRect(dc, &all, GetSysColorBrush(COLOR_BTNFACE));
  const COLORREF dots = GetSysColor(COLOR_BTNSHADOW);
  const int grid = Grid();
  for (int y = grid; y < size.cy; y += grid)
    for (int x = grid; x < size.cx; x += grid) SetPixelV(dc, x, y, dots);
}

// --- Handles ----------------------------------------------------------------------------------------------

// New windows come below all others; later controls belong above earlier ones.
void Surface::RaiseGlass() {
  const auto raise = [](HWND window) {
    SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  };
  for (const auto& element : elements_)
    if (element->Window()) raise(element->Window());
  raise(Glass());
  raise(frame_.Handle());
}

// The window is as large as all handles, and has their shape.
void Surface::ShowFrame() {
  if (!selected_) {
    ShowWindow(frame_.Handle(), SW_HIDE);
    return;
  }
  const Place place = selected_->GetPlace();
  const int size = HandleSize();
  const HRGN shape = CreateRectRgn(0, 0, 0, 0);
  for (const Place& handle : HandlesAround({size, size, place.width, place.height}, size)) {
    const HRGN square = CreateRectRgn(handle.left, handle.top, handle.Right(), handle.Bottom());
    CombineRgn(shape, shape, square, RGN_OR);
    DeleteObject(square);
  }
  SetWindowPos(frame_.Handle(), HWND_TOP, place.left - size, place.top - size, place.width + 2 * size,
               place.height + 2 * size, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  SetWindowRgn(frame_.Handle(), shape, TRUE);  // which takes it
}

LRESULT Surface::OnFrame(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NCHITTEST) return HTTRANSPARENT;
  if (message != WM_PAINT) return frame_.Default(message, wparam, lparam);
  const Painting painting(frame_.Handle());
  PaintFrame(painting.Dc());
  return 0;
}

void Surface::PaintFrame(HDC dc) {
  if (!selected_) return;
  const Place place = selected_->GetPlace();
  const int size = HandleSize();
  for (const Place& handle : HandlesAround({size, size, place.width, place.height}, size)) {
    RECT rect = RectOf(handle);
    FillRect(dc, &rect, GetSysColorBrush(COLOR_HIGHLIGHTTEXT));
    InflateRect(&rect, -1, -1);
    FillRect(dc, &rect, GetSysColorBrush(COLOR_HIGHLIGHT));
  }
}

// --- The user ---------------------------------------------------------------------------------------------

LRESULT Surface::OnGlass(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      ValidateRect(Glass(), nullptr);
      return 0;
    case WM_LBUTTONDOWN:
      OnButton(PointOf(lparam));
      return 0;
    case WM_MOUSEMOVE:
      OnMouse(PointOf(lparam), (wparam & MK_CONTROL) != 0);
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      EndDrag(true);
      return 0;
    case WM_LBUTTONDBLCLK:
      if (selected_ && At(PointOf(lparam)) == selected_) owner_.OnShowPages(*selected_);
      return 0;
    case WM_SETCURSOR:
      ShowCursor();
      return TRUE;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTTAB;
    case WM_KEYDOWN:
      OnKey(wparam);
      return 0;
    default:
      return glass_.Default(message, wparam, lparam);
  }
}

void Surface::OnButton(Point point) {
  Focus(Glass());
  Grip grip = selected_ ? GripAt(selected_->GetPlace(), HandleSize(), point) : Grip::None;
  if (grip == Grip::None || grip == Grip::Body) {
    Select(At(point));
    grip = Grip::Body;
  }
  if (!selected_) return;
  drag_ = {grip, point, selected_->GetPlace()};
  SetCapture(Glass());
}

void Surface::OnMouse(Point point, bool off_grid) {
  if (!drag_ || !selected_) return;
  MoveSelected(Dragged(drag_->before, drag_->grip, point.x - drag_->from.x, point.y - drag_->from.y,
                       off_grid ? 1 : Grid(), Pixels(kLeast)));
}

// Releasing the mouse comes here once more, with nothing left to do.
void Surface::EndDrag(bool keep) {
  if (!drag_) return;
  const Place before = drag_->before;
  drag_.reset();
  if (GetCapture() == Glass()) ReleaseCapture();
  if (!keep && selected_) MoveSelected(before);
}

void Surface::ShowCursor() {
  POINT pointer = {};
  GetCursorPos(&pointer);
  ScreenToClient(Glass(), &pointer);
  const Point point = {static_cast<int>(pointer.x), static_cast<int>(pointer.y)};
  Grip grip = selected_ ? GripAt(selected_->GetPlace(), HandleSize(), point) : Grip::None;
  if (grip == Grip::None && At(point)) grip = Grip::Body;
  if (drag_) grip = drag_->grip;
  SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(kCursors[static_cast<std::size_t>(grip)])));
}

void Surface::OnKey(WPARAM key) {
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
      return OnArrow(key);
    case VK_TAB:
      return SelectNext(IsDown(VK_SHIFT));
    case VK_DELETE:
      return DeleteSelected();
    case VK_ESCAPE:
      return drag_ ? EndDrag(false) : Select(nullptr);
    default:
      return;
  }
}

// Without a control that is selected, Shift changes the size of the form.
void Surface::OnArrow(WPARAM key) {
  const bool off_grid = IsDown(VK_CONTROL), resizes = IsDown(VK_SHIFT);
  const int grid = off_grid ? 1 : Grid();
  const int dx = key == VK_LEFT ? -grid : key == VK_RIGHT ? grid : 0;
  const int dy = key == VK_UP ? -grid : key == VK_DOWN ? grid : 0;
  if (selected_) {
    MoveSelected(Dragged(selected_->GetPlace(), resizes ? (dx ? Grip::Right : Grip::Bottom) : Grip::Body, dx,
                         dy, grid, Pixels(kLeast)));
  } else if (resizes) {
    const SIZE size = Size();
    Resize({std::max<LONG>(size.cx + dx, grid), std::max<LONG>(size.cy + dy, grid)});
    owner_.OnFormChanged();
  }
}

// A control may take another place than it gets, as one that follows its text does.
void Surface::MoveSelected(const Place& place) {
  const SIZE size = Size();
  const Place before = selected_->GetPlace(), wished = KeptOn(place, size.cx, size.cy, Pixels(kLeast));
  if (wished == before) return;
  moving_ = true;
  selected_->Move(wished);
  moving_ = false;
  ShowFrame();
  if (!selected_->Window()) InvalidateRect(Window(), nullptr, TRUE);
  owner_.OnFormChanged();
}

}  // namespace designer
