#include "platform/headless/text/known_families.h"

#include <initializer_list>

namespace marklet::headless {
namespace {

const FcChar8* Bytes(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

// Names are compared without regard to case and blanks.
std::string Folded(const FcChar8* name) {
  FcChar8* const lower = FcStrDowncase(name);
  std::string folded = lower != nullptr ? reinterpret_cast<const char*>(lower) : "";
  FcStrFree(lower);
  std::erase(folded, ' ');
  return folded;
}

// A request for the families in this order, after the rules.
FcPattern* Request(FcConfig* config, std::initializer_list<const char*> families) {
  FcPattern* const pattern = FcPatternCreate();
  for (const char* family : families) FcPatternAddString(pattern, FC_FAMILY, Bytes(family));
  FcPatternAddString(pattern, FC_LANG, Bytes("en"));
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  return pattern;
}

void AddFamilies(const FcFontSet* fonts, std::unordered_set<std::string>& families) {
  if (fonts == nullptr) return;
  for (int font = 0; font < fonts->nfont; ++font) {
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(fonts->fonts[font], FC_FAMILY, i, &name) == FcResultMatch; ++i)
      families.insert(Folded(name));
  }
}

}  // namespace

KnownFamilies::KnownFamilies(FcConfig* config) : config_(config), sans_(Request(config, {"sans"})) {
  for (const FcSetName set : {FcSetSystem, FcSetApplication})
    AddFamilies(FcConfigGetFonts(config, set), installed_);
}

KnownFamilies::~KnownFamilies() { FcPatternDestroy(sans_); }

bool KnownFamilies::Has(const std::string& family) const {
  if (installed_.contains(Folded(Bytes(family.c_str())))) return true;
  // Without its first family, which no font has, the request must be the one for "sans".
  FcPattern* const request = Request(config_, {family.c_str(), "sans"});
  const bool ruled = !FcPatternRemove(request, FC_FAMILY, 0) || !FcPatternEqual(request, sans_);
  FcPatternDestroy(request);
  return ruled;
}

}  // namespace marklet::headless
