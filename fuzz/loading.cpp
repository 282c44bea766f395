#include "fuzz/loading.h"

#include "control/saved_bag.h"
#include "fuzz/require.h"
#include "tests/support/fake_host.h"

namespace marklet {
namespace {

using testing::HostedControl;

void Save(HostedControl& hosted, SavedBag& bag) {
  Require(hosted.control.WriteProperties(bag), "a property could not be saved");
  SavedBag check;
  Require(check.Read(bag.Bytes()) == SavedBag::State::Whole, "what was saved can't be read");
}

bool SameTexts(HostedControl& a, HostedControl& b) {
  return a.State().Caption == b.State().Caption && a.State().UniToolTipText == b.State().UniToolTipText;
}

}  // namespace

void LoadAndSaveAgain(PropertyBag& bag, bool paints) {
  HostedControl first, second;
  first.host.has_surface = second.host.has_surface = paints;
  first.host.parent = second.host.parent = nullptr;
  // A caption that sizes its control in a font of 32,767 points is no more than a form can hold.
  first.host.largest_side = second.host.largest_side = 1000;
  first.control.ReadProperties(bag);
  SavedBag saved, again;
  Save(first, saved);
  second.control.ReadProperties(saved);
  Save(second, again);
  // A text that is encoded more than once loses one wrapping at each load.
  if (SameTexts(first, second)) Require(saved.Bytes() == again.Bytes(), "a second save isn't the first");
}

}  // namespace marklet
