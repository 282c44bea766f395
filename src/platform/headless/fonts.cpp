#include "platform/headless/fonts.h"

#include <map>
#include <new>
#include <tuple>

#include "platform/headless/face.h"
#include "platform/headless/recording.h"

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

std::shared_ptr<Face> FaceFor(const LOGFONTW& record) {
  auto& faces = Faces();
  const FaceKey key(record.lfFaceName, record.lfHeight, record.lfWeight, record.lfItalic);
  if (const auto found = faces.find(key); found != faces.end())
    if (std::shared_ptr<Face> face = found->second.lock()) return face;
  std::erase_if(faces, [](const auto& entry) { return entry.second.expired(); });
  auto face = std::make_shared<Face>(record);
  faces[key] = face;
  return face;
}

LOGFONTW WithCutName(LOGFONTW record) {
  record.lfFaceName = record.lfFaceName.substr(0, kLongestFaceName);
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
