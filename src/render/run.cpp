#include "render/run.h"

#include <cstdio>
#include <exception>
#include <functional>
#include <new>
#include <ostream>

#include "base/rounding.h"
#include "control/library.h"
#include "platform/program.h"
#include "render/files.h"
#include "render/options.h"
#include "render/picture.h"
#include "render/png_writer.h"
#include "render/reference.h"
#include "render/render_control.h"
#include "render/render_error.h"
#include "render/sheet.h"
#include "render/text.h"

namespace marklet {
namespace {

// A byte order mark goes when the text is decoded; the line end that editors put at the end of a file goes
// here.
std::string CaptionFromFile(const std::string& name) {
  std::string text = ReadTextFile(name);
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

PropertyTexts PropertiesOf(const Options& options) {
  PropertyTexts properties = options.properties;
  if (!options.caption_file.empty())
    properties.emplace_back("Caption", CaptionFromFile(options.caption_file));
  return properties;
}

void PrintLog(std::ostream& out, const std::function<void()>& paint) {
  const auto lines = LogPlatformCalls(paint);
  if (!lines) throw RenderError("--log isn't available on this platform");
  for (const std::string& line : *lines) out << line << '\n';
}

Picture RenderOne(const Options& options, std::ostream& out) {
  RenderedControl control(options.size.value_or(kUsualSize), PropertiesOf(options), options.scale,
                          {options.images, options.hover, options.behind});
  if (options.log) PrintLog(out, [&] { control.Redraw(); });
  const bool is_alone = control.IsTransparent() && options.behind.empty();
  return is_alone ? control.PictureOfItself() : PictureOf(control.Surface());
}

Picture RenderAll(const Options& options, std::ostream& out) {
  return RenderSheet(ReadTextFile(options.sheet), options.scale, options.sheet,
                     [&](RenderedControl& control) {
                       if (options.log) PrintLog(out, [&] { control.Redraw(); });
                     });
}

// One line for each block of characters, however many of it are in the captions.
void WarnOfMissing(std::ostream& err) {
  for (const char32_t c : TakeMissingCharacters()) {
    char line[100];
    std::snprintf(line, sizeof line,
                  "marklet-render: no font has U+%04X; others from U+%04X to U+%04X may be missing too\n",
                  static_cast<unsigned>(c), static_cast<unsigned>(c & ~0x7Fu),
                  static_cast<unsigned>(c | 0x7F));
    err << line;
  }
}

void Render(const Options& options, std::ostream& out, std::ostream& err) {
  const ScaledScreen screen(options.scale);
  TakeMissingCharacters();  // of whoever drew on this thread before
  const Picture picture = options.sheet.empty() ? RenderOne(options, out) : RenderAll(options, out);
  constexpr double kInchesPerMetre = 1 / 0.0254;
  const Long per_metre = RoundHalfEven(96 * options.scale * kInchesPerMetre);
  WriteFileWhole(options.output, EncodePng(picture, static_cast<std::uint32_t>(per_metre)));
  WarnOfMissing(err);
}

void Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  const Options options = ParseOptions(arguments);
  if (options.help)
    out << HelpText();
  else if (options.reference)
    out << ReferenceText();
  else if (options.version)
    out << "marklet-render " << library::kMajorVersion << '.' << library::kMinorVersion << '\n';
  else
    Render(options, out, err);
}

int Fail(std::ostream& err, std::string_view why) {
  err << "marklet-render: " << why << '\n';
  return 2;
}

}  // namespace

int RunMarkletRender(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  try {
    Run(arguments, out, err);
    return 0;
  } catch (const std::bad_alloc&) {
    return Fail(err, "there isn't enough memory");
  } catch (const std::exception& error) {
    return Fail(err, error.what());
  }
}

}  // namespace marklet
