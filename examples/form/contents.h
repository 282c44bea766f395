// What stands on the form.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <variant>
#include <vector>

namespace form {

struct Property {
  const wchar_t* name;
  std::variant<const wchar_t*, LONG, bool> value;
};

// An image file, beside the program, and the key that controls know it by.
struct Image {
  const wchar_t *file, *key;
};

// A control with its place on the form, in pixels.
struct Item {
  RECT place;
  std::vector<Property> properties;
  std::vector<Image> images{};  // to be loaded before the properties are set
  bool is_title = false;        // only tells what stands below it
};

// What the form itself shows behind a control, in pixels.
struct Scenery {
  enum class Kind { Gradient, Picture, GroupBox } kind;
  RECT place;
};
std::vector<Scenery> SceneryOfForm();

// All controls of the form, titles included, and the room that they take.
std::vector<Item> Contents();
SIZE ContentsSize();

}  // namespace form
