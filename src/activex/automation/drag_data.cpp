#include "activex/automation/drag_data.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>

#include "activex/automation/drag_store.h"
#include "activex/automation/late_bound.h"
#include "activex/automation/value_conversion.h"
#include "platform/system.h"

namespace marklet::activex {
namespace {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x800A0005);  // automation's own
constexpr HRESULT kReadOnly = E_ACCESSDENIED;                           // data of another source

// --- Arguments --------------------------------------------------------------------------------------------

// The argument at a place, counted from the first; null for one that was left out.
const VARIANT* ArgumentAt(const DISPPARAMS& parameters, UINT place) {
  if (place >= parameters.cArgs) return nullptr;
  const VARIANT& argument = parameters.rgvarg[parameters.cArgs - 1 - place];
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND ? nullptr : &argument;
}

HRESULT NumberAt(const DISPPARAMS& parameters, UINT place, Long& number) {
  const VARIANT* const argument = ArgumentAt(parameters, place);
  if (!argument) return kInvalidArgument;
  Value value;
  const HRESULT result = ValueFromVariant(*argument, ValueType::Number, value);
  if (SUCCEEDED(result)) number = std::get<Long>(value);
  return result;
}

HRESULT TextAt(const DISPPARAMS& parameters, UINT place, std::u16string& text) {
  Value value;
  const HRESULT result = ValueFromVariant(*ArgumentAt(parameters, place), ValueType::Text, value);
  if (SUCCEEDED(result)) text = std::get<std::u16string>(value);
  return result;
}

// Hosts have always had a number of their own for rich text, which the platform registers by name. Registered
// formats come as negative numbers of 16 bits, too.
CLIPFORMAT FormatFrom(Long number) {
  const auto format = static_cast<CLIPFORMAT>(number);
  constexpr CLIPFORMAT kRichText = 0xBF01;
  return format == kRichText ? static_cast<CLIPFORMAT>(::RegisterClipboardFormatW(L"Rich Text Format"))
                             : format;
}

// --- Reading ----------------------------------------------------------------------------------------------

// Memory that somebody else gave, for as long as the medium lives.
class LockedBytes {
 public:
  explicit LockedBytes(HGLOBAL memory) : memory_(memory), at_(::GlobalLock(memory)) {}
  ~LockedBytes() {
    if (at_) ::GlobalUnlock(memory_);
  }
  LockedBytes(const LockedBytes&) = delete;
  LockedBytes& operator=(const LockedBytes&) = delete;
  std::span<const std::byte> Get() const {
    return {static_cast<const std::byte*>(at_), at_ ? ::GlobalSize(memory_) : 0};
  }

 private:
  HGLOBAL memory_;
  void* at_;
};

using Bytes = std::vector<std::byte>;

HRESULT BytesOf(IDataObject& data, CLIPFORMAT format, Bytes& bytes) {
  FORMATETC wanted = FormatOf(format, TYMED_HGLOBAL);
  Medium medium;
  const HRESULT result = data.GetData(&wanted, &medium);
  if (FAILED(result)) return result;
  if (medium.tymed != TYMED_HGLOBAL) return DV_E_TYMED;
  const LockedBytes locked(medium.hGlobal);
  bytes.assign(locked.Get().begin(), locked.Get().end());
  return S_OK;
}

// Up to the first NUL, or the end.
template <typename Unit>
std::basic_string<Unit> UnitsOf(std::span<const std::byte> bytes) {
  std::basic_string<Unit> text(bytes.size() / sizeof(Unit), Unit());
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(Unit));
  return text.substr(0, text.find(Unit()));
}

HRESULT GiveText(std::u16string_view text, VARIANT& result) {
  result.bstrVal = NewBstr(text);
  result.vt = VT_BSTR;
  return S_OK;
}

// The one with all letters goes before.
HRESULT ReadText(IDataObject& data, VARIANT& result) {
  Bytes bytes;
  if (SUCCEEDED(BytesOf(data, CF_UNICODETEXT, bytes))) return GiveText(UnitsOf<char16_t>(bytes), result);
  const HRESULT outcome = BytesOf(data, CF_TEXT, bytes);
  return FAILED(outcome) ? outcome : GiveText(MultiByteToWideChar(CP_ACP, UnitsOf<char>(bytes)), result);
}

HRESULT ReadBytes(IDataObject& data, CLIPFORMAT format, VARIANT& result) {
  Bytes bytes;
  const HRESULT outcome = BytesOf(data, format, bytes);
  if (FAILED(outcome)) return outcome;
  SAFEARRAYBOUND bound = {static_cast<ULONG>(bytes.size()), 0};
  SAFEARRAY* const array = ::SafeArrayCreate(VT_UI1, 1, &bound);
  if (!array) return E_OUTOFMEMORY;
  result.vt = VT_ARRAY | VT_UI1;
  result.parray = array;
  void* to = nullptr;
  if (FAILED(::SafeArrayAccessData(array, &to))) return E_UNEXPECTED;
  std::memcpy(to, bytes.data(), bytes.size());
  ::SafeArrayUnaccessData(array);
  return S_OK;
}

// A copy of the handle, since the medium may be the source's to end.
bool CopyPicture(const STGMEDIUM& medium, PICTDESC& description) {
  if (medium.tymed == TYMED_GDI) {
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = static_cast<::HBITMAP>(::CopyImage(medium.hBitmap, IMAGE_BITMAP, 0, 0, 0));
    return description.bmp.hbitmap != nullptr;
  }
  if (medium.tymed != TYMED_ENHMF) return false;
  description.picType = PICTYPE_ENHMETAFILE;
  description.emf.hemf = ::CopyEnhMetaFileW(medium.hEnhMetaFile, nullptr);
  return description.emf.hemf != nullptr;
}

HRESULT ReadPicture(IDataObject& data, CLIPFORMAT format, VARIANT& result) {
  FORMATETC wanted = FormatOf(format, format == CF_BITMAP ? TYMED_GDI : TYMED_ENHMF);
  Medium medium;
  HRESULT outcome = data.GetData(&wanted, &medium);
  if (FAILED(outcome)) return outcome;
  PICTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  if (!CopyPicture(medium, description)) return DV_E_TYMED;
  outcome = ::OleCreatePictureIndirect(&description, IID_IDispatch, TRUE,
                                       reinterpret_cast<void**>(&result.pdispVal));
  if (SUCCEEDED(outcome)) result.vt = VT_DISPATCH;
  return outcome;
}

// What other programs say is in their memory: each name up to its NUL, the list up to an empty one or the
// end.
std::vector<std::u16string> ReadFiles(IDataObject& data) {
  std::vector<std::u16string> files;
  Bytes bytes;
  DropFiles header;
  if (FAILED(BytesOf(data, CF_HDROP, bytes)) || bytes.size() < sizeof header) return files;
  std::memcpy(&header, bytes.data(), sizeof header);
  if (header.pFiles > bytes.size()) return files;
  const auto split = [&files](const auto& all, const auto& to_text) {
    for (std::size_t at = 0; at < all.size() && all[at] != 0;) {
      const std::size_t end = std::min(all.find(all[at] * 0, at), all.size());
      files.push_back(to_text(all.substr(at, end - at)));
      at = end + 1;
    }
  };
  const std::span<const std::byte> list = std::span(bytes).subspan(header.pFiles);
  if (header.fWide) {
    std::u16string all(list.size() / sizeof(char16_t), u'\0');
    std::memcpy(all.data(), list.data(), all.size() * sizeof(char16_t));
    split(all, [](std::u16string name) { return name; });
  } else {
    split(std::string(reinterpret_cast<const char*>(list.data()), list.size()),
          [](const std::string& name) { return MultiByteToWideChar(CP_ACP, name); });
  }
  return files;
}

// --- Files ------------------------------------------------------------------------------------------------

struct GiveName {
  static VARIANT Give(const std::u16string& name) {
    VARIANT result;
    ::VariantInit(&result);
    result.bstrVal = NewBstr(name);
    result.vt = VT_BSTR;
    return result;
  }
};
using NameEnumerator = Enumerator<IEnumVARIANT, VARIANT, std::u16string, GiveName>;

// Places are counted from 1.
class Files final : public LateBound<Files> {
 public:
  Files(FileNames names, bool read_only) : names_(std::move(names)), read_only_(read_only) {}

  static const Member kMembers[6];

 private:
  HRESULT Count(const DISPPARAMS&, VARIANT& result) {
    result.lVal = static_cast<LONG>(names_->size());
    result.vt = VT_I4;
    return S_OK;
  }
  HRESULT Item(const DISPPARAMS& parameters, VARIANT& result) {
    std::size_t place = 0;
    const HRESULT outcome = PlaceAt(parameters, 0, names_->size(), place);
    return FAILED(outcome) ? outcome : GiveText((*names_)[place], result);
  }
  // Before the one at a place, or after all.
  HRESULT Add(const DISPPARAMS& parameters, VARIANT&) {
    if (read_only_) return kReadOnly;
    if (!ArgumentAt(parameters, 0)) return kInvalidArgument;
    std::u16string name;
    std::size_t place = names_->size();
    HRESULT outcome = TextAt(parameters, 0, name);
    if (SUCCEEDED(outcome) && ArgumentAt(parameters, 1))
      outcome = PlaceAt(parameters, 1, names_->size() + 1, place);
    if (FAILED(outcome)) return outcome;
    names_->insert(names_->begin() + static_cast<std::ptrdiff_t>(place), std::move(name));
    return S_OK;
  }
  HRESULT Remove(const DISPPARAMS& parameters, VARIANT&) {
    if (read_only_) return kReadOnly;
    std::size_t place = 0;
    const HRESULT outcome = PlaceAt(parameters, 0, names_->size(), place);
    if (FAILED(outcome)) return outcome;
    names_->erase(names_->begin() + static_cast<std::ptrdiff_t>(place));
    return S_OK;
  }
  HRESULT Clear(const DISPPARAMS&, VARIANT&) {
    if (read_only_) return kReadOnly;
    names_->clear();
    return S_OK;
  }
  HRESULT NewEnum(const DISPPARAMS&, VARIANT& result) {
    result.punkVal = new NameEnumerator(*names_);
    result.vt = VT_UNKNOWN;
    return S_OK;
  }

  static HRESULT PlaceAt(const DISPPARAMS& parameters, UINT argument, std::size_t count, std::size_t& place) {
    Long number = 0;
    const HRESULT outcome = NumberAt(parameters, argument, number);
    if (FAILED(outcome)) return outcome;
    if (number < 1 || static_cast<std::size_t>(number) > count) return kInvalidArgument;
    place = static_cast<std::size_t>(number) - 1;
    return S_OK;
  }

  FileNames names_;
  bool read_only_;
};

const Files::Member Files::kMembers[] = {
    {"Item", DISPID_VALUE, 1, &Files::Item}, {"Count", 1, 0, &Files::Count},
    {"Add", 2, 1, &Files::Add, 1},           {"Remove", 3, 1, &Files::Remove},
    {"Clear", 4, 0, &Files::Clear},          {"_NewEnum", DISPID_NEWENUM, 0, &Files::NewEnum}};

// --- The object -------------------------------------------------------------------------------------------

class DragData final : public LateBound<DragData> {
 public:
  DragData(ComPtr<IDataObject> data, ComPtr<DragStore> store)
      : data_(std::move(data)), store_(std::move(store)) {}

  static const Member kMembers[5];

 private:
  HRESULT GetFormat(const DISPPARAMS& parameters, VARIANT& result) {
    Long number = 0;
    const HRESULT outcome = NumberAt(parameters, 0, number);
    if (FAILED(outcome)) return outcome;
    const CLIPFORMAT format = FormatFrom(number);
    const bool has = IsText(format) ? Has(CF_TEXT) || Has(CF_UNICODETEXT) : Has(format);
    result.vt = VT_BOOL;
    result.boolVal = has ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }

  // A text, a picture, or the bytes of any other format.
  HRESULT GetData(const DISPPARAMS& parameters, VARIANT& result) {
    Long number = 0;
    const HRESULT outcome = NumberAt(parameters, 0, number);
    if (FAILED(outcome)) return outcome;
    const CLIPFORMAT format = FormatFrom(number);
    const ComPtr<IDataObject> data = data_;
    if (IsText(format)) return ReadText(*data.Get(), result);
    if (format == CF_BITMAP || format == CF_ENHMETAFILE) return ReadPicture(*data.Get(), format, result);
    return ReadBytes(*data.Get(), format, result);
  }

  HRESULT FileList(const DISPPARAMS&, VARIANT& result) {
    const FileNames names =
        store_ ? store_->Files() : std::make_shared<std::vector<std::u16string>>(ReadFiles(*data_.Get()));
    result.pdispVal = new Files(names, !store_);
    result.vt = VT_DISPATCH;
    return S_OK;
  }

  // Without a value it is asked for when somebody wants it, without a format the value says which.
  HRESULT SetData(const DISPPARAMS& parameters, VARIANT&) {
    if (!store_) return kReadOnly;
    Value number;
    DragValue value;
    CLIPFORMAT format = 0;
    if (ArgumentAt(parameters, 1)) {
      Long given = 0;
      const HRESULT outcome = NumberAt(parameters, 1, given);
      if (FAILED(outcome)) return outcome;
      format = FormatFrom(given);
    }
    if (const VARIANT* const given = ArgumentAt(parameters, 0)) {
      const HRESULT outcome = ValueFrom(*given, format, value);
      if (FAILED(outcome)) return outcome;
    }
    if (format == 0) return kInvalidArgument;
    store_->Put(format, std::move(value));
    return S_OK;
  }

  HRESULT Clear(const DISPPARAMS&, VARIANT&) {
    if (!store_) return kReadOnly;
    store_->Clear();
    return S_OK;
  }

  bool Has(CLIPFORMAT format) const {
    FORMATETC wanted = FormatOf(
        format, TYMED_HGLOBAL | TYMED_GDI | TYMED_ENHMF | TYMED_MFPICT | TYMED_ISTREAM | TYMED_ISTORAGE);
    return data_->QueryGetData(&wanted) == S_OK;
  }

  static HRESULT ValueFrom(const VARIANT& reference, CLIPFORMAT& format, DragValue& value);

  ComPtr<IDataObject> data_;
  ComPtr<DragStore> store_;  // null for another source's data
};

const DragData::Member DragData::kMembers[] = {{"Clear", 1, 0, &DragData::Clear},
                                               {"GetData", 2, 1, &DragData::GetData},
                                               {"GetFormat", 3, 1, &DragData::GetFormat},
                                               {"SetData", 4, 0, &DragData::SetData, 2},
                                               {"Files", 5, 0, &DragData::FileList}};

HRESULT BytesFromArray(SAFEARRAY* array, Bytes& bytes) {
  if (!array || ::SafeArrayGetDim(array) != 1) return kInvalidArgument;
  LONG first = 0, last = -1;
  ::SafeArrayGetLBound(array, 1, &first);
  ::SafeArrayGetUBound(array, 1, &last);
  void* from = nullptr;
  const HRESULT result = ::SafeArrayAccessData(array, &from);
  if (FAILED(result)) return result;
  const auto* const begin = static_cast<const std::byte*>(from);
  bytes.assign(begin, begin + (std::int64_t{last} - first + 1));
  return ::SafeArrayUnaccessData(array);
}

HRESULT PictureFrom(IUnknown* object, CLIPFORMAT& format, DragValue& value) {
  ComPtr<IPicture> picture;
  SHORT type = PICTYPE_NONE;
  if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(picture.GetAddressOf()))) ||
      FAILED(picture->get_Type(&type)))
    return kInvalidArgument;
  if (type != PICTYPE_BITMAP && type != PICTYPE_ENHMETAFILE) return kInvalidArgument;
  const CLIPFORMAT own = type == PICTYPE_BITMAP ? CF_BITMAP : CF_ENHMETAFILE;
  if (format != 0 && format != own) return kInvalidArgument;
  format = own;
  value = std::move(picture);
  return S_OK;
}

// A text under a format that isn't one of text goes in the system code page, as rich text does.
HRESULT DragData::ValueFrom(const VARIANT& reference, CLIPFORMAT& format, DragValue& value) {
  Variant given;
  const HRESULT copied = ::VariantCopyInd(&given, const_cast<VARIANT*>(&reference));
  if (FAILED(copied)) return copied;
  if (given.vt == VT_DISPATCH || given.vt == VT_UNKNOWN) return PictureFrom(given.punkVal, format, value);
  if (format == CF_BITMAP || format == CF_ENHMETAFILE) return kInvalidArgument;
  if (given.vt == (VT_ARRAY | VT_UI1)) {
    Bytes bytes;
    const HRESULT result = BytesFromArray(given.parray, bytes);
    value = std::move(bytes);
    return result;
  }
  Value text;
  const HRESULT result = ValueFromVariant(given, ValueType::Text, text);
  if (FAILED(result)) return result;
  if (format == 0) format = CF_TEXT;
  if (IsText(format)) {
    value = std::get<std::u16string>(text);
    return S_OK;
  }
  const std::string narrow = WideCharToMultiByte(CP_ACP, std::get<std::u16string>(text));
  const auto bytes = std::as_bytes(std::span(narrow.c_str(), narrow.size() + 1));
  value = Bytes(bytes.begin(), bytes.end());
  return S_OK;
}

class WrappedDragData final : public HostObject {
 public:
  explicit WrappedDragData(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  const ComPtr<IDispatch>& Get() const { return object_; }

 private:
  ComPtr<IDispatch> object_;
};

}  // namespace

ComPtr<IDispatch> DragDataObject(ComPtr<IDataObject> data) {
  if (!data) return {};
  return Adopt<IDispatch>(new DragData(std::move(data), nullptr));
}

ComPtr<IDispatch> DragDataObject(ComPtr<DragStore> store) {
  const ComPtr<IDataObject> data = store.Get();
  return Adopt<IDispatch>(new DragData(data, std::move(store)));
}

HostObjectRef WrapDragData(ComPtr<IDispatch> object) {
  return std::make_shared<WrappedDragData>(std::move(object));
}

ComPtr<IDispatch> UnwrapDragData(const HostObjectRef& object) {
  const auto* data = dynamic_cast<const WrappedDragData*>(object.get());
  return data ? data->Get() : nullptr;
}

}  // namespace marklet::activex
