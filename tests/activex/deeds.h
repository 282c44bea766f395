// What a handler may do to the control that calls it.
#pragma once

#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {

struct Deed {
  const char* name;
  void (*run)(Container& container);
};

inline constexpr Deed kDeeds[] = {
    {"release",
     [](Container& container) {
       As<IOleObject>(container.Object())->Close(OLECLOSE_NOSAVE);
       As<IOleObject>(container.Object())->SetClientSite(nullptr);
       container.Drop();
     }},
    {"close", [](Container& container) { container.Close(); }},
    {"unload",
     [](Container& container) {
       container.Close();
       EXPECT_EQ(S_FALSE, Server::Get().CanUnloadNow()) << "the call is still in it";
     }},
    {"deactivate",
     [](Container& container) { As<IOleInPlaceObject>(container.Object())->InPlaceDeactivate(); }},
    {"destroy the parent", [](Container& container) { DestroyWindow(container.Window()); }},
    {"resize",
     [](Container& container) {
       const RECT place = {0, 0, 33, 44};
       As<IOleInPlaceObject>(container.Object())->SetObjectRects(&place, &place);
     }},
    {"load again",
     [](Container& container) {
       MemoryBag bag;
       LoadFromBag(container.Object(), bag);
     }},
};

}  // namespace ocx_test
