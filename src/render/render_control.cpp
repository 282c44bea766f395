#include "render/render_control.h"

#include <new>

#include "base/rounding.h"
#include "control/enumeration_values.h"
#include "platform/system.h"
#include "render/backdrop.h"
#include "render/files.h"
#include "render/property_text.h"
#include "render/render_error.h"
#include "render/text.h"

namespace marklet {

Long ScaledPixels(double units, double scale) { return RoundHalfEven(units * scale); }

namespace {

// While it lives, keeps what a message box would show.
class MessageCatcher {
 public:
  MessageCatcher() : former_(Configuration().message_box) {
    Configuration().message_box = [this](std::u16string_view text, std::u16string_view) { text_ = text; };
  }
  ~MessageCatcher() { Configuration().message_box = former_; }
  MessageCatcher(const MessageCatcher&) = delete;
  MessageCatcher& operator=(const MessageCatcher&) = delete;
  std::string Text() const { return WideCharToMultiByte(CP_UTF8, text_); }

 private:
  decltype(SystemConfiguration::message_box) former_;
  std::u16string text_;
};

bool HoldsPixels(const CIconBytes& image) {
  for (Long size = 0; size < CIconBytes::kSizes; ++size)
    if (image.HasImage(size)) return true;
  return false;
}

}  // namespace

RenderedControl::RenderedControl(SIZE size, const PropertyTexts& properties, double scale,
                                 const Surroundings& surroundings)
    : host_(ScaledPixels(size.cx, scale), ScaledPixels(size.cy, scale), ScaledPixels(96, scale)),
      control_(host_, host_) {
  if (!surroundings.behind.empty()) host_.SetBackdrop(ReadBackdrop(surroundings.behind));
  host_.Attach(control_);
  control_.InitProperties();
  for (const auto& [key, file] : surroundings.images) LoadImage(key, file);
  control_.State().Hover = surroundings.hover;
  SetAll(properties);
  // Properties that only saved forms hold have been set past their setters.
  if (control_.State().AutoSize) control_.RecomputeAutoSize();
  control_.RedrawNow();
  if (Surface().Bits() == nullptr) throw RenderError("the control has come out empty or too large to draw");
}

bool RenderedControl::IsTransparent() const { return control_.State().BackStyle == backTransparent; }

Picture RenderedControl::PictureOfItself() { return WithAlpha(PictureOn(0), PictureOn(0xFFFFFF)); }

Picture RenderedControl::PictureOn(COLORREF behind) {
  const auto backdrop = std::make_shared<CDib32>();
  CDib24 surface;
  if (!backdrop->Create(Width(), Height()) || !surface.Create(Width(), Height())) throw std::bad_alloc();
  backdrop->Clear(behind);
  control_.PaintOver(surface.hDC(), backdrop);
  return PictureOf(surface);
}

void RenderedControl::SetAll(const PropertyTexts& properties) {
  for (const auto& [name, text] : properties) AssignProperty(control_, name, text);
}

// The control itself says little of what it can't load, and a missing PNG it leaves as an empty file.
void RenderedControl::LoadImage(const std::string& key, const std::string& file) {
  RequireFile(file);
  const MessageCatcher messages;
  const bool longer = file.size() >= 3;  // the control takes no shorter names
  const std::u16string image_key = FromUtf8(key);
  const bool loaded = control_.LoadIconImageFromFile(FromUtf8(longer ? file : "./" + file), image_key);
  if (!messages.Text().empty()) throw RenderError(Quoted(file) + ": " + messages.Text());
  if (!loaded)
    throw RenderError("an image's key can't be " + Quoted(key) +
                      ": it starts with something other than a digit and belongs to one image");
  if (!HoldsPixels(*control_.GetIconByteCollection()->Item(image_key)))
    throw RenderError("there is no picture in " + Quoted(file) + " that can be used");
}

ScaledScreen::ScaledScreen(double scale) : former_(Configuration().pixels_per_inch) {
  Configuration().pixels_per_inch = ScaledPixels(96, scale);
}

ScaledScreen::~ScaledScreen() { Configuration().pixels_per_inch = former_; }

}  // namespace marklet
