#include "activex/font.h"

#include <cmath>

#include "activex/boundary.h"
#include "activex/com_object.h"
#include "activex/text.h"

namespace marklet::activex {
namespace {

constexpr double kCurrencyUnits = 10000;  // of a point

// Reads one property of the platform's font into ours; a property that can't be read stays as it was.
template <typename Native, typename Put>
void Copy(IFont& from, HRESULT (STDMETHODCALLTYPE IFont::*get)(Native*), Put put) {
  Native value{};
  if (SUCCEEDED((from.*get)(&value))) put(value);
}

void CopyFont(IFont& from, StdFont& to) {
  BstrResult name;
  if (SUCCEEDED(from.get_Name(name.Out()))) to.PutName(FromBstr(name.Get()));
  Copy(from, &IFont::get_Size,
       [&](const CY& size) { to.PutSize(static_cast<double>(size.int64) / kCurrencyUnits); });
  Copy(from, &IFont::get_Bold, [&](BOOL bold) { to.PutBold(bold != FALSE); });
  Copy(from, &IFont::get_Weight, [&](SHORT weight) { to.PutWeight(weight); });
  Copy(from, &IFont::get_Italic, [&](BOOL italic) { to.PutItalic(italic != FALSE); });
  Copy(from, &IFont::get_Underline, [&](BOOL underline) { to.PutUnderline(underline != FALSE); });
  Copy(from, &IFont::get_Strikethrough, [&](BOOL strike) { to.PutStrikethrough(strike != FALSE); });
  Copy(from, &IFont::get_Charset, [&](SHORT charset) { to.PutCharset(static_cast<std::uint8_t>(charset)); });
}

ComPtr<IFont> MakeObject(const StdFont& font) {
  std::wstring name = Wide(font.Name());
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = name.data();
  description.cySize.int64 = std::llround(font.Size() * kCurrencyUnits);
  description.sWeight = static_cast<SHORT>(font.Weight());
  description.sCharset = font.Charset();
  description.fItalic = font.Italic();
  description.fUnderline = font.Underline();
  description.fStrikethrough = font.Strikethrough();
  ComPtr<IFont> object;
  if (FAILED(::OleCreateFontIndirect(&description, IID_PPV_ARGS(object.GetAddressOf())))) return nullptr;
  return object;
}

// Hears of changes to the platform's font and repeats them on ours. The picture isn't drawn anew by it: that
// is for the setter that assigns a font.
class FontListener final : public ComObject<IPropertyNotifySink> {
 public:
  FontListener(IFont& object, FontRef font) : object_(object), font_(std::move(font)) {}

  STDMETHODIMP OnChanged(DISPID) override {
    return Guarded([this] {
      CopyFont(object_, *font_);
      return S_OK;
    });
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

 private:
  IFont& object_;  // holds this listener, and so outlives it
  FontRef font_;
};

}  // namespace

bool SameFont(const StdFont& a, const StdFont& b) {
  return a.Name() == b.Name() && a.Size() == b.Size() && a.Weight() == b.Weight() &&
         a.Italic() == b.Italic() && a.Underline() == b.Underline() &&
         a.Strikethrough() == b.Strikethrough() && a.Charset() == b.Charset();
}

FontRef FontFromObject(IUnknown* object) {
  ComPtr<IFont> source;
  if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(source.GetAddressOf())))) return nullptr;
  auto font = std::make_shared<StdFont>();
  CopyFont(*source.Get(), *font);
  return font;
}

ComPtr<IFontDisp> HostFont::For(const FontRef& font) {
  const FontRef shown = FontFromObject(object_.Get());
  if (font != font_ || !shown || !SameFont(*shown, *font)) {
    Disconnect();
    font_ = font;
    object_ = font ? MakeObject(*font) : nullptr;
    Connect();
  }
  ComPtr<IFontDisp> result;
  if (object_) object_.As(&result);
  return result;
}

void HostFont::Connect() {
  ComPtr<IConnectionPointContainer> container;
  if (!object_ || FAILED(object_.As(&container)) ||
      FAILED(
          container->FindConnectionPoint(__uuidof(IPropertyNotifySink), notifier_.ReleaseAndGetAddressOf())))
    return;
  const auto listener = Adopt<IPropertyNotifySink>(new FontListener(*object_.Get(), font_));
  if (FAILED(notifier_->Advise(listener.Get(), &cookie_))) notifier_.Reset();
}

void HostFont::Disconnect() {
  if (notifier_) notifier_->Unadvise(cookie_);
  notifier_.Reset();
  object_.Reset();
}

}  // namespace marklet::activex
