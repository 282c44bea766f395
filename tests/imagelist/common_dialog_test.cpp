// The dialog that asks for a file, over a platform that answers as the test wants.
#include "imagelist/common_dialog.h"

#include <gtest/gtest.h>

#include <functional>

namespace marklet {
namespace {

using namespace std::string_view_literals;

struct FakeDialog final : OpenFileDialog {
  OpenFileRecord seen;
  int calls = 0;
  std::function<Long(OpenFileRecord&)> answer = [](OpenFileRecord&) { return 0; };
  Long error = 0;

  Long GetOpenFileNameA(OpenFileRecord& record) override {
    ++calls;
    seen = record;
    return answer(record);
  }
  Long CommDlgExtendedError() override { return error; }
};

class CommonDialog : public testing::Test {
 protected:
  // What the platform puts at the beginning of a buffer; the rest keeps NULs.
  static void Put(std::u16string& buffer, std::u16string_view text) {
    std::u16string filled(text);
    filled.resize(buffer.size());
    buffer = filled;
  }

  FakeDialog platform_;
  CCommonDialog dialog_{platform_};
  CCommonDialog::Open open_;
};

TEST_F(CommonDialog, PassesItsTextsOn) {
  open_.initial_directory = u"c:\\pictures";
  open_.title = u"Pick one";
  open_.default_extension = u"ICO";
  open_.filter_index = 3;
  open_.owner = reinterpret_cast<HWND>(0x10);
  dialog_.ShowOpen(open_);
  EXPECT_EQ(platform_.seen.initial_directory, u"c:\\pictures");
  EXPECT_EQ(platform_.seen.title, u"Pick one");
  EXPECT_EQ(platform_.seen.default_extension, u"ICO");
  EXPECT_EQ(platform_.seen.filter_index, 3);
  EXPECT_EQ(platform_.seen.owner, reinterpret_cast<HWND>(0x10));
}

TEST_F(CommonDialog, HasNoOwnerWhenThatIsMinusOne) {
  open_.owner = CCommonDialog::kNoOwner;
  dialog_.ShowOpen(open_);
  EXPECT_EQ(platform_.seen.owner, nullptr);
}

TEST_F(CommonDialog, SetsAFlagForEachBooleanAndClearsHookAndTemplate) {
  open_.flags = 0x80000 | 0x20 | 0x40;
  dialog_.ShowOpen(open_);
  EXPECT_EQ(platform_.seen.flags, 0x80000u);
  const struct {
    bool CCommonDialog::Open::*member;
    std::uint32_t flag;
  } kBooleans[] = {{&CCommonDialog::Open::file_must_exist, 0x1000},
                   {&CCommonDialog::Open::multi_select, 0x200},
                   {&CCommonDialog::Open::read_only, 0x1},
                   {&CCommonDialog::Open::hide_read_only, 0x4}};
  for (const auto& boolean : kBooleans) {
    CCommonDialog::Open open;
    open.*boolean.member = true;
    dialog_.ShowOpen(open);
    EXPECT_EQ(platform_.seen.flags, boolean.flag);
  }
}

TEST_F(CommonDialog, CutsTheFilterAtBarsAndColonsAndEndsIt) {
  open_.filter = u"A|*.a:B|*.b";
  dialog_.ShowOpen(open_);
  EXPECT_EQ(platform_.seen.filter, u"A\0*.a\0B\0*.b\0\0"sv);
}

TEST_F(CommonDialog, GivesTextsBuffersOf260) {
  open_.file = u"a.ico";
  dialog_.ShowOpen(open_);
  std::u16string expected = u"a.ico";
  expected.resize(260);
  EXPECT_EQ(platform_.seen.file, expected);
  EXPECT_EQ(platform_.seen.file_title, std::u16string(260, u'\0'));
  open_.file = std::u16string(300, u'x');
  dialog_.ShowOpen(open_);
  EXPECT_EQ(platform_.seen.file, std::u16string(259, u'x').append(1, u'\0'));
}

TEST_F(CommonDialog, GivesBackWhatWasChosen) {
  platform_.answer = [](OpenFileRecord& record) {
    Put(record.file, u"c:\\b.png");
    Put(record.file_title, u"b.png");
    record.flags = 0x1400;
    record.filter_index = 2;
    return 1;
  };
  open_.filter = u"A|*.a|B|*.b|";
  open_.filter_index = 1;
  EXPECT_TRUE(dialog_.ShowOpen(open_));
  EXPECT_EQ(open_.file, u"c:\\b.png");
  EXPECT_EQ(open_.file_title, u"b.png");
  EXPECT_EQ(open_.flags, 0x1400u);
  EXPECT_EQ(open_.filter_index, 2);
  EXPECT_EQ(open_.filter, u"B\0*.b"sv);
  EXPECT_FALSE(open_.read_only);
  EXPECT_EQ(dialog_.LastResult(), 1);
  EXPECT_EQ(dialog_.LastError(), 0);
}

TEST_F(CommonDialog, TellsThatReadOnlyWasTicked) {
  platform_.answer = [](OpenFileRecord& record) {
    record.flags |= 1;
    return 1;
  };
  EXPECT_TRUE(dialog_.ShowOpen(open_));
  EXPECT_TRUE(open_.read_only);
}

TEST_F(CommonDialog, ForgetsAllOnACancel) {
  open_.file = u"a";
  open_.file_title = u"b";
  open_.filter = u"A|*.a";
  open_.filter_index = 1;
  open_.flags = 7;
  EXPECT_FALSE(dialog_.ShowOpen(open_));
  EXPECT_EQ(open_.file, u"");
  EXPECT_EQ(open_.file_title, u"");
  EXPECT_EQ(open_.filter, u"");
  EXPECT_EQ(open_.flags, 0u);
  EXPECT_EQ(open_.filter_index, -1);
  EXPECT_EQ(dialog_.LastError(), 0);
}

TEST_F(CommonDialog, KeepsTheErrorOfAFailureUntilItIsShownAgain) {
  platform_.answer = [](OpenFileRecord& record) {
    Put(record.file, u"half");
    return -1;
  };
  platform_.error = 0x3003;
  open_.file = u"a";
  EXPECT_FALSE(dialog_.ShowOpen(open_));
  EXPECT_EQ(open_.file, u"");
  EXPECT_EQ(open_.filter_index, -1);
  EXPECT_EQ(dialog_.LastError(), 0x3003);
  EXPECT_EQ(dialog_.LastResult(), -1);
  platform_.answer = [](OpenFileRecord&) { return 0; };
  EXPECT_FALSE(dialog_.ShowOpen(open_));
  EXPECT_EQ(dialog_.LastError(), 0);
  EXPECT_EQ(dialog_.LastResult(), 0);
}

TEST(FilterEntries, AreReachedByTheirPosition) {
  const auto filter = u"A\0*.a\0B\0*.b\0\0\0"sv;
  EXPECT_EQ(CCommonDialog::FilterEntry(filter, 1), u"A\0*.a"sv);
  EXPECT_EQ(CCommonDialog::FilterEntry(filter, 2), u"B\0*.b"sv);
  for (const Long index : {3, 4, 100, 0, -1, -2147483647 - 1})
    EXPECT_EQ(CCommonDialog::FilterEntry(filter, index), u"");
}

TEST(FilterEntries, NeedBothTheirTexts) {
  EXPECT_EQ(CCommonDialog::FilterEntry(u"", 1), u"");
  EXPECT_EQ(CCommonDialog::FilterEntry(u"A", 1), u"");
  EXPECT_EQ(CCommonDialog::FilterEntry(u"A\0*.a"sv, 1), u"A\0*.a"sv);
  EXPECT_EQ(CCommonDialog::FilterEntry(u"A\0\0"sv, 1), u"A\0"sv);
}

TEST(FilterEntries, DontRunOverAtExtremePositions) {
  EXPECT_EQ(CCommonDialog::FilterEntry(u"A\0*.a\0"sv, -2147483647 - 1), u"");
}

TEST(TextsOfBuffers, EndAtTheirFirstNul) {
  EXPECT_EQ(CCommonDialog::StripNul(u"a\0b"sv), u"a");
  EXPECT_EQ(CCommonDialog::StripNul(u"ab"), u"ab");
  EXPECT_EQ(CCommonDialog::StripNul(u"\0"sv), u"");
}

}  // namespace
}  // namespace marklet
