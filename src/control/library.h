// The identities of the library zvsMarklet, its enumerations and its events, as data: the type library, the
// dispatch interface, registration, marklet-render and the reference page all read them here.
#pragma once

#include <span>
#include <string_view>

#include "platform/types.h"

namespace marklet {

// A GUID in its registry form, "{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}".
using GuidText = std::string_view;

struct EnumMember {
  std::string_view name;  // as hosts see it; may hold blanks and start with a digit
  Long value;
};

struct Enumeration {
  std::string_view name;
  GuidText guid;
  std::span<const EnumMember> members;
};

struct Identity {
  std::string_view name;
  GuidText guid;
};

namespace library {
inline constexpr std::string_view kName = "zvsMarklet";
inline constexpr std::string_view kHelp = "Zarvo Marklet Control";
inline constexpr GuidText kGuid = "{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}";
inline constexpr int kMajorVersion = 3, kMinorVersion = 0;
inline constexpr unsigned kLocale = 0x409;
inline constexpr Identity kDispatch = {"_Marklet", "{310A4F20-C1CC-4F0F-90A4-9826804A23C7}"};
inline constexpr Identity kClass = {"Marklet", "{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}"};
inline constexpr Identity kEvents = {"__Marklet", "{6E85A505-50AA-4694-9B51-64C50D1D2045}"};
inline constexpr Identity kImageOwner = {"_ISupportsAlphaImage", "{215FB7C9-18D0-42C9-BE97-3A3FA3C703E4}"};
inline constexpr Identity kImageOwnerClass = {"ISupportsAlphaImage",
                                              "{35D4D430-2D52-44B8-9189-8ECE9ABC223B}"};
inline constexpr Identity kImagePage = {"_prpImage", "{FBF96550-A8CD-41BE-9064-EBFBF5BB0A63}"};
inline constexpr Identity kImagePageClass = {"prpImage", "{E7111604-8459-4582-BAD0-28915B59AB15}"};
}  // namespace library

namespace enumerations {
extern const Enumeration AppearanceConstants, BorderConstants, HorizontalAlignment, HorizontalJAlignment,
    HorizontalLRAlignment, VertAlignment, TextEffects, ImageSizes, BackStyle;
}
std::span<const Enumeration* const> Enumerations();

// An argument of an event or of the method, in the automation types that occur there.
enum class ArgumentType { I2, I4, R4, Boolean, String, DataObject };
struct Argument {
  std::string_view name;
  ArgumentType type;
};
// Events pass every argument by reference.
struct EventRow {
  std::string_view name;
  Long dispid;
  std::span<const Argument> arguments;
  bool ui_default;
};
std::span<const EventRow> Events();

}  // namespace marklet
