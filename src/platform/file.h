// Files, read whole, by path.
//
// A path is UTF-16, absolute or relative to the current folder. Only plain files are read: a folder, a pipe
// or a device is refused. No file stays open after a call. Nothing here calls
// back into the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace marklet {

// Offsets into a file are 32-bit signed numbers everywhere, so a longer file counts as unreadable.
constexpr std::size_t kMaxFileBytes = std::numeric_limits<std::int32_t>::max();

// Says by a file's first kFileStart bytes, or all of a shorter one, whether it is worth reading on.
constexpr std::size_t kFileStart = 16;
using FileTest = bool (*)(std::span<const std::uint8_t> start);

// Reads a file that exists. False, with `bytes` empty, if it can't be opened or read, is too long or isn't
// `wanted`: then no memory is taken for it.
bool ReadWholeFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted = nullptr);

// The same through an opening for reading and writing, which leaves an empty file where the path names none.
// A file that may only be read is read all the same.
bool ReadOrCreateFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted = nullptr);

}  // namespace marklet
