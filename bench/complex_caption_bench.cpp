// Captions of ten words in scripts that need shaping, beside the same ones in a Pango label.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "captions.h"
#include "label.h"
#include "pango_label.h"
#include "platform/system.h"

namespace marklet::bench {
namespace {

constexpr int kWords = 10;

struct Script {
  const char* name;
  std::u16string_view letters;
};
constexpr Script kScripts[] = {
    {"arabic", u"\u0627\u0628\u062A\u062C\u062D\u062F\u0631\u0633\u0639\u0644\u0645\u0646"},
    {"hebrew", u"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D7\u05DB\u05DC\u05DE\u05E9\u05EA"},
    {"devanagari", u"\u0915\u0917\u091A\u0924\u0926\u0928\u092A\u092E\u0930\u0932\u0935\u0938"},
};

// A word of three to five letters for each number.
std::u16string WordOf(const Script& script, unsigned number) {
  unsigned bits = number * 2654435761u;  // spreads neighbours over the whole range
  std::u16string word;
  for (unsigned i = 0; i < 3 + number % 3; ++i, bits = bits / 12 + 0x9E3779B9u)
    word += script.letters[bits % script.letters.size()];
  return word;
}

// The second word is bold, the fourth italic and the eighth coloured in a rich caption. Both tongues write
// all but the colour alike.
std::u16string Caption(const Script& script, Kind kind, int number, Vocabulary vocabulary, bool for_pango) {
  const int first = vocabulary == Vocabulary::Fresh ? number * kWords : number;
  std::u16string text;
  for (int i = 0; i < kWords; ++i) {
    if (i > 0) text += u' ';
    const std::u16string word = WordOf(script, static_cast<unsigned>(first + i));
    const int dress = kind == Kind::Rich ? i : 0;
    if (dress == 1)
      text += u"<b>" + word + u"</b>";
    else if (dress == 3)
      text += u"<i>" + word + u"</i>";
    else if (dress == 7)
      text +=
          for_pango ? u"<span foreground=\"#C00000\">" + word + u"</span>" : u"<c=C00000>" + word + u"</c>";
    else
      text += word;
  }
  return text;
}

struct Captions {
  const Script& script;
  Kind kind;
  Vocabulary vocabulary;

  std::vector<std::u16string> All(bool for_pango) const {
    std::vector<std::u16string> all;
    all.reserve(static_cast<std::size_t>(NumberOf(vocabulary)));
    for (int number = 0; number < NumberOf(vocabulary); ++number)
      all.push_back(Caption(script, kind, number, vocabulary, for_pango));
    return all;
  }
};

void Marklet(benchmark::State& state, const Captions& captions) {
  Label label(kWidth, kHeight);
  const std::vector<std::u16string> texts = captions.All(false);
  for (std::size_t next = 0; state.KeepRunning(); next = (next + 1) % texts.size()) label.Draw(texts[next]);
}

void Pango(benchmark::State& state, const Captions& captions) {
  PangoLabel label;
  const std::vector<std::u16string> wide = captions.All(true);
  std::vector<std::string> texts(wide.size());
  std::transform(wide.begin(), wide.end(), texts.begin(),
                 [](const std::u16string& text) { return WideCharToMultiByte(CP_UTF8, text); });
  for (std::size_t next = 0; state.KeepRunning(); next = (next + 1) % texts.size()) {
    label.SetMarkup(texts[next]);
    label.Draw();
  }
  state.counters["bar"] = 1;
}

void Register(const Captions& captions) {
  const std::string name = std::string("versus/ten words of ") + captions.script.name +
                           (captions.kind == Kind::Rich ? ", rich" : ", plain") +
                           (captions.vocabulary == Vocabulary::Fresh ? ", never seen before/" : "/");
  benchmark::RegisterBenchmark((name + "marklet").c_str(),
                               [captions](benchmark::State& state) { Marklet(state, captions); });
  benchmark::RegisterBenchmark((name + "pango").c_str(),
                               [captions](benchmark::State& state) { Pango(state, captions); });
}

const bool kRegistered = [] {
  for (const Script& script : kScripts)
    for (const Kind kind : {Kind::Plain, Kind::Rich})
      for (const Vocabulary vocabulary : {Vocabulary::Common, Vocabulary::Fresh})
        Register({script, kind, vocabulary});
  return true;
}();

}  // namespace
}  // namespace marklet::bench
