// The layout that takes over from the platform for long texts: on short ones both can be seen.
#include "platform/win32/long_text.h"

#include <random>
#include <string>
#include <vector>

#include "platform/test_picture.h"
#include "platform/win32/handles.h"

namespace marklet::win32 {
namespace {

constexpr Long kWidth = 200, kHeight = 80;

class Canvas : public TestPicture {
 public:
  Canvas() : TestPicture(kWidth, kHeight) {
    UseTahoma(13);
    SetBkMode(Context(), TRANSPARENT);
    SetTextColor(Context(), 0xFFFFFF);
  }
  std::vector<COLORREF> TakePixels() {
    std::vector<COLORREF> pixels = Colours();
    Fill(0);
    return pixels;
  }
};

std::u16string RandomText(std::mt19937& random, std::u16string_view alphabet) {
  std::u16string text(1 + random() % 40, u'x');
  for (char16_t& unit : text) unit = alphabet[random() % alphabet.size()];
  return text;
}

std::string Printable(std::u16string_view text) {
  std::string result;
  for (char16_t unit : text) {
    const bool ascii = unit >= u' ' && unit < 0x7F;
    result += unit == u'\n'   ? 'N'
              : unit == u'\r' ? 'R'
              : unit == u'\t' ? 'T'
              : ascii         ? static_cast<char>(unit)
                              : '^';
  }
  return result;
}

struct Case {
  std::u16string text;
  std::uint32_t flags;
  RECT rect;
};

Case RandomCase(std::mt19937& random, std::u16string_view alphabet) {
  constexpr std::uint32_t kAligned[] = {0, DT_RIGHT, DT_CENTER};
  constexpr std::uint32_t kLines[] = {0, 0, DT_SINGLELINE, DT_SINGLELINE | DT_VCENTER,
                                      DT_SINGLELINE | DT_BOTTOM};
  Case result{RandomText(random, alphabet), kAligned[random() % 3] | kLines[random() % 5], {}};
  if (random() % 2) result.flags |= DT_NOPREFIX;
  if (random() % 3 == 0) result.flags |= DT_WORD_ELLIPSIS;
  const auto up_to = [&](unsigned most) { return static_cast<Long>(random() % most); };
  result.rect = {up_to(20), up_to(20), 20 + up_to(170), 20 + up_to(60)};
  return result;
}

class LongText : public testing::Test {
 protected:
  void ExpectAsThePlatformDoes(const Case& it) {
    SCOPED_TRACE("\"" + Printable(it.text) + "\" flags " + std::to_string(it.flags) + " in " +
                 std::to_string(it.rect.left) + ".." + std::to_string(it.rect.right));
    ::RECT theirs = Native(it.rect);
    RECT ours = it.rect;
    const int length = static_cast<int>(it.text.size());
    const std::uint32_t size_flags = (it.flags | DT_CALCRECT) & ~(DT_VCENTER | DT_BOTTOM);
    ::DrawTextW(Native(canvas_.Context()), Native(it.text.data()), length, &theirs, size_flags);
    DrawLongText(canvas_.Context(), it.text, ours, size_flags);
    EXPECT_EQ(ours.right - ours.left, theirs.right - theirs.left);
    EXPECT_EQ(ours.bottom - ours.top, theirs.bottom - theirs.top);

    theirs = Native(it.rect);
    ours = it.rect;
    ::DrawTextW(Native(canvas_.Context()), Native(it.text.data()), length, &theirs, it.flags);
    const auto expected = canvas_.TakePixels();
    DrawLongText(canvas_.Context(), it.text, ours, it.flags);
    EXPECT_TRUE(canvas_.TakePixels() == expected);
  }
  Canvas canvas_;
  std::mt19937 random_{1};
};

TEST_F(LongText, IsLaidOutAsThePlatformLaysOutShortOnes) {
  for (int i = 0; i < 2000; ++i) ExpectAsThePlatformDoes(RandomCase(random_, u"abcWi "));
}

// Whether a word would just fit on a line of `text` without the blank after it, or is too wide and has more
// than one. Ours lets such blanks hang over the edge; the one platform at hand takes them for a part of the
// word.
bool HasHangingBlanks(HDC dc, std::u16string_view text, Long room) {
  const auto width = [dc](std::u16string_view part) {
    SIZE size;
    GetTextExtentPoint32W(dc, part, size);
    return size.cx;
  };
  for (std::size_t start = 0; start < text.size(); ++start)
    for (std::size_t end = start; (end = text.find(u' ', end)) != text.npos;) {
      const std::size_t next = std::min(text.find_first_not_of(u' ', end), text.size());
      const std::u16string_view words = text.substr(start, end - start);
      const bool too_wide = next > end + 1 && width(words.substr(words.rfind(u' ') + 1)) > room;
      if (too_wide || (width(words) <= room && width(text.substr(start, next - start)) > room)) return true;
      end = next;
    }
  return false;
}

TEST_F(LongText, BreaksBetweenWordsWhereThePlatformDoes) {
  int compared = 0;
  for (int i = 0; i < 4000; ++i) {
    Case it = RandomCase(random_, u"aabbcWi-/!,( \t\u4E2D\u3002\u00A0\u00AD  ");
    for (std::size_t at = 1; at < it.text.size(); ++at)  // the platform looks back past the blanks
      if (it.text[at - 1] == u'(' && it.text[at] == u' ') it.text[at] = u'x';
    if ((it.flags & DT_SINGLELINE) ||
        HasHangingBlanks(canvas_.Context(), it.text, it.rect.right - it.rect.left))
      continue;
    it.flags |= DT_WORDBREAK;
    ExpectAsThePlatformDoes(it);
    ++compared;
  }
  EXPECT_GT(compared, 500);
}

TEST_F(LongText, BreaksAtLineEndsAndUnderlinesMarksWhereThePlatformDoes) {
  for (int i = 0; i < 2000; ++i) {
    Case it = RandomCase(random_, u"abci&  \r\n");
    it.text.resize(it.text.size() / 3 + 1);
    it.rect = {0, 0, kWidth, kHeight};                   // the platform doesn't clip its underlines
    for (std::size_t at = 1; at < it.text.size(); ++at)  // what a mark before a line end does is left open
      if (it.text[at - 1] == u'&' && it.text[at] < u' ') it.text[at] = u'x';
    ExpectAsThePlatformDoes(it);
  }
}

}  // namespace
}  // namespace marklet::win32
