// What a container asks the control to do.
#include <string>

#include "activex/container.h"
#include "activex/property_page.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

struct Verb {
  LONG number;
  std::wstring name;
  DWORD attributes;
};

std::vector<Verb> Take(IEnumOLEVERB& from, ULONG count) {
  std::vector<OLEVERB> raw(count);
  ULONG fetched = 0;
  EXPECT_EQ(S_FALSE, from.Next(count, raw.data(), &fetched));
  std::vector<Verb> result;
  for (ULONG i = 0; i < fetched; ++i) {
    result.push_back({raw[i].lVerb, raw[i].lpszVerbName, raw[i].grfAttribs});
    CoTaskMemFree(raw[i].lpszVerbName);
  }
  return result;
}

ComPtr<IEnumOLEVERB> Enumerate(IUnknown* control) {
  ComPtr<IEnumOLEVERB> verbs;
  EXPECT_EQ(S_OK, As<IOleObject>(control)->EnumVerbs(verbs.GetAddressOf()));
  return verbs;
}

class Verbs : public ::testing::Test {
 protected:
  void SetUp() override { container_.Host(); }
  bool IsVisible() const { return IsWindowVisible(container_.ControlWindow()) != FALSE; }

  Container container_;
};

// --- The list ---------------------------------------------------------------------------------------------

TEST_F(Verbs, AreListedWithoutTheRegistry) {
  HKEY key = nullptr;
  ASSERT_NE(ERROR_SUCCESS,
            RegOpenKeyW(HKEY_CLASSES_ROOT, L"CLSID\\{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}", &key))
      << "the control is registered";
  const auto verbs = Enumerate(container_.Object());
  ASSERT_TRUE(verbs);
  const std::vector<Verb> all = Take(*verbs.Get(), 10);
  ASSERT_EQ(1u, all.size());
  EXPECT_EQ(1, all[0].number);
  EXPECT_EQ(L"&Properties...", all[0].name);
  EXPECT_EQ(static_cast<DWORD>(OLEVERBATTRIB_ONCONTAINERMENU), all[0].attributes);
}

TEST_F(Verbs, AreListedInSteps) {
  const auto verbs = Enumerate(container_.Object());
  ASSERT_TRUE(verbs);
  const std::size_t count = Take(*verbs.Get(), 10).size();
  EXPECT_EQ(0u, Take(*verbs.Get(), 10).size()) << "at the end";
  EXPECT_EQ(S_OK, verbs->Reset());
  ComPtr<IEnumOLEVERB> copy;
  EXPECT_EQ(S_OK, verbs->Clone(copy.GetAddressOf()));
  EXPECT_EQ(S_OK, verbs->Skip(static_cast<ULONG>(count)));
  EXPECT_EQ(S_FALSE, verbs->Skip(1));
  EXPECT_EQ(count, Take(*copy.Get(), 10).size());
  OLEVERB verb = {};
  EXPECT_EQ(S_OK, copy->Reset());
  EXPECT_EQ(S_OK, copy->Next(1, &verb, nullptr));
  CoTaskMemFree(verb.lpszVerbName);
  EXPECT_EQ(E_POINTER, copy->Next(1, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, As<IOleObject>(container_.Object())->EnumVerbs(nullptr));
}

TEST_F(Verbs, OutliveTheControlThatListsThem) {
  const auto verbs = Enumerate(container_.Object());
  ASSERT_TRUE(verbs);
  container_.Close();
  EXPECT_EQ(1u, Take(*verbs.Get(), 10).size());
}

// --- Unknown ones -----------------------------------------------------------------------------------------

TEST_F(Verbs, AnUnknownOneOfItsOwnStandsForThePrimaryOne) {
  EXPECT_EQ(OLEOBJ_S_INVALIDVERB, container_.Activate(42));
  ASSERT_TRUE(container_.ControlWindow());
  EXPECT_TRUE(IsVisible());
  container_.Activate(OLEIVERB_HIDE);
  EXPECT_EQ(OLEOBJ_S_INVALIDVERB, container_.Activate(2));
  EXPECT_TRUE(IsVisible());
}

TEST_F(Verbs, AnUnknownOneFailsWhereThePrimaryOneDoes) {
  container_.missing = {SiteInterface::InPlaceSite};
  const HRESULT primary = container_.Activate(OLEIVERB_PRIMARY);
  EXPECT_TRUE(FAILED(primary));
  EXPECT_EQ(primary, container_.Activate(42));
}

TEST_F(Verbs, AnUnknownOneOfTheSystemIsNotThere) {
  for (const LONG verb : {-8L, -42L, -0x7FFFFFFFL}) EXPECT_EQ(E_NOTIMPL, container_.Activate(verb));
  EXPECT_FALSE(container_.ControlWindow());
}

TEST_F(Verbs, OpeningIsShowingAsThereIsNoWindowOfItsOwn) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_OPEN));
  EXPECT_TRUE(IsVisible());
}

TEST_F(Verbs, ThereIsNothingToUndo) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_DISCARDUNDOSTATE));
  EXPECT_EQ(S_OK, container_.Activate());
  EXPECT_EQ(INPLACE_E_NOTUNDOABLE, As<IOleInPlaceObject>(container_.Object())->ReactivateAndUndo());
  EXPECT_TRUE(IsVisible());
}

// --- Properties -------------------------------------------------------------------------------------------

constexpr LONG kProperties = OLEIVERB_PROPERTIES, kOwnProperties = 1;

TEST_F(Verbs, PropertiesAreTheSitesToShow) {
  container_.property_frame_answer = S_OK;
  const PropertyPages pages(container_.Object(), {0, 1, 2});
  for (const LONG verb : {kProperties, kOwnProperties}) {
    container_.log.clear();
    EXPECT_EQ(S_OK, container_.Activate(verb));
    EXPECT_EQ(Log{"ShowPropertyFrame"}, container_.log);
  }
  EXPECT_EQ(std::vector<int>{}, pages.Created());
  EXPECT_FALSE(container_.ControlWindow()) << "that is another verb's";
}

TEST_F(Verbs, PropertiesAreShownInAFrameOfTheSystemWhereTheSiteHasNone) {
  for (const LONG verb : {kProperties, kOwnProperties})
    for (const HRESULT answer : {E_NOTIMPL, E_FAIL, S_FALSE}) {
      container_.property_frame_answer = answer;
      const PropertyPages pages(container_.Object(), {0, 1, 2});
      EXPECT_EQ(S_OK, container_.Activate(verb));
      EXPECT_EQ((std::vector<int>{0, 1, 2}), pages.Created());
      EXPECT_EQ(3, pages.ObjectsRight());
    }
}

TEST_F(Verbs, PropertiesAreShownWithoutASiteForThem) {
  container_.missing = {SiteInterface::ControlSite, SiteInterface::InPlaceSite, SiteInterface::Ambients};
  const PropertyPages pages(container_.Object(), {0, 1, 2});
  EXPECT_EQ(S_OK, container_.Activate(kProperties));
  EXPECT_EQ(3, pages.ObjectsRight());
}

TEST_F(Verbs, TheFrameHasThePagesThatExist) {
  for (const std::vector<int>& there : {std::vector<int>{1}, std::vector<int>{0, 2}}) {
    const PropertyPages pages(container_.Object(), there);
    EXPECT_EQ(S_OK, container_.Activate(kProperties));
    EXPECT_EQ(there, pages.Created());
  }
}

TEST_F(Verbs, WithoutAPageThereIsNoFrame) {
  EXPECT_EQ(OLEOBJ_S_CANNOT_DOVERB_NOW, container_.Activate(kProperties));
  EXPECT_EQ(1, container_.Count("ShowPropertyFrame"));
}

TEST_F(Verbs, TheFrameWindowOfTheContainerWaitsForTheProperties) {
  ASSERT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  PropertyPages pages(container_.Object(), {0});
  int waiting = -1;
  pages.on_activate = [&] {
    waiting = container_.Count("EnableModeless(no)") - container_.Count("EnableModeless");
  };
  EXPECT_EQ(S_OK, container_.Activate(kProperties));
  EXPECT_EQ(1, waiting);
  EXPECT_EQ(1, container_.Count("EnableModeless")) << "no longer";
}

TEST_F(Verbs, TheControlMayEndWhileItsPropertiesAreShown) {
  for (const bool active : {false, true}) {
    Container container;
    container.Host();
    if (active) {
      ASSERT_EQ(S_OK, container.Activate());
    }
    {
      PropertyPages pages(container.Object(), {0});
      pages.on_activate = [&] { container.Close(); };
      EXPECT_EQ(S_OK, container.Activate(kProperties));
      EXPECT_EQ(std::vector<int>{0}, pages.Created());
    }
    EXPECT_FALSE(container.Object());
    EXPECT_EQ(0u, container.SiteReferences());
  }
}

TEST_F(Verbs, TheControlMayEndInsideTheQuestionToTheSite) {
  container_.on_call = [&](const std::string& call) {
    if (call == "ShowPropertyFrame") container_.Close();
  };
  EXPECT_TRUE(SUCCEEDED(container_.Activate(kProperties)));
  EXPECT_FALSE(container_.Object());
}

}  // namespace
}  // namespace ocx_test
