// The font map of a thread and its settings.
#pragma once

#include <pango/pangocairo.h>

#include <memory>

#include "platform/headless/text/known_families.h"

namespace marklet::headless {

class FontSystem {
 public:
  FontSystem();
  ~FontSystem();
  FontSystem(const FontSystem&) = delete;
  FontSystem& operator=(const FontSystem&) = delete;

  // This thread's. It lives as long as someone holds it.
  static std::shared_ptr<FontSystem> OfThread();

  PangoFontMap* Map() const { return map_; }
  // Grey smoothing and whole-pixel metrics, for text of ordinary size.
  PangoContext* Hinted() const { return hinted_; }
  // Neither hints nor rounding, for outlines that are scaled up.
  PangoContext* Linear() const { return linear_; }
  const KnownFamilies& Families() const { return families_; }

  // What sets letters at their advances where they need no joining, as in plain text: a list of one
  // attribute, to be lent to an item.
  GSList* PlainAdvances() { return &plain_advances_; }

 private:
  PangoFontMap* map_;
  PangoContext* hinted_;
  PangoContext* linear_;
  KnownFamilies families_;
  GSList plain_advances_;
};

}  // namespace marklet::headless
