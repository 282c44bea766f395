// Property changes and events on their way to the host.
#include "activex/container.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

class Notification : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = container_.Dispatch();
  }

  Container container_;
  ComPtr<IDispatch> object_;
};

// --- Property changes -------------------------------------------------------------------------------------

// Which number a property announces when it is set. Each announces once.
struct Announcement {
  const wchar_t* name;
  DISPID announced;  // 0: nothing
};

const Announcement kAnnouncements[] = {
    {L"AutoSize", 0x6803006C},
    {L"BackColor", -501},
    {L"BackStyle", -501},  // the colour's, not its own
    {L"Appearance", -520},
    {L"BorderStyle", -504},
    {L"Caption", -518},
    {L"FontBold", -512},
    {L"FontItalic", -512},
    {L"FontStrikethru", -512},
    {L"FontUnderline", -512},
    {L"FontName", -512},
    {L"FontSize", -512},
    {L"ForeColor", -513},
    {L"EffectColor", 0x68030065},
    {L"ImageKey", 0x68030064},
    {L"ImageKeyhover", 0x68030063},  // announced with another letter case
    {L"UseMnemonic", 0x68030060},
    {L"UniToolTipText", 0x6803005F},  // likewise
    {L"TextEffect", 0x6803005C},
    {L"Enabled", -514},
    {L"WordWrap", 0x6803005B},
    {L"ImageAlignment", 0x6803005A},
    {L"ImageSize", 0x68030059},
    {L"MousePointer", 0},
};

TEST_F(Notification, EachPropertyAnnouncesItsNumber) {
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectChanges(object_.Get()));
  for (const Announcement& expected : kAnnouncements) {
    sink.log.clear();
    EXPECT_EQ(S_OK, PutByName(object_.Get(), expected.name, Variant(L"1")));
    const Log log = expected.announced ? Log{"Changed(" + std::to_string(expected.announced) + ")"} : Log{};
    EXPECT_EQ(log, sink.log) << std::string(expected.name, expected.name + wcslen(expected.name));
  }
}

TEST_F(Notification, FontIsAnnouncedByPutAndPutref) {
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectChanges(object_.Get()));
  Variant font;
  ASSERT_EQ(S_OK, GetByName(object_.Get(), L"Font", font));
  EXPECT_EQ(S_OK, Put(object_.Get(), -512, font));
  EXPECT_EQ(S_OK, Put(object_.Get(), -512, font, DISPATCH_PROPERTYPUTREF));
  EXPECT_EQ((Log{"Changed(-512)", "Changed(-512)"}), sink.log);
}

TEST_F(Notification, ChangingTheLookAnnouncesNoColour) {
  Sink sink;
  PutNumber(object_.Get(), L"BackColor", 255);
  ASSERT_EQ(S_OK, sink.ConnectChanges(object_.Get()));
  PutNumber(object_.Get(), L"Appearance", 1);
  EXPECT_EQ(255, GetNumber(object_.Get(), L"BackColor")) << "the value it had";
  PutNumber(object_.Get(), L"Appearance", 0);
  EXPECT_EQ(static_cast<long>(0x80000005), GetNumber(object_.Get(), L"BackColor"));
  EXPECT_EQ((Log{"Changed(-520)", "Changed(-520)"}), sink.log);
}

// An image that the list takes is a change of no property in particular.
TEST_F(Notification, AnImageAnnouncesAChangeWithoutAName) {
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectChanges(object_.Get()));
  Variant file(L"abc"), key(L"a"), digit(L"1a"), short_file(L"ab");
  const auto load = [&](const VARIANT& file_name, const VARIANT& key_name) {
    VARIANTARG arguments[] = {key_name, file_name};
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    Variant result;
    EXPECT_EQ(S_OK, object_->Invoke(0x6003008D, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr,
                                    nullptr));
    return result.boolVal != VARIANT_FALSE;
  };
  EXPECT_FALSE(load(short_file, key)) << "a file name of two characters";
  EXPECT_FALSE(load(file, digit)) << "a key that starts with a digit";
  EXPECT_EQ(Log{}, sink.log);
  load(file, key);
  EXPECT_EQ(Log{"Changed(-1)"}, sink.log) << "a file name of three characters passes";
}

TEST_F(Notification, ChangesMakeTheControlDirty) {
  const ComPtr<IUnknown> fresh = CreateControl();
  EXPECT_EQ(S_FALSE, As<IPersistStreamInit>(fresh)->IsDirty());
  PutNumber(As<IDispatch>(fresh).Get(), L"MousePointer", 2);
  EXPECT_EQ(S_FALSE, As<IPersistStreamInit>(fresh)->IsDirty()) << "the pointer isn't saved";
  PutNumber(As<IDispatch>(fresh).Get(), L"TextEffect", 2);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(fresh)->IsDirty());
  EXPECT_EQ(S_OK, As<IPersistStorage>(fresh)->IsDirty());
}

// --- Change -----------------------------------------------------------------------------------------------

TEST_F(Notification, OnlyTheCaptionRaisesChange) {
  Sink events;
  ASSERT_EQ(S_OK, events.ConnectEvents(object_.Get()));
  for (const Announcement& property : kAnnouncements) PutByName(object_.Get(), property.name, Variant(L"1"));
  EXPECT_EQ(Log{"Change"}, events.log);
}

TEST_F(Notification, ChangeComesAfterTheAnnouncement) {
  Sink events, changes;
  Log order;
  ASSERT_EQ(S_OK, events.ConnectEvents(object_.Get()));
  ASSERT_EQ(S_OK, changes.ConnectChanges(object_.Get()));
  events.on_event = changes.on_event = [&](const std::string& what) { order.push_back(what); };
  PutText(object_.Get(), L"Caption", L"new");
  EXPECT_EQ((Log{"Changed(-518)", "Change"}), order);
}

TEST_F(Notification, FrozenEventsAreDroppedAndCounted) {
  Sink events;
  ASSERT_EQ(S_OK, events.ConnectEvents(object_.Get()));
  const auto control = As<IOleControl>(object_);
  control->FreezeEvents(TRUE);
  control->FreezeEvents(TRUE);
  PutText(object_.Get(), L"Caption", L"1");
  control->FreezeEvents(FALSE);
  PutText(object_.Get(), L"Caption", L"2");
  EXPECT_EQ(Log{}, events.log);
  control->FreezeEvents(FALSE);
  control->FreezeEvents(FALSE);  // one too many does no harm
  PutText(object_.Get(), L"Caption", L"3");
  EXPECT_EQ(Log{"Change"}, events.log);
}

// --- Connection points ------------------------------------------------------------------------------------

TEST_F(Notification, ConnectionPointsAreListedAndFound) {
  const auto container = As<IConnectionPointContainer>(object_);
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(S_OK, container->EnumConnectionPoints(points.GetAddressOf()));
  IConnectionPoint* found[3] = {};
  ULONG count = 0;
  EXPECT_EQ(S_FALSE, points->Next(3, found, &count));
  ASSERT_EQ(2u, count);
  IID first = {}, second = {};
  EXPECT_EQ(S_OK, found[0]->GetConnectionInterface(&first));
  EXPECT_EQ(S_OK, found[1]->GetConnectionInterface(&second));
  EXPECT_EQ(kEventsId, first);
  EXPECT_EQ(IID_IPropertyNotifySink, second);
  ComPtr<IConnectionPointContainer> owner;
  EXPECT_EQ(S_OK, found[0]->GetConnectionPointContainer(owner.GetAddressOf()));
  EXPECT_EQ(container.Get(), owner.Get());
  EXPECT_NE(As<IUnknown>(container).Get(), As<IUnknown>(found[0]).Get()) << "a point is an object of its own";
  EXPECT_FALSE(As<IDispatch>(found[0]));
  found[0]->Release();
  found[1]->Release();
  ComPtr<IConnectionPoint> none;
  EXPECT_EQ(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(IID_IDispatch, none.GetAddressOf()));
}

TEST_F(Notification, ConnectionsAreListedAndEnd) {
  const auto container = As<IConnectionPointContainer>(object_);
  ComPtr<IConnectionPoint> point;
  ASSERT_EQ(S_OK, container->FindConnectionPoint(kEventsId, point.GetAddressOf()));
  Sink a, b;
  DWORD first = 0, second = 0;
  EXPECT_EQ(S_OK, point->Advise(a.Object(), &first));
  EXPECT_EQ(S_OK, point->Advise(b.Object(), &second));
  EXPECT_NE(first, second);
  EXPECT_NE(0u, first);
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(S_OK, point->EnumConnections(connections.GetAddressOf()));
  CONNECTDATA data = {};
  ULONG count = 0;
  ASSERT_EQ(S_OK, connections->Next(1, &data, &count));
  EXPECT_EQ(first, data.dwCookie);
  EXPECT_EQ(a.Object(), data.pUnk);
  data.pUnk->Release();
  connections.Reset();
  PutText(object_.Get(), L"Caption", L"both");
  EXPECT_EQ(S_OK, point->Unadvise(first));
  EXPECT_EQ(CONNECT_E_NOCONNECTION, point->Unadvise(first));
  PutText(object_.Get(), L"Caption", L"one");
  EXPECT_EQ(1u, a.log.size());
  EXPECT_EQ(2u, b.log.size());
  EXPECT_EQ(0u, a.References());
  EXPECT_EQ(S_OK, point->Unadvise(second));
}

TEST_F(Notification, ASinkWithoutTheInterfaceIsRefused) {
  const auto container = As<IConnectionPointContainer>(object_);
  ComPtr<IConnectionPoint> point;
  ASSERT_EQ(S_OK, container->FindConnectionPoint(IID_IPropertyNotifySink, point.GetAddressOf()));
  DWORD cookie = 7;
  EXPECT_EQ(CONNECT_E_CANNOTCONNECT, point->Advise(object_.Get(), &cookie));
  EXPECT_EQ(0u, cookie);
  EXPECT_EQ(E_POINTER, point->Advise(nullptr, &cookie));
}

// --- The mouse --------------------------------------------------------------------------------------------

class Mouse : public Notification {
 protected:
  void SetUp() override {
    Notification::SetUp();
    ASSERT_EQ(S_OK, container_.Activate());
    window_ = container_.ControlWindow();
    ASSERT_TRUE(window_);
    PumpMessages();
    SendMessageW(window_, WM_MOUSEMOVE, 0, 0);  // it has come in, so that the next move is only a move
    ASSERT_EQ(S_OK, events_.ConnectEvents(object_.Get()));
  }
  void TearDown() override { events_.Disconnect(); }

  Log Send(UINT message, WPARAM keys, int x, int y) {
    events_.log.clear();
    SendMessageW(window_, message, keys, MAKELPARAM(x, y));
    return events_.log;
  }

  Sink events_;
  HWND window_ = nullptr;
};

TEST_F(Mouse, ReportsButtonsAsOneTwoFour) {
  EXPECT_EQ(Log{"MouseDown(1,0,5,6)"}, Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6));
  EXPECT_EQ(Log{"MouseDown(2,0,7,8)"}, Send(WM_RBUTTONDOWN, MK_LBUTTON | MK_RBUTTON, 7, 8));
  EXPECT_EQ(Log{"MouseDown(4,0,9,9)"}, Send(WM_MBUTTONDOWN, MK_MBUTTON, 9, 9));
  EXPECT_EQ(Log{"MouseMove(7,0,1,2)"}, Send(WM_MOUSEMOVE, MK_LBUTTON | MK_RBUTTON | MK_MBUTTON, 1, 2));
  EXPECT_EQ(Log{"MouseMove(0,0,1,2)"}, Send(WM_MOUSEMOVE, 0, 1, 2));
}

TEST_F(Mouse, ReportsShiftCtrlAndAltAsOneTwoFour) {
  EXPECT_EQ(Log{"MouseMove(0,1,0,0)"}, Send(WM_MOUSEMOVE, MK_SHIFT, 0, 0));
  EXPECT_EQ(Log{"MouseMove(0,2,0,0)"}, Send(WM_MOUSEMOVE, MK_CONTROL, 0, 0));
  BYTE keys[256] = {};
  keys[VK_MENU] = 0x80;
  SetKeyboardState(keys);
  EXPECT_EQ(Log{"MouseMove(0,7,0,0)"}, Send(WM_MOUSEMOVE, MK_CONTROL | MK_SHIFT, 0, 0));
  keys[VK_MENU] = 0;
  SetKeyboardState(keys);
}

TEST_F(Mouse, ReportsPositionsOutsideWhileCaptured) {
  Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6);
  EXPECT_EQ(window_, GetCapture());
  EXPECT_EQ(Log{"MouseMove(1,0,-3,-4)"}, Send(WM_MOUSEMOVE, MK_LBUTTON, -3, -4));
  Send(WM_LBUTTONUP, 0, 5, 6);
  EXPECT_NE(window_, GetCapture());
}

TEST_F(Mouse, ClicksAfterTheReleaseInside) {
  Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6);
  EXPECT_EQ((Log{"MouseUp(1,0,5,6)", "Click"}), Send(WM_LBUTTONUP, 0, 5, 6));
  Send(WM_RBUTTONDOWN, MK_RBUTTON, 5, 6);
  EXPECT_EQ((Log{"MouseUp(2,0,5,6)", "Click"}), Send(WM_RBUTTONUP, 0, 5, 6));
  Send(WM_MBUTTONDOWN, MK_MBUTTON, 5, 6);
  EXPECT_EQ(Log{"MouseUp(4,0,5,6)"}, Send(WM_MBUTTONUP, 0, 5, 6));
}

TEST_F(Mouse, DoesNotClickOutsideNorWithoutAPress) {
  Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6);
  EXPECT_EQ(Log{"MouseUp(1,0,-1,6)"}, Send(WM_LBUTTONUP, 0, -1, 6));
  EXPECT_EQ(Log{"MouseUp(1,0,5,6)"}, Send(WM_LBUTTONUP, 0, 5, 6));
  Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6);
  ReleaseCapture();
  EXPECT_EQ(Log{"MouseUp(1,0,5,6)"}, Send(WM_LBUTTONUP, 0, 5, 6)) << "the capture was taken away";
}

TEST_F(Mouse, DoubleClickComesInPlaceOfTheSecondPress) {
  EXPECT_EQ(Log{"MouseDown(1,0,5,6)"}, Send(WM_LBUTTONDOWN, MK_LBUTTON, 5, 6));
  EXPECT_EQ((Log{"MouseUp(1,0,5,6)", "Click"}), Send(WM_LBUTTONUP, 0, 5, 6));
  EXPECT_EQ(Log{"DblClick"}, Send(WM_LBUTTONDBLCLK, MK_LBUTTON, 5, 6));
  EXPECT_EQ(Log{"MouseUp(1,0,5,6)"}, Send(WM_LBUTTONUP, 0, 5, 6));
}

TEST_F(Mouse, HandlersMayChangeTheArguments) {
  Sink second;
  ASSERT_EQ(S_OK, second.ConnectEvents(object_.Get()));
  events_.on_event = [this](const std::string&) {
    *events_.arguments->rgvarg[0].pfltVal = 40;  // y
    *events_.arguments->rgvarg[3].piVal = 9;     // Button
  };
  Send(WM_MOUSEMOVE, 0, 3, 4);
  EXPECT_EQ(Log{"MouseMove(0,0,3,4)"}, events_.log);
  EXPECT_EQ(Log{"MouseMove(9,0,3,40)"}, second.log) << "the arguments are the same for every sink";
}

TEST_F(Mouse, ADisabledControlLeavesTheMouseAloneInRunMode) {
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Enabled", Variant::Bool(false)));
  EXPECT_FALSE(IsWindowEnabled(window_));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Enabled", Variant::Bool(true)));
  EXPECT_TRUE(IsWindowEnabled(window_));
}

}  // namespace
}  // namespace ocx_test
