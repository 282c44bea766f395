#include "activex/control/persist.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "activex/com/guid.h"
#include "activex/control/extent.h"
#include "activex/control/ole_bag.h"
#include "control/saved_bag.h"
#include "control/saved_extent.h"

namespace marklet::activex {
namespace {

constexpr wchar_t kStreamName[] = L"Marklet";

HRESULT GiveClassId(CLSID* class_id) {
  if (!class_id) return E_POINTER;
  *class_id = kClassGuid;
  return S_OK;
}

HRESULT ResultOf(SavedBag::State state) {
  switch (state) {
    case SavedBag::State::Whole:
      return S_OK;
    case SavedBag::State::Damaged:
      return STG_E_DOCFILECORRUPT;
    case SavedBag::State::TooNew:
      return STG_E_OLDDLL;
    case SavedBag::State::NotABag:
      return STG_E_INVALIDHEADER;
  }
  return E_UNEXPECTED;
}

// --- Streams ----------------------------------------------------------------------------------------------

// Appends up to `count` bytes to `bytes`; fewer when the stream ends before. A count that lies costs no more
// memory than twice what the stream has.
HRESULT Read(IStream& stream, std::uint64_t count, std::vector<std::uint8_t>& bytes) {
  constexpr std::size_t kPortion = 65536;
  while (count > 0) {
    const std::size_t before = bytes.size();
    const std::size_t wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>({count, std::max(before, kPortion), std::uint64_t{1} << 30}));
    bytes.resize(before + wanted);
    ULONG got = 0;
    const HRESULT result = stream.Read(bytes.data() + before, static_cast<ULONG>(wanted), &got);
    got = std::min(got, static_cast<ULONG>(wanted));
    bytes.resize(before + got);
    count -= got;
    if (FAILED(result)) return result;
    if (got == 0) return S_OK;
  }
  return S_OK;
}

HRESULT WriteAll(IStream& stream, const std::vector<std::uint8_t>& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const std::size_t portion = std::min<std::size_t>(bytes.size() - done, std::size_t{1} << 30);
    ULONG written = 0;
    const HRESULT result = stream.Write(bytes.data() + done, static_cast<ULONG>(portion), &written);
    if (FAILED(result)) return result;
    if (written == 0 || written > portion) return STG_E_MEDIUMFULL;
    done += written;
  }
  return S_OK;
}

}  // namespace

// --- What the three share ---------------------------------------------------------------------------------

HRESULT Persist::InitNew() {
  if (loaded_) return E_UNEXPECTED;
  const bool whole = marklet_.InitProperties();
  if (whole) begun_ = true;
  SetDirty(!whole);
  return whole ? S_OK : E_OUTOFMEMORY;
}

HRESULT Persist::Load(PropertyBag& bag, HRESULT state) {
  const bool whole = marklet_.ReadProperties(bag);
  const HRESULT result = SUCCEEDED(state) && !whole ? E_OUTOFMEMORY : state;
  loaded_ = SUCCEEDED(result);
  if (loaded_) begun_ = true;
  SetDirty(!loaded_);
  return result;
}

HRESULT Persist::LoadFrom(IStream& stream) {
  std::vector<std::uint8_t> bytes;
  HRESULT result = Read(stream, SavedBag::kHeaderBytes, bytes);
  if (FAILED(result)) return result;
  SavedBag::State state = SavedBag::State::Whole;
  const auto rest = SavedBag::BytesAfter(bytes, state);
  if (!rest) return ResultOf(state);
  result = Read(stream, *rest, bytes);
  SavedBag bag;
  state = bag.Read(std::move(bytes));
  // The size comes before the values, among which AutoSize measures in it and has the last word.
  if (const auto extent = ReadExtent(bag)) place_.SizeLoaded({extent->width, extent->height});
  return Load(bag, FAILED(result) ? result : ResultOf(state));
}

HRESULT Persist::Save(PropertyBag& bag) { return marklet_.WriteProperties(bag) ? S_OK : E_OUTOFMEMORY; }

HRESULT Persist::SaveWithExtent(SavedBag& bag) {
  const HRESULT result = Save(bag);
  const SIZEL size = extent_.Himetric();
  WriteExtent(bag, {size.cx, size.cy});
  return result;
}

HRESULT Persist::SaveTo(IStream& stream) {
  SavedBag bag;
  const HRESULT result = SaveWithExtent(bag);
  return FAILED(result) ? result : WriteAll(stream, bag.Bytes());
}

HRESULT Persist::Measure(ULONGLONG& size) {
  SavedBag bag;
  const HRESULT result = SaveWithExtent(bag);
  size = bag.Bytes().size();
  return result;
}

// The listeners may save, load or close the control.
void Persist::SavedAt(unsigned changes) {
  saved_ = changes;
  listener_.Saved();
}

// --- Streams ----------------------------------------------------------------------------------------------

HRESULT PersistStreamFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistStreamFace::IsDirty() { return persist_.IsDirty() ? S_OK : S_FALSE; }
HRESULT PersistStreamFace::InitNew() {
  return Call([this] { return persist_.InitNew(); });
}

HRESULT PersistStreamFace::Load(IStream* stream) {
  if (!stream) return E_POINTER;
  return Call([&] { return persist_.LoadFrom(*stream); });
}

HRESULT PersistStreamFace::Save(IStream* stream, BOOL clear_dirty) {
  if (!stream) return E_POINTER;
  return Call([&] {
    const unsigned changes = persist_.Changes();
    const HRESULT result = persist_.SaveTo(*stream);
    if (SUCCEEDED(result) && clear_dirty) persist_.SavedAt(changes);
    return result;
  });
}

HRESULT PersistStreamFace::GetSizeMax(ULARGE_INTEGER* size) {
  if (!size) return E_POINTER;
  return Call([&] { return persist_.Measure(size->QuadPart); });
}

// --- Property bags ----------------------------------------------------------------------------------------

HRESULT PersistBagFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistBagFace::InitNew() {
  return Call([this] { return persist_.InitNew(); });
}

HRESULT PersistBagFace::Load(IPropertyBag* bag, IErrorLog* log) {
  if (!bag) return E_POINTER;
  return Call([&] {
    OleBag ole_bag(host_font_, *bag, log, false);
    return persist_.Load(ole_bag, S_OK);
  });
}

HRESULT PersistBagFace::Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) {
  if (!bag) return E_POINTER;
  return Call([&] {
    const unsigned changes = persist_.Changes();
    OleBag ole_bag(host_font_, *bag, nullptr, save_all != FALSE);
    const HRESULT whole = persist_.Save(ole_bag);
    const HRESULT result = SUCCEEDED(whole) ? ole_bag.Written() : whole;
    if (SUCCEEDED(result) && clear_dirty) persist_.SavedAt(changes);
    return result;
  });
}

// --- Storages ---------------------------------------------------------------------------------------------

HRESULT PersistStorageFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistStorageFace::IsDirty() { return persist_.IsDirty() ? S_OK : S_FALSE; }

// A null storage does: none is held.
HRESULT PersistStorageFace::InitNew(IStorage*) {
  return Call([this] {
    if (persist_.HasBegun()) return CO_E_ALREADYINITIALIZED;
    state_ = State::Normal;
    return persist_.InitNew();
  });
}

// A second load is refused, but one after InitNew is what some containers do.
HRESULT PersistStorageFace::Load(IStorage* storage) {
  if (!storage) return E_POINTER;
  return Call([&]() -> HRESULT {
    if (state_ == State::HandsOff) return E_UNEXPECTED;
    if (loaded_) return CO_E_ALREADYINITIALIZED;
    ComPtr<IStream> stream;
    HRESULT result =
        storage->OpenStream(kStreamName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.GetAddressOf());
    if (SUCCEEDED(result)) result = stream ? persist_.LoadFrom(*stream.Get()) : E_UNEXPECTED;
    loaded_ = SUCCEEDED(result);
    if (loaded_) state_ = State::Normal;
    return result;
  });
}

// A container that forgets SaveCompleted may save again all the same.
HRESULT PersistStorageFace::Save(IStorage* storage, BOOL same_as_load) {
  if (!storage) return E_POINTER;
  return Call([&]() -> HRESULT {
    if (state_ == State::HandsOff) return E_UNEXPECTED;
    const unsigned changes = persist_.Changes();
    ComPtr<IStream> stream;
    HRESULT result = storage->CreateStream(kStreamName, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0,
                                           stream.GetAddressOf());
    if (SUCCEEDED(result)) result = stream ? persist_.SaveTo(*stream.Get()) : E_UNEXPECTED;
    if (FAILED(result)) return result;
    state_ = State::NoScribble;
    saved_ = true;
    same_as_load_ = same_as_load != FALSE;
    saved_at_ = changes;
    return S_OK;
  });
}

// The control is clean when its own storage holds it: the one it was loaded from, or the one it gets here.
HRESULT PersistStorageFace::SaveCompleted(IStorage* storage) {
  return Call([&]() -> HRESULT {
    if (state_ != State::NoScribble && state_ != State::HandsOff) return E_UNEXPECTED;
    if (state_ == State::HandsOff && !storage) return E_INVALIDARG;
    const bool kept = std::exchange(saved_, false) && (storage || same_as_load_);
    state_ = State::Normal;
    if (kept) persist_.SavedAt(saved_at_);
    return S_OK;
  });
}

HRESULT PersistStorageFace::HandsOffStorage() {
  return Call([this] {
    state_ = State::HandsOff;
    return S_OK;
  });
}

}  // namespace marklet::activex
