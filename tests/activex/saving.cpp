#include "activex/saving.h"

#include <algorithm>
#include <cstring>

#include "support/bag_file.h"

namespace ocx_test {
namespace {

constexpr wchar_t kStreamName[] = L"Marklet";

template <typename Interface>
HRESULT Give(Interface* object, REFIID iid, void** result) {
  const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(Interface);
  *result = known ? object : nullptr;
  if (known) object->AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

}  // namespace

Bytes BytesOfFile(const std::wstring& path) {
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(INVALID_HANDLE_VALUE, file) << "no file";
  Bytes bytes(GetFileSize(file, nullptr));
  DWORD read = 0;
  EXPECT_TRUE(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
  EXPECT_EQ(bytes.size(), read);
  CloseHandle(file);
  return bytes;
}

Bytes SavedForm() { return BytesOfFile(SavedFormsPath() + L"\\1.1\\every_property.form"); }
Bytes FirstSavedForm() { return BytesOfFile(SavedFormsPath() + L"\\1.0\\every_property.form"); }

// --- Streams ----------------------------------------------------------------------------------------------

MemoryStream::~MemoryStream() { EXPECT_EQ(0u, references_) << "references to the stream are left"; }

HRESULT MemoryStream::QueryInterface(REFIID iid, void** object) {
  return Give(static_cast<IStream*>(this), iid, object);
}

HRESULT MemoryStream::Read(void* target, ULONG count, ULONG* read) {
  asked = std::max<ULONGLONG>(asked, count);
  if (read) *read = 0;
  if (FAILED(Failure())) return Failure();
  const std::size_t moved = std::min({std::size_t{count}, bytes.size() - place, portion});
  if (moved) std::memcpy(target, bytes.data() + place, moved);
  place += moved;
  if (read) *read = static_cast<ULONG>(moved);
  return moved == count ? S_OK : S_FALSE;
}

HRESULT MemoryStream::Write(const void* source, ULONG count, ULONG* written) {
  if (written) *written = 0;
  if (FAILED(Failure())) return Failure();
  const std::size_t moved = std::min({std::size_t{count}, portion, capacity - std::min(capacity, place)});
  bytes.resize(std::max(bytes.size(), place + moved));
  if (moved) std::memcpy(bytes.data() + place, source, moved);
  place += moved;
  if (written) *written = static_cast<ULONG>(moved);
  return S_OK;
}

Bytes SaveToStream(IUnknown* control) {
  MemoryStream stream;
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Save(&stream, FALSE));
  return stream.bytes;
}

HRESULT LoadFromStream(IUnknown* control, const Bytes& bytes) {
  MemoryStream stream(bytes);
  return As<IPersistStreamInit>(control)->Load(&stream);
}

ComPtr<IUnknown> ControlOf(const Bytes& bytes) {
  ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromStream(control.Get(), bytes));
  return control;
}

ComPtr<IUnknown> NewCaptioned(const wchar_t* caption) {
  ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  PutText(As<IDispatch>(control).Get(), L"Caption", caption);
  return control;
}

std::wstring CaptionOf(IUnknown* control) { return GetText(As<IDispatch>(control).Get(), L"Caption"); }
bool IsDirty(IUnknown* control) { return As<IPersistStreamInit>(control)->IsDirty() == S_OK; }

// --- Bags -------------------------------------------------------------------------------------------------

MemoryBag::~MemoryBag() { EXPECT_EQ(0u, references_) << "references to the bag are left"; }

HRESULT MemoryBag::QueryInterface(REFIID iid, void** object) {
  return Give(static_cast<IPropertyBag*>(this), iid, object);
}

void MemoryBag::Put(const wchar_t* name, const VARIANT& value) {
  entries.push_back({name, {}});
  EXPECT_EQ(S_OK, VariantCopy(&entries.back().value, const_cast<VARIANT*>(&value)));
}

const VARIANT* MemoryBag::Find(const std::wstring& name) const {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.name == name; });
  return found == entries.end() ? nullptr : &found->value;
}

void MemoryBag::Remove(const std::wstring& name) {
  std::vector<Entry> left;
  for (Entry& entry : entries)
    if (entry.name != name) left.push_back({entry.name, std::move(entry.value)});
  entries.swap(left);
}

HRESULT MemoryBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog* error_log) {
  log = error_log;
  if (on_read) on_read(name);
  if (const auto found = failing.find(name); found != failing.end()) return found->second;
  const VARIANT* entry = Find(name);
  if (!entry) return missing;
  const VARTYPE wanted = value->vt;
  if (wanted == VT_EMPTY && wants_type) return E_FAIL;
  VariantInit(value);
  if (wanted == VT_EMPTY || wanted == entry->vt) return VariantCopy(value, const_cast<VARIANT*>(entry));
  return VariantChangeType(value, const_cast<VARIANT*>(entry), 0, wanted);
}

HRESULT MemoryBag::Write(LPCOLESTR name, VARIANT* value) {
  if (const auto found = failing.find(name); found != failing.end()) return found->second;
  EXPECT_FALSE(Find(name)) << "a name is written once";
  Put(name, *value);
  return S_OK;
}

HRESULT ErrorLog::QueryInterface(REFIID iid, void** object) {
  return Give(static_cast<IErrorLog*>(this), iid, object);
}

HRESULT ErrorLog::AddError(LPCOLESTR name, EXCEPINFO* info) {
  names.emplace_back(name);
  code = info->scode;
  EXPECT_LT(0u, SysStringLen(info->bstrDescription));
  return answer;
}

HRESULT LoadFromBag(IUnknown* control, IPropertyBag& bag, IErrorLog* log) {
  return As<IPersistPropertyBag>(control)->Load(&bag, log);
}

HRESULT SaveToBag(IUnknown* control, IPropertyBag& bag, bool clear_dirty, bool save_all) {
  return As<IPersistPropertyBag>(control)->Save(&bag, clear_dirty, save_all);
}

namespace {

Variant FromFile(std::int32_t number) { return Variant(number); }
Variant FromFile(bool flag) { return Variant::Bool(flag); }
Variant FromFile(const std::u16string& text) {
  return Variant(std::wstring(text.begin(), text.end()).c_str());
}
Variant FromFile(const marklet::ByteArray& array) {
  std::vector<SAFEARRAYBOUND> bounds;
  for (const auto& bound : array.bounds) bounds.push_back({static_cast<ULONG>(bound.count), bound.lower});
  Variant result;
  result.parray = SafeArrayCreate(VT_UI1, static_cast<UINT>(bounds.size()), bounds.data());
  result.vt = VT_ARRAY | VT_UI1;
  void* data = nullptr;
  EXPECT_EQ(S_OK, SafeArrayAccessData(result.parray, &data));
  std::memcpy(data, array.bytes.data(), array.bytes.size());
  SafeArrayUnaccessData(result.parray);
  return result;
}
Variant FromFile(const marklet::testing::FontInFile& font) {
  std::wstring name(font.name.begin(), font.name.end());
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = name.data();
  description.cySize.int64 = font.size;
  description.sWeight = static_cast<SHORT>(font.weight);
  description.sCharset = font.charset;
  description.fItalic = font.italic;
  description.fUnderline = font.underline;
  description.fStrikethrough = font.strikethrough;
  ComPtr<IDispatch> object;
  EXPECT_EQ(S_OK, OleCreateFontIndirect(&description, IID_PPV_ARGS(object.GetAddressOf())));
  return Variant(object.Get());
}

}  // namespace

void PutSavedForm(MemoryBag& bag) {
  for (const auto& entry : marklet::testing::ReadBagFile(SavedFormsPath() + L"\\1.0\\every_property.bag"))
    bag.Put(std::wstring(entry.name.begin(), entry.name.end()).c_str(),
            std::visit([](const auto& held) { return FromFile(held); }, entry.value));
}

Variant BytesVariant(const Bytes& bytes) {
  Variant result;
  result.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  result.vt = VT_ARRAY | VT_UI1;
  void* data = nullptr;
  EXPECT_EQ(S_OK, SafeArrayAccessData(result.parray, &data));
  if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
  SafeArrayUnaccessData(result.parray);
  return result;
}

Variant VariantOf(VARTYPE type, LONGLONG value) {
  Variant result;
  result.vt = type;
  result.llVal = value;
  return result;
}

Variant NewFont(const wchar_t* name, long tenthousandths, bool italic) {
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = const_cast<LPOLESTR>(name);
  description.cySize.int64 = tenthousandths;
  description.sWeight = 400;
  description.fItalic = italic;
  ComPtr<IDispatch> font;
  EXPECT_EQ(S_OK, OleCreateFontIndirect(&description, IID_PPV_ARGS(font.GetAddressOf())));
  return Variant(font.Get());
}

// --- Storages ---------------------------------------------------------------------------------------------

ComPtr<IStorage> NewStorage() {
  ComPtr<ILockBytes> bytes;
  ComPtr<IStorage> storage;
  EXPECT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.GetAddressOf()));
  EXPECT_EQ(S_OK,
            StgCreateDocfileOnILockBytes(bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0,
                                         storage.GetAddressOf()));
  return storage;
}

Bytes StreamOf(IStorage* storage) {
  ComPtr<IStream> stream;
  if (FAILED(storage->OpenStream(kStreamName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                 stream.GetAddressOf())))
    return {};
  STATSTG status = {};
  EXPECT_EQ(S_OK, stream->Stat(&status, STATFLAG_NONAME));
  Bytes bytes(static_cast<std::size_t>(status.cbSize.QuadPart));
  ULONG read = 0;
  EXPECT_EQ(S_OK, stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
  return bytes;
}

void PutStream(IStorage* storage, const Bytes& bytes) {
  ComPtr<IStream> stream;
  ASSERT_EQ(S_OK, storage->CreateStream(kStreamName, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0,
                                        stream.GetAddressOf()));
  EXPECT_EQ(S_OK, stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
}

}  // namespace ocx_test
