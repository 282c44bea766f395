// Saving into and loading from streams of every kind, through the interface of the built server.
#include "activex/saving.h"

namespace ocx_test {
namespace {

constexpr HRESULT kDamaged = STG_E_DOCFILECORRUPT;

TEST(PersistStream, ReadsToItsEndAndNotBeyond) {
  const Bytes form = SavedForm();
  MemoryStream stream(form);
  stream.bytes.insert(stream.bytes.end(), {'n', 'e', 'x', 't'});
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(CreateControl())->Load(&stream));
  EXPECT_EQ(form.size(), stream.place);
}

TEST(PersistStream, TakesAndGivesAnyPortion) {
  const Bytes form = SavedForm();
  for (const std::size_t portion : {1, 7, 16, 1000}) {
    MemoryStream source(form), target;
    source.portion = target.portion = portion;
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Load(&source));
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Save(&target, TRUE));
    EXPECT_EQ(form, target.bytes) << portion;
  }
}

TEST(PersistStream, TheSizeIsWhatASaveWrites) {
  for (const ComPtr<IUnknown>& control : {NewCaptioned(), ControlOf(SavedForm())}) {
    ULARGE_INTEGER size = {};
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->GetSizeMax(&size));
    EXPECT_EQ(SaveToStream(control.Get()).size(), size.QuadPart);
  }
}

TEST(PersistStream, AStreamThatEndsEarlyIsAnErrorWhereverItEnds) {
  const Bytes form = SaveToStream(NewCaptioned().Get());
  for (std::size_t size = 0; size < form.size(); ++size) {
    const Bytes part(form.begin(), form.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(size < 16 ? STG_E_INVALIDHEADER : kDamaged, LoadFromStream(CreateControl().Get(), part))
        << size;
  }
}

TEST(PersistStream, WhatCouldBeReadStays) {
  Bytes form = SavedForm();
  form.resize(form.size() - 1000);  // inside an image
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(kDamaged, LoadFromStream(control.Get(), form));
  EXPECT_EQ(L"logo", GetText(As<IDispatch>(control).Get(), L"ImageKey"));
  EXPECT_TRUE(IsDirty(control.Get())) << "it isn't what the host has";
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew()) << "the host may start it anew";
}

TEST(PersistStream, SomethingElseLeavesTheControlAlone) {
  const ComPtr<IUnknown> control = NewCaptioned(L"Mine");
  const Bytes before = SaveToStream(control.Get());
  EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.Get(), {}));
  EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.Get(), Bytes(100, 'x')));
  Bytes newer = SavedForm();
  newer[8] = 2;
  EXPECT_EQ(STG_E_OLDDLL, LoadFromStream(control.Get(), newer));
  EXPECT_EQ(before, SaveToStream(control.Get()));
}

TEST(PersistStream, ALengthThatLiesIsAskedForInPortions) {
  MemoryStream stream(SavedForm());
  for (std::size_t i = 12; i < 16; ++i) stream.bytes[i] = 0xFF;
  EXPECT_EQ(kDamaged, As<IPersistStreamInit>(CreateControl())->Load(&stream));
  EXPECT_GE(65536u, stream.asked);
}

TEST(PersistStream, FailuresOfTheStreamArePassedOn) {
  const ComPtr<IUnknown> control = NewCaptioned();
  const auto persist = As<IPersistStreamInit>(control);
  MemoryStream failing(SavedForm()), full, half(SavedForm());
  failing.failure = E_ACCESSDENIED;
  EXPECT_EQ(E_ACCESSDENIED, persist->Load(&failing));
  EXPECT_EQ(E_ACCESSDENIED, persist->Save(&failing, TRUE));
  full.capacity = 10;
  EXPECT_EQ(STG_E_MEDIUMFULL, persist->Save(&full, TRUE));
  EXPECT_TRUE(IsDirty(control.Get())) << "nothing was saved";
  EXPECT_EQ(L"New", CaptionOf(control.Get()));
  half.portion = half.failing_at = 1000;  // after the properties, within the images
  EXPECT_EQ(E_ACCESSDENIED, persist->Load(&half));
  EXPECT_EQ(L"logo", GetText(As<IDispatch>(control).Get(), L"ImageKey")) << "what could be read stays";
}

}  // namespace
}  // namespace ocx_test
