#include "text/manual_text.h"

namespace marklet {

void DrawTextManual(HDC, const RECT&, std::u16string_view, bool, bool, bool) {}

}  // namespace marklet
