// Objects deleted while a context has them, which only the headless platform answers for.
#include "platform/test_picture.h"

namespace marklet {
namespace {

HFONT AnyFont(Long height) {
  LOGFONTW record;
  record.lfHeight = height;
  return CreateFontIndirectW(record);
}

TEST(SelectObject, DoesNotHandOutWhatWasDeletedWhileSelected) {
  TestPicture picture(4, 4);
  const HFONT first = AnyFont(-11), second = AnyFont(-12);
  const HGDIOBJ original = SelectObject(picture.Context(), first);
  DeleteObject(first);
  EXPECT_EQ(SelectObject(picture.Context(), second), nullptr);
  EXPECT_EQ(SelectObject(picture.Context(), original), second);
  DeleteObject(second);
}

TEST(SelectObject, HandsOutWhatAnotherContextKeepsAlive) {
  TestPicture picture(4, 4), other(4, 4);
  const HFONT first = AnyFont(-11), second = AnyFont(-12);
  const HGDIOBJ original = SelectObject(picture.Context(), first);
  const HGDIOBJ other_original = SelectObject(other.Context(), first);
  DeleteObject(first);
  EXPECT_EQ(SelectObject(picture.Context(), second), first);
  SelectObject(picture.Context(), original);
  EXPECT_EQ(SelectObject(other.Context(), other_original), nullptr);
  DeleteObject(second);
}

}  // namespace
}  // namespace marklet
