// What the system is told of the server, as data: the registry's entries and the manifest for activation
// without registration are both written from it.
#pragma once

#include <string_view>

#include "activex/control/traits.h"
#include "control/library.h"

namespace marklet::activex {

inline constexpr std::string_view kThreadingModel = "Apartment";

// An interface that may go between threads, with who carries it.
struct RemoteInterface {
  const Identity& identity;
  std::string_view proxy;
};
// A dispatch interface goes through the platform's own proxy; a dual one through the proxy that reads the
// type library.
inline constexpr std::string_view kDispatchProxy = "{00020420-0000-0000-C000-000000000046}";
inline constexpr std::string_view kTypeLibraryProxy = "{00020424-0000-0000-C000-000000000046}";
inline constexpr RemoteInterface kInterfaces[] = {
    {library::kDispatch, kTypeLibraryProxy},
    {library::kEvents, kDispatchProxy},
    {library::kImageOwner, kTypeLibraryProxy},
    {library::kImagePage, kTypeLibraryProxy},
};

}  // namespace marklet::activex
