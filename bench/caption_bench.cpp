// A caption from its text to pixels, each time parsed, laid out and drawn: the engine, a Pango markup label
// drawn by Cairo, and Qt's rich text. For information also the peers with a layout that they keep.
#include <benchmark/benchmark.h>

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QStaticText>
#include <QTextDocument>
#include <memory>

#include "captions.h"
#include "label.h"
#include "pango_label.h"

namespace marklet::bench {
namespace {

template <typename Text, typename Make>
std::vector<Text> Texts(const CaptionShape& shape, Make make) {
  std::vector<Text> texts;
  texts.reserve(NumberOf(shape.vocabulary));
  for (int number = 0; number < NumberOf(shape.vocabulary); ++number) texts.push_back(make(number));
  return texts;
}

// Calls draw(text) with one text after the other.
template <typename Text, typename Draw>
void Cycle(benchmark::State& state, const std::vector<Text>& texts, Draw draw) {
  std::size_t next = 0;
  while (state.KeepRunning()) {
    draw(texts[next]);
    next = (next + 1) % texts.size();
  }
}

void Marklet(benchmark::State& state, const CaptionShape& shape) {
  Label label(kWidth, kHeight);
  const auto texts =
      Texts<std::u16string>(shape, [&](int number) { return Utf16(MarkletCaption(shape, number)); });
  Cycle(state, texts, [&](const std::u16string& text) { label.Draw(text); });
}

void Pango(benchmark::State& state, const CaptionShape& shape) {
  PangoLabel label;
  const auto texts = Texts<std::string>(shape, [&](int number) { return PangoMarkup(shape, number); });
  Cycle(state, texts, [&](const std::string& text) {
    label.SetMarkup(text);
    label.Draw();
  });
}

void PangoKept(benchmark::State& state, const CaptionShape& shape) {
  PangoLabel label;
  label.SetMarkup(PangoMarkup(shape, 0));
  while (state.KeepRunning()) label.Draw();
}

struct QtLabel {
  QImage image{kWidth, kHeight, QImage::Format_RGB32};
  QPainter painter;
  QFont font{QString::fromLatin1(kFamily)};

  QtLabel() {
    image.fill(Qt::white);
    font.setPixelSize(kFontPixels);
    painter.begin(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
  }
};

// QTextDocument, on which QLabel stands.
struct QtDocument : QtLabel {
  QTextDocument document;

  QtDocument() {
    document.setUndoRedoEnabled(false);
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    document.setTextWidth(kWidth);
  }
  void Set(Kind kind, const QString& text) {
    if (kind == Kind::Rich) {
      document.setHtml(text);
    } else {
      document.setPlainText(text);
    }
  }
  void Draw() { document.drawContents(&painter); }
};

struct QtStatic : QtLabel {
  QStaticText text;

  explicit QtStatic(Kind kind) {
    text.setTextFormat(kind == Kind::Rich ? Qt::RichText : Qt::PlainText);
    text.setTextWidth(kWidth);
    text.setPerformanceHint(QStaticText::ModerateCaching);
  }
  void Draw() { painter.drawStaticText(0, 0, text); }
};

std::vector<QString> QtTexts(const CaptionShape& shape) {
  return Texts<QString>(shape, [&](int number) { return QString::fromStdString(Html(shape, number)); });
}

void QtTextDocument(benchmark::State& state, const CaptionShape& shape) {
  QtDocument label;
  Cycle(state, QtTexts(shape), [&](const QString& text) {
    label.Set(shape.kind, text);
    label.Draw();
  });
}

void QtStaticText(benchmark::State& state, const CaptionShape& shape) {
  QtStatic label(shape.kind);
  Cycle(state, QtTexts(shape), [&](const QString& text) {
    label.text.setText(text);
    label.Draw();
  });
}

void QtTextDocumentKept(benchmark::State& state, const CaptionShape& shape) {
  QtDocument label;
  label.Set(shape.kind, QtTexts(shape).front());
  while (state.KeepRunning()) label.Draw();
}

void QtStaticTextKept(benchmark::State& state, const CaptionShape& shape) {
  QtStatic label(shape.kind);
  label.text.setText(QtTexts(shape).front());
  while (state.KeepRunning()) label.Draw();
}

using Function = void (*)(benchmark::State&, const CaptionShape&);
struct Peer {
  const char* group;
  const char* name;
  Function function;
  Vocabulary vocabulary = Vocabulary::Common;
};
constexpr Peer kPeers[] = {
    {"caption", "marklet", Marklet},
    {"caption", "pango", Pango},
    {"caption", "qt-document", QtTextDocument},
    {"caption", "qt-static", QtStaticText},
    {"fresh", "marklet", Marklet, Vocabulary::Fresh},
    {"fresh", "pango", Pango, Vocabulary::Fresh},
    {"fresh", "qt-document", QtTextDocument, Vocabulary::Fresh},
    {"fresh", "qt-static", QtStaticText, Vocabulary::Fresh},
    {"kept", "pango", PangoKept},
    {"kept", "qt-document", QtTextDocumentKept},
    {"kept", "qt-static", QtStaticTextKept},
};

void Register(const Peer& peer, const CaptionShape& shape) {
  const std::string name = std::string(peer.group) + "/" + (shape.kind == Kind::Rich ? "rich" : "plain") +
                           "/" + std::to_string(shape.words) + "/" + peer.name;
  benchmark::RegisterBenchmark(name.c_str(),
                               [peer, shape](benchmark::State& state) { peer.function(state, shape); });
}

const bool kRegistered = [] {
  for (const Peer& peer : kPeers) {
    for (const Kind kind : {Kind::Plain, Kind::Rich}) {
      for (const int words : {5, 10, 20}) Register(peer, {kind, words, peer.vocabulary});
    }
  }
  return true;
}();

QImage ImageOf(CDib24& surface) {
  const QImage bottom_up(surface.Bits(), surface.Width(), surface.Height(), surface.BytesPerScanLine(),
                         QImage::Format_BGR888);
  return bottom_up.mirrored();
}

QImage ImageOf(const PangoLabel& label) {
  cairo_surface_flush(label.surface);
  return QImage(cairo_image_surface_get_data(label.surface), kWidth, kHeight,
                cairo_image_surface_get_stride(label.surface), QImage::Format_RGB32)
      .copy();
}

}  // namespace

bool SavePicture(const char* file) {
  const CaptionShape shape = {Kind::Rich, 20};
  Label marklet(kWidth, kHeight);
  marklet.Draw(Utf16(MarkletCaption(shape, 0)));
  PangoLabel pango;
  pango.SetMarkup(PangoMarkup(shape, 0));
  pango.Draw();
  QtDocument document;
  document.Set(shape.kind, QtTexts(shape).front());
  document.Draw();
  QtStatic text(shape.kind);
  text.text.setText(QtTexts(shape).front());
  text.Draw();

  const QImage images[] = {ImageOf(marklet.Surface()), ImageOf(pango), document.image, text.image};
  QImage sheet(kWidth, 4 * kHeight, QImage::Format_RGB32);
  QPainter painter(&sheet);
  for (int i = 0; i < 4; ++i) painter.drawImage(0, i * kHeight, images[i]);
  painter.end();
  return sheet.save(QString::fromLocal8Bit(file));
}

}  // namespace marklet::bench
