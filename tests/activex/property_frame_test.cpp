// The control in the system's frame for property pages, with pages of our own in the place of those it names.
#include "activex/container.h"
#include "activex/property_page.h"

namespace ocx_test {
namespace {

TEST(PropertyFrame, ShowsTheControlsThreePagesWithTheControl) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  IUnknown* object = container.Object();
  const PropertyPages there(object, {0, 1, 2});
  CAUUID pages = {};
  ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(object)->GetPages(&pages));
  ASSERT_EQ(3u, pages.cElems);
  const HRESULT result = OleCreatePropertyFrame(container.Window(), 0, 0, L"Marklet", 1, &object,
                                                pages.cElems, pages.pElems, LOCALE_USER_DEFAULT, 0, nullptr);
  CoTaskMemFree(pages.pElems);
  EXPECT_EQ(S_OK, result);
  EXPECT_EQ((std::vector<int>{0, 1, 2}), there.Created());
  EXPECT_EQ(3, there.ObjectsRight());
}

}  // namespace
}  // namespace ocx_test
