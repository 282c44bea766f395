#include "activex/automation/font.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

#include "activex/com/boundary.h"
#include "activex/com/com_object.h"
#include "activex/com/text.h"

namespace marklet::activex {
namespace {

constexpr double kCurrencyUnits = 10000;  // of a point

// --- One property after the other -------------------------------------------------------------------------

template <typename Native, typename Put>
void Read(IFont& from, HRESULT (STDMETHODCALLTYPE IFont::*get)(Native*), Put put) {
  Native value{};
  if (SUCCEEDED((from.*get)(&value))) put(value);
}

void ReadName(IFont& from, StdFont& to) {
  BstrResult name;
  if (SUCCEEDED(from.get_Name(name.Out()))) to.PutName(FromBstr(name.Get()));
}
void WriteName(const StdFont& from, IFont& to) {
  BstrResult name;
  *name.Out() = NewBstr(from.Name());
  to.put_Name(name.Get());
}

void ReadSize(IFont& from, StdFont& to) {
  Read(from, &IFont::get_Size,
       [&](const CY& size) { to.PutSize(static_cast<double>(size.int64) / kCurrencyUnits); });
}
void WriteSize(const StdFont& from, IFont& to) {
  CY size = {};
  size.int64 = std::llround(from.Size() * kCurrencyUnits);
  to.put_Size(size);
}

template <auto Get, auto Put>
void ReadFlag(IFont& from, StdFont& to) {
  Read(from, Get, [&](BOOL flag) { (to.*Put)(flag != FALSE); });
}
template <auto Get, auto Put>
void WriteFlag(const StdFont& from, IFont& to) {
  (to.*Put)((from.*Get)());
}

void ReadWeight(IFont& from, StdFont& to) {
  Read(from, &IFont::get_Weight, [&](SHORT weight) { to.PutWeight(weight); });
}
void WriteWeight(const StdFont& from, IFont& to) { to.put_Weight(static_cast<SHORT>(from.Weight())); }

void ReadCharset(IFont& from, StdFont& to) {
  Read(from, &IFont::get_Charset, [&](SHORT charset) { to.PutCharset(static_cast<std::uint8_t>(charset)); });
}
void WriteCharset(const StdFont& from, IFont& to) { to.put_Charset(from.Charset()); }

// A property, with its number in notifications. One that can't be read or set stays as it was.
struct Member {
  DISPID id;
  bool (*same)(const StdFont& a, const StdFont& b);
  void (*read)(IFont& from, StdFont& to);
  void (*write)(const StdFont& from, IFont& to);
};

template <auto Getter>
bool Same(const StdFont& a, const StdFont& b) {
  return (a.*Getter)() == (b.*Getter)();
}

template <auto Get, auto Put, auto NativeGet, auto NativePut>
constexpr Member Flag(DISPID id) {
  return {id, Same<Get>, ReadFlag<NativeGet, Put>, WriteFlag<Get, NativePut>};
}

// Bold stands before the weight, which it changes.
constexpr Member kMembers[] = {
    {DISPID_FONT_NAME, Same<&StdFont::Name>, ReadName, WriteName},
    {DISPID_FONT_SIZE, Same<&StdFont::Size>, ReadSize, WriteSize},
    Flag<&StdFont::Bold, &StdFont::PutBold, &IFont::get_Bold, &IFont::put_Bold>(DISPID_FONT_BOLD),
    {DISPID_FONT_WEIGHT, Same<&StdFont::Weight>, ReadWeight, WriteWeight},
    Flag<&StdFont::Italic, &StdFont::PutItalic, &IFont::get_Italic, &IFont::put_Italic>(DISPID_FONT_ITALIC),
    Flag<&StdFont::Underline, &StdFont::PutUnderline, &IFont::get_Underline, &IFont::put_Underline>(
        DISPID_FONT_UNDER),
    Flag<&StdFont::Strikethrough, &StdFont::PutStrikethrough, &IFont::get_Strikethrough,
         &IFont::put_Strikethrough>(DISPID_FONT_STRIKE),
    {DISPID_FONT_CHARSET, Same<&StdFont::Charset>, ReadCharset, WriteCharset},
};

// --- Objects ----------------------------------------------------------------------------------------------

// Ends a font that was read from an object, and keeps the object until then.
struct WithObject {
  ComPtr<IFont> object;
  void operator()(StdFont* font) const { delete font; }
};

// The handle of an object, which makes its fonts as it sees fit and keeps this one for as long.
class ObjectHandle final : public FontHandle {
 public:
  ObjectHandle(IFont& object, ::HFONT font)
      : FontHandle(Wrap(font)), object_(&object), is_kept_(SUCCEEDED(object.AddRefHfont(font))) {}
  ~ObjectHandle() override {
    if (is_kept_) object_->ReleaseHfont(win32::NativeAs<::HFONT>(Get()));
  }
  bool IsKept() const { return is_kept_; }
  IFont& Object() const { return *object_.Get(); }

 private:
  const ComPtr<IFont> object_;
  const bool is_kept_;
};

// The font has the object's own handle then. Where the object has none it goes on with one of ours.
void TakeHandle(IFont& from, StdFont& to) {
  ::HFONT handle = nullptr;
  ::LOGFONTW description = {};
  if (FAILED(from.get_hFont(&handle)) || !handle ||
      ::GetObjectW(handle, sizeof description, &description) != sizeof description)
    return;
  auto* const kept = new ObjectHandle(from, handle);
  LocalRef shared(kept);
  if (kept->IsKept()) to.PutHandle(std::move(shared), description.lfHeight);
}

// Whether a font still has the handle that it had from an object. Two sizes may look like the same one.
bool SameObjectHandle(const StdFont& before, const StdFont& now) {
  const auto* const handle = dynamic_cast<const ObjectHandle*>(before.Handle());
  return !handle || handle->Get() == now.hFont();
}

// A copy of the object that the font has its handle from, unless that object has become another one since.
ComPtr<IFont> CopyOfObject(const StdFont& font) {
  const auto* const handle = dynamic_cast<const ObjectHandle*>(font.Handle());
  ComPtr<IFont> copy;
  if (!handle || FAILED(handle->Object().Clone(copy.GetAddressOf())) || !copy) return nullptr;
  const FontRef its_font = FontFromObject(copy.Get());
  return its_font && SameFont(*its_font, font) ? copy : nullptr;
}

ComPtr<IFont> MakeObject(const StdFont& font) {
  if (ComPtr<IFont> copy = CopyOfObject(font)) return copy;
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

}  // namespace

bool SameFont(const StdFont& a, const StdFont& b) {
  return std::all_of(std::begin(kMembers), std::end(kMembers),
                     [&](const Member& member) { return member.same(a, b); });
}

FontRef FontFromObject(IUnknown* object) {
  ComPtr<IFont> source;
  if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(source.GetAddressOf()))) || !source)
    return nullptr;
  auto font = std::make_unique<StdFont>();
  for (const Member& member : kMembers) member.read(*source.Get(), *font);
  TakeHandle(*source.Get(), *font);
  return {font.release(), WithObject{source}};
}

// --- The connection ---------------------------------------------------------------------------------------

// Repeats on the font what a host sets on the object, and on the object what the control sets on the font.
// Only what has changed goes over: an object may show another face or size than it was given, one that the
// machine has, and that must not come back.
class FontLink final : public ComObject<IPropertyNotifySink> {
 public:
  FontLink(IFont& object, const FontRef& font, FontListener& listener)
      : object_(object), font_(font), listener_(&listener), known_(*font) {}

  // A member that was set to what it is changes nothing.
  STDMETHODIMP OnChanged(DISPID id) override {
    return Guarded([&] {
      const FontRef font = font_.lock();
      if (!font || writing_) return S_OK;
      for (const Member& member : kMembers)
        if (id == member.id || id == DISPID_UNKNOWN || id == DISPID_FONT_CHANGED) member.read(object_, *font);
      TakeHandle(object_, *font);
      const StdFont before = std::exchange(known_, *font);
      if (listener_ && !(SameFont(before, *font) && SameObjectHandle(before, *font)))
        listener_->FontChanged();
      return S_OK;
    });
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

  void Write() {
    const FontRef font = font_.lock();
    if (!font || writing_) return;
    const StdFont before = std::exchange(known_, *font), now = *font;
    writing_ = true;
    Guarded([&] {
      for (const Member& member : kMembers)
        if (!member.same(before, now)) member.write(now, object_);
      return S_OK;
    });
    writing_ = false;
  }

  // The control has another font, or is gone.
  void Leave() { listener_ = nullptr; }

 private:
  IFont& object_;  // whoever connects the two holds it for as long
  std::weak_ptr<StdFont> font_;
  FontListener* listener_;
  StdFont known_;  // as the object knows it
  bool writing_ = false;
};

void HostFont::Follow(const FontRef& font) {
  if (font == font_) return;
  Write();
  Disconnect();
  if (const auto* with = std::get_deleter<WithObject>(font)) Connect(font, with->object);
}

ComPtr<IFontDisp> HostFont::For(const FontRef& font) {
  if (font != font_) {
    Disconnect();
    if (font) Connect(font, MakeObject(*font));
  } else {
    Write();
  }
  ComPtr<IFontDisp> result;
  if (object_) object_.As(&result);
  return result;
}

// The object may be a host's own code, in which the font may change.
void HostFont::Write() {
  if (const ComPtr<IPropertyNotifySink> link = link_) static_cast<FontLink*>(link.Get())->Write();
}

// An object that tells nobody of its changes is handed out all the same.
void HostFont::Connect(const FontRef& font, ComPtr<IFont> object) {
  if (!object) return;
  font_ = font;
  object_ = std::move(object);
  link_ = Adopt<IPropertyNotifySink>(new FontLink(*object_.Get(), font, listener_));
  ComPtr<IConnectionPointContainer> container;
  if (FAILED(object_.As(&container)) ||
      FAILED(container->FindConnectionPoint(__uuidof(IPropertyNotifySink), notifier_.GetAddressOf())))
    return;
  if (FAILED(notifier_->Advise(link_.Get(), &cookie_))) notifier_.Reset();
}

// The object is a host's own code, or its last holder: it goes last, when all else is in order.
void HostFont::Disconnect() {
  font_.reset();
  const ComPtr<IConnectionPoint> notifier = std::move(notifier_);
  const ComPtr<IFont> object = std::move(object_);
  const ComPtr<IPropertyNotifySink> link = std::move(link_);
  notifier_.Reset();
  object_.Reset();
  link_.Reset();
  if (link) static_cast<FontLink*>(link.Get())->Leave();
  if (notifier) notifier->Unadvise(cookie_);
}

}  // namespace marklet::activex
