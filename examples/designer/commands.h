// The numbers of the designer's commands, as WM_COMMAND carries them.
#pragma once

namespace designer {

enum Command {
  kNewForm = 100,
  kOpenForm,
  kSaveForm,
  kSaveFormAs,
  kExit,
  kDeleteControl,
  kNextControl,
  kPreviousControl,
  kShowPages,
  kShowProperties,  // the keyboard goes to them
  kRun,
  kPlace = 150,  // the first of the tools, and so on
};
inline constexpr int kMostTools = 40;

}  // namespace designer
