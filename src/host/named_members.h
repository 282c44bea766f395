// Objects of the host whose members are reached by name, since their types aren't known.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/types.h"

namespace marklet {

class NamedMembers;
using NamedMembersRef = std::shared_ptr<NamedMembers>;

// Names count without regard to case. A read gives nothing when there is no such member, when it fails, and
// when its value is of another kind. Any call may re-enter the control.
class NamedMembers {
 public:
  virtual ~NamedMembers() = default;
  // Whether there is a member of that name. Nothing is read.
  virtual bool Has(std::string_view name) = 0;
  virtual std::optional<Long> GetLong(std::string_view name) = 0;      // a flag gives 0 or -1
  virtual std::optional<double> GetNumber(std::string_view name) = 0;  // of any numeric type
  // A window or a device context; equal handles come as equal values.
  virtual std::optional<std::intptr_t> GetHandle(std::string_view name) = 0;
  virtual NamedMembersRef GetObject(std::string_view name) = 0;  // null for none
  virtual bool PutFlag(std::string_view name, bool value) = 0;
  // Calls `visit` with the objects of a collection in their order, until it answers true.
  virtual void Find(const std::function<bool(const NamedMembersRef& object)>& visit) = 0;
};

}  // namespace marklet
