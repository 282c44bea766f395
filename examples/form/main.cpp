// A form with Marklet controls: how to place them, in one small program.
//
//   form                       shows the form until it is closed
//   form --picture FILE.png    shows it with the pointer on one control, writes a picture of it and ends
//
// A pane beside the controls shows each event as it arrives.
//
// The control must be registered: regsvr32 zvsMarklet.ocx
#include <windows.h>

#include <objbase.h>

#include <bit>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "contents.h"
#include "examples/shared/control.h"
#include "examples/shared/event_log.h"
#include "examples/shared/picture.h"
#include "examples/shared/program.h"

namespace form {
namespace {

using example::BesideProgram, example::Control, example::CreateEventPane, example::EventSink,
    example::HandleMessagesFor, example::SavePicture;
using Microsoft::WRL::ComPtr;

COLORREF Between(COLORREF first, COLORREF second, int part, int whole) {
  const auto mix = [&](int shift) {
    const int from = static_cast<int>(first >> shift & 255), to = static_cast<int>(second >> shift & 255);
    return static_cast<COLORREF>(from + (to - from) * part / whole) << shift;
  };
  return mix(0) | mix(8) | mix(16);
}

void FillWith(HDC dc, const RECT& rect, COLORREF colour) {
  const HBRUSH brush = CreateSolidBrush(colour);
  FillRect(dc, &rect, brush);
  DeleteObject(brush);
}

void DrawGradient(HDC dc, const RECT& place) {
  for (LONG x = place.left; x < place.right; ++x)
    FillWith(dc, {x, place.top, x + 1, place.bottom},
             Between(RGB(30, 60, 114), RGB(120, 190, 220), x - place.left, place.right - place.left));
}

// A night sky.
void DrawSky(HDC dc, const RECT& place) {
  for (LONG y = place.top; y < place.bottom; ++y)
    FillWith(dc, {place.left, y, place.right, y + 1},
             Between(RGB(12, 16, 40), RGB(84, 60, 110), y - place.top, place.bottom - place.top));
  unsigned place_of_star = 12345;
  for (int star = 0; star < 90; ++star) {
    place_of_star = place_of_star * 1103515245 + 12345;
    const LONG x = place.left + static_cast<LONG>(place_of_star >> 8) % (place.right - place.left);
    const LONG y = place.top + static_cast<LONG>(place_of_star >> 20) % (place.bottom - place.top);
    SetPixelV(dc, x, y, star % 3 ? RGB(200, 200, 230) : RGB(255, 255, 210));
  }
}

// Transparent controls have the window draw this where they stand, too.
void DrawScenery(HDC dc) {
  for (const Scenery& scenery : SceneryOfForm()) {
    if (scenery.kind == Scenery::Kind::Gradient) DrawGradient(dc, scenery.place);
    if (scenery.kind == Scenery::Kind::Picture) DrawSky(dc, scenery.place);
  }
}

// A group box lies below the controls that it goes around. The form paints its inside: a transparent window
// isn't spared.
void PlaceGroupBoxes(HWND window) {
  for (const Scenery& scenery : SceneryOfForm()) {
    if (scenery.kind != Scenery::Kind::GroupBox) continue;
    const RECT& place = scenery.place;
    const HWND box = CreateWindowExW(
        WS_EX_TRANSPARENT, L"Button", L"Group", WS_CHILD | WS_VISIBLE | BS_GROUPBOX, place.left, place.top,
        place.right - place.left, place.bottom - place.top, window, nullptr, nullptr, nullptr);
    SendMessageW(box, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
    SetWindowPos(box, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  }
}

LRESULT CALLBACK FormProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  // The controls leave the window before it goes.
  if (message == WM_CLOSE) {
    PostQuitMessage(0);
    return 0;
  }
  const LRESULT result = DefWindowProcW(window, message, wparam, lparam);
  if (message == WM_ERASEBKGND) DrawScenery(std::bit_cast<HDC>(wparam));
  return result;
}

constexpr int kPaneWidth = 280, kPaneMargin = 20;

RECT PanePlace() {
  const SIZE size = ContentsSize();
  return {size.cx, kPaneMargin, size.cx + kPaneWidth, size.cy - kPaneMargin};
}

HWND CreateForm() {
  WNDCLASSW description = {};
  description.lpfnWndProc = FormProcedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  description.lpszClassName = L"Marklet form";
  RegisterClassW(&description);
  constexpr DWORD style = WS_OVERLAPPEDWINDOW & ~static_cast<DWORD>(WS_THICKFRAME | WS_MAXIMIZEBOX);
  const RECT pane = PanePlace();
  RECT frame = {0, 0, pane.right + kPaneMargin, pane.bottom + kPaneMargin};
  AdjustWindowRect(&frame, style, FALSE);
  return CreateWindowW(description.lpszClassName, L"Marklet", style | WS_CLIPCHILDREN, CW_USEDEFAULT,
                       CW_USEDEFAULT, frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr,
                       description.hInstance, nullptr);
}

std::unique_ptr<Control> Place(HWND window, const Item& item) {
  auto control = std::make_unique<Control>(window, item.place);
  for (const Image& image : item.images) {
    const std::wstring file = BesideProgram(image.file);
    if (!control->LoadImage(file.c_str(), image.key))
      std::fwprintf(stderr, L"form: can't load %ls\n", file.c_str());
  }
  for (const Property& property : item.properties)
    std::visit([&](auto value) { control->Set(property.name, value); }, property.value);
  return control;
}

// What the control is called in the pane: the start of its caption.
std::wstring NameOf(const Item& item) {
  constexpr std::size_t kLongest = 16;
  for (const Property& property : item.properties) {
    if (property.name != std::wstring_view(L"Caption")) continue;
    const std::wstring caption = std::get<const wchar_t*>(property.value);
    return caption.size() <= kLongest ? caption : caption.substr(0, kLongest) + L"...";
  }
  return L"?";
}

// The pointer comes to rest on the control with a hover image and a tip.
void PointAtHoverImage(HWND window) {
  for (const Item& item : Contents())
    for (const Property& property : item.properties) {
      if (property.name != std::wstring_view(L"ImageKeyhover")) continue;
      POINT place = {item.place.left + 120, item.place.top + 30};
      ClientToScreen(window, &place);
      SetCursorPos(place.x - 5, place.y);
      HandleMessagesFor(100);
      SetCursorPos(place.x, place.y);
    }
}

void HandleMessages() {
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

int Show(const std::wstring& picture_file) {
  const HWND window = CreateForm();
  std::vector<std::unique_ptr<Control>> controls;
  const HWND pane = CreateEventPane(window, PanePlace());
  for (const Item& item : Contents()) {
    controls.push_back(Place(window, item));
    if (!item.is_title) controls.back()->Listen(ComPtr<IDispatch>(new EventSink(pane, NameOf(item))).Get());
  }
  PlaceGroupBoxes(window);
  ShowWindow(window, SW_SHOW);
  UpdateWindow(window);
  int result = 0;
  if (picture_file.empty()) {
    HandleMessages();
  } else {
    HandleMessagesFor(500);
    PointAtHoverImage(window);
    HandleMessagesFor(2000);
    if (!SavePicture(window, picture_file)) {
      std::fwprintf(stderr, L"form: can't write %ls\n", picture_file.c_str());
      result = 1;
    }
  }
  controls.clear();
  DestroyWindow(window);
  return result;
}

int Run(const std::vector<std::wstring>& arguments) {
  std::wstring picture_file;
  if (arguments.size() == 2 && arguments[0] == L"--picture") {
    picture_file = arguments[1];
  } else if (!arguments.empty()) {
    std::fwprintf(stderr, L"usage: form [--picture FILE.png]\n");
    return 2;
  }
  try {
    return Show(picture_file);
  } catch (HRESULT result) {
    std::fwprintf(stderr, L"form: failed with 0x%08lX; is zvsMarklet.ocx registered?\n",
                  static_cast<unsigned long>(result));
    return 1;
  }
}

}  // namespace
}  // namespace form

int main() {
  if (FAILED(OleInitialize(nullptr))) return 1;
  const int result = form::Run(example::Arguments());
  OleUninitialize();
  return result;
}
