// The uses of a form's members by which a control takes its snapshot, in their order.
#pragma once

#include <string>
#include <vector>

namespace marklet::testing {

inline const std::vector<std::string> kCopyFromForm = {
    "form.hwnd",      "form.AutoRedraw", "form.AutoRedraw=1", "form.hdc",  "extender.Container",
    "form.ScaleMode", "extender.Left",   "extender.Top",      "form.hwnd", "form.AutoRedraw=0",
};

// The label on the form has no window; the second of its controls is the one that contains the control.
inline const std::vector<std::string> kCopyFromFrame = {
    "form.hwnd",       "form.Controls",    "controls[0]",        "label.hwnd", "controls[1]",
    "frame.hwnd",      "frame.AutoRedraw", "frame.AutoRedraw=1", "frame.hdc",  "extender.Container",
    "frame.ScaleMode", "extender.Left",    "extender.Top",       "form.hwnd",  "frame.AutoRedraw=0",
};

}  // namespace marklet::testing
