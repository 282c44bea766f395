#include "png/chunks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "base/byte_reader.h"
#include "png/palettes.h"

namespace marklet::png {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A};

std::string_view AsText(Bytes bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

// ---- what each chunk does ----

struct Context {
  ChunkFields& fields;
  Inflater& inflater;
};

// False ends the decoder: there is no sense in a picture without a header.
bool ParseHeader(Context context, Bytes payload) {
  constexpr std::size_t kHeaderBytes = 13;
  if (payload.size() < kHeaderBytes) return false;
  ChunkFields& fields = context.fields;
  fields.Width = PaddedBytes(payload).BigI32(0);
  fields.Height = PaddedBytes(payload).BigI32(4);
  fields.BitDepth = payload[8];
  fields.ColorType = payload[9];
  fields.CompressionMethod = payload[10];
  // The filter method, payload[11], is taken for 0 whatever it says.
  fields.InterlaceMethod = payload[12];
  return true;
}

bool KeepPalette(Context context, Bytes payload) {
  context.fields.PaletteBytes.assign(payload.begin(), payload.end());
  return true;
}

bool KeepTransparency(Context context, Bytes payload) {
  context.fields.HasTransparency = true;
  context.fields.TransparencyBytes.assign(payload.begin(), payload.end());
  return true;
}

bool KeepBackground(Context context, Bytes payload) {
  ChunkFields& fields = context.fields;
  fields.BackgroundBytes.assign(payload.begin(), payload.end());
  fields.BackgroundColor =
      ParseBackground(fields.BackgroundBytes, fields.ColorType, fields.BitDepth, fields.PaletteBytes);
  return true;
}

bool KeepGamma(Context context, Bytes payload) {
  context.fields.GammaValue = PaddedBytes(payload).BigI32(0);
  return true;
}

bool KeepText(Context context, Bytes payload) {
  context.fields.TextBlock.append(AsText(payload)).push_back('\0');
  return true;
}

// How many bytes of `bytes` stand before its first NUL.
std::size_t LengthToNul(Bytes bytes) {
  return static_cast<std::size_t>(std::find(bytes.begin(), bytes.end(), std::uint8_t{0}) - bytes.begin());
}

bool ParseCompressedText(Context context, Bytes payload) {
  std::string& block = context.fields.CompressedTextBlock;
  const std::size_t keyword = LengthToNul(payload);
  block.append(AsText(payload.first(keyword))).push_back('\0');

  constexpr std::size_t kNulMethodAndHeader = 4;
  Bytes slice = payload.subspan(std::min(payload.size(), keyword + kNulMethodAndHeader));
  // The stream is cut at the first 0 byte in it. The text is only kept, so nobody misses the rest.
  slice = slice.first(LengthToNul(slice));
  if (!slice.empty()) {
    std::vector<std::uint8_t> text;
    const bool decoded = InflateAll(context.inflater, slice, 12 * (slice.size() - 1), text);
    block.append(AsText(decoded ? Bytes(text) : slice));
  }
  block.push_back('\0');
  return true;
}

struct ChunkType {
  std::string_view name;
  bool (*act)(Context context, Bytes payload);
};

// Every other type is skipped, critical or not. So are, knowingly, the time and what describes colours,
// offsets, units, histograms and animation.
constexpr ChunkType kChunkTypes[] = {
    {"IHDR", ParseHeader}, {"PLTE", KeepPalette},      {"bKGD", KeepBackground},      {"gAMA", KeepGamma},
    {"tEXt", KeepText},    {"tRNS", KeepTransparency}, {"zTXt", ParseCompressedText},
};

bool Act(std::string_view type, Context context, Bytes payload) {
  for (const ChunkType& known : kChunkTypes)
    if (known.name == type) return known.act(context, payload);
  return true;
}

// ---- the walk ----

// Joins payloads in place, after the first of them. The last one stays where it is until the next comes,
// since the chunk buffer still stands for it.
class IdatJoiner {
 public:
  explicit IdatJoiner(std::span<std::uint8_t> file) : file_(file) {}

  void Add(std::size_t offset, std::size_t length) {
    Settle();
    if (length_ == 0) start_ = offset;
    pending_offset_ = offset;
    pending_length_ = length;
  }
  std::span<std::uint8_t> Joined() {
    Settle();
    return file_.subspan(start_, length_);
  }
  // Moves what was added last to its place.
  void Settle() {
    if (pending_length_ == 0) return;
    std::uint8_t* const to = file_.data() + start_ + length_;
    const std::uint8_t* const from = file_.data() + pending_offset_;
    if (to != from) std::memmove(to, from, pending_length_);
    length_ += pending_length_;
    pending_length_ = 0;
  }

 private:
  std::span<std::uint8_t> file_;
  std::size_t start_ = 0, length_ = 0;
  std::size_t pending_offset_ = 0, pending_length_ = 0;
};

class Walker {
 public:
  Walker(std::span<std::uint8_t> file, Context context) : file_(file), idat_(file), context_(context) {}

  bool Walk() {
    position_ = kSignature.size();
    while (Next() == Verdict::kGoOn) {
    }
    if (!done_) return false;
    context_.fields.IdatBytes = idat_.Joined();
    return !context_.fields.IdatBytes.empty();
  }

 private:
  enum class Verdict { kGoOn, kLeave };

  // Takes up to four bytes off the file.
  Bytes TakeFour() {
    const Bytes bytes = file_.subspan(position_, std::min<std::size_t>(4, file_.size() - position_));
    position_ += bytes.size();
    return bytes;
  }

  Verdict Next() {
    const Long length = PaddedBytes(TakeFour()).BigI32(0);
    const std::string_view type = AsText(TakeFour());
    // There must be a byte after the payload, where the CRC is.
    if (static_cast<std::int64_t>(position_) + length >= static_cast<std::int64_t>(file_.size()))
      return Verdict::kLeave;
    if (type == "IEND") {
      done_ = true;
      return Verdict::kLeave;
    }
    const Bytes payload = ReadPayload(length);
    TakeFour();  // the CRC may say what it likes
    if (type == "IDAT") {
      idat_.Add(static_cast<std::size_t>(payload.data() - file_.data()), payload.size());
      return Verdict::kGoOn;
    }
    return Act(type, context_, payload) ? Verdict::kGoOn : Verdict::kLeave;
  }

  // A length of 0 or below leaves the chunk buffer at the size that the chunk before gave it, and the buffer
  // is read whole: such a chunk swallows what follows it.
  Bytes ReadPayload(Long length) {
    const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : buffer_size_;
    const std::size_t count = std::min(size, file_.size() - position_);
    if (count == size) {
      idat_.Settle();
      buffer_offset_ = position_;
    } else {
      // The file ends inside the buffer, whose far part keeps what was there. Nothing can be decoded any
      // more.
      std::memmove(file_.data() + buffer_offset_, file_.data() + position_, count);
    }
    buffer_size_ = size;
    position_ += count;
    return file_.subspan(buffer_offset_, buffer_size_);
  }

  std::span<std::uint8_t> file_;
  IdatJoiner idat_;
  Context context_;
  std::size_t position_ = 0;                         // of the next byte, from 0
  std::size_t buffer_offset_ = 0, buffer_size_ = 0;  // where the chunk buffer's contents lie in the file
  bool done_ = false;
};

}  // namespace

bool HasSignature(Bytes file) {
  return file.size() >= kSignature.size() && std::equal(kSignature.begin(), kSignature.end(), file.begin());
}

bool WalkChunks(std::span<std::uint8_t> file, Inflater& inflater, ChunkFields& fields) {
  return HasSignature(file) && Walker(file, {fields, inflater}).Walk();
}

}  // namespace marklet::png
