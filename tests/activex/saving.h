// What a host saves controls in: a stream that can be made to fail, a bag of variants, a storage in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

using Bytes = std::vector<std::uint8_t>;

Bytes BytesOfFile(const std::wstring& path);
// The file that this version saves of a control of 8000 by 3000, with no property at its default but
// AutoSize, which would give it a size of its own.
Bytes SavedForm();
// The file that the first version has saved, with no property at its default and without a size.
Bytes FirstSavedForm();

// --- Streams ----------------------------------------------------------------------------------------------

// Lives where it is declared; its references are only counted. Reads and writes at one place.
class MemoryStream final : public IStream {
 public:
  explicit MemoryStream(Bytes content = {}) : bytes(std::move(content)) {}
  ~MemoryStream();

  Bytes bytes;
  std::size_t place = 0;
  std::size_t portion = SIZE_MAX;     // the most that one call moves
  std::size_t capacity = SIZE_MAX;    // writing beyond it moves nothing
  HRESULT failure = S_OK;             // of the calls from now on
  std::size_t failing_at = SIZE_MAX;  // and of those that begin at this place or later
  ULONGLONG asked = 0;                // the largest count that Read was asked for

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP Read(void* target, ULONG count, ULONG* read) override;
  STDMETHODIMP Write(const void* source, ULONG count, ULONG* written) override;
  STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
  STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
  STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP Revert() override { return E_NOTIMPL; }
  STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

 private:
  HRESULT Failure() const { return place >= failing_at ? E_ACCESSDENIED : failure; }
  ULONG references_ = 0;
};

// The control's bytes by way of its stream interface.
Bytes SaveToStream(IUnknown* control);
HRESULT LoadFromStream(IUnknown* control, const Bytes& bytes);
// A new control with the bytes loaded.
ComPtr<IUnknown> ControlOf(const Bytes& bytes);

// A new control that has a caption, and is dirty for it.
ComPtr<IUnknown> NewCaptioned(const wchar_t* caption = L"New");
std::wstring CaptionOf(IUnknown* control);
bool IsDirty(IUnknown* control);

// --- Bags -------------------------------------------------------------------------------------------------

class MemoryBag final : public IPropertyBag {
 public:
  ~MemoryBag();

  struct Entry {
    std::wstring name;
    Variant value;
  };
  std::vector<Entry> entries;               // in the order of writing
  bool wants_type = false;                  // Read refuses to choose a type
  HRESULT missing = E_INVALIDARG;           // the answer for a name that isn't there
  std::map<std::wstring, HRESULT> failing;  // names with which Read and Write fail
  IErrorLog* log = nullptr;                 // as the last Read was given it
  std::function<void(const std::wstring& name)> on_read;

  void Put(const wchar_t* name, const VARIANT& value);
  const VARIANT* Find(const std::wstring& name) const;
  void Remove(const std::wstring& name);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog* error_log) override;
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override;

 private:
  ULONG references_ = 0;
};

class ErrorLog final : public IErrorLog {
 public:
  std::vector<std::wstring> names;
  SCODE code = S_OK;  // of the last error
  HRESULT answer = S_OK;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP AddError(LPCOLESTR name, EXCEPINFO* info) override;
};

HRESULT LoadFromBag(IUnknown* control, IPropertyBag& bag, IErrorLog* log = nullptr);
HRESULT SaveToBag(IUnknown* control, IPropertyBag& bag, bool clear_dirty = true, bool save_all = true);

// The file that the first version has saved, as a bag.
void PutSavedForm(MemoryBag& bag);

// Variants of other shapes.
Variant BytesVariant(const Bytes& bytes);
Variant VariantOf(VARTYPE type, LONGLONG value);
Variant NewFont(const wchar_t* name, long tenthousandths, bool italic);

// --- Storages ---------------------------------------------------------------------------------------------

// A compound file in memory.
ComPtr<IStorage> NewStorage();
// What the control's stream in the storage holds; nothing when there is none.
Bytes StreamOf(IStorage* storage);
void PutStream(IStorage* storage, const Bytes& bytes);

}  // namespace ocx_test
