// Where DT_WORDBREAK may end a line.
#pragma once

namespace marklet {

// Whether a line may end between two code units that stand next to each other in a text: after blanks, tabs,
// hyphens and the like, and between ideographs, but never so that a closing sign begins a line or an opening
// one ends it. Windows breaks scripts that are written without blanks (Thai) nowhere; so does this. Only the
// two units count: a blank after an opening sign is one like others.
bool MayBreakBetween(char16_t before, char16_t after);

}  // namespace marklet
