#include "imagelist/common_dialog.h"

#include <algorithm>
#include <optional>

namespace marklet {
namespace {

// Flags of the dialog.
constexpr std::uint32_t kReadOnly = 0x1, kHideReadOnly = 0x4, kHook = 0x20, kTemplate = 0x40;
constexpr std::uint32_t kMultiSelect = 0x200, kFileMustExist = 0x1000;

constexpr std::size_t kPathUnits = 260;

std::uint32_t FlagsOf(const CCommonDialog::Open& open) {
  std::uint32_t flags = open.flags & ~(kHook | kTemplate);
  if (open.file_must_exist) flags |= kFileMustExist;
  if (open.multi_select) flags |= kMultiSelect;
  if (open.read_only) flags |= kReadOnly;
  if (open.hide_read_only) flags |= kHideReadOnly;
  return flags;
}

std::u16string WithNuls(std::u16string filter) {
  std::ranges::replace_if(
      filter, [](char16_t ch) { return ch == u'|' || ch == u':'; }, u'\0');
  return filter.append(2, u'\0');
}

// A text in a buffer; of a longer one its beginning, and one NUL.
std::u16string Buffer(std::u16string text) {
  if (text.size() >= kPathUnits) text.resize(kPathUnits - 1);
  text.resize(kPathUnits);
  return text;
}

// Takes the text up to the next NUL, and that, off the front; none when nothing is left.
std::optional<std::u16string_view> TakeText(std::u16string_view& list) {
  if (list.empty()) return std::nullopt;
  const std::u16string_view text = list.substr(0, list.find(u'\0'));
  list.remove_prefix(std::min(text.size() + 1, list.size()));
  return text;
}

void Forget(CCommonDialog::Open& open) {
  open.file.clear();
  open.file_title.clear();
  open.filter.clear();
  open.flags = 0;
  open.filter_index = -1;
}

void TakeOver(CCommonDialog::Open& open, const OpenFileRecord& record) {
  open.file = CCommonDialog::StripNul(record.file);
  open.file_title = CCommonDialog::StripNul(record.file_title);
  open.flags = record.flags;
  open.filter_index = record.filter_index;
  open.filter = CCommonDialog::FilterEntry(record.filter, record.filter_index);
  if ((record.flags & kReadOnly) != 0) open.read_only = true;
}

}  // namespace

bool CCommonDialog::ShowOpen(Open& open) {
  last_error_ = last_result_ = 0;
  OpenFileRecord record;
  if (open.owner != kNoOwner) record.owner = open.owner;
  record.flags = FlagsOf(open);
  record.filter = WithNuls(open.filter);
  record.filter_index = open.filter_index;
  record.file = Buffer(open.file);
  record.file_title = Buffer(open.file_title);
  record.initial_directory = open.initial_directory;
  record.title = open.title;
  record.default_extension = open.default_extension;
  last_result_ = platform_.GetOpenFileNameA(record);
  if (last_result_ == 1) {
    TakeOver(open, record);
    return true;
  }
  if (last_result_ != 0) last_error_ = platform_.CommDlgExtendedError();
  Forget(open);
  return false;
}

std::u16string CCommonDialog::FilterEntry(std::u16string_view filter, Long index) {
  for (Long left = std::max(index, 0);; --left) {
    const auto description = TakeText(filter), pattern = TakeText(filter);
    if (!description || !pattern || description->empty()) return {};  // two NULs end the list
    if (left == 1) return std::u16string(*description).append(1, u'\0').append(*pattern);
  }
}

}  // namespace marklet
