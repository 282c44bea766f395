// Files of marklet-render. Names are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marklet {

// Throws RenderError when there is no such file.
void RequireFile(const std::string& name);

// A name as seen from the folder of another file.
std::string NameBeside(const std::string& file, const std::string& name);

// Throws RenderError when the file can't be read, or exceeds 64 MiB.
std::string ReadTextFile(const std::string& name);

// Writes beside the file and then renames, so that the file is whole or as it was; a device or pipe is
// written to as it is. Throws RenderError.
void WriteFileWhole(const std::string& name, const std::vector<std::uint8_t>& bytes);

}  // namespace marklet
