// Hosts that save and load in ways of their own: anything in a bag, calls in any order, stores that fail.
#include <cstring>
#include <functional>
#include <limits>
#include <random>

#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

// --- Anything in a bag ------------------------------------------------------------------------------------

Variant ArrayOf(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds) {
  Variant result;
  result.parray = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
  EXPECT_TRUE(result.parray);
  result.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  return result;
}

Variant Real(double value) {
  Variant result;
  result.vt = VT_R8;
  result.dblVal = value;
  return result;
}

Variant Reference(VARTYPE type, void* target) {
  Variant result;
  result.vt = static_cast<VARTYPE>(VT_BYREF | type);
  result.byref = target;
  return result;
}

// Shapes that no bag of the control's own making has.
std::vector<Variant> OddVariants() {
  static Variant number(2), text(L"text"), array = BytesVariant({1, 2, 3, 4});
  static Variant itself;
  itself.vt = VT_BYREF | VT_VARIANT;
  itself.pvarVal = &itself;
  static Variant to_text = Reference(VT_VARIANT, &text);
  std::vector<Variant> odd;
  for (const VARTYPE type : {VT_NULL, VT_I1, VT_UI1, VT_UI2, VT_I2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_CY,
                             VT_DATE, VT_ERROR, VT_BOOL, VT_BSTR, VT_UNKNOWN, VT_DISPATCH}) {
    odd.push_back(VariantOf(type, 0));
    if (type != VT_BSTR && type != VT_UNKNOWN && type != VT_DISPATCH)
      for (const LONGLONG value :
           {1LL, -1LL, 2'000'000'000LL, -2'000'000'000LL, std::numeric_limits<LONGLONG>::max(),
            std::numeric_limits<LONGLONG>::min()})
        odd.push_back(VariantOf(type, value));
  }
  for (const double value :
       {0.5, -1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
    odd.push_back(Real(value));
  for (const wchar_t* words : {L"", L"many", L"-7", L"1e99", L"True", L"\xD800\xDC00\xFFFF"})
    odd.emplace_back(words);
  odd.emplace_back(As<IDispatch>(CreateControl()).Get());
  odd.push_back(NewFont(L"Tahoma", 1, true));
  for (const VARTYPE type :
       {VT_I1, VT_UI1, VT_I2, VT_I4, VT_R8, VT_BSTR, VT_VARIANT, VT_UNKNOWN, VT_DATE, VT_DECIMAL}) {
    odd.push_back(VariantOf(static_cast<VARTYPE>(VT_ARRAY | type), 0));  // no array
    odd.push_back(ArrayOf(type, {{0, 0}}));
    odd.push_back(ArrayOf(type, {{3, -1}}));
    odd.push_back(ArrayOf(type, {{4, 0}, {2, 5}, {2, -9}}));
    odd.push_back(ArrayOf(type, {{0, 4}, {3, 0}}));
  }
  odd.push_back(ArrayOf(VT_UI1, std::vector<SAFEARRAYBOUND>(61, SAFEARRAYBOUND{1, 0})));
  odd.push_back(ArrayOf(VT_UI1, {{0, std::numeric_limits<LONG>::min()}}));
  odd.push_back(ArrayOf(VT_UI1, {{1, std::numeric_limits<LONG>::max()}}));
  odd.push_back(Reference(VT_I4, &number.lVal));
  odd.push_back(Reference(VT_BSTR, &text.bstrVal));
  odd.push_back(Reference(VT_ARRAY | VT_UI1, &array.parray));
  odd.push_back(Reference(VT_VARIANT, &itself));
  odd.push_back(Reference(VT_VARIANT, &to_text));
  for (const VARTYPE type : {VT_I4, VT_BSTR, VT_DISPATCH, VT_VARIANT})
    odd.push_back(Reference(type, nullptr));
  odd.push_back(Reference(VT_ARRAY | VT_UI1, nullptr));
  return odd;
}

// Calls a function for every read. What that leaves in the variant goes to the control.
class FreeBag final : public IPropertyBag {
 public:
  using Answer = std::function<HRESULT(const std::wstring& name, VARIANT& value)>;
  explicit FreeBag(Answer answer) : answer_(std::move(answer)) {}

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override { return answer_(name, *value); }
  STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return S_OK; }

 private:
  Answer answer_;
};

// Whatever was loaded, the control can be saved, and what it saves loads whole and is saved again.
void ExpectSound(IUnknown* control) {
  const Bytes saved = SaveToStream(control);
  EXPECT_EQ(saved, SaveToStream(ControlOf(saved).Get()));
  MemoryBag bag;
  EXPECT_EQ(S_OK, SaveToBag(control, bag));
}

// What a bag hands out: a copy, or the reference itself.
HRESULT Give(const Variant& shape, VARIANT& value) {
  VariantInit(&value);
  if ((shape.vt & VT_BYREF) == 0) return VariantCopy(&value, const_cast<Variant*>(&shape));
  value = static_cast<const VARIANT&>(shape);
  return S_OK;
}

bool IsOfImage(const std::wstring& name) { return name.find(L'_') != name.npos; }
// One of the first three images.
bool IsOfFewImages(const std::wstring& name) {
  return name.size() > 2 && name[name.size() - 2] == L'_' && name.back() <= L'3';
}

TEST(AnyBag, AnyShapeMayStandUnderEveryName) {
  const std::vector<Variant> odd = OddVariants();
  for (std::size_t i = 0; i < odd.size(); ++i)
    for (const int images : {0, 2}) {
      SCOPED_TRACE(testing::Message() << "shape " << i << " of type " << odd[i].vt);
      FreeBag bag([&](const std::wstring& name, VARIANT& value) {
        if (IsOfImage(name) && !IsOfFewImages(name)) return E_INVALIDARG;
        const bool is_count = images > 0 && name == L"NumOfIconBytes";
        return is_count ? Give(Variant(images), value) : Give(odd[i], value);
      });
      const ComPtr<IUnknown> control = CreateControl();
      ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
      ExpectSound(control.Get());
    }
}

// A bag that has something in place of what it hasn't got.
TEST(AnyBag, TwoBillionImagesThatAreNothingEndSoon) {
  for (const Variant& nothing : {VariantOf(VT_NULL, 0), Variant(L""), BytesVariant({})}) {
    int reads = 0;
    FreeBag bag([&](const std::wstring& name, VARIANT& value) {
      ++reads;
      return name == L"NumOfIconBytes" ? Give(Variant(2'000'000'000), value) : Give(nothing, value);
    });
    EXPECT_EQ(S_OK, LoadFromBag(CreateControl().Get(), bag));
    EXPECT_GT(10'000, reads);
  }
}

TEST(AnyBag, NoiseIsLivedThrough) {
  const std::vector<Variant> odd = OddVariants();
  std::mt19937 random(20261121);
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    FreeBag bag([&](const std::wstring& name, VARIANT& value) -> HRESULT {
      if (IsOfImage(name) && !IsOfFewImages(name)) return E_INVALIDARG;
      const unsigned choice = random() % 8;
      if (choice == 0) return E_INVALIDARG;
      if (choice == 1) return E_ACCESSDENIED;
      if (choice > 2) return Give(odd[random() % odd.size()], value);
      value.vt = static_cast<VARTYPE>(random() % 80 | 0x1000);  // VT_VECTOR, which no variant is
      value.llVal = 0;
      return S_OK;
    });
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
    ExpectSound(control.Get());
  }
}

TEST(AnyBag, ATextInThePlaceOfACellIsNoCell) {
  MemoryBag bag, again;
  bag.Put(L"NumOfIconBytes", Variant(1));
  bag.Put(L"IcoBytesKey_1", Variant(L"a"));
  bag.Put(L"IconBytesJ0K4_1", Variant(L"text"));
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), again));
  EXPECT_TRUE(again.Find(L"IcoBytesKey_1"));
  EXPECT_FALSE(again.Find(L"IconBytesJ0K4_1"));
}

// A bag that has no memory is no bag without the value.
TEST(AnyBag, AFailureForWantOfMemoryIsToldAndTheRestIsRead) {
  MemoryBag form;
  PutSavedForm(form);
  for (const wchar_t* name :
       {L"Caption", L"ImageKey", L"NumOfIconBytes", L"IcoBytesKey_1", L"IconBytesJ0K4_1"}) {
    SCOPED_TRACE(testing::Message() << name);
    form.failing = {{name, E_OUTOFMEMORY}};
    const ComPtr<IUnknown> control = CreateControl();
    const auto persist = As<IPersistStreamInit>(control);
    EXPECT_EQ(S_OK, persist->InitNew());
    EXPECT_EQ(E_OUTOFMEMORY, LoadFromBag(control.Get(), form));
    EXPECT_EQ(5, GetNumber(As<IDispatch>(control).Get(), L"ImageSize")) << "what comes after";
    EXPECT_EQ(std::wstring(name) == L"ImageKey" ? L"" : L"logo",
              GetText(As<IDispatch>(control).Get(), L"ImageKey"));
    EXPECT_EQ(S_OK, persist->IsDirty()) << "it isn't what the host has";
    EXPECT_EQ(S_OK, persist->InitNew()) << "it may be started anew";
  }
}

TEST(AnyBag, ASuccessThatIsNotOkCounts) {
  FreeBag bag([](const std::wstring& name, VARIANT& value) {
    if (name != L"TextEffect") return E_INVALIDARG;
    value.vt = VT_I4;
    value.lVal = 4;
    return S_FALSE;
  });
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  EXPECT_EQ(4, GetNumber(As<IDispatch>(control).Get(), L"TextEffect"));
}

// --- The first version's file as a bag --------------------------------------------------------------------

TEST(SavedBagFile, OfTheFirstVersionHoldsTheSameAsItsStream) {
  MemoryBag bag;
  PutSavedForm(bag);
  // The platform's font objects show a face and a size that the machine has.
  const Variant font = NewFont(L"Tahoma", 112500, true);
  bag.Remove(L"Font");
  bag.Put(L"Font", font);
  const ComPtr<IUnknown> from_bag = CreateControl(), from_stream = ControlOf(FirstSavedForm());
  ASSERT_EQ(S_OK, LoadFromBag(from_bag.Get(), bag));
  ASSERT_EQ(S_OK, PutByName(As<IDispatch>(from_stream).Get(), L"Font", font));
  EXPECT_EQ(SaveToStream(from_stream.Get()), SaveToStream(from_bag.Get()));
}

bool SameArray(const VARIANT& a, const VARIANT& b) {
  if (SafeArrayGetDim(a.parray) != SafeArrayGetDim(b.parray)) return false;
  std::size_t count = 1;
  for (UINT i = 1; i <= SafeArrayGetDim(a.parray); ++i) {
    LONG lower[2] = {}, upper[2] = {};
    SafeArrayGetLBound(a.parray, i, &lower[0]);
    SafeArrayGetLBound(b.parray, i, &lower[1]);
    SafeArrayGetUBound(a.parray, i, &upper[0]);
    SafeArrayGetUBound(b.parray, i, &upper[1]);
    if (lower[0] != lower[1] || upper[0] != upper[1]) return false;
    count *= static_cast<std::size_t>(upper[0] - lower[0] + 1);
  }
  return std::memcmp(a.parray->pvData, b.parray->pvData, count) == 0;
}

TEST(SavedBagFile, IsWhatTheFirstVersionsStreamIsSavedAs) {
  MemoryBag expected, bag;
  PutSavedForm(expected);
  ASSERT_EQ(S_OK, SaveToBag(ControlOf(FirstSavedForm()).Get(), bag));
  ASSERT_EQ(expected.entries.size(), bag.entries.size());
  for (std::size_t i = 0; i < bag.entries.size(); ++i) {
    const auto &wanted = expected.entries[i], &got = bag.entries[i];
    EXPECT_EQ(wanted.name, got.name);
    ASSERT_EQ(wanted.value.vt, got.value.vt) << i;
    if ((got.value.vt & VT_ARRAY) != 0)
      EXPECT_TRUE(SameArray(wanted.value, got.value)) << i;
    else if (got.value.vt == VT_BSTR)
      EXPECT_EQ(wanted.value.Text(), got.value.Text()) << i;
    else if (got.value.vt == VT_BOOL)
      EXPECT_EQ(wanted.value.boolVal, got.value.boolVal) << i;
    else if (got.value.vt == VT_I4)
      EXPECT_EQ(wanted.value.lVal, got.value.lVal) << i;
    else
      EXPECT_TRUE(As<IFont>(got.value.pdispVal)) << i;
  }
}

// --- Streams ----------------------------------------------------------------------------------------------

TEST(FailingStream, ASaveFailsWhereverTheStreamIsFull) {
  const ComPtr<IUnknown> control = CreateControl();
  const std::size_t size = SaveToStream(control.Get()).size();
  for (std::size_t capacity = 0; capacity < size; ++capacity) {
    MemoryStream stream;
    stream.capacity = capacity;
    EXPECT_EQ(STG_E_MEDIUMFULL, As<IPersistStreamInit>(control)->Save(&stream, TRUE)) << capacity;
  }
}

TEST(FailingStream, AnErrorIsPassedOnWhereverItComes) {
  const Bytes form = SaveToStream(CreateControl().Get());
  for (std::size_t at = 0; at < form.size(); ++at) {
    MemoryStream source(form), target;
    source.portion = target.portion = 1;
    source.failing_at = target.failing_at = at;
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(E_ACCESSDENIED, As<IPersistStreamInit>(control)->Save(&target, TRUE)) << at;
    EXPECT_EQ(E_ACCESSDENIED, As<IPersistStreamInit>(control)->Load(&source)) << at;
    EXPECT_EQ(at, source.place);
  }
}

// --- Storages ---------------------------------------------------------------------------------------------

// A storage with one answer to everything.
class PoorStorage final : public IStorage {
 public:
  explicit PoorStorage(HRESULT answer) : answer_(answer) {}

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateStream(LPCOLESTR, DWORD, DWORD, DWORD, IStream**) override { return answer_; }
  STDMETHODIMP OpenStream(LPCOLESTR, void*, DWORD, DWORD, IStream**) override { return answer_; }
  STDMETHODIMP CreateStorage(LPCOLESTR, DWORD, DWORD, DWORD, IStorage**) override { return answer_; }
  STDMETHODIMP OpenStorage(LPCOLESTR, IStorage*, DWORD, SNB, DWORD, IStorage**) override { return answer_; }
  STDMETHODIMP CopyTo(DWORD, const IID*, SNB, IStorage*) override { return answer_; }
  STDMETHODIMP MoveElementTo(LPCOLESTR, IStorage*, LPCOLESTR, DWORD) override { return answer_; }
  STDMETHODIMP Commit(DWORD) override { return answer_; }
  STDMETHODIMP Revert() override { return answer_; }
  STDMETHODIMP EnumElements(DWORD, void*, DWORD, IEnumSTATSTG**) override { return answer_; }
  STDMETHODIMP DestroyElement(LPCOLESTR) override { return answer_; }
  STDMETHODIMP RenameElement(LPCOLESTR, LPCOLESTR) override { return answer_; }
  STDMETHODIMP SetElementTimes(LPCOLESTR, const FILETIME*, const FILETIME*, const FILETIME*) override {
    return answer_;
  }
  STDMETHODIMP SetClass(REFCLSID) override { return answer_; }
  STDMETHODIMP SetStateBits(DWORD, DWORD) override { return answer_; }
  STDMETHODIMP Stat(STATSTG*, DWORD) override { return answer_; }

 private:
  HRESULT answer_;
};

TEST(PoorStorages, AStreamThatDoesNotComeIsAnErrorWhateverTheStorageSays) {
  PoorStorage failing(STG_E_ACCESSDENIED), lying(S_OK);
  const ComPtr<IUnknown> control = CreateControl();
  const auto persist = As<IPersistStorage>(control);
  EXPECT_EQ(STG_E_ACCESSDENIED, persist->Load(&failing));
  EXPECT_EQ(STG_E_ACCESSDENIED, persist->Save(&failing, TRUE));
  EXPECT_EQ(E_UNEXPECTED, persist->Load(&lying));
  EXPECT_EQ(E_UNEXPECTED, persist->Save(&lying, TRUE));
  EXPECT_EQ(E_UNEXPECTED, persist->SaveCompleted(nullptr)) << "nothing was saved";
  EXPECT_EQ(S_OK, persist->InitNew(nullptr)) << "and nothing loaded";
}

// --- Calls in any order -----------------------------------------------------------------------------------

// All sequences of three calls. Whatever has been called, a container that lets go of the storage and hands
// over another one can save there.
TEST(AnyOrder, OfCallsOfAStorageLeavesAControlThatSaves) {
  const ComPtr<IStorage> full = NewStorage();
  PutStream(full.Get(), SaveToStream(CreateControl().Get()));
  const ComPtr<IStorage> empty = NewStorage(), target = NewStorage();
  const std::function<void(IPersistStorage&)> calls[] = {
      [&](IPersistStorage& persist) { persist.InitNew(empty.Get()); },
      [&](IPersistStorage& persist) { persist.Load(full.Get()); },
      [&](IPersistStorage& persist) { persist.Load(empty.Get()); },
      [&](IPersistStorage& persist) { persist.Save(target.Get(), TRUE); },
      [&](IPersistStorage& persist) { persist.SaveCompleted(nullptr); },
      [&](IPersistStorage& persist) { persist.SaveCompleted(target.Get()); },
      [&](IPersistStorage& persist) { persist.HandsOffStorage(); },
  };
  constexpr std::size_t kCalls = std::size(calls), kSequences = kCalls * kCalls * kCalls;
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    SCOPED_TRACE(sequence);
    const ComPtr<IUnknown> control = CreateControl();
    const auto persist = As<IPersistStorage>(control);
    for (std::size_t left = sequence, i = 0; i < 3; ++i, left /= kCalls) calls[left % kCalls](*persist.Get());
    const ComPtr<IStorage> last = NewStorage();
    ASSERT_EQ(S_OK, persist->HandsOffStorage());
    ASSERT_EQ(E_UNEXPECTED, persist->Save(last.Get(), TRUE));
    ASSERT_EQ(S_OK, persist->SaveCompleted(last.Get()));
    ASSERT_EQ(S_OK, persist->Save(last.Get(), TRUE));
    ASSERT_EQ(SaveToStream(control.Get()), StreamOf(last.Get()));
    ASSERT_EQ(S_OK, persist->SaveCompleted(nullptr));
    ASSERT_EQ(S_FALSE, persist->IsDirty());
  }
}

using Start = HRESULT (*)(IUnknown* control);
const Start kStarts[] = {
    [](IUnknown* control) -> HRESULT { return As<IPersistStreamInit>(control)->InitNew(); },
    [](IUnknown* control) -> HRESULT { return As<IPersistPropertyBag>(control)->InitNew(); },
    [](IUnknown* control) -> HRESULT { return As<IPersistStorage>(control)->InitNew(nullptr); }};
const Start kLoads[] = {[](IUnknown* control) -> HRESULT { return LoadFromStream(control, SavedForm()); },
                        [](IUnknown* control) -> HRESULT {
                          MemoryBag bag;
                          PutSavedForm(bag);
                          return LoadFromBag(control, bag);
                        },
                        [](IUnknown* control) -> HRESULT {
                          const ComPtr<IStorage> storage = NewStorage();
                          PutStream(storage.Get(), SavedForm());
                          return As<IPersistStorage>(control)->Load(storage.Get());
                        }};

// A storage starts a control once; the others start one that wasn't loaded as often as they are told.
TEST(AnyOrder, AControlMayBeStartedTwiceButNotByAStorage) {
  for (const Start first : kStarts)
    for (std::size_t i = 0; i < std::size(kStarts); ++i) {
      const ComPtr<IUnknown> control = CreateControl();
      EXPECT_EQ(S_OK, first(control.Get()));
      PutText(As<IDispatch>(control).Get(), L"Caption", L"changed");
      EXPECT_EQ(i == 2 ? CO_E_ALREADYINITIALIZED : S_OK, kStarts[i](control.Get())) << i;
      EXPECT_EQ(i == 2 ? L"changed" : L"", GetText(As<IDispatch>(control).Get(), L"Caption")) << i;
      EXPECT_EQ(i == 2 ? S_OK : S_FALSE, As<IPersistStreamInit>(control)->IsDirty()) << i;
    }
}

TEST(AnyOrder, AStartedControlMayBeLoadedAndALoadedOneNotStarted) {
  for (const Start start : kStarts)
    for (const Start load : kLoads) {
      const ComPtr<IUnknown> control = CreateControl();
      EXPECT_EQ(S_OK, start(control.Get()));
      EXPECT_EQ(S_OK, load(control.Get()));
      EXPECT_EQ(S_FALSE, As<IPersistStreamInit>(control)->IsDirty());
      for (std::size_t i = 0; i < std::size(kStarts); ++i)
        EXPECT_EQ(i == 2 ? CO_E_ALREADYINITIALIZED : E_UNEXPECTED, kStarts[i](control.Get())) << i;
      EXPECT_EQ(L"logo", GetText(As<IDispatch>(control).Get(), L"ImageKey"));
    }
}

// A handler of the one Change of a load may load again.
TEST(AnyOrder, ALoadMayComeInsideALoad) {
  const ComPtr<IUnknown> control = CreateControl();
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectEvents(control.Get()));
  int loads = 0;
  sink.on_event = [&](const std::string&) {
    if (++loads < 5) {
      EXPECT_EQ(S_OK, LoadFromStream(control.Get(), SavedForm()));
    }
  };
  EXPECT_EQ(S_OK, LoadFromStream(control.Get(), SavedForm()));
  EXPECT_EQ(5, loads);
  EXPECT_EQ(SavedForm(), SaveToStream(control.Get()));
}

}  // namespace
}  // namespace ocx_test
