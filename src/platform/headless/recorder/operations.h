// What a recorder knows of each call: one row, its name, the form of its line, and how to make it again.
#pragma once

#include <optional>
#include <string_view>

#include "platform/headless/recorder/hook.h"

namespace marklet::headless {

class Player;

struct OperationRow {
  Operation operation;
  std::string_view name;
  // A letter for each argument that is recorded: "-" a context, which the line leaves out, "d" decimal, "x"
  // hexadecimal, "c" colour, "o" object or font record, "a" analysis, "r" rectangle, "t" text, "b" text in
  // bytes.
  std::string_view form;
  // Takes the arguments from a player. Null where a recording doesn't hold what the call works on.
  void (*again)(Player& player);
};

// Whether a call ends the life of the handle that is its first argument.
constexpr bool IsDeletion(Operation operation) {
  return operation == Operation::kDeleteObject || operation == Operation::kDeleteDC ||
         operation == Operation::kScriptStringFree;
}

const OperationRow& RowOf(Operation operation);
std::optional<Operation> OperationNamed(std::string_view name);

}  // namespace marklet::headless
