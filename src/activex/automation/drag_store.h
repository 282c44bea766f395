// The data of a drag that begins at the control: what the host's handlers put there, for whoever it is
// dropped on.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "activex/com/com_object.h"
#include "activex/com/transfer.h"

namespace marklet::activex {

// Files by their full names, shared by a store and the objects through which scripts see them.
using FileNames = std::shared_ptr<std::vector<std::u16string>>;

// In front of a list of files in the platform's own format, which is in one of its headers for the desktop.
struct DropFiles {
  DWORD pFiles;  // where the list begins
  ::POINT pt;
  BOOL fNC, fWide;
};
static_assert(sizeof(DropFiles) == 20);

// A value in one format. None yet: it is asked for when somebody wants it.
using DragValue = std::variant<std::monostate, std::u16string, std::vector<std::byte>, ComPtr<IPicture>>;

// Text goes as UTF-16 and in the system code page, whichever of the two it was put under.
class DragStore final : public ComObject<IDataObject> {
 public:
  void Put(CLIPFORMAT format, DragValue value);
  void Clear();
  const FileNames& Files() const { return files_; }

  // Who puts a value that is missing when it is asked for; nobody from the end of the drag on.
  std::function<void(CLIPFORMAT format)> on_missing;

  STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override;
  STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  STDMETHODIMP QueryGetData(FORMATETC* format) override;
  STDMETHODIMP GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) override {
    return WithoutDevice(format, canonical);
  }
  STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
  STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return OLE_E_ADVISENOTSUPPORTED; }
  STDMETHODIMP DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
  STDMETHODIMP EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

 private:
  struct Entry {
    CLIPFORMAT format;
    DragValue value;
  };
  Entry* Find(CLIPFORMAT format);
  HRESULT Check(const FORMATETC& format);
  HRESULT Render(CLIPFORMAT format, STGMEDIUM& medium);

  std::vector<Entry> entries_;
  FileNames files_ = std::make_shared<std::vector<std::u16string>>();
};

inline bool IsText(CLIPFORMAT format) { return format == CF_TEXT || format == CF_UNICODETEXT; }

}  // namespace marklet::activex
