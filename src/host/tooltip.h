// The tip over a control, as the host's platform shows it.
#pragma once

#include <memory>
#include <string_view>

namespace marklet {

// Goes with its object.
class HostTooltip {
 public:
  virtual ~HostTooltip() = default;
  virtual void SetToolText(std::u16string_view text) = 0;
};
using HostTooltipRef = std::shared_ptr<HostTooltip>;

}  // namespace marklet
