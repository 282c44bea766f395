// Containers that do anything at all from inside a paint message, in the calls that the control makes while
// it builds its picture: the container's object, a member of it, an ambient property.
#include <array>
#include <bit>
#include <cwchar>
#include <functional>
#include <string>
#include <vector>

#include "activex/container.h"
#include "activex/other_system_colour.h"
#include "activex/saving.h"
#include "platform/system_colours.h"

namespace ocx_test {
namespace {

// Whether a paint message of a watched window is being answered.
int paints = 0;
WNDPROC former_procedure = nullptr;
LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_PAINT) ++paints;
  const LRESULT result = CallWindowProcW(former_procedure, window, message, wparam, lparam);
  if (message == WM_PAINT) --paints;
  return result;
}
void WatchPaints(HWND window) {
  former_procedure =
      std::bit_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Watch)));
}

bool HeapsAreSound() {
  std::array<HANDLE, 64> heaps = {};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  for (DWORD i = 0; i < count && i < heaps.size(); ++i)
    if (!HeapValidate(heaps[i], 0, nullptr)) return false;
  return true;
}

void SetRects(Container& container, const RECT& rect) {
  if (const auto in_place = As<IOleInPlaceObject>(container.Object())) in_place->SetObjectRects(&rect, &rect);
}
void DoVerb(Container& container, LONG verb) { container.Activate(verb); }

// What a container may do while the control paints.
struct Deed {
  const char* name;
  void (*run)(Container& container);
};
const Deed kDeeds[] = {
    {"nothing", [](Container&) {}},
    {"release", [](Container& c) { c.Drop(); }},
    {"close", [](Container& c) { As<IOleObject>(c.Object())->Close(OLECLOSE_NOSAVE); }},
    {"close and release", [](Container& c) { c.Close(); }},
    {"deactivate", [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); }},
    {"deactivate and activate",
     [](Container& c) {
       As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate();
       DoVerb(c, OLEIVERB_INPLACEACTIVATE);
       UpdateWindow(c.ControlWindow());
     }},
    {"hide", [](Container& c) { DoVerb(c, OLEIVERB_HIDE); }},
    {"hide and show",
     [](Container& c) {
       DoVerb(c, OLEIVERB_HIDE);
       DoVerb(c, OLEIVERB_SHOW);
     }},
    {"activate the user interface", [](Container& c) { DoVerb(c, OLEIVERB_UIACTIVATE); }},
    {"take the site away", [](Container& c) { As<IOleObject>(c.Object())->SetClientSite(nullptr); }},
    {"resize",
     [](Container& c) {
       SetRects(c, {0, 0, 33, 22});
     }},
    {"resize to nothing", [](Container& c) { SetRects(c, {}); }},
    {"another extent",
     [](Container& c) {
       SIZEL size = {5000, 5000};
       As<IOleObject>(c.Object())->SetExtent(DVASPECT_CONTENT, &size);
     }},
    {"load a stream", [](Container& c) { LoadFromStream(c.Object(), SavedForm()); }},
    {"load a bag",
     [](Container& c) {
       MemoryBag bag;
       PutSavedForm(bag);
       LoadFromBag(c.Object(), bag);
     }},
    {"save", [](Container& c) { SaveToStream(c.Object()); }},
    {"start anew", [](Container& c) { As<IPersistStreamInit>(c.Object())->InitNew(); }},
    {"destroy the container's window", [](Container& c) { DestroyWindow(c.Window()); }},
    {"destroy the control's window", [](Container& c) { DestroyWindow(c.ControlWindow()); }},
    {"set the caption", [](Container& c) { PutText(c.Dispatch().Get(), L"Caption", L"inside"); }},
    {"set the font", [](Container& c) { PutNumber(c.Dispatch().Get(), L"FontSize", 20); }},
    {"set a member of the font object",
     [](Container& c) {
       Variant font;
       GetByName(c.Dispatch().Get(), L"Font", font);
       As<IFont>(font.pdispVal)->put_Bold(TRUE);
     }},
    {"take the border away", [](Container& c) { PutNumber(c.Dispatch().Get(), L"BorderStyle", 0); }},
    {"size it automatically",
     [](Container& c) { PutByName(c.Dispatch().Get(), L"AutoSize", Variant::Bool(true)); }},
    {"draw it",
     [](Container& c) {
       const HDC dc = CreateCompatibleDC(nullptr);
       const RECTL bounds = {0, 0, 10, 10};
       As<IViewObject>(c.Object())
           ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0);
       DeleteDC(dc);
     }},
    {"paint it now",
     [](Container& c) {
       RedrawWindow(c.ControlWindow(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
     }},
    {"send it a print message",
     [](Container& c) {
       const HDC dc = CreateCompatibleDC(nullptr);
       SendMessageW(c.ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
       DeleteDC(dc);
     }},
    {"send it a size message", [](Container& c) { SendMessageW(c.ControlWindow(), WM_SIZE, 0, 0); }},
    {"click it",
     [](Container& c) {
       SendMessageW(c.ControlWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
       SendMessageW(c.ControlWindow(), WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
     }},
    {"handle all messages", [](Container&) { PumpMessages(); }},
    {"freeze events", [](Container& c) { As<IOleControl>(c.Object())->FreezeEvents(TRUE); }},
    {"other ambient properties",
     [](Container& c) {
       c.ambients.user_mode = !c.ambients.user_mode;
       As<IOleControl>(c.Object())->OnAmbientPropertyChange(DISPID_UNKNOWN);
     }},
};

// A look for which the control asks its container something while it paints.
struct Look {
  const char* asked;  // as the container hears it
  void (*put_on)(IDispatch* object);
};
void WearBorder(IDispatch* object) { PutNumber(object, L"BorderStyle", 1); }
void WearNothing(IDispatch* object) {
  PutText(object, L"Caption", L"");
  PutNumber(object, L"BackStyle", 0);
}
const Look kLooks[] = {
    {"container", WearBorder},
    {"member", WearBorder},
    {"ambient -701", WearBorder},  // the member's value
    {"ambient -709", WearNothing},
};

// A control that is painted, and what happens inside.
class Round {
 public:
  Round() = default;
  ~Round() { container.on_read = nullptr; }
  Round(const Round&) = delete;
  Round& operator=(const Round&) = delete;

  Container container;

  // Runs `deed` once, in the first paint message in which the control asks for that.
  void Paint(const Look& look, const std::function<void()>& deed) {
    container.on_read = [](const std::string&) {};
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    PutText(container.Dispatch().Get(), L"Caption", L"before");
    look.put_on(container.Dispatch().Get());
    const HWND window = container.ControlWindow();
    UpdateWindow(window);
    WatchPaints(window);
    bool done = false;
    container.on_read = [&](const std::string& what) {
      if (done || paints == 0 || what != look.asked) return;
      done = true;
      deed();
    };
    {
      // The paint message builds the picture anew.
      const OtherSystemColour colour(marklet::COLOR_BTNTEXT);
      InvalidateRect(window, nullptr, TRUE);
      UpdateWindow(window);
    }
    EXPECT_TRUE(done) << "no paint message asked for it";
    EXPECT_EQ(0, paints);
  }
};

TEST(PaintReentry, AnythingMayHappenInsideAPaintMessage) {
  for (const Look& look : kLooks)
    for (const Deed& deed : kDeeds) {
      SCOPED_TRACE(std::string(look.asked) + ": " + deed.name);
      Round round;
      round.Paint(look, [&] { deed.run(round.container); });
      PumpMessages();
      ASSERT_TRUE(HeapsAreSound());
      if (!round.container.Object()) continue;
      const auto object = round.container.Dispatch();
      PutText(object.Get(), L"Caption", L"after");
      EXPECT_EQ(L"after", GetText(object.Get(), L"Caption"));
      UpdateWindow(round.container.ControlWindow());
    }
  PumpMessages();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

// The system lends the contexts of windows that are gone to other windows.
TEST(PaintReentry, NothingIsPaintedOnTheWindowThatHasTheContextNow) {
  constexpr int kEdge = 60;
  HWND other = nullptr;
  std::vector<HDC> contexts(80);  // more than the system has in store
  Round round;
  round.Paint(kLooks[0], [&] {
    DestroyWindow(round.container.ControlWindow());
    other = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE | SS_WHITERECT, 0, 0, kEdge, kEdge,
                            nullptr, nullptr, nullptr, nullptr);
    for (HDC& dc : contexts) dc = GetDC(other);
    const RECT all = {0, 0, kEdge, kEdge};
    FillRect(contexts[0], &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  });
  const HDC fresh = GetDC(other);
  for (int at = 0; at < kEdge; ++at) ASSERT_EQ(COLORREF{0xFFFFFF}, GetPixel(fresh, at, at)) << at;
  ReleaseDC(other, fresh);
  for (const HDC dc : contexts) {
    EXPECT_EQ(other, WindowFromDC(dc)) << "the end of the paint message took it away";
    EXPECT_EQ(1, ReleaseDC(other, dc));
  }
  DestroyWindow(other);
}

TEST(PaintReentry, SettersPaintOnTheWindowThatComesAfterOneThatWentInside) {
  Round round;
  round.Paint(kLooks[0], [&] { DestroyWindow(round.container.ControlWindow()); });
  ASSERT_EQ(S_OK, round.container.Activate(OLEIVERB_SHOW));
  const HWND window = round.container.ControlWindow();
  ASSERT_TRUE(window);
  UpdateWindow(window);
  const auto object = round.container.Dispatch();
  PutNumber(object.Get(), L"BorderStyle", 0);
  PutNumber(object.Get(), L"BackColor", 0x123456);
  const HDC shown = GetDC(window);
  EXPECT_EQ(COLORREF{0x123456}, GetPixel(shown, 2, 40));
  ReleaseDC(window, shown);
}

// Whatever came in between, what is to be seen in the end is what the control draws elsewhere.
TEST(PaintReentry, TheWindowShowsTheNewestPicture) {
  using Change = void (*)(Container & container);
  const Change changes[] = {
      [](Container& c) { PutText(c.Dispatch().Get(), L"Caption", L"inside"); },
      [](Container& c) { PutNumber(c.Dispatch().Get(), L"BorderStyle", 0); },
      [](Container& c) {
        SetRects(c, {0, 0, 50, 30});
      },
      [](Container& c) { LoadFromStream(c.Object(), SavedForm()); },
  };
  for (const Change change : changes) {
    Round round;
    round.Paint(kLooks[0], [&] { change(round.container); });
    const HWND window = round.container.ControlWindow();
    RECT client = {};
    GetClientRect(window, &client);
    const HDC shown = GetDC(window), drawn = CreateCompatibleDC(shown);
    const HBITMAP bitmap = CreateCompatibleBitmap(shown, client.right, client.bottom);
    SelectObject(drawn, bitmap);
    const RECTL bounds = {0, 0, client.right, client.bottom};
    EXPECT_EQ(S_OK, As<IViewObject>(round.container.Object())
                        ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, drawn, &bounds, nullptr,
                               nullptr, 0));
    int different = 0;
    for (int y = 0; y < client.bottom; ++y)
      for (int x = 0; x < client.right; ++x) different += GetPixel(shown, x, y) != GetPixel(drawn, x, y);
    EXPECT_EQ(0, different);
    DeleteDC(drawn);
    DeleteObject(bitmap);
    ReleaseDC(window, shown);
  }
}

}  // namespace
}  // namespace ocx_test
