// What the user of marklet-render has to hear: one line, without the program's name.
#pragma once

#include <stdexcept>

namespace marklet {

class RenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace marklet
