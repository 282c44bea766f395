// Which families of typefaces fonts or the rules for substitutes know. All others look the same.
#pragma once

#include <fontconfig/fontconfig.h>

#include <string>
#include <unordered_set>

namespace marklet::headless {

class KnownFamilies {
 public:
  // Of a font configuration, which must outlive this object; null for the process's own. Fonts that are
  // installed later don't count.
  explicit KnownFamilies(FcConfig* config);
  ~KnownFamilies();
  KnownFamilies(const KnownFamilies&) = delete;
  KnownFamilies& operator=(const KnownFamilies&) = delete;

  // False when a font of this family (a name in UTF-8) is the same as one of family "sans".
  bool Has(const std::string& family) const;

 private:
  FcConfig* config_;
  std::unordered_set<std::string> installed_;  // in small letters, without blanks
  FcPattern* sans_;                            // with what the rules make of it
};

}  // namespace marklet::headless
