#include "activex/automation/drag_store.h"

#include <bit>
#include <cstring>
#include <span>

#include "platform/system.h"
#include "platform/types.h"

namespace marklet::activex {
namespace {

DWORD MediumOf(CLIPFORMAT format) {
  if (format == CF_BITMAP) return TYMED_GDI;
  return format == CF_ENHMETAFILE ? TYMED_ENHMF : TYMED_HGLOBAL;
}

HRESULT GiveBytes(std::span<const std::byte> bytes, STGMEDIUM& medium) {
  GlobalMemory memory(bytes.size());
  memory.With([&](void* to) { std::memcpy(to, bytes.data(), bytes.size()); });
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = memory.Take();
  return S_OK;
}

// With the NUL at the end, which both kinds of string have.
HRESULT GiveText(CLIPFORMAT format, const std::u16string& text, STGMEDIUM& medium) {
  if (format == CF_UNICODETEXT)
    return GiveBytes(std::as_bytes(std::span(text.c_str(), text.size() + 1)), medium);
  const std::string narrow = WideCharToMultiByte(CP_ACP, text);
  return GiveBytes(std::as_bytes(std::span(narrow.c_str(), narrow.size() + 1)), medium);
}

HRESULT GiveFiles(const std::vector<std::u16string>& files, STGMEDIUM& medium) {
  std::u16string list;
  for (const std::u16string& file : files) list.append(file).push_back(u'\0');
  list.push_back(u'\0');
  DropFiles header = {};
  header.pFiles = sizeof header;
  header.fWide = TRUE;
  std::vector<std::byte> bytes(sizeof header + list.size() * sizeof(char16_t));
  std::memcpy(bytes.data(), &header, sizeof header);
  std::memcpy(bytes.data() + sizeof header, list.data(), list.size() * sizeof(char16_t));
  return GiveBytes(bytes, medium);
}

HRESULT GivePicture(CLIPFORMAT format, IPicture& picture, STGMEDIUM& medium) {
  OLE_HANDLE handle = 0;
  const HRESULT result = picture.get_Handle(&handle);
  if (FAILED(result)) return result;
  // Handles have 32 significant bits, with their sign.
  const auto native = std::bit_cast<HANDLE>(LONG_PTR{static_cast<LONG>(handle)});
  if (format == CF_BITMAP) {
    medium.hBitmap = static_cast<::HBITMAP>(::CopyImage(native, IMAGE_BITMAP, 0, 0, 0));
    medium.tymed = medium.hBitmap ? TYMED_GDI : TYMED_NULL;
  } else {
    medium.hEnhMetaFile = ::CopyEnhMetaFileW(static_cast<HENHMETAFILE>(native), nullptr);
    medium.tymed = medium.hEnhMetaFile ? TYMED_ENHMF : TYMED_NULL;
  }
  return medium.tymed != TYMED_NULL ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

void DragStore::Put(CLIPFORMAT format, DragValue value) {
  if (Entry* const entry = Find(format)) {
    entry->value = std::move(value);
    return;
  }
  entries_.push_back({format, std::move(value)});
}

void DragStore::Clear() {
  entries_.clear();
  files_->clear();
}

DragStore::Entry* DragStore::Find(CLIPFORMAT format) {
  for (Entry& entry : entries_)
    if (entry.format == format || (IsText(entry.format) && IsText(format))) return &entry;
  return nullptr;
}

HRESULT DragStore::Check(const FORMATETC& format) {
  if (format.lindex != -1) return DV_E_LINDEX;
  if (format.dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const bool is_there =
      format.cfFormat == CF_HDROP && !files_->empty() ? true : Find(format.cfFormat) != nullptr;
  if (!is_there) return DV_E_FORMATETC;
  return (format.tymed & MediumOf(format.cfFormat)) != 0 ? S_OK : DV_E_TYMED;
}

HRESULT DragStore::QueryGetData(FORMATETC* format) { return format ? Check(*format) : E_POINTER; }

HRESULT DragStore::GetData(FORMATETC* format, STGMEDIUM* medium) {
  if (!format || !medium) return E_POINTER;
  *medium = {};
  const HRESULT result = Check(*format);
  if (FAILED(result)) return result;
  const ComPtr<IDataObject> held = this;  // the handler may let go of everything
  return Guarded([&] { return Render(format->cfFormat, *medium); });
}

HRESULT DragStore::Render(CLIPFORMAT format, STGMEDIUM& medium) {
  Entry* entry = Find(format);
  if (!entry) return GiveFiles(*files_, medium);
  if (std::holds_alternative<std::monostate>(entry->value)) {
    if (const auto ask = on_missing) ask(entry->format);
    entry = Find(format);
  }
  if (!entry) return DV_E_FORMATETC;
  if (const auto* text = std::get_if<std::u16string>(&entry->value)) return GiveText(format, *text, medium);
  if (const auto* bytes = std::get_if<std::vector<std::byte>>(&entry->value))
    return GiveBytes(*bytes, medium);
  const auto* picture = std::get_if<ComPtr<IPicture>>(&entry->value);
  return picture ? GivePicture(format, *picture->Get(), medium) : DV_E_FORMATETC;
}

HRESULT DragStore::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) {
  if (!formats) return E_POINTER;
  *formats = nullptr;
  if (direction != DATADIR_GET) return E_NOTIMPL;
  return Guarded([&] {
    std::vector<FORMATETC> list;
    for (const Entry& entry : entries_) {
      if (IsText(entry.format)) list.push_back(FormatOf(CF_UNICODETEXT, TYMED_HGLOBAL));
      const CLIPFORMAT format = IsText(entry.format) ? CLIPFORMAT{CF_TEXT} : entry.format;
      list.push_back(FormatOf(format, MediumOf(format)));
    }
    if (!files_->empty() && !Find(CF_HDROP)) list.push_back(FormatOf(CF_HDROP, TYMED_HGLOBAL));
    *formats = new FormatEnumerator(std::move(list));
    return S_OK;
  });
}

}  // namespace marklet::activex
