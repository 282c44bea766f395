#include "render/reference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "markup/tags.h"
#include "platform/system.h"

namespace marklet {
namespace {

// A file of the project, by its path from the project's folder.
std::string FileOf(const std::string& path) {
  std::ifstream file(MARKLET_TESTS "/../" + path);
  EXPECT_TRUE(file) << path;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Reference, ThePageInTheDocumentationIsUpToDate) {
  EXPECT_EQ(FileOf("docs/reference.md"), ReferenceText()) << "run scripts/docs";
}

TEST(Reference, EveryTagIsOnThePageForUsersAndAWordOfTheFuzzer) {
  const std::string page = FileOf("docs/captions.md"), words = FileOf("fuzz/markup.dict");
  for (const TagRow& row : Tags()) {
    const std::string opener = WideCharToMultiByte(CP_UTF8, row.opener);
    EXPECT_NE(page.find('`' + opener + '`'), std::string::npos) << opener;
    const std::string word = row.takes_value ? opener.substr(0, opener.find('=') + 1) : opener;
    EXPECT_NE(words.find('"' + word + '"'), std::string::npos) << word;
  }
}

TEST(Reference, TellsWhatANewControlHas) {
  const std::string text = ReferenceText();
  for (const char* start : {"| `AutoSize` | 0x6803006C | Boolean | False |",
                            "| `BackColor` | -501 | OLE_COLOR | 0x8000000F |",
                            "| `BackStyle` | -502 | `BackStyle` | `OPAQUE` |",
                            "| `Appearance` | -520 | `AppearanceConstants` | `3d` |",
                            "| `BorderStyle` | -504 | `BorderConstants` | `None` |",
                            "| `Caption` | -518 | String | \"\" |",
                            "| `Font` | -512 | Font | Tahoma 8.25 |",
                            "| `FontBold` | 0x6803006B | Boolean | False |",
                            "| `FontItalic` | 0x6803006A | Boolean | False |",
                            "| `FontStrikethru` | 0x68030069 | Boolean | False |",
                            "| `FontUnderline` | 0x68030068 | Boolean | False |",
                            "| `FontName` | 0x68030067 | String | \"Tahoma\" |",
                            "| `FontSize` | 0x68030066 | Long | 8 |",
                            "| `ForeColor` | -513 | OLE_COLOR | 0x80000012 |",
                            "| `EffectColor` | 0x68030065 | OLE_COLOR | 0x80000010 |",
                            "| `ImageKey` | 0x68030064 | String | \"\" |",
                            "| `ImageKeyhover` | 0x68030063 | String | \"\" |",
                            "| `UseMnemonic` | 0x68030060 | Boolean | True |",
                            "| `UniToolTipText` | 0x6803005F | String | \"\" |",
                            "| `TextEffect` | 0x6803005C | `TextEffects` | `effectNone` |",
                            "| `Enabled` | -514 | Boolean | True |",
                            "| `WordWrap` | 0x6803005B | Boolean | True |",
                            "| `ImageAlignment` | 0x6803005A | `HorizontalAlignment` | `Left Justify` |",
                            "| `ImageSize` | 0x68030059 | `ImageSizes` | `16x16` |",
                            "| `hwnd` | 0x68030058 | Long |  |",
                            "| `MouseIcon` | 0x68030057 | Picture | none |",
                            "| `MousePointer` | 0x68030056 | Long | 0 |"})
    EXPECT_NE(text.find(start), std::string::npos) << start;
}

TEST(Reference, NamesEveryEnumerationMemberAsHostsSeeIt) {
  const std::string text = ReferenceText();
  for (const char* member : {"`Left Justify` = 0", "`3d` = 1", "`256x256` = 7", "`Bottom` = 3"})
    EXPECT_NE(text.find(member), std::string::npos) << member;
}

TEST(Reference, TellsWhichTagsMakeACaptionMarkup) {
  const std::string text = ReferenceText();
  for (const char* start : {"| `<b>` `</b>` | yes |", "| `<a>` `</a>` | no |", "| `<sub>` `</sub>` | no |",
                            "| `<f=NAME>` `</f>` | yes |", "| `<c=RRGGBB>` `</c>` | yes |", "| `<p>` | yes |",
                            "| `<br>` | yes | No tag"})
    EXPECT_NE(text.find(start), std::string::npos) << start;
}

}  // namespace
}  // namespace marklet
