#include "sample.h"

#include <bit>

#include "commands.h"
#include "examples/shared/picture.h"
#include "examples/shared/program.h"

namespace designer {
namespace {

struct Item {
  Place place;  // at 96 pixels an inch
  const wchar_t *caption, *image;
  LONG size;  // of the font, in points
};
constexpr Item kItems[] = {
    {{16, 8, 392, 40}, L"<b>Parcels</b> for <a>Jane Doe</a>", L"", 18},
    {{16, 56, 392, 56}, L"<b>2 parcels</b> arrived <c=1E7B34>today</c>", L"parcel", 11},
    {{16, 128, 392, 56}, L"One is <c=C00000><i>late</i></c>: ask at the counter", L"lamp", 11}};
constexpr int kFormWidth = 440, kFormHeight = 200;
constexpr const wchar_t* kImages[][2] = {{L"images\\logo.png", L"logo"},
                                         {L"images\\lamp.png", L"lamp"},
                                         {L"images\\lamp-lit.png", L"lit"},
                                         {L"images\\star.png", L"star"},
                                         {L"images\\parcel.ico", L"parcel"}};
constexpr LONG k48 = 3;  // an ImageSize

constexpr int kStrip = 104, kBrowse = 106;  // on the page for images

// The page's window, which is the parent of its button.
BOOL CALLBACK FindStrip(HWND window, LPARAM found) {
  const bool is_there = GetDlgCtrlID(window) == kStrip && GetDlgItem(GetParent(window), kBrowse);
  if (is_there) *std::bit_cast<HWND*>(found) = window;
  return !is_there;
}
BOOL CALLBACK FindStripIn(HWND window, LPARAM found) {
  EnumChildWindows(window, FindStrip, found);
  return *std::bit_cast<HWND*>(found) == nullptr;
}
HWND StripOfPage() {
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindStripIn, reinterpret_cast<LPARAM>(&found));
  return found;
}

// The frame runs a loop of its own, in which the timer finds the page.
struct Request {
  HWND window;
  std::wstring file;
  UINT_PTR timer;
  bool done;
};
Request request;

void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND strip = StripOfPage();
  if (!strip || !IsWindowVisible(strip)) return;
  KillTimer(nullptr, timer);
  const HWND frame = GetAncestor(strip, GA_ROOT);
  RECT whole = {}, over = {};
  GetWindowRect(request.window, &whole);
  GetWindowRect(frame, &over);
  const int left = static_cast<int>(whole.left) + 60,
            top = static_cast<int>(whole.bottom - (over.bottom - over.top)) - 32;
  SetWindowPos(frame, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  SendMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 8));
  SendMessageW(strip, WM_LBUTTONUP, 0, MAKELPARAM(30, 8));
  example::HandleMessagesFor(1000);
  GetWindowRect(frame, &over);
  UnionRect(&whole, &whole, &over);
  const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  IntersectRect(&whole, &whole, &screen);
  request.done = example::SavePicture(whole, request.file);
  PostMessageW(GetParent(GetParent(strip)), WM_COMMAND, IDCANCEL, 0);
  PostMessageW(frame, WM_COMMAND, IDCANCEL, 0);
}

}  // namespace

void PlaceSample(Designer& designer) {
  for (const Item& item : kItems) {
    SendMessageW(designer.Window(), WM_COMMAND, kPlace, 0);
    Element& element = *designer.Form().Elements().back();
    example::Control& control = element.Control();
    control.Set(L"FontSize", item.size);
    control.Set(L"Caption", item.caption);
    for (const auto& [file, key] : kImages) control.LoadImage(example::BesideProgram(file).c_str(), key);
    control.Set(L"ImageSize", k48);
    control.Set(L"ImageKey", item.image);
    element.Move(ToPixels(ToTwips(item.place, 96), SystemPerInch()));
  }
  designer.Form().Resize({Scaled(kFormWidth, SystemPerInch(), 96), Scaled(kFormHeight, SystemPerInch(), 96)});
  designer.Form().Select(designer.Form().Elements()[1].get());
  designer.Grid().Select(L"ImageKey");
}

bool TakePicture(Designer& designer, const std::wstring& file) {
  example::HandleMessagesFor(500);
  request = {designer.Window(), file, 0, false};
  request.timer = SetTimer(nullptr, 0, 100, OnTimer);
  SendMessageW(designer.Window(), WM_COMMAND, kShowPages, 0);
  KillTimer(nullptr, request.timer);
  return request.done;
}

}  // namespace designer
