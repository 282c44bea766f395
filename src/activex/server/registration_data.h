// What the system is told of the server, as data: the registry's entries and the manifest for activation
// without registration are both written from it.
#pragma once

#include <string_view>

#include "activex/com/com.h"
#include "control/library.h"

namespace marklet::activex {

inline constexpr std::string_view kThreadingModel = "Apartment";

// A trait by which containers judge the control, with its name in a manifest.
struct Trait {
  DWORD bit;
  std::string_view name;
};
// The mnemonic of a label takes the user to the control behind it.
inline constexpr Trait kTraits[] = {
    {OLEMISC_RECOMPOSEONRESIZE, "recomposeonresize"},
    {OLEMISC_CANTLINKINSIDE, "cantlinkinside"},
    {OLEMISC_INSIDEOUT, "insideout"},
    {OLEMISC_ACTIVATEWHENVISIBLE, "activatewhenvisible"},
    {OLEMISC_ACTSLIKELABEL, "actslikelabel"},
    {OLEMISC_SETCLIENTSITEFIRST, "setclientsitefirst"},
};

// All traits, as IOleObject reports them.
constexpr DWORD MiscStatus() {
  DWORD status = 0;
  for (const Trait& trait : kTraits) status |= trait.bit;
  return status;
}
inline constexpr DWORD kMiscStatus = MiscStatus();

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
