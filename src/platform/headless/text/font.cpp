#include "platform/headless/text/font.h"

#include <algorithm>
#include <map>
#include <new>
#include <tuple>

#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/face.h"

namespace marklet {
namespace headless {
namespace {

constexpr std::size_t kLongestFaceName = 31;

using FaceKey = std::tuple<std::u16string, Long, Long, bool>;

// The faces in use on this thread.
std::map<FaceKey, std::weak_ptr<Face>>& Faces() {
  thread_local std::map<FaceKey, std::weak_ptr<Face>> faces;
  return faces;
}

std::shared_ptr<Face> Find(const FaceKey& key) {
  const auto found = Faces().find(key);
  return found != Faces().end() ? found->second.lock() : nullptr;
}

std::shared_ptr<Face> Make(const FaceKey& key, const LOGFONTW& record) {
  std::erase_if(Faces(), [](const auto& entry) { return entry.second.expired(); });
  auto face = std::make_shared<Face>(record);
  Faces()[key] = face;
  return face;
}

// A caption may name thousands of typefaces that aren't there. They share one face: to make another costs
// milliseconds, and the font map would remember each name for good.
std::shared_ptr<Face> FaceFor(LOGFONTW record) {
  FaceKey key(record.lfFaceName, record.lfHeight, record.lfWeight, record.lfItalic);
  if (std::shared_ptr<Face> face = Find(key)) return face;
  if (Face::IsKnown(record.lfFaceName)) return Make(key, record);
  record.lfFaceName.clear();
  std::get<0>(key).clear();
  if (std::shared_ptr<Face> face = Find(key)) return face;
  return Make(key, record);
}

LOGFONTW WithCutName(LOGFONTW record) {
  record.lfFaceName.resize(
      std::min({kLongestFaceName, record.lfFaceName.size(), record.lfFaceName.find(u'\0')}));
  return record;
}

}  // namespace

Font::Font(LOGFONTW its_record) : GdiObjectHandle(Kind::kFont), record(WithCutName(std::move(its_record))) {}

Font::~Font() = default;

void Font::Realise() { face_ = FaceFor(record); }

}  // namespace headless

HFONT CreateFontIndirectW(const LOGFONTW& record) {
  if (headless::Refused(headless::Operation::kCreateFontIndirectW, record)) return nullptr;
  return headless::Made(new (std::nothrow) headless::Font(record));
}

}  // namespace marklet
