// Wrapped paragraphs of justified and complex text, against the calls of the script processor alone that they
// can't do without: paragraph_bench RESULTS.json.
#include <algorithm>
#include <string>
#include <vector>

#include "bitmaps/cdib24.h"
#include "paragraphs.h"
#include "platform/gdi.h"
#include "platform/shared/std_font.h"
#include "platform/text.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_function.h"
#include "text/shaping.h"
#include "windows/report.h"

namespace marklet::bench {
namespace {

constexpr int kRepetitions = 9;
constexpr RECT kRect = {0, 0, kColumn, kVisible};

template <typename Function>
Function* Usp10(const char* name) {
  const auto function = win32::SystemFunction<Function*>(L"usp10.dll", name);
  Require(function != nullptr, name);
  return function;
}

struct Usp10Functions {
  decltype(&::ScriptStringAnalyse) analyse = Usp10<decltype(::ScriptStringAnalyse)>("ScriptStringAnalyse");
  decltype(&::ScriptStringFree) free = Usp10<decltype(::ScriptStringFree)>("ScriptStringFree");
  decltype(&::ScriptString_pcOutChars) out_chars =
      Usp10<decltype(::ScriptString_pcOutChars)>("ScriptString_pcOutChars");
  decltype(&::ScriptString_pSize) size = Usp10<decltype(::ScriptString_pSize)>("ScriptString_pSize");
  decltype(&::ScriptString_pLogAttr) attributes =
      Usp10<decltype(::ScriptString_pLogAttr)>("ScriptString_pLogAttr");
  decltype(&::ScriptStringOut) out = Usp10<decltype(::ScriptStringOut)>("ScriptStringOut");
};

// A context with a font, as a control draws on it.
class Page {
 public:
  Page() {
    Require(surface_.Create(kColumn, kVisible), "no surface");
    font_.PutName(u"DejaVu Sans");
    font_.PutSize(8.25);
    SelectObject(dc(), font_.hFont());
    SetBkMode(dc(), TRANSPARENT);
  }
  HDC dc() const { return surface_.hDC(); }

 private:
  CDib24 surface_;
  StdFont font_;
};

// What the bare calls are told: where each line ends, so that they needn't look for it.
struct Line {
  const char16_t* text;
  int length;
  int looked_at;  // with the word that no longer fits
};

std::vector<Line> LinesOf(HDC dc, std::u16string_view text) {
  std::vector<Line> lines;
  while (!text.empty() && lines.size() < 650) {
    const Long fitting = FitCharacters(dc, text, 0, kColumn, 0, kVisible);
    Require(fitting > 0, "a line of nothing");
    const std::size_t length = static_cast<std::size_t>(fitting);
    const std::size_t next = std::min(text.find(u' ', length), text.size());
    lines.push_back({text.data(), fitting, static_cast<int>(next)});
    text.remove_prefix(length);
  }
  return lines;
}

class BareCalls {
 public:
  BareCalls(HDC dc, const Paragraph& paragraph)
      : dc_(win32::Native(dc)),
        flags_(kScriptFlags | (paragraph.justified ? SSA_FIT : 0) | (paragraph.rtl ? SSA_RTL : 0)),
        rtl_(paragraph.rtl) {}

  void Draw(const std::vector<Line>& lines) const {
    int y = 0;
    for (const Line& line : lines) {
      ::SCRIPT_STRING_ANALYSIS whole = Analysed(line.text, line.looked_at);
      Require(usp10_.out_chars(whole) && usp10_.attributes(whole), "no answers");
      usp10_.free(&whole);
      ::SCRIPT_STRING_ANALYSIS drawn = Analysed(line.text, line.length);
      Require(usp10_.out_chars(drawn) != nullptr, "no count");
      const ::RECT clip = {0, y, kColumn, kVisible};
      usp10_.out(drawn, 0, y, ETO_CLIPPED, &clip, 0, 0, FALSE);
      y += usp10_.size(drawn)->cy;
      usp10_.free(&drawn);
    }
  }

 private:
  ::SCRIPT_STRING_ANALYSIS Analysed(const char16_t* text, int length) const {
    ::SCRIPT_CONTROL control = {};
    ::SCRIPT_STATE state = {};
    state.uBidiLevel = rtl_;
    ::SCRIPT_TABDEF tabs = {};
    ::SCRIPT_STRING_ANALYSIS analysis = nullptr;
    Require(SUCCEEDED(usp10_.analyse(dc_, text, length, 0, -1, flags_, kColumn, &control, &state, nullptr,
                                     &tabs, nullptr, &analysis)),
            "no analysis");
    return analysis;
  }

  const Usp10Functions usp10_;
  const ::HDC dc_;
  const DWORD flags_;
  const bool rtl_;
};

void Measure(Report& report, const Page& page, const Paragraph& paragraph, std::size_t length) {
  const std::u16string text = TextOf(paragraph, length);
  const std::vector<Line> lines = LinesOf(page.dc(), text);
  const BareCalls bare(page.dc(), paragraph);
  const std::string name = std::string("script/") + paragraph.name + "/" + std::to_string(length) + "/";
  report.Add(name + "marklet", TimeOf([&] {
               SetTextAlign(page.dc(), 0);
               DrawScriptString(page.dc(), ETO_CLIPPED, kRect, text, 0, 0,
                                {.rtl = paragraph.rtl, .justified = paragraph.justified});
               marklet::GdiFlush();
             }));
  report.Add(name + "usp10", TimeOf([&] {
               SetTextAlign(page.dc(), 0);
               bare.Draw(lines);
               marklet::GdiFlush();
             }));
}

void MeasureAll(const wchar_t* path) {
  const Page page;
  Report report;
  // Taken in turn, so that a busy moment of the machine hits them alike.
  for (int i = 0; i < kRepetitions; ++i)
    for (const Paragraph& paragraph : kParagraphs)
      for (const std::size_t length : kParagraphLengths) Measure(report, page, paragraph, length);
  Require(report.Write(path), "the results can't be written");
}

}  // namespace
}  // namespace marklet::bench

int wmain(int count, wchar_t** arguments) {
  Require(count == 2, "paragraph_bench RESULTS.json");
  marklet::bench::MeasureAll(arguments[1]);
  return 0;
}
