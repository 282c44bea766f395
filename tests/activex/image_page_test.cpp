// The control's page for images: its window, driven as a user drives it.
#include <bit>
#include <cmath>

#include "activex/bitmap_file.h"
#include "activex/container.h"
#include "activex/hidden_list.h"
#include "activex/image_owner.h"
#include "activex/page_host.h"
#include "activex/page_in_frame.h"
#include "activex/server_copy.h"
#include "platform/system_colours.h"
#include "support/gdi_handles.h"
#include "support/user_handles.h"

namespace ocx_test {
namespace {

using Keys = std::vector<std::wstring>;
// What the platform's own names for them stand for.
using marklet::COLOR_BTNFACE, marklet::COLOR_BTNHIGHLIGHT, marklet::COLOR_BTNSHADOW;

class ImagePage : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.ambients.user_mode = false;
    container_.Host();
    host_.Open(container_.Object());
  }
  void Load(const std::wstring& key) {
    ASSERT_TRUE(LoadImageFile(container_.Dispatch().Get(), file_.Path(), key));
  }
  // Images "image1", "image2"..., and the page shown anew.
  void LoadMany(int count) {
    for (int i = 1; i <= count; ++i) Load(L"image" + std::to_wstring(i));
    host_.Select(container_.Object());
  }
  Keys Images() const { return ImageKeys(container_.Object()); }
  // Types the key, if there is one, and chooses the file.
  void Add(const std::wstring& key) { Add(key, file_.Path()); }
  void Add(const std::wstring& key, const std::wstring& path) {
    host_.Type(key);
    answers_.file = Narrow(path);
    host_.Press(kBrowse);
  }

  BitmapFile file_;
  Container container_;
  PageAnswers answers_;
  PageHost host_;
};

// Whether the strip shows an image of the file at a place from its left edge.
bool HasDot(const Picture& strip, int x) { return strip.At(x + 8, strip.Height() / 2) == 0; }

// --- The class --------------------------------------------------------------------------------------------

TEST(ImagePageClass, IsMadeByTheServerAndHoldsItWhileItLives) {
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(S_OK, Server::Get().GetClassObject(kPageId, IID_PPV_ARGS(factory.GetAddressOf())));
  ComPtr<IPropertyPage2> page;
  ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, IID_PPV_ARGS(page.GetAddressOf())));
  factory.Reset();
  EXPECT_EQ(S_FALSE, Server::Get().CanUnloadNow());
  EXPECT_TRUE(As<IPropertyPage>(page));
  EXPECT_FALSE(As<IOleObject>(page));
  page.Reset();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

TEST(ImagePageClass, CantBeAggregated) {
  Container outer;
  outer.Host();
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(S_OK, Server::Get().GetClassObject(kPageId, IID_PPV_ARGS(factory.GetAddressOf())));
  void* made = &outer;
  EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(outer.Object(), IID_IUnknown, &made));
  EXPECT_EQ(nullptr, made);
}

TEST_F(ImagePage, TellsItsTitleAndItsSize) {
  PROPPAGEINFO info = {};
  info.cb = sizeof info;
  ASSERT_EQ(S_OK, host_.Page()->GetPageInfo(&info));
  EXPECT_STREQ(L"PropertyPage1", info.pszTitle);
  EXPECT_EQ(365, info.size.cx);
  EXPECT_EQ(240, info.size.cy);
  EXPECT_EQ(nullptr, info.pszDocString);
  EXPECT_EQ(nullptr, info.pszHelpFile);
  CoTaskMemFree(info.pszTitle);
  EXPECT_EQ(E_POINTER, host_.Page()->GetPageInfo(nullptr));
}

TEST_F(ImagePage, RefusesWhatComesOutOfTurn) {
  IPropertyPage2* const page = host_.Page();
  const RECT rect = {};
  EXPECT_EQ(E_UNEXPECTED, page->Activate(host_.Frame(), &rect, FALSE)) << "it is";
  EXPECT_EQ(E_INVALIDARG, page->Show(SW_MAXIMIZE));
  EXPECT_EQ(E_POINTER, page->Move(nullptr));
  EXPECT_EQ(E_POINTER, page->SetObjects(1, nullptr));
  EXPECT_EQ(S_OK, page->Deactivate());
  EXPECT_EQ(E_UNEXPECTED, page->Deactivate());
  EXPECT_EQ(E_UNEXPECTED, page->Show(SW_SHOW));
  EXPECT_EQ(E_UNEXPECTED, page->Move(&rect));
  EXPECT_EQ(nullptr, host_.Window());
}

// --- Its layout -------------------------------------------------------------------------------------------

struct Placed {
  int item;
  const wchar_t *kind, *caption;
  int left, top, width, height;  // twips
  const wchar_t* face;
  int hundredths;  // of a point
  LONG weight;
  bool starts_enabled;
};
const Placed kPlaced[] = {
    {kKeyLabel, L"Static", L"1. Icon Key:", 240, 120, 2175, 255, L"Tahoma", 825, 700, true},
    {kKey, L"Edit", L"", 240, 360, 3255, 315, L"MS Sans Serif", 825, 400, true},
    {kBrowseLabel, L"Static", L"2. Click to choose the icon:", 240, 960, 2655, 255, L"Tahoma", 825, 700,
     true},
    {kBrowse, L"Button", L"Browse Icons...", 240, 1200, 1935, 375, L"MS Sans Serif", 825, 400, false},
    {kStripLabel, L"Static", L"16x16 Preview:", 240, 2160, 2055, 255, L"Tahoma", 825, 700, true},
    {kPrevious, L"Button", L"3", 4560, 2040, 375, 255, L"Marlett", 975, 400, false},
    {kNext, L"Button", L"4", 4920, 2040, 375, 255, L"Marlett", 975, 400, false},
    {kStrip, L"Static", L"", 240, 2400, 5055, 495, L"MS Sans Serif", 825, 400, true},
    {kDeleteAll, L"Button", L"Delete All", 240, 3000, 1215, 375, L"Tahoma", 825, 400, false},
    {kDeleteIcon, L"Button", L"Delete Icon", 4080, 3000, 1215, 375, L"Tahoma", 825, 400, false},
};

int InPixels(int twips, int per_inch) { return static_cast<int>(std::lround(twips * per_inch / 1440.0)); }

void ExpectLayout(const PageHost& host, int per_inch) {
  for (const Placed& placed : kPlaced) {
    SCOPED_TRACE(std::to_string(placed.item) + " at " + std::to_string(per_inch));
    const HWND window = host.Item(placed.item);
    wchar_t kind[32] = {};
    GetClassNameW(window, kind, 32);
    EXPECT_STREQ(placed.kind, kind);
    EXPECT_EQ(placed.caption, PageHost::TextOf(window));
    const RECT place = host.Place(placed.item);
    EXPECT_EQ(InPixels(placed.left, per_inch), place.left);
    EXPECT_EQ(InPixels(placed.top, per_inch), place.top);
    EXPECT_EQ(InPixels(placed.width, per_inch), place.right - place.left);
    EXPECT_EQ(InPixels(placed.height, per_inch), place.bottom - place.top);
    LOGFONTW font = {};
    GetObjectW(std::bit_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    EXPECT_STREQ(placed.face, font.lfFaceName);
    EXPECT_EQ(placed.weight, font.lfWeight);
    EXPECT_EQ(-MulDiv(placed.hundredths, per_inch, 7200), font.lfHeight);
  }
}

TEST_F(ImagePage, StandsAsItIsDesigned) {
  ExpectLayout(host_, 96);
  LOGFONTW font = {};
  GetObjectW(std::bit_cast<HGDIOBJ>(SendMessageW(host_.Item(kNext), WM_GETFONT, 0, 0)), sizeof font, &font);
  EXPECT_EQ(SYMBOL_CHARSET, font.lfCharSet);
  const auto look = host_.Look();
  const auto colour = [](int index) {
    const COLORREF value = GetSysColor(index);
    return static_cast<DWORD>(GetRValue(value) << 16 | GetGValue(value) << 8 | GetBValue(value));
  };
  for (const int x : {16, 351}) {
    EXPECT_EQ(colour(COLOR_3DSHADOW), look->At(x, 127)) << x;
    EXPECT_EQ(colour(COLOR_3DHILIGHT), look->At(x, 128)) << x;
  }
  for (const int x : {15, 352}) EXPECT_EQ(colour(COLOR_3DFACE), look->At(x, 127)) << x;
}

// Each label reaches one row into what stands below it.
TEST_F(ImagePage, NoLabelHidesAnEdge) {
  const auto look = host_.Look();
  for (const int item : {kKey, kStrip}) {
    const RECT place = host_.Place(item);
    EXPECT_EQ(look->At(place.right - 20, place.top), look->At(place.left + 20, place.top)) << item;
  }
}

TEST_F(ImagePage, StartsWithItsButtonsOffUntilThereIsAnOwner) {
  host_.Select(nullptr);
  PageHost other;
  other.Open(nullptr);
  for (const Placed& placed : kPlaced) EXPECT_EQ(placed.starts_enabled, other.IsOn(placed.item));
}

TEST_F(ImagePage, IsGoneThroughInItsOrder) {
  const int order[] = {kPrevious, kNext, kDeleteAll, kDeleteIcon, kStrip, kKey, kBrowse};
  for (const int item : order) EnableWindow(host_.Item(item), TRUE);
  HWND at = nullptr;
  for (const int item : order) {
    at = GetNextDlgTabItem(host_.Window(), at, FALSE);
    EXPECT_EQ(item, GetDlgCtrlID(at));
  }
}

struct TipSearch {
  HWND owner;
  std::vector<HWND> found;
};
BOOL CALLBACK CollectTip(HWND window, LPARAM value) {
  wchar_t kind[40] = {};
  GetClassNameW(window, kind, 40);
  auto& search = *std::bit_cast<TipSearch*>(value);
  if (lstrcmpiW(kind, L"tooltips_class32") == 0 && GetWindow(window, GW_OWNER) == search.owner)
    search.found.push_back(window);
  return TRUE;
}
// The tooltips that belong to a frame of this thread.
std::vector<HWND> TipsOf(HWND frame) {
  TipSearch search = {frame, {}};
  EnumThreadWindows(GetCurrentThreadId(), CollectTip, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

TEST_F(ImagePage, HasATipForEachControlThatHasSomethingToTell) {
  const std::vector<HWND> tips = TipsOf(host_.Frame());
  ASSERT_EQ(1u, tips.size());
  struct ToolInfo {  // as every system takes it
    UINT size;
    UINT flags;
    HWND parent;
    UINT_PTR tool;
    RECT rect;
    HINSTANCE instance;
    wchar_t* text;
    LPARAM value;
  };
  const std::pair<int, const wchar_t*> expected[] = {
      {kBrowse, L"Browse and select an icon."}, {kPrevious, L"View previous set of icons."},
      {kNext, L"View next set of icons."},      {kStrip, L"16x16 preview of currently assigned icons."},
      {kDeleteAll, L"Deletes all icons."},      {kDeleteIcon, L"Deletes the currently selected icon."}};
  constexpr UINT kGetToolCount = WM_USER + 13, kGetText = WM_USER + 56;
  EXPECT_EQ(6, SendMessageW(tips[0], kGetToolCount, 0, 0));
  for (const auto& [item, text] : expected) {
    wchar_t buffer[100] = {};
    ToolInfo tool = {};
    tool.size = sizeof tool;
    tool.parent = host_.Window();
    tool.tool = reinterpret_cast<UINT_PTR>(host_.Item(item));
    tool.text = buffer;
    SendMessageW(tips[0], kGetText, 0, reinterpret_cast<LPARAM>(&tool));
    EXPECT_STREQ(text, buffer);
  }
}

// A server of its own, which hasn't asked the system yet how fine the screen is.
class FinePage : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(copy_.Load());
    answers_ = std::make_unique<PageAnswers>(copy_.Module());
    container_.ambients.user_mode = false;
    container_.HostObject(copy_.CreateControl());
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(container_.Object())->InitNew());
  }
  void TearDown() override {
    container_.Close();
    EXPECT_EQ(S_OK, copy_.CanUnloadNow());
    answers_.reset();
    PageAnswers::per_inch = 0;
    PageAnswers::has_arrow_font = true;
    copy_.Unload();
  }

  ServerCopy copy_{L"page.ocx"};
  std::unique_ptr<PageAnswers> answers_;
  Container container_;
};

std::wstring ExampleImage(const wchar_t* name) {
  return SavedFormsPath() + L"\\..\\..\\examples\\images\\" + name;
}

TEST_F(FinePage, IsAsLargeAsItsScreenIsFine) {
  for (const wchar_t* name : {L"lamp", L"star", L"logo", L"lamp-lit"})
    EXPECT_TRUE(LoadImageFile(container_.Dispatch().Get(), ExampleImage(name) + L".png", name));
  for (const int per_inch : {96, 120, 144, 192}) {
    PageAnswers::per_inch = static_cast<UINT>(per_inch);
    PageHost host(copy_.Module());
    host.Open(container_.Object(), {0, 0, InPixels(5475, per_inch), InPixels(3600, per_inch)});
    ExpectLayout(host, per_inch);
    host.PressStrip(30);
    EXPECT_EQ(L"star", host.KeyText()) << "pictures keep their size in pixels";
    host.Look()->Save((L"page-" + std::to_wstring(per_inch) + L".bmp").c_str());
    host.Close();
  }
}

TEST_F(FinePage, FollowsItsScreen) {
  PageAnswers::per_inch = 96;
  PageHost host(copy_.Module());
  host.Open(container_.Object());
  PageAnswers::per_inch = 192;
  constexpr UINT kResolutionChanged = 0x02E3;
  SendMessageW(host.Window(), kResolutionChanged, 0, 0);
  ExpectLayout(host, 192);
  EXPECT_EQ(674 - 4, host.Strip()->Width()) << "inside its edge";
  EXPECT_EQ(0, host.Strip()->Count(kUntouched));
}

TEST_F(FinePage, DrawsItsArrowsWhereTheirFontIsMissing) {
  LoadImageFile(container_.Dispatch().Get(), ExampleImage(L"lamp.png"), L"lamp");
  PageAnswers::has_arrow_font = false;
  PageHost host(copy_.Module());
  host.Open(container_.Object());
  for (int i = 0; i < 16; ++i)
    LoadImageFile(container_.Dispatch().Get(), ExampleImage(L"star.png"), L"s" + std::to_wstring(i));
  host.Select(container_.Object());
  EXPECT_TRUE(host.IsOn(kNext));
  EXPECT_EQ(BS_OWNERDRAW, GetWindowLongW(host.Item(kNext), GWL_STYLE) & 0xF);
  const auto look = host.Look();
  look->Save(L"page-arrows.bmp");
  const RECT place = host.Place(kNext);
  // The rows of ink in a column, left and right of the middle.
  const auto ink = [&](int x) {
    int count = 0;
    for (int y = place.top + 3; y < place.bottom - 3; ++y) count += look->At(x, y) == 0;
    return count;
  };
  const int middle = (place.left + place.right) / 2;
  EXPECT_GT(ink(middle - 1), ink(middle + 1)) << "it points to the right";
  EXPECT_GT(ink(middle + 1), 0);
  host.Press(kNext);
  EXPECT_TRUE(host.IsOn(kPrevious));
}

// --- Adding -----------------------------------------------------------------------------------------------

TEST_F(ImagePage, AKeyTurnsBrowsingOnUnlessItBeginsWithADigit) {
  EXPECT_FALSE(host_.IsOn(kBrowse));
  host_.Type(L"a");
  EXPECT_TRUE(host_.IsOn(kBrowse));
  SetWindowTextW(host_.Item(kKey), L"1");
  EXPECT_FALSE(host_.IsOn(kBrowse));
  SetWindowTextW(host_.Item(kKey), L"   ");
  EXPECT_FALSE(host_.IsOn(kBrowse));
  SetWindowTextW(host_.Item(kKey), L" 1");
  EXPECT_TRUE(host_.IsOn(kBrowse));
}

TEST_F(ImagePage, AddsTheChosenFileUnderTheTypedKey) {
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectChanges(container_.Object()));
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty());
  Add(L" lamp ");
  EXPECT_EQ(Keys{L"lamp"}, Images());
  EXPECT_EQ(L"", host_.KeyText());
  EXPECT_FALSE(host_.IsOn(kBrowse));
  EXPECT_TRUE(host_.IsOn(kDeleteAll));
  EXPECT_EQ(S_OK, host_.Page()->IsPageDirty());
  EXPECT_EQ(std::vector<DWORD>{PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE}, host_.statuses);
  EXPECT_EQ(std::vector<std::string>{"Changed(-1)"}, sink.log) << "the host knows of it";
  EXPECT_EQ(S_OK, host_.Page()->Apply());
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty());
  EXPECT_EQ(Keys{L"lamp"}, Images());
}

TEST_F(ImagePage, AsksForAFileWithTheSystemsDialog) {
  Add(L"lamp");
  ASSERT_EQ(1u, answers_.dialogs.size());
  const PageAnswers::Dialog& dialog = answers_.dialogs[0];
  EXPECT_EQ(host_.Item(kBrowse), dialog.owner);
  EXPECT_EQ("Select an image to add...", dialog.title);
  EXPECT_EQ("ICO", dialog.extension);
  EXPECT_EQ(0x1000u, dialog.flags) << "the file must exist, and no more";
  EXPECT_EQ(1u, dialog.filter_index);
  EXPECT_EQ(260u, dialog.file_room);
  const char* const pairs[] = {"Common image files (*.ico,*.bmp,*.png,*.gif,*.jpg,*.cur)",
                               "*.bmp;*.gif;*.jpg;*.ico;*.png;*.cur",
                               "Icon files (*.ico)",
                               "*.ico",
                               "PNG files (*.png)",
                               "*.png",
                               "Bitmap files (*.bmp)",
                               "*.bmp",
                               "GIF files (*.gif)",
                               "*.gif",
                               "JPG files (*.jpg)",
                               "*.jpg",
                               "Cursor files (*.cur)",
                               "*.cur",
                               "All Files (*.*)",
                               "*.*"};
  std::string filter;
  for (const char* text : pairs) filter.append(text).push_back('\0');
  filter.push_back('\0');
  EXPECT_EQ(filter, dialog.filter);
}

TEST_F(ImagePage, ACancelledDialogLeavesTheKeyAndTheList) {
  host_.Type(L"lamp");
  host_.Press(kBrowse);
  EXPECT_EQ(1u, answers_.dialogs.size());
  EXPECT_EQ(L"lamp", host_.KeyText());
  EXPECT_EQ(Keys{}, Images());
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty());
}

TEST_F(ImagePage, RefusesADigitAfterBlanksWithABoxAndGoesOn) {
  Add(L" 1");
  ASSERT_EQ(1u, answers_.boxes.size());
  EXPECT_EQ(L"Keys can not start with a numeric character.", answers_.boxes[0].text);
  EXPECT_EQ(L"zvsMarklet", answers_.boxes[0].title);
  EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONINFORMATION), answers_.boxes[0].style);
  EXPECT_EQ(Keys{L""}, Images()) << "under an empty key";
}

TEST_F(ImagePage, AKeyThatIsTakenAddsNothing) {
  Add(L"lamp");
  Add(L"LAMP");
  EXPECT_EQ(Keys{L"lamp"}, Images());
  EXPECT_TRUE(answers_.boxes.empty());
}

TEST_F(ImagePage, KeepsEveryLetterOfAKey) {
  Add(L"\x03BB\x4E2D");
  EXPECT_EQ((Keys{L"\x03BB\x4E2D"}), Images());
}

TEST_F(ImagePage, AddsAFileWhosePathHasLettersBeyondAscii) {
  const BitmapFile file(L"\xE9t\xFC");
  Add(L"lamp", file.Path());
  EXPECT_EQ(Keys{L"lamp"}, Images());
  EXPECT_TRUE(HasDot(*host_.Strip(), 6)) << "it was read";
}

TEST_F(ImagePage, AFileBeyondTheDialogsCodePageIsAddedByItsShortNameAlone) {
  const BitmapFile file(L"\x4E2D\x0915");
  Add(L"full", file.Path());
  wchar_t path[MAX_PATH] = {};
  ASSERT_NE(0u, GetShortPathNameW(file.Path().c_str(), path, MAX_PATH));
  Add(L"short", path);
  EXPECT_EQ((Keys{L"full", L"short"}), Images());
  EXPECT_FALSE(HasDot(*host_.Strip(), 6)) << "the dialog can't tell its name";
  EXPECT_TRUE(HasDot(*host_.Strip(), 27));
}

TEST_F(ImagePage, AFileThatCantBeReadLeavesAnEmptyPlace) {
  host_.Type(L"nothing");
  answers_.file = "Z:\\nowhere\\nothing.bmp";
  host_.Press(kBrowse);
  Add(L"lamp");
  EXPECT_EQ((Keys{L"nothing", L"lamp"}), Images());
  host_.PressStrip(30);
  EXPECT_EQ(L"lamp", host_.KeyText());
}

// --- The strip --------------------------------------------------------------------------------------------

TEST_F(ImagePage, ShowsTheImagesOfTheControl) {
  LoadMany(3);
  const auto strip = host_.Strip();
  EXPECT_EQ(333, strip->Width());
  EXPECT_EQ(29, strip->Height());
  EXPECT_EQ(0, strip->Count(kUntouched));
  for (int i = 0; i < 4; ++i) EXPECT_EQ(i < 3, HasDot(*strip, 6 + i * 21)) << i;
}

TEST_F(ImagePage, APressChoosesTheImageAtItsPlace) {
  LoadMany(3);
  const struct {
    int x;
    const wchar_t* key;
  } presses[] = {{6, L"image1"}, {26, L"image1"}, {27, L"image2"}, {47, L"image2"}, {48, L"image3"}};
  for (const auto& press : presses) {
    host_.PressStrip(press.x);
    EXPECT_EQ(press.key, host_.KeyText()) << press.x;
  }
  EXPECT_TRUE(host_.IsOn(kDeleteIcon));
  EXPECT_TRUE(host_.IsOn(kBrowse)) << "the key that came is one that could be typed";
  for (const int x : {5, 0, 200}) {
    host_.PressStrip(x);
    EXPECT_EQ(L"image3", host_.KeyText()) << "nothing there changes nothing";
    EXPECT_TRUE(host_.IsOn(kDeleteIcon));
  }
}

TEST_F(ImagePage, EveryButtonOfTheMouseChooses) {
  LoadMany(3);
  host_.PressStrip(30, WM_RBUTTONDOWN);
  EXPECT_EQ(L"image2", host_.KeyText());
  host_.PressStrip(50, WM_MBUTTONDOWN);
  EXPECT_EQ(L"image3", host_.KeyText());
}

TEST_F(ImagePage, ShowsFifteenImagesAtATime) {
  LoadMany(15);
  EXPECT_FALSE(host_.IsOn(kNext));
  Load(L"image16");
  host_.Select(container_.Object());
  EXPECT_TRUE(host_.IsOn(kNext));
  EXPECT_FALSE(host_.IsOn(kPrevious));
  host_.Type(L"a");
  host_.Press(kNext);
  EXPECT_EQ(L"", host_.KeyText());
  EXPECT_FALSE(host_.IsOn(kNext));
  EXPECT_TRUE(host_.IsOn(kPrevious));
  EXPECT_TRUE(HasDot(*host_.Strip(), 6));
  EXPECT_FALSE(HasDot(*host_.Strip(), 27));
  host_.PressStrip(10);
  EXPECT_EQ(L"image16", host_.KeyText());
  host_.Press(kPrevious);
  EXPECT_FALSE(host_.IsOn(kPrevious));
  EXPECT_FALSE(host_.IsOn(kDeleteIcon));
  EXPECT_TRUE(HasDot(*host_.Strip(), 6 + 14 * 21));
}

TEST_F(ImagePage, TurnsThroughAThousandImages) {
  LoadMany(1000);
  int pages = 1;
  for (; host_.IsOn(kNext); ++pages) host_.Press(kNext);
  EXPECT_EQ(67, pages);
  const auto strip = host_.Strip();
  for (int i = 0; i < 15; ++i) EXPECT_EQ(i < 10, HasDot(*strip, 6 + i * 21)) << i;
  host_.PressStrip(6 + 9 * 21);
  EXPECT_EQ(L"image1000", host_.KeyText());
  host_.Press(kDeleteIcon);
  EXPECT_EQ(999u, Images().size());
  answers_.box_answer = IDYES;
  host_.Press(kDeleteAll);
  EXPECT_EQ(Keys{}, Images());
}

TEST_F(ImagePage, TheFocusMovesOnFromAButtonThatGoesOff) {
  LoadMany(16);
  SetFocus(host_.Item(kNext));
  host_.Press(kNext);
  EXPECT_NE(host_.Item(kNext), GetFocus());
  EXPECT_TRUE(IsChild(host_.Window(), GetFocus()));
  EXPECT_TRUE(IsWindowEnabled(GetFocus()));
}

TEST_F(ImagePage, AListThatChangesUnderItIsShownAtTheNextPress) {
  LoadMany(3);
  ComPtr<ImageOwner> owner;
  ASSERT_EQ(S_OK, container_.Object()->QueryInterface(kImageOwnerId,
                                                      reinterpret_cast<void**>(owner.GetAddressOf())));
  Variant key(L"image1");
  owner->DeleteIconImage(key.bstrVal);
  host_.PressStrip(10);
  EXPECT_EQ(L"image2", host_.KeyText());
  owner->DestroyIconByteCollectionData();
  host_.PressStrip(10);
  EXPECT_EQ(L"image2", host_.KeyText());
  EXPECT_FALSE(HasDot(*host_.Strip(), 6));
}

// --- Deleting ---------------------------------------------------------------------------------------------

TEST_F(ImagePage, DeletesTheChosenImageAndShowsAZero) {
  LoadMany(3);
  host_.PressStrip(30);
  host_.Press(kDeleteIcon);
  EXPECT_EQ((Keys{L"image1", L"image3"}), Images());
  EXPECT_EQ(L"0", host_.KeyText());
  EXPECT_FALSE(host_.IsOn(kBrowse));
  EXPECT_FALSE(host_.IsOn(kDeleteIcon));
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty()) << "it was done at once";
  EXPECT_TRUE(HasDot(*host_.Strip(), 27));
  EXPECT_FALSE(HasDot(*host_.Strip(), 48));
}

TEST_F(ImagePage, AsksBeforeItDeletesAll) {
  LoadMany(2);
  host_.Press(kDeleteAll);
  ASSERT_EQ(1u, answers_.boxes.size());
  EXPECT_EQ(L"Are you sure you want to delete all assigned icons?", answers_.boxes[0].text);
  EXPECT_EQ(L"Delete All", answers_.boxes[0].title);
  EXPECT_EQ(static_cast<UINT>(MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2), answers_.boxes[0].style);
  EXPECT_EQ(2u, Images().size());
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty());
  answers_.box_answer = IDYES;
  host_.Press(kDeleteAll);
  EXPECT_EQ(Keys{}, Images());
  EXPECT_EQ(S_OK, host_.Page()->IsPageDirty());
}

TEST_F(ImagePage, EveryApplyAfterDeleteAllDeletesAllAgainUntilAnImageIsAdded) {
  LoadMany(1);
  answers_.box_answer = IDYES;
  host_.Press(kDeleteAll);
  Load(L"other");
  EXPECT_EQ(S_OK, host_.Page()->Apply());
  EXPECT_EQ(Keys{}, Images());
  Add(L"lamp");
  EXPECT_EQ(S_OK, host_.Page()->Apply());
  EXPECT_EQ(Keys{L"lamp"}, Images());
}

// --- The keyboard -----------------------------------------------------------------------------------------

class Held {
 public:
  explicit Held(int key) {
    GetKeyboardState(before_);
    BYTE state[256];
    std::copy_n(before_, 256, state);
    state[key] = 0x80;
    SetKeyboardState(state);
  }
  ~Held() { SetKeyboardState(before_); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  BYTE before_[256];
};

TEST_F(ImagePage, TheTabKeyGoesThroughItAndOutAtItsEnds) {
  LoadMany(1);
  host_.Type(L"a");
  SetFocus(host_.Item(kDeleteAll));
  for (const int item : {kStrip, kKey, kBrowse}) {
    EXPECT_EQ(S_OK, host_.Key(VK_TAB));
    EXPECT_EQ(host_.Item(item), GetFocus()) << item;
  }
  EXPECT_EQ(S_FALSE, host_.Key(VK_TAB)) << "the frame's";
  EXPECT_EQ(host_.Item(kBrowse), GetFocus());
  const Held shift(VK_SHIFT);
  for (const int item : {kKey, kStrip, kDeleteAll}) {
    EXPECT_EQ(S_OK, host_.Key(VK_TAB));
    EXPECT_EQ(host_.Item(item), GetFocus()) << item;
  }
  EXPECT_EQ(S_FALSE, host_.Key(VK_TAB));
}

TEST_F(ImagePage, EnterPressesAButtonAndIsTheFramesElsewhere) {
  host_.Type(L"lamp");
  EXPECT_EQ(S_FALSE, host_.Key(VK_RETURN));
  EXPECT_TRUE(answers_.dialogs.empty());
  SetFocus(host_.Item(kBrowse));
  EXPECT_EQ(S_OK, host_.Key(VK_RETURN));
  EXPECT_EQ(1u, answers_.dialogs.size());
  EXPECT_EQ(S_FALSE, host_.Key(VK_ESCAPE));
}

TEST_F(ImagePage, LettersGoToItsTextAndWhatIsPressedWithAltToTheFrame) {
  SetFocus(host_.Item(kKey));
  MSG letter = {};
  letter.hwnd = host_.Item(kKey);
  letter.message = WM_CHAR;
  letter.wParam = L'x';
  letter.lParam = 1;
  EXPECT_EQ(S_OK, host_.Page()->TranslateAccelerator(&letter));
  EXPECT_EQ(L"x", host_.KeyText());
  letter.message = WM_SYSCHAR;
  EXPECT_EQ(S_FALSE, host_.Page()->TranslateAccelerator(&letter));
  letter.message = WM_CHAR;
  letter.hwnd = host_.Frame();
  EXPECT_EQ(S_FALSE, host_.Page()->TranslateAccelerator(&letter)) << "another window's";
  letter.message = WM_MOUSEMOVE;
  EXPECT_EQ(S_FALSE, host_.Page()->TranslateAccelerator(&letter));
  EXPECT_EQ(E_POINTER, host_.Page()->TranslateAccelerator(nullptr));
}

TEST_F(ImagePage, EditsTheKeyOfTheImageInItsText) {
  const auto id = [this](const wchar_t* name) { return IdOf(container_.Dispatch().Get(), name); };
  SetFocus(host_.Frame());
  EXPECT_EQ(S_OK, host_.Page()->EditProperty(id(L"ImageKey")));
  EXPECT_EQ(host_.Item(kKey), GetFocus());
  EXPECT_EQ(E_NOTIMPL, host_.Page()->EditProperty(id(L"Caption")));
  EXPECT_EQ(E_NOTIMPL, host_.Page()->EditProperty(4711));
}

// --- What may happen around it ----------------------------------------------------------------------------

TEST_F(ImagePage, KeepsItsTextAndItsPlaceWhileAnotherPageIsShown) {
  LoadMany(16);
  host_.Press(kNext);
  host_.Type(L"half a k");
  EXPECT_EQ(S_OK, host_.Page()->Deactivate());
  const RECT place = {5, 6, 370, 246};
  EXPECT_EQ(S_OK, host_.Page()->Activate(host_.Frame(), &place, FALSE));
  EXPECT_EQ(L"half a k", host_.KeyText());
  EXPECT_TRUE(host_.IsOn(kBrowse));
  EXPECT_TRUE(host_.IsOn(kPrevious));
  RECT shown = {};
  GetWindowRect(host_.Window(), &shown);
  MapWindowPoints(nullptr, host_.Frame(), reinterpret_cast<POINT*>(&shown), 2);
  EXPECT_TRUE(EqualRect(&place, &shown));
}

TEST_F(ImagePage, LeavesNoTipWhenItsWindowGoesWithItsParentAndMayBeShownAgain) {
  EXPECT_EQ(S_OK, host_.Page()->Deactivate());
  const HWND parent = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0, 400, 300, host_.Frame(),
                                      nullptr, nullptr, nullptr);
  const RECT place = {0, 0, 365, 240};
  EXPECT_EQ(S_OK, host_.Page()->Activate(parent, &place, FALSE));
  EXPECT_EQ(1u, TipsOf(host_.Frame()).size());
  DestroyWindow(parent);
  EXPECT_EQ(0u, TipsOf(host_.Frame()).size());
  EXPECT_EQ(S_OK, host_.Page()->Activate(host_.Frame(), &place, FALSE));
  host_.Type(L"lamp");
  EXPECT_TRUE(host_.IsOn(kBrowse));
}

TEST_F(ImagePage, LetsGoOfAnObjectThatIsNoLongerSelected) {
  IUnknown* const object = container_.Object();
  LoadMany(1);
  EXPECT_GT(References(object), 1u);
  host_.Select(nullptr);
  EXPECT_EQ(1u, References(object));
  host_.PressStrip(10);
  EXPECT_EQ(L"", host_.KeyText());
}

TEST_F(ImagePage, WorksOnAControlThatItsFormHasLetGoOf) {
  LoadMany(2);
  container_.Close();
  host_.PressStrip(10);
  EXPECT_EQ(L"image1", host_.KeyText());
  host_.Press(kDeleteIcon);
  EXPECT_FALSE(HasDot(*host_.Strip(), 27));
}

TEST_F(ImagePage, TwoPagesMayWorkOnOneControl) {
  LoadMany(2);
  PageHost other;
  other.Open(container_.Object());
  host_.PressStrip(10);
  host_.Press(kDeleteIcon);
  EXPECT_TRUE(HasDot(*other.Strip(), 27)) << "still the older picture";
  other.PressStrip(10);
  EXPECT_EQ(L"image2", other.KeyText());
  other.Press(kDeleteIcon);
  EXPECT_EQ(Keys{}, Images());
  host_.PressStrip(10);
  EXPECT_FALSE(HasDot(*host_.Strip(), 6));
}

TEST_F(ImagePage, MayBeClosedInsideItsDialog) {
  answers_.on_dialog = [this] { host_.Close(); };
  Add(L"lamp");
  EXPECT_EQ(nullptr, host_.Window());
  EXPECT_EQ(Keys{}, Images()) << "nothing was selected any more";
}

TEST_F(ImagePage, MayLoseItsFrameInsideItsDialog) {
  answers_.on_dialog = [this] {
    DestroyWindow(host_.Frame());
    host_.DropPage();
  };
  host_.Page()->SetPageSite(nullptr);
  Add(L"lamp");
  EXPECT_EQ(1u, References(container_.Object()));
}

TEST_F(ImagePage, MayBeClosedInsideItsBox) {
  LoadMany(2);
  answers_.box_answer = IDYES;
  answers_.on_box = [this] { host_.Close(); };
  host_.Press(kDeleteAll);
  EXPECT_EQ(2u, Images().size());
}

TEST_F(ImagePage, MayBeClosedWhenItSaysThatItChanged) {
  host_.on_status = [this] { host_.Close(); };
  Add(L"lamp");
  EXPECT_EQ(Keys{L"lamp"}, Images());
}

TEST_F(ImagePage, MayBeAppliedWhenItSaysThatItChanged) {
  host_.on_status = [this] { EXPECT_EQ(S_OK, host_.Page()->Apply()); };
  Add(L"lamp");
  EXPECT_EQ(Keys{L"lamp"}, Images());
  EXPECT_EQ(S_FALSE, host_.Page()->IsPageDirty());
}

// --- Other objects ----------------------------------------------------------------------------------------

// An object that answers to nothing, or to images with every call failing, or to every interface with itself.
class Stranger final : public ImageOwner {
 public:
  enum class Kind { Nobody, Failing, Anything };
  explicit Stranger(Kind kind) : kind_(kind) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    const bool known = iid == IID_IUnknown || kind_ == Kind::Anything ||
                       (kind_ == Kind::Failing && (iid == kImageOwnerId || iid == IID_IDispatch));
    if (!known) return E_NOINTERFACE;
    *object = this;
    ++references;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE DestroyIconByteCollectionData() override { return Fail(); }
  HRESULT STDMETHODCALLTYPE DeleteIconImage(BSTR) override { return Fail(); }
  HRESULT STDMETHODCALLTYPE LoadIconByteImageFromDisk(BSTR, BSTR, IDispatch**) override { return Fail(); }
  HRESULT STDMETHODCALLTYPE GetIconByteCollection(IDispatch** list) override {
    if (kind_ != Kind::Anything) return Fail();
    ++calls;
    *list = this;
    AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetFriendlyString(BSTR* text) override {
    if (kind_ != Kind::Anything) return Fail();
    ++calls;
    *text = SysAllocString(L"label");
    return S_OK;
  }

  ULONG references = 1;
  int calls = 0;

 private:
  HRESULT Fail() {
    ++calls;
    return E_FAIL;
  }
  Kind kind_;
};

class ImagePageOfStrangers : public ImagePage, public ::testing::WithParamInterface<Stranger::Kind> {};

TEST_P(ImagePageOfStrangers, DoesNothingToThem) {
  Stranger stranger(GetParam());
  {
    PageHost host;
    host.Open(&stranger);
    host.PressStrip(10);
    host.Type(L"lamp");
    answers_.file = Narrow(file_.Path());
    answers_.box_answer = IDYES;
    for (const int button : {kBrowse, kDeleteIcon, kDeleteAll, kNext, kPrevious}) {
      EnableWindow(host.Item(button), TRUE);
      host.Press(button);
    }
    EXPECT_EQ(1u, answers_.dialogs.size());
    EXPECT_FALSE(host.IsOn(kNext));
    EXPECT_FALSE(host.IsOn(kDeleteIcon));
    EXPECT_EQ(S_OK, host.Page()->Apply());
    EXPECT_FALSE(HasDot(*host.Strip(), 6));
    EXPECT_EQ(0, host.Strip()->Count(kUntouched));
  }
  EXPECT_EQ(1u, stranger.references);
  EXPECT_EQ(GetParam() != Stranger::Kind::Nobody, stranger.calls > 0);
}
INSTANTIATE_TEST_SUITE_P(All, ImagePageOfStrangers,
                         ::testing::Values(Stranger::Kind::Nobody, Stranger::Kind::Failing,
                                           Stranger::Kind::Anything));

class ImagePageOfAHiddenList : public ImagePage {
 protected:
  void SetUp() override {
    ImagePage::SetUp();
    object_ = HiddenListOf(container_.Object());
    ASSERT_TRUE(object_);
    host_.Select(object_.Get());
    Add(L"hidden");
  }

  ComPtr<IUnknown> object_;
};

TEST_F(ImagePageOfAHiddenList, AddsToIt) {
  EXPECT_TRUE(HasDot(*host_.Strip(), 6));
  EXPECT_EQ(Keys{}, Images()) << "the control's own are others";
  EXPECT_TRUE(host_.IsOn(kDeleteAll));
  host_.PressStrip(10);
  EXPECT_EQ(L"hidden", host_.KeyText());
}

TEST_F(ImagePageOfAHiddenList, DeletesNoSingleImage) {
  host_.PressStrip(10);
  host_.Press(kDeleteIcon);
  EXPECT_EQ(L"0", host_.KeyText());
  EXPECT_TRUE(HasDot(*host_.Strip(), 6)) << "it stays";
}

TEST_F(ImagePageOfAHiddenList, EmptiesItWithEveryApply) {
  EXPECT_EQ(S_OK, host_.Page()->Apply());
  host_.Select(object_.Get());
  EXPECT_FALSE(HasDot(*host_.Strip(), 6));
}

// A control of another file than the page's: what it holds in memory isn't the page's to read.
TEST_F(FinePage, OnlyDeletesFromAControlOfAnotherFile) {
  Container container;
  container.Host();
  LoadImageFile(container.Dispatch().Get(), ExampleImage(L"star.png"), L"star");
  PageHost host(copy_.Module());
  host.Open(container.Object());
  EXPECT_FALSE(host.IsOn(kDeleteAll)) << "there is no list that could be shown";
  EnableWindow(host.Item(kDeleteAll), TRUE);
  answers_->box_answer = IDYES;
  host.Press(kDeleteAll);
  EXPECT_EQ(Keys{}, ImageKeys(container.Object()));
}

// --- In the system's frame --------------------------------------------------------------------------------

TEST(ImagePageInTheSystemsFrame, IsOpenedByThePropertiesVerbAndAddsAnImage) {
  BitmapFile file;
  PageAnswers answers;
  answers.file = Narrow(file.Path());
  Container container;
  container.ambients.user_mode = false;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(S_OK, Server::Get().GetClassObject(kPageId, IID_PPV_ARGS(factory.GetAddressOf())));
  DWORD cookie = 0;
  ASSERT_EQ(S_OK,
            CoRegisterClassObject(kPageId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
  const AddingOnPage adding(L"lamp");
  EXPECT_EQ(S_OK, As<IOleObject>(container.Object())
                      ->DoVerb(OLEIVERB_PROPERTIES, nullptr, container.ClientSite(), 0, container.Window(),
                               nullptr));
  CoRevokeClassObject(cookie);
  EXPECT_TRUE(adding.PageWasThere());
  EXPECT_EQ(Keys{L"lamp"}, ImageKeys(container.Object()));
}

// The dialog itself, which the system answers with its own file name.
TEST(ImagePageInTheSystemsFrame, AddsAFileThatTheSystemsDialogGives) {
  BitmapFile file;
  Container container;
  container.ambients.user_mode = false;
  container.Host();
  PageHost host;
  host.Open(container.Object());
  host.Type(L"lamp");
  bool was_there = false;
  const Inside inside([&] {
    const HWND dialog = FindWindowW(L"#32770", L"Select an image to add...");
    constexpr int kFileName = 0x480, kFileNameList = 0x47C;
    if (!dialog || !IsWindowVisible(dialog)) return false;
    const HWND name =
        GetDlgItem(dialog, kFileName) ? GetDlgItem(dialog, kFileName) : GetDlgItem(dialog, kFileNameList);
    was_there = name != nullptr;
    SetWindowTextW(name, file.Path().c_str());
    PostMessageW(dialog, WM_COMMAND, was_there ? IDOK : IDCANCEL, 0);
    return true;
  });
  host.Press(kBrowse);
  EXPECT_TRUE(was_there);
  EXPECT_EQ(Keys{L"lamp"}, ImageKeys(container.Object()));
}

// --- What it leaves ---------------------------------------------------------------------------------------

TEST_F(ImagePage, LeavesNothing) {
  LoadMany(16);
  const auto use = [this] {
    PageHost host;
    host.Open(container_.Object());
    host.PressStrip(30);
    host.Press(kNext);
    host.Look();
    host.Close();
  };
  use();
  PumpMessages();
  const int gdi = marklet::CountGdiHandles(), user = marklet::CountUserHandles();
  for (int i = 0; i < 20; ++i) use();
  PumpMessages();
  EXPECT_LE(marklet::CountGdiHandles(), gdi + 5);
  EXPECT_LE(marklet::CountUserHandles(), user + 10);
}

}  // namespace
}  // namespace ocx_test
