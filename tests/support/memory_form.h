// A form in memory, as a control finds it by the names of its members.
#pragma once

#include <bit>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bitmaps/cdib24.h"
#include "host/named_members.h"

namespace marklet::testing {

// An object with the members that it is given, and no others. Every use of a member goes into the log,
// present or not, as "form.hwnd", "form.AutoRedraw=1" or "controls[0]"; questions for a mere name don't.
class MemoryObject final : public NamedMembers {
 public:
  using Log = std::vector<std::string>;
  MemoryObject(std::string name, Log& log) : name_(std::move(name)), log_(log) {}

  std::map<std::string, double, std::less<>> numbers;
  std::map<std::string, std::function<std::intptr_t()>, std::less<>> handles;
  std::map<std::string, NamedMembersRef, std::less<>> objects;
  std::vector<NamedMembersRef> items;
  std::function<void(const std::string& use)> on_use;

  bool Has(std::string_view name) override {
    return numbers.contains(name) || handles.contains(name) || objects.contains(name);
  }
  std::optional<Long> GetLong(std::string_view name) override {
    const auto number = GetNumber(name);
    return number ? std::optional(RoundHalfEven(*number)) : std::nullopt;
  }
  std::optional<double> GetNumber(std::string_view name) override {
    Note(name_ + "." + std::string(name));
    const auto found = numbers.find(name);
    return found != numbers.end() ? std::optional(found->second) : std::nullopt;
  }
  std::optional<std::intptr_t> GetHandle(std::string_view name) override {
    Note(name_ + "." + std::string(name));
    const auto found = handles.find(name);
    return found != handles.end() ? std::optional(found->second()) : std::nullopt;
  }
  NamedMembersRef GetObject(std::string_view name) override {
    Note(name_ + "." + std::string(name));
    const auto found = objects.find(name);
    return found != objects.end() ? found->second : nullptr;
  }
  bool PutFlag(std::string_view name, bool value) override {
    Note(name_ + "." + std::string(name) + (value ? "=1" : "=0"));
    const auto found = numbers.find(name);
    if (found == numbers.end()) return false;
    found->second = value ? -1 : 0;
    return true;
  }
  void Find(const std::function<bool(const NamedMembersRef&)>& visit) override {
    for (std::size_t at = 0; at < items.size(); ++at) {
      Note(name_ + "[" + std::to_string(at) + "]");
      if (visit(items[at])) return;
    }
  }

 private:
  void Note(const std::string& use) {
    log_.push_back(use);
    if (on_use) on_use(use);
  }

  std::string name_;
  Log& log_;
};

// The colour of a form's picture at each of its pixels, no two the same up to 4096 either way.
constexpr COLORREF FormColourAt(Long x, Long y) {
  return MakeRgb(static_cast<unsigned>(x) & 255, static_cast<unsigned>(y) & 255,
                 (static_cast<unsigned>(x) >> 8 & 15) << 4 | (static_cast<unsigned>(y) >> 8 & 15));
}

// A form of 640 by 480 pixels that keeps a picture of itself, with a frame on it that does too, and the
// control's place. All log into `log`.
struct MemoryForm {
  static constexpr Long kWidth = 640, kHeight = 480;

  MemoryObject::Log log;
  std::shared_ptr<MemoryObject> form = Make("form"), controls = Make("controls"), frame = Make("frame"),
                                label = Make("label"), extender = Make("extender");
  CDib24 picture, screen;

  MemoryForm() {
    picture.Create(kWidth, kHeight);
    screen.Create(kWidth, kHeight);
    screen.Clear(0x0000FF);
    for (Long y = 0; y < kHeight; ++y)
      for (Long x = 0; x < kWidth; ++x) {
        const COLORREF colour = FormColourAt(x, y);
        std::uint8_t* const pixel = picture.View().At(x, y);
        pixel[0] = static_cast<std::uint8_t>(BlueOf(colour));
        pixel[1] = static_cast<std::uint8_t>(GreenOf(colour));
        pixel[2] = static_cast<std::uint8_t>(RedOf(colour));
      }
    for (const auto& entry : {std::pair{form, kForm}, {frame, kFrame}}) {
      const auto& object = entry.first;
      object->handles["hwnd"] = [handle = entry.second] { return handle; };
      object->numbers["AutoRedraw"] = 0;
      object->numbers["ScaleMode"] = 3;
      // While AutoRedraw is off this is the screen.
      object->handles["hdc"] = [this, at = object.get()] {
        const CDib24& surface = at->numbers["AutoRedraw"] != 0 ? picture : screen;
        return reinterpret_cast<std::intptr_t>(surface.hDC());
      };
    }
    controls->items = {label, frame};
    form->objects["Controls"] = controls;
    form->numbers["BackColor"] = 0x00AABBCC;
    extender->objects["Container"] = form;
    PutAt(0, 0);
  }

  void PutAt(double left, double top) {
    extender->numbers["Left"] = left;
    extender->numbers["Top"] = top;
  }
  static HWND Window(std::intptr_t handle) { return std::bit_cast<HWND>(handle); }
  static constexpr std::intptr_t kForm = 0x10010, kFrame = 0x10020;

  MemoryObject::Log TakeLog() { return std::exchange(log, {}); }

 private:
  std::shared_ptr<MemoryObject> Make(const char* name) { return std::make_shared<MemoryObject>(name, log); }
};

}  // namespace marklet::testing
