// Hosts that lack things and hosts that pull the rug: any interface of the site missing, any call coming in
// at the wrong time. Whatever happens, the control neither crashes nor leaves a reference behind.
#include <memory>

#include "activex/container.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

// --- Missing interfaces -----------------------------------------------------------------------------------

// A life from beginning to end.
void LiveThrough(Container& container, bool can_activate) {
  container.Host();
  const ComPtr<IDispatch> object = container.Dispatch();
  Sink events, changes;
  EXPECT_EQ(S_OK, events.ConnectEvents(object.Get()));
  EXPECT_EQ(S_OK, changes.ConnectChanges(object.Get()));
  PutText(object.Get(), L"Caption", L"&before");
  const HRESULT activated = container.Activate();
  EXPECT_EQ(can_activate, SUCCEEDED(activated));
  EXPECT_EQ(can_activate, container.ControlWindow() != nullptr);
  PutText(object.Get(), L"Caption", L"&<b>after</b>");
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"AutoSize", Variant::Bool(true)));
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
  container.Activate(OLEIVERB_UIACTIVATE);
  if (const HWND window = container.ControlWindow()) {
    UpdateWindow(window);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
    EXPECT_EQ("Click", events.log.back());
  }
  const HDC dc = CreateCompatibleDC(nullptr);
  const RECTL bounds = {0, 0, 10, 10};
  EXPECT_EQ(S_OK, As<IViewObject>(object)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds,
                                                nullptr, nullptr, 0));
  DeleteDC(dc);
  EXPECT_EQ(L"&<b>after</b>", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(1, GetNumber(object.Get(), L"BackStyle"));
  events.Disconnect();
  changes.Disconnect();
  container.Close();
}

bool CanActivateWithout(const std::set<SiteInterface>& missing) {
  return missing.count(SiteInterface::InPlaceSite) == 0;
}

TEST(MissingInterfaces, NoneMissing) {
  Container container;
  LiveThrough(container, true);
}

TEST(MissingInterfaces, AnySingleOneMayBeMissing) {
  for (const SiteInterface what : kSiteInterfaces) {
    SCOPED_TRACE(static_cast<int>(what));
    Container container;
    container.missing = {what};
    LiveThrough(container, CanActivateWithout(container.missing));
  }
}

TEST(MissingInterfaces, AnySetOfThemMayBeMissing) {
  constexpr std::size_t kCount = std::size(kSiteInterfaces);
  for (unsigned set = 0; set < 1u << kCount; ++set) {
    SCOPED_TRACE(set);
    Container container;
    for (std::size_t i = 0; i < kCount; ++i)
      if (set >> i & 1) container.missing.insert(kSiteInterfaces[i]);
    LiveThrough(container, CanActivateWithout(container.missing));
  }
}

TEST(MissingInterfaces, TheSiteItselfMayBeMissing) {
  const ComPtr<IUnknown> control = CreateControl();
  const auto object = As<IOleObject>(control);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_TRUE(FAILED(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr)));
  PutText(As<IDispatch>(control).Get(), L"Caption", L"&alone");
  SIZEL size = {9000, 900};
  EXPECT_EQ(S_OK, object->SetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(S_OK, object->Close(OLECLOSE_SAVEIFDIRTY));
  ComPtr<IOleClientSite> site;
  EXPECT_EQ(S_OK, object->GetClientSite(site.GetAddressOf()));
  EXPECT_FALSE(site);
  EXPECT_EQ(E_FAIL, As<IOleInPlaceObject>(control)->GetWindow(std::make_unique<HWND>().get()));
}

// A container that refuses its window's size change gets the control at its own wish.
TEST(MissingInterfaces, AutoSizeWorksWithoutPosRectChange) {
  Container container;
  container.missing = {SiteInterface::PosRectChange};
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  const auto object = container.Dispatch();
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
  PutText(object.Get(), L"Caption", L"W");
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"AutoSize", Variant::Bool(true)));
  RECT client = {};
  GetClientRect(container.ControlWindow(), &client);
  EXPECT_LT(client.right, 60);
  EXPECT_GT(client.right, 3);
}

// --- The site comes and goes ------------------------------------------------------------------------------

TEST(ClientSite, MayComeTwiceLateAndNull) {
  Container container;
  const ComPtr<IUnknown> control = CreateControl();
  const auto object = As<IOleObject>(control);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_EQ(S_OK, object->SetClientSite(nullptr));
  EXPECT_EQ(S_OK, object->SetClientSite(container.ClientSite()));
  EXPECT_EQ(S_OK, object->SetClientSite(container.ClientSite()));
  EXPECT_EQ(1u, container.SiteReferences());
  EXPECT_EQ(S_OK, object->SetClientSite(nullptr));
  EXPECT_EQ(0u, container.SiteReferences());
}

TEST(ClientSite, TakenAwayWhileActiveDeactivates) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  const HWND window = container.ControlWindow();
  EXPECT_EQ(S_OK, As<IOleObject>(container.Object())->SetClientSite(nullptr));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(1, container.Count("OnInPlaceDeactivate"));
  EXPECT_EQ(0u, container.SiteReferences());
}

TEST(ClientSite, SetAgainWhileActiveStaysActive) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  EXPECT_EQ(S_OK, As<IOleObject>(container.Object())->SetClientSite(container.ClientSite()));
  EXPECT_TRUE(container.ControlWindow());
}

// --- Rectangles inside activation -------------------------------------------------------------------------

TEST(InPlaceActivation, TakesRectanglesBeforeThereIsAWindow) {
  for (const char* when : {"OnInPlaceActivate", "GetWindow", "GetWindowContext"}) {
    Container container;
    container.Host();
    const RECT rect = {7, 8, 97, 58};
    container.on_call = [&](const std::string& call) {
      if (call != when) return;
      EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container.Object())->SetObjectRects(&rect, &container.clip));
    };
    ASSERT_EQ(S_OK, container.Activate());
    RECT now = {};
    GetWindowRect(container.ControlWindow(), &now);
    MapWindowPoints(nullptr, container.Window(), reinterpret_cast<POINT*>(&now), 2);
    EXPECT_TRUE(EqualRect(&rect, &now)) << when;
  }
}

TEST(InPlaceActivation, MayBeEndedInTheMiddle) {
  using Act = void (*)(Container&);
  const Act acts[] = {
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); },
      [](Container& c) { As<IOleObject>(c.Object())->Close(OLECLOSE_NOSAVE); },
      [](Container& c) { As<IOleObject>(c.Object())->SetClientSite(nullptr); },
      [](Container& c) { c.Drop(); },
      [](Container& c) { c.Activate(OLEIVERB_UIACTIVATE); },
      [](Container& c) { DestroyWindow(c.Window()); },
  };
  for (const Act act : acts)
    for (const char* when : {"CanInPlaceActivate", "OnInPlaceActivate", "GetWindow", "GetWindowContext",
                             "ShowObject", "OnUIActivate", "SetActiveObject"}) {
      SCOPED_TRACE(when);
      Container container;
      container.Host();
      bool once = true;
      container.on_call = [&](const std::string& call) {
        if (call != when || !once) return;
        once = false;
        act(container);
      };
      container.Activate(OLEIVERB_UIACTIVATE);
      EXPECT_FALSE(once) << "the call never came";
    }
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

// --- Inside events ----------------------------------------------------------------------------------------

struct Deed {
  const char* name;
  std::function<void(Container&, Sink&)> run;
};

const Deed kDeeds[] = {
    {"release", [](Container& c, Sink&) { c.Drop(); }},
    {"close", [](Container& c, Sink&) { As<IOleObject>(c.Object())->Close(OLECLOSE_NOSAVE); }},
    {"close and release", [](Container& c, Sink&) { c.Close(); }},
    {"deactivate", [](Container& c, Sink&) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); }},
    {"disconnect", [](Container&, Sink& s) { s.Disconnect(); }},
    {"take the site away", [](Container& c, Sink&) { As<IOleObject>(c.Object())->SetClientSite(nullptr); }},
    {"resize",
     [](Container& c, Sink&) {
       const RECT rect = {0, 0, 33, 22};
       As<IOleInPlaceObject>(c.Object())->SetObjectRects(&rect, &rect);
     }},
    {"resize to nothing",
     [](Container& c, Sink&) {
       const RECT rect = {};
       As<IOleInPlaceObject>(c.Object())->SetObjectRects(&rect, &rect);
     }},
    {"destroy the container's window", [](Container& c, Sink&) { DestroyWindow(c.Window()); }},
    {"destroy the control's window", [](Container& c, Sink&) { DestroyWindow(c.ControlWindow()); }},
    {"set the caption", [](Container& c, Sink&) { PutText(c.Dispatch().Get(), L"Caption", L"inside"); }},
    {"set the font", [](Container& c, Sink&) { PutNumber(c.Dispatch().Get(), L"FontSize", 20); }},
    {"size it automatically",
     [](Container& c, Sink&) { PutByName(c.Dispatch().Get(), L"AutoSize", Variant::Bool(true)); }},
    {"freeze events", [](Container& c, Sink&) { As<IOleControl>(c.Object())->FreezeEvents(TRUE); }},
};

struct Cause {
  const char* event;
  std::function<void(IDispatch*, HWND)> run;
};

void Send(HWND window, UINT message, WPARAM keys) { SendMessageW(window, message, keys, MAKELPARAM(3, 3)); }

const Cause kCauses[] = {
    {"Change", [](IDispatch* object, HWND) { PutText(object, L"Caption", L"new"); }},
    {"Changed(-518)", [](IDispatch* object, HWND) { PutText(object, L"Caption", L"new"); }},
    {"Changed(-512)", [](IDispatch* object, HWND) { PutNumber(object, L"FontSize", 13); }},
    {"MouseMove(0,0,3,3)", [](IDispatch*, HWND window) { Send(window, WM_MOUSEMOVE, 0); }},
    {"MouseDown(1,0,3,3)", [](IDispatch*, HWND window) { Send(window, WM_LBUTTONDOWN, MK_LBUTTON); }},
    {"MouseUp(1,0,3,3)",
     [](IDispatch*, HWND window) {
       Send(window, WM_LBUTTONDOWN, MK_LBUTTON);
       Send(window, WM_LBUTTONUP, 0);
     }},
    {"Click",
     [](IDispatch*, HWND window) {
       Send(window, WM_LBUTTONDOWN, MK_LBUTTON);
       Send(window, WM_LBUTTONUP, 0);
     }},
    {"DblClick", [](IDispatch*, HWND window) { Send(window, WM_LBUTTONDBLCLK, MK_LBUTTON); }},
};

// The host's own reference, kept through the call or given up for it.
void TryInsideEvent(const Cause& cause, const Deed& deed, bool keep_reference) {
  SCOPED_TRACE(std::string(cause.event) + ": " + deed.name +
               (keep_reference ? "" : ", on the last reference"));
  Container container;
  Sink sink, bystander;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  const HWND window = container.ControlWindow();
  ComPtr<IDispatch> object = container.Dispatch();
  const bool is_change = cause.event[6] == 'd';
  ASSERT_EQ(S_OK, is_change ? sink.ConnectChanges(object.Get()) : sink.ConnectEvents(object.Get()));
  ASSERT_EQ(S_OK, is_change ? bystander.ConnectChanges(object.Get()) : bystander.ConnectEvents(object.Get()));
  bool once = true;
  sink.on_event = [&](const std::string& event) {
    if (event != cause.event || !once) return;
    once = false;
    deed.run(container, sink);
  };
  IDispatch* const raw = object.Get();
  if (!keep_reference) {
    // Only the container's reference is left; a connection point doesn't hold the control.
    sink.Disconnect();
    bystander.Disconnect();
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    As<IConnectionPointContainer>(object)->FindConnectionPoint(
        is_change ? IID_IPropertyNotifySink : kEventsId, point.GetAddressOf());
    ASSERT_EQ(S_OK, point->Advise(sink.Object(), &cookie));
    point.Reset();
    object.Reset();
  }
  cause.run(raw, window);
  EXPECT_FALSE(once) << "the event never came";
  object.Reset();
  if (container.Object()) container.Close();
}

TEST(Reentrancy, AnythingMayHappenInsideAnyEvent) {
  for (const Cause& cause : kCauses)
    for (const Deed& deed : kDeeds) {
      TryInsideEvent(cause, deed, true);
      TryInsideEvent(cause, deed, false);
    }
  PumpMessages();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

TEST(Reentrancy, ASinkThatLeavesInsideAnEventHearsNoMoreAndTheNextOneStillDoes) {
  Container container;
  container.Host();
  const auto object = container.Dispatch();
  Sink first, second, third;
  ASSERT_EQ(S_OK, first.ConnectEvents(object.Get()));
  ASSERT_EQ(S_OK, second.ConnectEvents(object.Get()));
  ASSERT_EQ(S_OK, third.ConnectEvents(object.Get()));
  first.on_event = [&](const std::string&) {
    first.Disconnect();
    second.Disconnect();
  };
  PutText(object.Get(), L"Caption", L"1");
  PutText(object.Get(), L"Caption", L"2");
  EXPECT_EQ(Log{"Change"}, first.log);
  EXPECT_EQ(Log{}, second.log) << "it had left before its turn";
  EXPECT_EQ((Log{"Change", "Change"}), third.log);
}

TEST(Reentrancy, ASinkThatJoinsInsideAnEventHearsTheNextOne) {
  Container container;
  container.Host();
  const auto object = container.Dispatch();
  Sink first, second;
  ASSERT_EQ(S_OK, first.ConnectEvents(object.Get()));
  first.on_event = [&](const std::string&) {
    if (first.log.size() == 1) {
      EXPECT_EQ(S_OK, second.ConnectEvents(object.Get()));
    }
  };
  PutText(object.Get(), L"Caption", L"1");
  EXPECT_EQ(Log{}, second.log);
  PutText(object.Get(), L"Caption", L"2");
  EXPECT_EQ(Log{"Change"}, second.log);
}

TEST(Reentrancy, EventsMayNest) {
  Container container;
  container.Host();
  const auto object = container.Dispatch();
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectEvents(object.Get()));
  int depth = 0;
  sink.on_event = [&](const std::string&) {
    if (++depth < 20) PutText(object.Get(), L"Caption", std::to_wstring(depth).c_str());
  };
  PutText(object.Get(), L"Caption", L"0");
  EXPECT_EQ(20u, sink.log.size());
  EXPECT_EQ(L"19", GetText(object.Get(), L"Caption"));
}

// --- Bad input --------------------------------------------------------------------------------------------

TEST(BadInput, HugeAndBrokenCaptionsAreTaken) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  const auto object = container.Dispatch();
  PutText(object.Get(), L"Caption", std::wstring(100000, L'x').c_str());
  PutText(object.Get(), L"Caption", L"<b><i><u><c=zzz><f=><s=99999>\xD800 \xDFFF&\xFFFF</q></b>");
  Variant text;
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocStringByteLen("abc", 3);  // an odd number of bytes
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"Caption", text));
}

TEST(BadInput, NegativeAndHugeRectanglesAreTaken) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  const auto in_place = As<IOleInPlaceObject>(container.Object());
  for (const RECT& rect :
       {RECT{50, 50, 10, 10}, RECT{-30000, -30000, 30000, 20}, RECT{0, 0, 0, 100}, RECT{5, 5, 6, 6}}) {
    EXPECT_EQ(S_OK, in_place->SetObjectRects(&rect, &rect));
    UpdateWindow(container.ControlWindow());
  }
  EXPECT_EQ(E_POINTER, in_place->SetObjectRects(nullptr, nullptr));
}

}  // namespace
}  // namespace ocx_test
