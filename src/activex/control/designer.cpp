#include "activex/control/designer.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "activex/automation/dispatch.h"
#include "activex/com/guid.h"
#include "activex/com/task_memory.h"
#include "activex/com/text.h"

namespace marklet::activex {
namespace {

// Every system has these two.
constexpr GUID kFontPage = ParseGuid("{0BE35200-8F91-11CE-9DE3-00AA004BB851}");
constexpr GUID kColourPage = ParseGuid("{0BE35201-8F91-11CE-9DE3-00AA004BB851}");

// --- Categories -------------------------------------------------------------------------------------------

struct Category {
  std::string_view name;
  PROPCAT number;
};
// Designers know these; negative numbers are theirs.
constexpr Category kKnown[] = {{"Misc", -2},     {"Font", -3}, {"Position", -4}, {"Appearance", -5},
                               {"Behavior", -6}, {"Data", -7}, {"List", -8},     {"Text", -9},
                               {"Scale", -10},   {"DDE", -11}};
constexpr PROPCAT kMisc = -2;

// Of "page;category".
std::string_view CategoryOf(const PropertyRow& row) {
  const std::size_t end = row.category.find(';');
  return end == std::string_view::npos ? std::string_view() : row.category.substr(end + 1);
}

bool IsKnown(std::string_view name) {
  return std::any_of(std::begin(kKnown), std::end(kKnown), [&](const Category& c) { return c.name == name; });
}

// The control's own, numbered from 1 in the order of the property table.
std::vector<std::string_view> OwnCategories() {
  std::vector<std::string_view> own;
  for (const PropertyRow& row : Properties()) {
    const std::string_view name = CategoryOf(row);
    if (!name.empty() && !IsKnown(name) && std::find(own.begin(), own.end(), name) == own.end())
      own.push_back(name);
  }
  return own;
}

PROPCAT NumberOf(std::string_view name) {
  if (name.empty()) return kMisc;
  for (const Category& category : kKnown)
    if (category.name == name) return category.number;
  const std::vector<std::string_view> own = OwnCategories();
  return static_cast<PROPCAT>(std::find(own.begin(), own.end(), name) - own.begin()) + 1;
}

}  // namespace

HRESULT CategoriesFace::MapPropertyToCategory(DISPID id, PROPCAT* category) {
  if (!category) return E_POINTER;
  return Call([&]() -> HRESULT {
    const PropertyRow* row = PropertyOf(id);
    if (!row) return DISP_E_MEMBERNOTFOUND;
    *category = NumberOf(CategoryOf(*row));
    return S_OK;
  });
}

HRESULT CategoriesFace::GetCategoryName(PROPCAT category, LCID, BSTR* name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return Call([&]() -> HRESULT {
    const std::vector<std::string_view> own = OwnCategories();
    if (category < 1 || static_cast<std::size_t>(category) > own.size()) return E_INVALIDARG;
    *name = NewBstr(own[static_cast<std::size_t>(category) - 1]);
    return S_OK;
  });
}

// --- Pages ------------------------------------------------------------------------------------------------

HRESULT PropertyPagesFace::GetPages(CAUUID* pages) {
  if (!pages) return E_POINTER;
  *pages = {};
  return Call([&] {
    TaskArray<GUID> ids(3);
    ids[0] = kImagePageGuid;
    ids[1] = kFontPage;
    ids[2] = kColourPage;
    ids.GiveTo(*pages);
    return S_OK;
  });
}

// --- Values -----------------------------------------------------------------------------------------------

// A number that is no member's is shown as it is.
HRESULT PropertyBrowsingFace::GetDisplayString(DISPID id, BSTR* text) {
  if (!text) return E_POINTER;
  *text = nullptr;
  return Call([&]() -> HRESULT {
    const PropertyRow* row = PropertyOf(id);
    if (!row) return DISP_E_MEMBERNOTFOUND;
    if (!row->enumeration) return S_FALSE;
    const Value value = marklet_.Get(*row);
    for (const EnumMember& member : row->enumeration->members) {
      if (member.value != std::get<Long>(value)) continue;
      *text = NewBstr(member.name);
      return S_OK;
    }
    return S_FALSE;
  });
}

// Keys are made on the page for images, and chosen here. The other page that properties name edits texts, and
// this library doesn't hold it.
HRESULT PropertyBrowsingFace::MapPropertyToPage(DISPID id, CLSID* page) {
  if (!page) return E_POINTER;
  *page = GUID_NULL;
  const PropertyRow* row = PropertyOf(id);
  if (!row) return DISP_E_MEMBERNOTFOUND;
  if (row->name != "ImageKey") return PERPROP_E_NOPAGEAVAILABLE;
  *page = kImagePageGuid;
  return S_OK;
}

HRESULT PropertyBrowsingFace::GetPredefinedStrings(DISPID id, CALPOLESTR* names, CADWORD* cookies) {
  if (!names || !cookies) return E_POINTER;
  *names = {};
  *cookies = {};
  return Call([&]() -> HRESULT {
    const PropertyRow* row = PropertyOf(id);
    if (!row) return DISP_E_MEMBERNOTFOUND;
    if (!row->enumeration) return E_NOTIMPL;
    const auto members = row->enumeration->members;
    TaskArray<LPOLESTR> texts(members.size());
    TaskArray<DWORD> values(members.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
      texts[i] = NewTaskString(Wide(members[i].name));
      values[i] = static_cast<DWORD>(members[i].value);
    }
    texts.GiveTo(*names);
    values.GiveTo(*cookies);
    return S_OK;
  });
}

HRESULT PropertyBrowsingFace::GetPredefinedValue(DISPID id, DWORD cookie, VARIANT* value) {
  if (!value) return E_POINTER;
  ::VariantInit(value);
  const PropertyRow* row = PropertyOf(id);
  if (!row) return DISP_E_MEMBERNOTFOUND;
  if (!row->enumeration) return E_NOTIMPL;
  for (const EnumMember& member : row->enumeration->members) {
    if (static_cast<DWORD>(member.value) != cookie) continue;
    value->vt = VT_I4;
    value->lVal = member.value;
    return S_OK;
  }
  return E_INVALIDARG;
}

}  // namespace marklet::activex
