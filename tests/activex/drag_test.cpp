// Drags over the control and drags that begin at it, by a mouse that really moves.
#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "activex/deeds.h"
#include "activex/server_copy.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;
constexpr LONG kDragVerb = 100;

// --- Both sides of a drag, as a test plays them -----------------------------------------------------------

// Counts references, for objects that live as long as their test.
template <typename Interface>
class Plain : public Interface {
 public:
  ~Plain() { EXPECT_EQ(0, references_) << "references are left"; }
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == __uuidof(IUnknown) || iid == __uuidof(Interface) ? this : nullptr;
    if (*object) AddRef();
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(InterlockedDecrement(&references_)); }

 private:
  LONG references_ = 0;
};

HGLOBAL Memory(const void* bytes, std::size_t size) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::copy_n(static_cast<const char*>(bytes), size, static_cast<char*>(GlobalLock(memory)));
  GlobalUnlock(memory);
  return memory;
}

// A text and two files.
class TextAndFiles final : public Plain<IDataObject> {
 public:
  std::wstring text = L"\u03B1 text";
  bool only_narrow = false;

  STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override {
    *medium = {};
    if (QueryGetData(format) != S_OK) return DV_E_FORMATETC;
    medium->tymed = TYMED_HGLOBAL;
    if (format->cfFormat == CF_UNICODETEXT)
      medium->hGlobal = Memory(text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    else if (format->cfFormat == CF_TEXT)
      medium->hGlobal = Memory("narrow", 7);
    else
      medium->hGlobal = Files();
    return S_OK;
  }
  STDMETHODIMP QueryGetData(FORMATETC* format) override {
    const CLIPFORMAT own = format->cfFormat;
    const bool known = own == CF_TEXT || own == CF_HDROP || (own == CF_UNICODETEXT && !only_narrow);
    return known && (format->tymed & TYMED_HGLOBAL) ? S_OK : DV_E_FORMATETC;
  }
  STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
  STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
  STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP DUnadvise(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP EnumDAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }

 private:
  static HGLOBAL Files() {
    struct {
      DWORD at = 20;
      POINT place = {};
      BOOL outside = FALSE, wide = TRUE;
      wchar_t names[18] = L"C:\\one\0C:\\\u0434\u0432\u0430\0";
    } list;
    return Memory(&list, 20 + sizeof list.names);
  }
};

class Source final : public Plain<IDropSource> {
 public:
  STDMETHODIMP QueryContinueDrag(BOOL escape, DWORD keys) override {
    if (escape) return DRAGDROP_S_CANCEL;
    return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
  }
  STDMETHODIMP GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

// Takes a copy of the text.
class Target final : public Plain<IDropTarget> {
 public:
  DWORD takes = DROPEFFECT_COPY;
  std::wstring dropped;

  STDMETHODIMP DragEnter(IDataObject*, DWORD, POINTL, DWORD* effect) override {
    *effect &= takes;
    return S_OK;
  }
  STDMETHODIMP DragOver(DWORD, POINTL, DWORD* effect) override {
    *effect &= takes;
    return S_OK;
  }
  STDMETHODIMP DragLeave() override { return S_OK; }
  STDMETHODIMP Drop(IDataObject* data, DWORD, POINTL, DWORD* effect) override {
    FORMATETC format = {CF_UNICODETEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium = {};
    if (SUCCEEDED(data->GetData(&format, &medium))) {
      dropped = static_cast<const wchar_t*>(GlobalLock(medium.hGlobal));
      GlobalUnlock(medium.hGlobal);
      ReleaseStgMedium(&medium);
    }
    *effect &= takes;
    return S_OK;
  }
};

// --- The mouse --------------------------------------------------------------------------------------------

POINT Inside(HWND window, int x, int y) {
  POINT place = {x, y};
  ClientToScreen(window, &place);
  return place;
}

void Button(DWORD what) { mouse_event(what, 0, 0, 0, 0); }

// The way of a mouse whose button is down: a place every tenth of a second, then the button comes up. On a
// thread of its own, since a drag keeps the one that began it.
class Way {
 public:
  explicit Way(std::vector<POINT> places)
      : places_(std::move(places)), thread_([this] {
          for (const POINT& place : places_) {
            Sleep(100);
            SetCursorPos(place.x, place.y);
          }
          Sleep(100);
          Button(MOUSEEVENTF_LEFTUP);
        }) {}

 private:
  std::vector<POINT> places_;
  HostThread thread_;
};

void Press(POINT place) {
  SetCursorPos(place.x, place.y);
  PumpMessages();
  Button(MOUSEEVENTF_LEFTDOWN);
  for (int round = 0; round < 10; ++round, Sleep(10)) PumpMessages();
}

// Calls a member of an object without a type.
HRESULT Call(IDispatch* object, const wchar_t* name, std::vector<Variant> arguments,
             VARIANT* result = nullptr) {
  std::vector<Variant> backwards;
  for (std::size_t i = arguments.size(); i-- > 0;) backwards.push_back(std::move(arguments[i]));
  DISPPARAMS parameters = {backwards.data(), nullptr, static_cast<UINT>(backwards.size()), 0};
  return object->Invoke(IdOf(object, name), IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                        result, nullptr, nullptr);
}

template <typename... Arguments>
std::vector<Variant> List(Arguments&&... arguments) {
  std::vector<Variant> list;
  (list.push_back(Variant(arguments)), ...);
  return list;
}

class Drag : public ::testing::Test {
 protected:
  void SetUp() override {
    SetCursorPos(900, 900);
    container_.Host();
    ASSERT_EQ(S_OK, container_.Activate());
    control_ = container_.ControlWindow();
    SetForegroundWindow(container_.Window());
    PumpMessages();
  }
  void TearDown() override {
    events_.Disconnect();
    Button(MOUSEEVENTF_LEFTUP);
    PumpMessages();
  }
  void Connect() { ASSERT_EQ(S_OK, events_.ConnectEvents(container_.Object())); }
  // Where nothing is but the container.
  POINT Beside() const { return Inside(container_.Window(), 300, 200); }

  // From beside the control along places in it, then up. The answer is the effect that the source hears.
  DWORD DragAlong(const std::vector<POINT>& in_control, bool out_again = false) {
    std::vector<POINT> places;
    places.reserve(in_control.size() + 1);
    for (const POINT& place : in_control) places.push_back(Inside(control_, place.x, place.y));
    if (out_again) places.push_back(Beside());
    Press(Beside());
    events_.log.clear();
    DWORD effect = 99;
    const Way way(places);
    result_ = DoDragDrop(&data_, &source_, DROPEFFECT_COPY | DROPEFFECT_MOVE, &effect);
    return effect;
  }
  // The log without repetitions: OLE asks again while the mouse rests.
  Log Steps() const {
    Log steps;
    for (const std::string& line : events_.log)
      if (line.starts_with("OLE") && (steps.empty() || steps.back() != line)) steps.push_back(line);
    return steps;
  }
  IDispatch* Data() const {
    const VARIANTARG& first = events_.arguments->rgvarg[events_.arguments->cArgs - 1];
    return first.vt == (VT_DISPATCH | VT_BYREF) ? *first.ppdispVal : nullptr;
  }
  // The effect, which stands after the data.
  LONG& Effect() const { return *events_.arguments->rgvarg[events_.arguments->cArgs - 2].plVal; }

  TextAndFiles data_;
  Source source_;
  Container container_;
  Sink events_;
  HWND control_ = nullptr;
  HRESULT result_ = E_FAIL;
};

// --- Whether it is a target -------------------------------------------------------------------------------

bool IsTarget(HWND window) {
  Target other;
  const HRESULT result = RegisterDragDrop(window, &other);
  if (result == S_OK) RevokeDragDrop(window);
  return result == DRAGDROP_E_ALREADYREGISTERED;
}

TEST_F(Drag, TheControlIsATargetWhileSomebodyListensWheneverHeCame) {
  EXPECT_FALSE(IsTarget(control_));
  Sink second, changes;
  ASSERT_EQ(S_OK, changes.ConnectChanges(container_.Object()));
  EXPECT_FALSE(IsTarget(control_)) << "that one hears of no event";
  for (int round = 0; round < 2; ++round) {
    Connect();
    EXPECT_TRUE(IsTarget(control_));
    ASSERT_EQ(S_OK, second.ConnectEvents(container_.Object()));
    events_.Disconnect();
    EXPECT_TRUE(IsTarget(control_));
    EXPECT_EQ(DWORD{DROPEFFECT_COPY | DROPEFFECT_MOVE}, DragAlong({{5, 6}}));
    second.Disconnect();
    EXPECT_FALSE(IsTarget(control_));
    EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}}));
  }
}

TEST_F(Drag, AListenerFromBeforeTheWindowMakesEachOfThemATarget) {
  Container container;
  Sink events;
  container.Host();
  ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(S_OK, container.Activate());
    EXPECT_TRUE(IsTarget(container.ControlWindow()));
    const HWND window = container.ControlWindow();
    ASSERT_EQ(S_OK, As<IOleInPlaceObject>(container.Object())->InPlaceDeactivate());
    EXPECT_FALSE(GetPropW(window, L"OleDropTargetInterface"));
  }
}

TEST_F(Drag, AListenerOfAQuickActivationMakesItATarget) {
  Container container;
  Sink events;
  const ComPtr<IUnknown> control = CreateControl();
  QACONTAINER given = {};
  given.cbSize = sizeof given;
  given.pClientSite = container.ClientSite();
  given.pUnkEventSink = events.Object();
  QACONTROL taken = {};
  taken.cbSize = sizeof taken;
  ASSERT_EQ(S_OK, As<IQuickActivate>(control)->QuickActivate(&given, &taken));
  container.HostObject(control);
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  ASSERT_EQ(S_OK, container.Activate());
  EXPECT_TRUE(IsTarget(container.ControlWindow()));
  ComPtr<IConnectionPoint> point;
  As<IConnectionPointContainer>(control)->FindConnectionPoint(kEventsId, point.GetAddressOf());
  EXPECT_EQ(S_OK, point->Unadvise(taken.dwEventCookie));
  EXPECT_FALSE(IsTarget(container.ControlWindow()));
}

// A host that doesn't tell, and connects its handlers when it runs.
TEST_F(Drag, AListenerThatComesInRunModeMakesItATargetThoughNobodyToldOfTheMode) {
  Container container;
  Sink events;
  container.ambients.user_mode = false;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  container.ambients.user_mode = true;
  ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
  EXPECT_TRUE(IsTarget(container.ControlWindow()));
  events.Disconnect();
  container.ambients.user_mode = false;
  ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
  EXPECT_FALSE(IsTarget(container.ControlWindow())) << "nor in a designer that didn't";
}

// As OLE calls the target of a window.
struct Asked {
  explicit Asked(HWND window)
      : target(static_cast<IDropTarget*>(GetPropW(window, L"OleDropTargetInterface"))),
        place(Inside(window, 5, 6)) {
    EXPECT_TRUE(target);
  }
  DWORD Enter(IDataObject& data) {
    return Ask([&](POINTL at, DWORD* effect) { target->DragEnter(&data, MK_LBUTTON, at, effect); });
  }
  DWORD Over() {
    return Ask([&](POINTL at, DWORD* effect) { target->DragOver(MK_LBUTTON, at, effect); });
  }
  DWORD Drop(IDataObject& data) {
    return Ask([&](POINTL at, DWORD* effect) { target->Drop(&data, 0, at, effect); });
  }
  void Leave() { target->DragLeave(); }

  template <typename Call>
  DWORD Ask(Call call) {
    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    call(POINTL{place.x, place.y}, &effect);
    return effect;
  }
  ComPtr<IDropTarget> target;
  POINT place;
};

TEST_F(Drag, AListenerThatGoesInsideItTakesNothing) {
  Connect();
  events_.on_event = [&](const std::string&) {
    events_.Disconnect();
    EXPECT_FALSE(IsTarget(control_));
  };
  Asked asked(control_);
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, asked.Enter(data_));
  Connect();
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, asked.Over()) << "what OLE holds is another target by now";
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, asked.Drop(data_));
  EXPECT_EQ(Log{"OLEDragOver(Data,3,1,0,5,6,0)"}, Steps());
  events_.on_event = nullptr;
  EXPECT_EQ(DWORD{DROPEFFECT_COPY | DROPEFFECT_MOVE}, DragAlong({{5, 6}})) << "the next drag finds it";
}

// Without OLE a thread has no dragging, and a control there everything else.
TEST_F(Drag, AThreadWithoutOleHasEventsButNoTarget) {
  ASSERT_TRUE(RunOnThread([] {
    Container container;
    Sink events;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
    SendMessageW(container.ControlWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(5, 6));
    EXPECT_EQ(Log{"MouseDown(1,0,5,6)"}, events.log);
    EXPECT_FALSE(GetPropW(container.ControlWindow(), L"OleDropTargetInterface"));
    events.Disconnect();
    const Apartment apartment;
    ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
    EXPECT_TRUE(IsTarget(container.ControlWindow())) << "from the next listener on";
    events.Disconnect();
    container.Close();
  }));
}

TEST_F(Drag, ControlsOfManyThreadsBecomeTargetsAtTheSameTime) {
  constexpr int kThreads = 4, kRounds = 5;
  std::vector<std::unique_ptr<HostThread>> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.push_back(std::make_unique<HostThread>([] {
      const Apartment apartment;
      for (int round = 0; round < kRounds; ++round) {
        Container container;
        Sink events;
        container.Host();
        EXPECT_EQ(S_OK, container.Activate());
        EXPECT_EQ(S_OK, events.ConnectEvents(container.Object()));
        EXPECT_TRUE(IsTarget(container.ControlWindow()));
        PumpMessages();
        events.Disconnect();
        EXPECT_FALSE(IsTarget(container.ControlWindow()));
        container.Close();
      }
    }));
  for (const auto& thread : threads) ASSERT_TRUE(thread->Join());
}

// --- Into the control -------------------------------------------------------------------------------------

TEST_F(Drag, IntoTheControlIsToldStepByStep) {
  Connect();
  EXPECT_EQ(DWORD{DROPEFFECT_COPY | DROPEFFECT_MOVE}, DragAlong({{5, 6}, {20, 10}}));
  EXPECT_EQ(DRAGDROP_S_DROP, result_);
  EXPECT_EQ((Log{"OLEDragOver(Data,3,1,0,5,6,0)", "OLEDragOver(Data,3,1,0,5,6,2)",
                 "OLEDragOver(Data,3,1,0,20,10,2)", "OLEDragDrop(Data,3,0,0,20,10)"}),
            Steps());
}

TEST_F(Drag, ThatLeavesTheControlIsToldTheLastPlace) {
  Connect();
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}}, true));
  ASSERT_FALSE(Steps().empty());
  EXPECT_EQ("OLEDragOver(Data,0,1,0,5,6,1)", Steps().back());
}

TEST_F(Drag, TheEffectIsWhatTheHandlerLeaves) {
  Connect();
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEDrag")) Effect() = DROPEFFECT_MOVE;
  };
  EXPECT_EQ(DWORD{DROPEFFECT_MOVE}, DragAlong({{5, 6}}));
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEDrag")) Effect() = DROPEFFECT_NONE;
  };
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}}));
  for (const std::string& step : Steps()) EXPECT_FALSE(step.starts_with("OLEDragDrop")) << "it was refused";
}

TEST_F(Drag, NothingIsTakenWhereNobodyListens) { EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}})); }

TEST_F(Drag, NothingIsTakenWhileEventsAreFrozen) {
  Connect();
  As<IOleControl>(container_.Object())->FreezeEvents(TRUE);
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}}));
  EXPECT_EQ(Log{}, Steps());
  As<IOleControl>(container_.Object())->FreezeEvents(FALSE);
}

TEST_F(Drag, TheControlIsATargetOnlyInRunMode) {
  Connect();
  const auto tell = [&](bool user_mode) {
    container_.ambients.user_mode = user_mode;
    As<IOleControl>(container_.Object())->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE);
  };
  EXPECT_TRUE(IsTarget(control_));
  tell(false);
  EXPECT_FALSE(IsTarget(control_));
  tell(true);
  EXPECT_TRUE(IsTarget(control_));
  container_.ambients.ui_dead = true;
  EXPECT_EQ(DWORD{DROPEFFECT_NONE}, DragAlong({{5, 6}})) << "while the host is stopped";
  EXPECT_EQ(Log{}, Steps());
}

TEST_F(Drag, TheDataAreAScriptsToRead) {
  Connect();
  int seen = 0;
  events_.on_event = [&](const std::string& event) {
    if (!event.starts_with("OLEDragDrop")) return;
    ++seen;
    IDispatch* const data = Data();
    const auto has = [&](int format) {
      Variant answer;
      EXPECT_EQ(S_OK, Call(data, L"GetFormat", List(format), &answer));
      EXPECT_EQ(VT_BOOL, answer.vt);
      return answer.boolVal != VARIANT_FALSE;
    };
    EXPECT_TRUE(has(CF_TEXT));
    EXPECT_TRUE(has(CF_UNICODETEXT));
    EXPECT_TRUE(has(CF_HDROP));
    EXPECT_FALSE(has(CF_BITMAP));
    Variant text;
    EXPECT_EQ(S_OK, Call(data, L"getdata", List(CF_TEXT), &text));
    EXPECT_EQ(L"\u03B1 text", text.Text());
    Variant missing;
    EXPECT_TRUE(FAILED(Call(data, L"GetData", List(CF_BITMAP), &missing)));
    Variant bytes;
    EXPECT_EQ(S_OK, Call(data, L"GetData", List(CF_HDROP), &bytes));
    EXPECT_EQ(VT_ARRAY | VT_UI1, bytes.vt);

    Variant files, count, second, third;
    EXPECT_EQ(S_OK, Call(data, L"Files", {}, &files));
    EXPECT_EQ(S_OK, Call(files.pdispVal, L"Count", {}, &count));
    EXPECT_EQ(2, count.lVal);
    EXPECT_EQ(S_OK, Call(files.pdispVal, L"Item", List(2), &second));
    EXPECT_EQ(L"C:\\\u0434\u0432\u0430", second.Text());
    EXPECT_TRUE(FAILED(Call(files.pdispVal, L"Item", List(3), &third)));

    EXPECT_TRUE(FAILED(Call(data, L"SetData", List(L"no", CF_TEXT)))) << "another program's data";
    EXPECT_TRUE(FAILED(Call(data, L"Clear", {})));
    EXPECT_TRUE(FAILED(Call(files.pdispVal, L"Add", List(L"C:\\no"))));
  };
  DragAlong({{5, 6}});
  EXPECT_EQ(1, seen);
  data_.only_narrow = true;
  events_.on_event = [&](const std::string& event) {
    if (!event.starts_with("OLEDragDrop")) return;
    ++seen;
    Variant text;
    EXPECT_EQ(S_OK, Call(Data(), L"GetData", List(CF_TEXT), &text));
    EXPECT_EQ(L"narrow", text.Text());
  };
  DragAlong({{5, 6}});
  EXPECT_EQ(2, seen);
}

TEST_F(Drag, FromAnotherThreadComesInToo) {
  Connect();
  HRESULT result = E_FAIL;
  DWORD effect = 99;
  bool over = false;
  const POINT inside = Inside(control_, 5, 6);
  {
    const HostThread thread([&] {
      const Apartment apartment;
      TextAndFiles data;
      Source source;
      const HWND window = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE | SS_NOTIFY,
                                          600, 600, 50, 50, nullptr, nullptr, nullptr, nullptr);
      SetForegroundWindow(window);
      Press(Inside(window, 10, 10));
      {
        const Way way({inside});
        result = DoDragDrop(&data, &source, DROPEFFECT_COPY, &effect);
      }
      CoDisconnectObject(&data, 0);
      DestroyWindow(window);
      over = true;
    });
    for (int round = 0; round < 1000 && !over; ++round, Sleep(10)) PumpMessages();
  }
  EXPECT_EQ(DRAGDROP_S_DROP, result);
  EXPECT_EQ(DWORD{DROPEFFECT_COPY}, effect);
  ASSERT_FALSE(Steps().empty());
  EXPECT_EQ("OLEDragDrop(Data,1,0,0,5,6)", Steps().back());
}

// As OLE calls it, without a mouse that would have to be quick.
TEST_F(Drag, HandlersMayEndTheControl) {
  for (const char* const when : {"OLEDragOver(Data,3,1,0,5,6,0)", "OLEDragOver(Data,3,1,0,7,8,2)",
                                 "OLEDragOver(Data,0,1,0,7,8,1)", "OLEDragDrop(Data,3,0,0,7,8)"})
    for (const Deed& deed : kDeeds) {
      SCOPED_TRACE(std::string(deed.name) + " inside " + when);
      Container container;
      Sink events;
      container.Host();
      ASSERT_EQ(S_OK, container.Activate());
      ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
      int done = 0;
      events.on_event = [&](const std::string& event) {
        if (event != when || done++ > 0) return;
        events.Disconnect();
        deed.run(container);
      };
      Asked asked(container.ControlWindow());
      const POINT second = Inside(container.ControlWindow(), 7, 8);
      asked.Enter(data_);
      asked.place = second;
      asked.Over();
      if (std::string(when).ends_with(",1)"))
        asked.Leave();
      else
        asked.Drop(data_);
      EXPECT_EQ(1, done);
      events.on_event = nullptr;
    }
}

// --- Out of the control -----------------------------------------------------------------------------------

class DragOut : public Drag {
 protected:
  void SetUp() override {
    Drag::SetUp();
    Connect();
    ASSERT_EQ(S_OK, RegisterDragDrop(container_.Window(), &target_));
  }
  void TearDown() override {
    RevokeDragDrop(container_.Window());
    Drag::TearDown();
  }
  HRESULT DragTo(std::vector<POINT> places) {
    Press(Inside(control_, 5, 6));
    events_.log.clear();
    const Way way(std::move(places));
    return container_.Activate(kDragVerb);
  }
  LONG& Allowed() const { return *events_.arguments->rgvarg[0].plVal; }

  Target target_;
};

TEST_F(DragOut, PutsTogetherDragsDropsAndTells) {
  events_.on_event = [&](const std::string& event) {
    if (!event.starts_with("OLEStartDrag")) return;
    EXPECT_EQ("OLEStartDrag(Data,0)", event);
    EXPECT_EQ(S_OK, Call(Data(), L"SetData", List(L"from \u03B1", CF_TEXT)));
    Allowed() = DROPEFFECT_COPY | DROPEFFECT_MOVE;
  };
  EXPECT_EQ(S_OK, DragTo({Beside()}));
  EXPECT_EQ(L"from \u03B1", target_.dropped);
  const Log steps = Steps();
  EXPECT_EQ("OLEStartDrag(Data,0)", steps.front());
  EXPECT_EQ("OLECompleteDrag(1)", steps.back());
  EXPECT_EQ(1, std::count(steps.begin(), steps.end(), "OLEGiveFeedback(1,True)"));
}

TEST_F(DragOut, ADelayedValueIsAskedForWhenItIsDropped) {
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEStartDrag")) {
      EXPECT_EQ(S_OK, Call(Data(), L"SetData", {}) == S_OK ? E_FAIL : S_OK) << "nothing said at all";
      Variant left_out;
      left_out.vt = VT_ERROR;
      left_out.scode = DISP_E_PARAMNOTFOUND;
      std::vector<Variant> arguments;
      arguments.push_back(std::move(left_out));
      arguments.push_back(Variant(CF_TEXT));
      EXPECT_EQ(S_OK, Call(Data(), L"SetData", std::move(arguments)));
      Allowed() = DROPEFFECT_COPY;
    } else if (event.starts_with("OLESetData")) {
      EXPECT_EQ("OLESetData(Data,1)", event);
      EXPECT_EQ(S_OK, Call(Data(), L"SetData", List(L"late", CF_TEXT)));
    }
  };
  EXPECT_EQ(S_OK, DragTo({Beside()}));
  EXPECT_EQ(L"late", target_.dropped);
  const Log steps = Steps();
  EXPECT_EQ(1, std::count(steps.begin(), steps.end(), "OLESetData(Data,1)"));
  EXPECT_EQ("OLECompleteDrag(1)", steps.back());
}

TEST_F(DragOut, FilesGoWithTheirNames) {
  std::wstring dropped;
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEStartDrag")) {
      Variant files, text;
      EXPECT_EQ(S_OK, Call(Data(), L"Files", {}, &files));
      EXPECT_EQ(S_OK, Call(files.pdispVal, L"Add", List(L"C:\\b")));
      EXPECT_EQ(S_OK, Call(files.pdispVal, L"Add", List(L"C:\\a", 1)));
      Variant has;
      EXPECT_EQ(S_OK, Call(Data(), L"GetFormat", List(CF_HDROP), &has));
      EXPECT_EQ(VARIANT_TRUE, has.boolVal);
      Allowed() = DROPEFFECT_COPY;
    } else if (event.starts_with("OLEDragDrop")) {
      Variant files, first;
      EXPECT_EQ(S_OK, Call(Data(), L"Files", {}, &files));
      EXPECT_EQ(S_OK, Call(files.pdispVal, L"Item", List(1), &first));
      dropped = first.Text();
    }
  };
  EXPECT_EQ(S_OK, DragTo({Inside(control_, 9, 9)})) << "on the control itself";
  EXPECT_EQ(L"C:\\a", dropped);
}

TEST_F(DragOut, NothingIsDraggedUnlessSomethingMayBeDone) {
  EXPECT_EQ(S_OK, DragTo({}));
  EXPECT_EQ(Log{"OLEStartDrag(Data,0)"}, Steps());
}

TEST_F(DragOut, WhatIsDroppedNowhereHasNoEffect) {
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEStartDrag")) Allowed() = DROPEFFECT_COPY;
    if (event.starts_with("OLEGiveFeedback")) *events_.arguments->rgvarg[0].pboolVal = VARIANT_FALSE;
  };
  target_.takes = DROPEFFECT_NONE;
  EXPECT_EQ(S_OK, DragTo({Beside()}));
  EXPECT_EQ("OLECompleteDrag(0)", Steps().back());
  EXPECT_EQ(L"", target_.dropped);
}

TEST_F(DragOut, IsTheDesignersToo) {
  container_.ambients.user_mode = false;
  EXPECT_EQ(OLEOBJ_S_CANNOT_DOVERB_NOW, container_.Activate(kDragVerb));
  container_.ambients.user_mode = true;
  events_.Disconnect();
  EXPECT_EQ(OLEOBJ_S_CANNOT_DOVERB_NOW, container_.Activate(kDragVerb)) << "nobody would give it data";
}

TEST_F(DragOut, TheVerbStandsInNoList) {
  ComPtr<IEnumOLEVERB> verbs;
  ASSERT_EQ(S_OK, As<IOleObject>(container_.Object())->EnumVerbs(verbs.GetAddressOf()));
  OLEVERB verb = {};
  while (verbs->Next(1, &verb, nullptr) == S_OK) {
    EXPECT_NE(kDragVerb, verb.lVerb);
    CoTaskMemFree(verb.lpszVerbName);
  }
}

TEST_F(DragOut, TheControlMayEndOnTheWay) {
  events_.on_event = [&](const std::string& event) {
    if (event.starts_with("OLEStartDrag")) Allowed() = DROPEFFECT_COPY;
    if (event.starts_with("OLEGiveFeedback") && container_.Object()) {
      events_.Disconnect();
      container_.Close();
    }
  };
  DragTo({Beside(), Beside()});
  EXPECT_FALSE(container_.Object());
}

}  // namespace
}  // namespace ocx_test
