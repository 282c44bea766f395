// Reads the runs of text out of a recorder's log: what was drawn, where, in which colour and font.
#pragma once

#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/recorder/recorder.h"
#include "platform/types.h"

namespace marklet {

struct DrawnRun {
  std::string text;
  RECT rect;
  unsigned flags = 0;
  std::string colour, font;  // as the log spells them; the font is empty while none has been selected
};

inline std::ostream& operator<<(std::ostream& out, const DrawnRun& run) {
  return out << run.text << " [" << run.rect.left << ',' << run.rect.top << ',' << run.rect.right << ','
             << run.rect.bottom << "] " << std::hex << run.flags << std::dec << ' ' << run.colour << ' '
             << run.font;
}

inline std::string_view ArgumentsOf(std::string_view line) {
  const std::size_t open = line.find('(');
  return line.substr(open + 1, line.size() - open - 2);
}

// The texts of the tests hold no quotation marks.
inline DrawnRun ParseRun(const std::string& line) {
  DrawnRun run;
  const std::size_t open = line.find('"'), close = line.rfind('"');
  run.text = line.substr(open + 1, close - open - 1);
  std::sscanf(line.c_str() + close, "\",[%d,%d,%d,%d],0x%x)", &run.rect.left, &run.rect.top, &run.rect.right,
              &run.rect.bottom, &run.flags);
  return run;
}

inline std::vector<DrawnRun> DrawnRuns(const Recorder& recorder) {
  std::vector<DrawnRun> runs;
  std::string colour, font;
  for (const std::string& line : recorder.Lines()) {
    if (line.starts_with("SetTextColor(")) colour = ArgumentsOf(line);
    if (line.starts_with("SelectObject(font(")) font = ArgumentsOf(line);
    if (!line.starts_with("DrawTextW(")) continue;
    runs.push_back(ParseRun(line));
    runs.back().colour = colour;
    runs.back().font = font;
  }
  return runs;
}

}  // namespace marklet
