// The sample designer, driven by the messages that a user's hands send: place, set, add images, save, load,
// run.
#include "activex/form_bench.h"  // first: it wants the system's headers whole

#include "activex/bitmap_file.h"
#include "activex/image_owner.h"
#include "activex/page_in_frame.h"

namespace ocx_test {
namespace {

class FormDesigner : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(S_OK, Server::Get().Register()); }
  static void TearDownTestSuite() { Server::Get().Unregister(); }
  static long Number(Element& element, const wchar_t* name) { return GetNumber(&element.Dispatch(), name); }
  static std::wstring Text(Element& element, const wchar_t* name) {
    return GetText(&element.Dispatch(), name);
  }

  Path path_;
};

// --- Placing ----------------------------------------------------------------------------------------------

TEST_F(FormDesigner, PlacesControlsThatAreDesignedOneBelowTheOther) {
  Bench bench;
  Element& first = bench.Place();
  Element& second = bench.Place();
  EXPECT_EQ(L"Marklet1", first.Name());
  EXPECT_EQ(L"Marklet1", Text(first, L"Caption")) << "as the form calls it";
  EXPECT_EQ(L"Marklet2", second.Name());
  EXPECT_EQ((designer::Place{16, 16, 160, 32}), first.GetPlace());
  EXPECT_EQ((designer::Place{16, 56, 160, 32}), second.GetPlace());
  EXPECT_EQ(bench.Get().Form().Selected(), &second);
  ASSERT_TRUE(first.Window());
  EXPECT_TRUE(IsWindowVisible(first.Window()));
  EXPECT_EQ(bench.Get().Form().Window(), GetParent(first.Window()));
}

TEST_F(FormDesigner, SelectsTheTopmostControlByAClickAndNoneBesideThem) {
  Bench bench;
  Element& below = bench.Place();
  Element& above = bench.Place();
  above.Move({20, 20, 50, 20});
  bench.Mouse(WM_LBUTTONDOWN, 300, 200);
  bench.Mouse(WM_LBUTTONUP, 300, 200);
  EXPECT_EQ(nullptr, bench.Get().Form().Selected());
  bench.Mouse(WM_LBUTTONDOWN, 17, 17);
  bench.Mouse(WM_LBUTTONUP, 17, 17);
  EXPECT_EQ(&below, bench.Get().Form().Selected());
  bench.Mouse(WM_LBUTTONDOWN, 40, 25);
  bench.Mouse(WM_LBUTTONUP, 40, 25);
  EXPECT_EQ(&above, bench.Get().Form().Selected());
}

TEST_F(FormDesigner, TheGlassTakesTheMouseFromTheControlsAndTheirHandles) {
  Bench bench;
  Element& element = bench.Place();
  for (POINT point : {POINT{30, 30}, POINT{12, 12}, POINT{400, 300}}) {
    ClientToScreen(bench.Get().Form().Window(), &point);
    EXPECT_EQ(bench.Get().Form().Glass(), WindowFromPoint(point)) << point.x << " " << point.y;
  }
  EXPECT_TRUE(element.Window());
}

TEST_F(FormDesigner, MovesAControlByItsBodyAlongTheGrid) {
  Bench bench;
  Element& element = bench.Place();
  bench.Drag(20, 20, 63, 31);
  EXPECT_EQ((designer::Place{56, 24, 160, 32}), element.GetPlace());
  RECT place = {};
  GetWindowRect(element.Window(), &place);
  MapWindowPoints(nullptr, bench.Get().Form().Window(), reinterpret_cast<POINT*>(&place), 2);
  EXPECT_EQ(56, place.left);
  EXPECT_EQ(56, place.bottom);
  bench.Drag(60, 30, 63, 31, MK_CONTROL);
  EXPECT_EQ((designer::Place{59, 25, 160, 32}), element.GetPlace()) << "off the grid";
}

TEST_F(FormDesigner, ResizesAControlByEachOfItsHandles) {
  Bench bench;
  Element& element = bench.Place();
  constexpr designer::Place kBefore = {80, 80, 160, 64};
  for (std::size_t i = 0; i < designer::kHandles; ++i) {
    element.Move(kBefore);
    const designer::Place handle = designer::HandlesAround(kBefore, 7)[i];
    const int x = handle.left + 3, y = handle.top + 3;
    bench.Drag(x, y, x - 16, y - 24);
    EXPECT_EQ(designer::Dragged(kBefore, static_cast<designer::Grip>(i), -16, -24, 8, 8), element.GetPlace())
        << i;
    EXPECT_NE(kBefore, element.GetPlace()) << i;
  }
}

TEST_F(FormDesigner, EscapeBringsBackWhatIsDragged) {
  Bench bench;
  Element& element = bench.Place();
  bench.Mouse(WM_LBUTTONDOWN, 20, 20, MK_LBUTTON);
  bench.Mouse(WM_MOUSEMOVE, 90, 90, MK_LBUTTON);
  EXPECT_EQ(88, element.GetPlace().left);
  bench.Key(VK_ESCAPE);
  EXPECT_EQ((designer::Place{16, 16, 160, 32}), element.GetPlace());
  bench.Mouse(WM_MOUSEMOVE, 120, 120, MK_LBUTTON);
  EXPECT_EQ((designer::Place{16, 16, 160, 32}), element.GetPlace());
  EXPECT_NE(bench.Get().Form().Glass(), GetCapture());
}

TEST_F(FormDesigner, ObeysTheKeyboard) {
  Bench bench;
  Element& first = bench.Place();
  Element& second = bench.Place();
  bench.Key(VK_RIGHT);
  bench.Key(VK_DOWN);
  EXPECT_EQ((designer::Place{24, 64, 160, 32}), second.GetPlace());
  bench.Key(VK_TAB);
  EXPECT_EQ(&first, bench.Get().Form().Selected());
  bench.Key(VK_DELETE);
  EXPECT_EQ(1u, bench.Controls().size());
  EXPECT_EQ(nullptr, bench.Get().Form().Selected());
  bench.Key(VK_DELETE);
  EXPECT_EQ(1u, bench.Controls().size());
  bench.Do(designer::kNextControl);
  EXPECT_EQ(&second, bench.Get().Form().Selected());
  bench.Key(VK_ESCAPE);
  EXPECT_EQ(nullptr, bench.Get().Form().Selected());
}

TEST_F(FormDesigner, LetsKeysThroughToWhatTheyAreFor) {
  Bench bench;
  Element& first = bench.Place();
  bench.Place();
  const HWND glass = bench.Get().Form().Glass();
  EXPECT_TRUE(bench.Press(glass, VK_TAB));
  EXPECT_EQ(&first, bench.Get().Form().Selected());
  EXPECT_TRUE(bench.Press(glass, VK_RIGHT));
  EXPECT_EQ(24, first.GetPlace().left);
  for (const auto& [name, value] : {std::pair{L"Caption", L"typed"}, std::pair{L"WordWrap", L"False"}}) {
    ASSERT_TRUE(bench.SelectRow(name));
    SetWindowTextW(bench.Editor(), value);
    EXPECT_TRUE(bench.Press(bench.EditorText(), VK_RETURN));
    EXPECT_EQ(value, bench.Shown(name));
    SetWindowTextW(bench.Editor(), L"half");
    EXPECT_TRUE(bench.Press(bench.EditorText(), VK_ESCAPE));
    EXPECT_EQ(value, bench.Shown(name));
  }
  EXPECT_EQ(L"typed", Text(first, L"Caption"));
  EXPECT_TRUE(bench.Press(bench.Item(PropertyGrid::kList), VK_F5));
  ASSERT_TRUE(bench.Get().Running());
  EXPECT_TRUE(bench.Press(bench.Get().Running()->Events(), VK_ESCAPE));
  EXPECT_FALSE(bench.Get().Running());
}

TEST_F(FormDesigner, FollowsAControlThatTakesItsOwnSize) {
  Bench bench;
  Element& element = bench.Place();
  bench.Type(L"WordWrap", L"False");
  bench.Type(L"AutoSize", L"True");
  bench.Type(L"Caption", L"a");
  const int narrow = element.GetPlace().width;
  bench.Type(L"Caption", L"a longer caption");
  EXPECT_GT(element.GetPlace().width, narrow);
  RECT inside = {};
  GetClientRect(element.Window(), &inside);
  EXPECT_EQ(inside.right, element.GetPlace().width);
}

TEST_F(FormDesigner, ScrollsAFormThatIsLargerThanItsDesk) {
  Bench bench;
  const HWND form = bench.Get().Form().Window(), desk = GetParent(form);
  const auto left = [&] {
    RECT place = {};
    GetWindowRect(form, &place);
    MapWindowPoints(nullptr, desk, reinterpret_cast<POINT*>(&place), 2);
    return place.left;
  };
  EXPECT_FALSE(GetWindowLongPtrW(desk, GWL_STYLE) & WS_HSCROLL);
  bench.Get().Form().Resize({2000, 200});
  EXPECT_TRUE(GetWindowLongPtrW(desk, GWL_STYLE) & WS_HSCROLL);
  EXPECT_EQ(8, left());
  SendMessageW(desk, WM_HSCROLL, SB_PAGEDOWN, 0);
  EXPECT_LT(left(), -100);
  bench.Get().Form().Resize({200, 200});
  EXPECT_EQ(8, left());
  EXPECT_FALSE(GetWindowLongPtrW(desk, GWL_STYLE) & WS_HSCROLL);
}

// --- Properties -------------------------------------------------------------------------------------------

TEST_F(FormDesigner, ListsThePropertiesThatTheTypeLibraryShowsUnderTheirCategories) {
  Bench bench;
  bench.Place();
  const auto rows = bench.Rows();
  const auto at = [&](const wchar_t* text) {
    return std::find(rows.begin(), rows.end(), text) - rows.begin();
  };
  const auto count = static_cast<std::ptrdiff_t>(rows.size());
  EXPECT_EQ(0, at(L"Appearance"));
  EXPECT_LT(at(L"BackColor"), at(L"Caption"));
  EXPECT_LT(at(L"Caption"), at(L"Behavior"));
  EXPECT_EQ(at(L"Behavior") + 1, at(L"AutoSize"));
  EXPECT_EQ(at(L"Image") + 1, at(L"ImageKey"));
  EXPECT_LT(at(L"ImageKey"), at(L"Misc"));
  EXPECT_LT(at(L"Misc"), at(L"WordWrap"));
  for (const wchar_t* hidden : {L"hwnd", L"FontBold", L"FontSize"}) EXPECT_EQ(count, at(hidden));
}

TEST_F(FormDesigner, FoldsACategory) {
  Bench bench;
  bench.Place();
  const auto all = bench.Rows();
  ASSERT_TRUE(bench.SelectRow(L"Misc"));
  SendMessageW(bench.Item(PropertyGrid::kList), WM_KEYDOWN, VK_LEFT, 1);
  EXPECT_FALSE(bench.SelectRow(L"WordWrap"));
  EXPECT_TRUE(bench.SelectRow(L"Misc"));
  SendMessageW(bench.Item(PropertyGrid::kList), WM_KEYDOWN, VK_RIGHT, 1);
  EXPECT_EQ(all, bench.Rows());
}

TEST_F(FormDesigner, SetsPropertiesOfEveryKind) {
  Bench bench;
  Element& element = bench.Place();
  bench.Type(L"Caption", L"<b>a</b> caption");
  EXPECT_EQ(L"<b>a</b> caption", Text(element, L"Caption"));
  bench.Type(L"WordWrap", L"false");
  EXPECT_EQ(0, Number(element, L"WordWrap"));
  EXPECT_EQ(L"False", bench.Shown(L"WordWrap"));
  bench.Type(L"TextEffect", L"effectShadow");
  EXPECT_EQ(2, Number(element, L"TextEffect"));
  bench.Type(L"ImageSize", L"77");
  EXPECT_EQ(77, Number(element, L"ImageSize"));
  EXPECT_EQ(L"77", bench.Shown(L"ImageSize"));
  bench.Type(L"ForeColor", L"#FF8000");
  EXPECT_EQ(0x0080FF, Number(element, L"ForeColor"));
  bench.Type(L"BackColor", L"Highlight");
  EXPECT_EQ(static_cast<long>(0x8000000D), Number(element, L"BackColor"));
  bench.Type(L"Font", L"Tahoma, 15, bold");
  EXPECT_EQ(L"Tahoma, 15, bold", bench.Shown(L"Font"));
  EXPECT_EQ(-1, Number(element, L"FontBold"));
  EXPECT_TRUE(bench.Get().IsDirty());
}

TEST_F(FormDesigner, TakesAChoiceOutOfTheListAtOnce) {
  Bench bench;
  Element& element = bench.Place();
  ASSERT_TRUE(bench.SelectRow(L"TextEffect"));
  const HWND choices = bench.Item(PropertyGrid::kChoices);
  EXPECT_EQ(6, SendMessageW(choices, CB_GETCOUNT, 0, 0));
  SendMessageW(choices, CB_SETCURSEL, 3, 0);
  SendMessageW(bench.Get().Grid().Window(), WM_COMMAND, MAKEWPARAM(PropertyGrid::kChoices, CBN_SELENDOK),
               reinterpret_cast<LPARAM>(choices));
  EXPECT_EQ(3, Number(element, L"TextEffect"));
}

TEST_F(FormDesigner, PutsBackWhatIsRefusedAndSaysWhy) {
  Bench bench;
  Element& element = bench.Place();
  const long before = Number(element, L"ForeColor");
  bench.Type(L"ForeColor", L"reddish");
  EXPECT_EQ(before, Number(element, L"ForeColor"));
  EXPECT_EQ(L"Button text", bench.Shown(L"ForeColor"));
  EXPECT_NE(std::wstring::npos, bench.Get().Status().find(L"ForeColor stays as it was"));
  bench.Type(L"Font", L"Tahoma");
  EXPECT_NE(L"Tahoma", bench.Shown(L"Font"));
}

TEST_F(FormDesigner, EscapeInAValueBringsBackTheOldOne) {
  Bench bench;
  Element& element = bench.Place();
  ASSERT_TRUE(bench.SelectRow(L"Caption"));
  SetWindowTextW(bench.Editor(), L"half a");
  SendMessageW(bench.Editor(), WM_KEYDOWN, VK_ESCAPE, 1);
  EXPECT_EQ(L"Marklet1", designer::TextOf(bench.Editor()));
  EXPECT_EQ(L"Marklet1", Text(element, L"Caption"));
}

// A designer that wrote back what it only shows would lose the caption.
TEST_F(FormDesigner, LeavesATextAloneThatTheControlHides) {
  Bench bench;
  Element& element = bench.Place();
  bench.Type(L"Caption", L"заголовок");
  EXPECT_EQ(L"(Unicode Text)", bench.Shown(L"Caption"));
  bench.Get().Grid().Commit();
  bench.Do(designer::kRun);
  ASSERT_TRUE(bench.Get().Running());
  EXPECT_EQ(L"заголовок", GetText(&bench.Get().Running()->Controls()[0]->Properties(), L"Caption"));
  EXPECT_TRUE(element.Window());
}

TEST_F(FormDesigner, FollowsAPropertyThatChangesOtherwise) {
  Bench bench;
  Element& element = bench.Place();
  ASSERT_TRUE(bench.SelectRow(L"Caption"));
  PutText(&element.Dispatch(), L"Caption", L"set by a script");
  EXPECT_EQ(L"set by a script", designer::TextOf(bench.Editor()));
}

TEST_F(FormDesigner, AsksForColoursAndFonts) {
  Bench bench;
  Element& element = bench.Place();
  bench.answers.colour = 0x112233;
  ASSERT_TRUE(bench.SelectRow(L"ForeColor"));
  bench.PressMore();
  EXPECT_EQ(0x112233, Number(element, L"ForeColor"));
  bench.answers.font = designer::FontValue{L"Tahoma", 1200, false, true};
  ASSERT_TRUE(bench.SelectRow(L"Font"));
  bench.PressMore();
  EXPECT_EQ(L"Tahoma, 12, italic", bench.Shown(L"Font"));
  bench.answers.colour.reset();
  ASSERT_TRUE(bench.SelectRow(L"ForeColor"));
  bench.PressMore();
  EXPECT_EQ(0x112233, Number(element, L"ForeColor")) << "cancelled";
}

TEST_F(FormDesigner, ChoosesAControlByItsName) {
  Bench bench;
  Element& first = bench.Place();
  bench.Place();
  const HWND names = bench.Item(PropertyGrid::kNames);
  EXPECT_EQ(2, SendMessageW(names, CB_GETCOUNT, 0, 0));
  EXPECT_EQ(1, SendMessageW(names, CB_GETCURSEL, 0, 0));
  SendMessageW(names, CB_SETCURSEL, 0, 0);
  SendMessageW(bench.Get().Grid().Window(), WM_COMMAND, MAKEWPARAM(PropertyGrid::kNames, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(names));
  EXPECT_EQ(&first, bench.Get().Form().Selected());
}

// --- Files ------------------------------------------------------------------------------------------------

TEST_F(FormDesigner, SavesAndLoadsWhatIsOnTheForm) {
  Bench bench;
  bench.Place();
  bench.Type(L"Caption", L"<i>saved</i>");
  bench.Drag(20, 20, 60, 60);
  bench.answers.file = path_.Get();
  bench.Do(designer::kSaveForm);
  EXPECT_FALSE(bench.Get().IsDirty());
  EXPECT_EQ(path_.Get(), bench.Get().Path());
  const designer::Place place = bench.Controls()[0]->GetPlace();
  bench.Do(designer::kNewForm);
  EXPECT_TRUE(bench.Controls().empty());
  bench.Do(designer::kOpenForm);
  ASSERT_EQ(1u, bench.Controls().size());
  EXPECT_EQ(L"Marklet1", bench.Controls()[0]->Name());
  EXPECT_EQ(L"<i>saved</i>", Text(*bench.Controls()[0], L"Caption"));
  EXPECT_EQ(place, bench.Controls()[0]->GetPlace());
  EXPECT_FALSE(bench.Get().IsDirty());
  EXPECT_TRUE(bench.answers.asked.empty());
  const auto before = path_.Bytes();
  bench.Do(designer::kSaveForm);
  EXPECT_EQ(before, path_.Bytes()) << "nothing has changed";
}

TEST_F(FormDesigner, AFormKeepsItsSizeInInchesOnAnotherScreen) {
  Bench bench;
  bench.Place();
  bench.answers.file = path_.Get();
  bench.Do(designer::kSaveForm);
  Bench fine(144);
  ASSERT_TRUE(fine.Get().Open(path_.Get()));
  EXPECT_EQ((designer::Place{24, 24, 240, 48}), fine.Controls()[0]->GetPlace());
  EXPECT_EQ(720, fine.Get().Form().Size().cx);
  EXPECT_EQ(480, fine.Get().Form().Size().cy);
  fine.answers.file = path_.Get();
  const auto before = path_.Bytes();
  fine.Do(designer::kSaveForm);
  EXPECT_EQ(before.size(), path_.Bytes().size());
  ASSERT_TRUE(bench.Get().Open(path_.Get()));
  EXPECT_EQ((designer::Place{16, 16, 160, 32}), bench.Controls()[0]->GetPlace());
}

TEST_F(FormDesigner, RefusesAFileThatIsCutOffAndKeepsTheForm) {
  Bench bench;
  bench.Place();
  bench.answers.file = path_.Get();
  bench.Do(designer::kSaveForm);
  const auto whole = path_.Bytes();
  for (std::size_t size = 0; size < whole.size(); size += 37) {
    path_.Write({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    EXPECT_FALSE(bench.Get().Open(path_.Get())) << size;
  }
  EXPECT_EQ((whole.size() + 36) / 37, bench.answers.told.size());
  EXPECT_EQ(1u, bench.Controls().size());
  EXPECT_FALSE(bench.Get().IsDirty());
  EXPECT_FALSE(bench.Get().Open(path_.Get() + L".gone"));
  EXPECT_NE(std::wstring::npos, bench.answers.told.back().find(L"can't be read"));
}

TEST_F(FormDesigner, RefusesAFileThatIsTooLargeWithoutReadingIt) {
  const HANDLE file = CreateFileW(path_.Get().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  LARGE_INTEGER size = {};
  size.QuadPart = LONGLONG{designer::kLargestFile} + 1;
  ASSERT_TRUE(SetFilePointerEx(file, size, nullptr, FILE_BEGIN));
  ASSERT_TRUE(SetEndOfFile(file));
  CloseHandle(file);
  Bench bench;
  EXPECT_FALSE(bench.Get().Open(path_.Get()));
  ASSERT_EQ(1u, bench.answers.told.size());
  EXPECT_NE(std::wstring::npos, bench.answers.told[0].find(L"is too large for a form"));
}

TEST_F(FormDesigner, RefusesAControlThatItDoesntOffer) {
  Bench bench;
  bench.Place();
  bench.answers.file = path_.Get();
  bench.Do(designer::kSaveForm);
  GUID other = kClassId;
  ++other.Data1;
  Bench stranger(96, {{other, L"Other"}});
  EXPECT_FALSE(stranger.Get().Open(path_.Get()));
  ASSERT_EQ(1u, stranger.answers.told.size());
  EXPECT_EQ(L"Marklet1 is a control that this program doesn't offer.", stranger.answers.told[0]);
  stranger.Do(designer::kPlace);
  EXPECT_EQ(2u, stranger.answers.told.size()) << "there is no such class";
  EXPECT_TRUE(stranger.Controls().empty());
}

TEST_F(FormDesigner, AsksBeforeChangesAreLost) {
  Bench bench;
  bench.Place();
  bench.Do(designer::kNewForm);
  EXPECT_EQ(1u, bench.answers.asked.size());
  EXPECT_EQ(1u, bench.Controls().size()) << "cancelled";
  SendMessageW(bench.Get().Window(), WM_CLOSE, 0, 0);
  EXPECT_EQ(2u, bench.answers.asked.size());
  EXPECT_FALSE(bench.closed);
  bench.answers.answer = designer::Answer::Yes;
  SendMessageW(bench.Get().Window(), WM_CLOSE, 0, 0);
  EXPECT_FALSE(bench.closed) << "no file was chosen";
  bench.answers.file = path_.Get();
  SendMessageW(bench.Get().Window(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(bench.closed);
  EXPECT_FALSE(path_.Bytes().empty());
  bench.closed = false;
  bench.Place();
  bench.answers.answer = designer::Answer::No;
  SendMessageW(bench.Get().Window(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(bench.closed);
}

// --- Running ----------------------------------------------------------------------------------------------

TEST_F(FormDesigner, RunsTheFormWithItsEventsAndComesBack) {
  Bench bench;
  Element& element = bench.Place();
  bench.Do(designer::kRun);
  ASSERT_TRUE(bench.Get().Running());
  EXPECT_FALSE(IsWindowEnabled(bench.Get().Window()));
  const auto& running = *bench.Get().Running()->Controls().at(0);
  SendMessageW(running.Window(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 6));
  SendMessageW(running.Window(), WM_LBUTTONUP, 0, MAKELPARAM(5, 6));
  const HWND events = bench.Get().Running()->Events();
  const auto heard = [&](const wchar_t* event) {
    return SendMessageW(events, LB_FINDSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(event)) !=
           LB_ERR;
  };
  EXPECT_TRUE(heard(L"Marklet1: MouseDown 1, 0, 5, 6"));
  EXPECT_TRUE(heard(L"Marklet1: Click"));
  SendMessageW(bench.Get().Running()->Window(), WM_CLOSE, 0, 0);
  EXPECT_FALSE(bench.Get().Running());
  EXPECT_TRUE(IsWindowEnabled(bench.Get().Window()));
  EXPECT_TRUE(IsWindowVisible(element.Window()));
}

// --- The whole road ---------------------------------------------------------------------------------------

TEST(SlowFormDesigner, IsWalkedFromAnEmptyFormToOneThatRunsWithImages) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  const BitmapFile image;
  const Path path;
  {
    Bench bench;
    bench.answers.file = path.Get();
    bench.Place();
    bench.Place();
    bench.Type(L"Caption", L"<b>A lamp</b>");
    PageAnswers answers;
    answers.file = Narrow(image.Path());
    const AddingOnPage adding(L"lamp");
    ASSERT_TRUE(bench.SelectRow(L"ImageKey"));
    bench.PressMore();
    EXPECT_TRUE(adding.PageWasThere());
    bench.Type(L"ImageKey", L"lamp");
    bench.Do(designer::kSaveForm);
    EXPECT_TRUE(bench.answers.told.empty());
  }
  Bench bench;
  ASSERT_TRUE(bench.Get().Open(path.Get()));
  ASSERT_EQ(2u, bench.Controls().size());
  EXPECT_EQ(L"lamp", GetText(&bench.Controls()[1]->Dispatch(), L"ImageKey"));
  bench.Do(designer::kRun);
  ASSERT_TRUE(bench.Get().Running());
  auto& running = *bench.Get().Running()->Controls().at(1);
  EXPECT_EQ((std::vector<std::wstring>{L"lamp"}), ImageKeys(&running.Object()));
  EXPECT_EQ(L"<b>A lamp</b>", GetText(&running.Properties(), L"Caption"));
  bench.End();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  Server::Get().Unregister();
}

}  // namespace
}  // namespace ocx_test
