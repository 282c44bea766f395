// The walk through a file's chunks: what counts, what is skipped, and where the walk gets lost.
#include "png/chunks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "png/png_files.h"

namespace marklet::png::test {
namespace {

const Header kHeader{4, 4, 8, 6};

// Rows of four RGBA pixels without filters, each byte its own number.
Bytes Rows() {
  Bytes rows;
  for (std::uint8_t y = 0; y < 4; ++y) {
    rows.push_back(0);
    for (std::uint8_t x = 0; x < 16; ++x) rows.push_back(static_cast<std::uint8_t>(1 + y * 16 + x));
  }
  return rows;
}

Bytes GoodFile(const Bytes& chunks_before_idat = {}) {
  return File(kHeader, StoredZlib(Rows()), chunks_before_idat);
}

const Bytes& GoodPixels() {
  static const Bytes pixels = Decoded(GoodFile());
  return pixels;
}

struct Walked {
  ChunkFields fields;
  Bytes idat;
  bool decodes;
};

Walked Walk(Bytes file) {
  Walked walked;
  Inflater inflater;
  walked.decodes = WalkChunks(file, inflater, walked.fields);
  walked.idat.assign(walked.fields.IdatBytes.begin(), walked.fields.IdatBytes.end());
  walked.fields.IdatBytes = {};
  return walked;
}

Bytes Text(std::string_view text) { return {text.begin(), text.end()}; }

TEST(Chunks, GoodFileDecodes) {
  ASSERT_EQ(GoodPixels().size(), 64u);
  EXPECT_EQ(GoodPixels()[0], 51) << "bottom row first, blue first";
}

TEST(Chunks, FileOfSevenBytesGivesNoPicture) {
  Bytes file = Signature();
  file.pop_back();
  CPngDecoder decoder;
  decoder.LoadFromMemory(file);
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  EXPECT_EQ(decoder.Width(), 0);
  EXPECT_EQ(decoder.Height(), 0);
}

TEST(Chunks, EveryByteOfTheSignatureCounts) {
  for (std::size_t index = 0; index < 8; ++index) {
    Bytes file = GoodFile();
    file[index] ^= 0x20;
    EXPECT_EQ(Decoded(file), Bytes()) << index;
  }
}

TEST(Chunks, BytesAfterTheEndChunkAreIgnored) {
  Bytes file = GoodFile();
  Append(file, Chunk("IHDR", Header{9, 9}.Payload()));
  Append(file, Text("anything"));
  EXPECT_EQ(Decoded(file), GoodPixels());
}

TEST(Chunks, CorruptedChecksumsAreNotNoticed) {
  Bytes file = Signature();
  for (const auto& [type, payload] :
       {std::pair{"IHDR", kHeader.Payload()}, {"IDAT", StoredZlib(Rows())}, {"IEND", Bytes()}}) {
    Bytes chunk = Chunk(type, payload);
    for (std::size_t index = chunk.size() - 4; index < chunk.size(); ++index) chunk[index] ^= 0x5A;
    Append(file, chunk);
  }
  EXPECT_EQ(Decoded(file), GoodPixels());
}

TEST(Chunks, SecondPaletteWins) {
  const Walked walked = Walk(GoodFile(FileOf({})));
  EXPECT_TRUE(walked.fields.PaletteBytes.empty());
  const Bytes file = FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("PLTE", {1, 2, 3, 4, 5, 6}),
                             Chunk("IDAT", {1, 2, 3}), Chunk("PLTE", {7, 8, 9}), Chunk("IEND")});
  EXPECT_EQ(Walk(file).fields.PaletteBytes, (Bytes{7, 8, 9}));
}

TEST(Chunks, SecondHeaderWins) {
  const Bytes idat = Chunk("IDAT", StoredZlib(Rows()));
  const Bytes wrong = Chunk("IHDR", Header{200, 100, 1, 3}.Payload()),
              right = Chunk("IHDR", kHeader.Payload());
  EXPECT_EQ(Decoded(FileOf({wrong, right, idat, Chunk("IEND")})), GoodPixels());
  EXPECT_EQ(Decoded(FileOf({wrong, idat, right, Chunk("IEND")})), GoodPixels()) << "even after the data";
  CPngDecoder decoder;
  Bytes file = FileOf({right, idat, wrong, Chunk("IEND")});
  decoder.LoadFromMemory(file);
  EXPECT_EQ(decoder.Width(), 200);
  EXPECT_EQ(decoder.Height(), 100);
  EXPECT_EQ(decoder.BitDepth(), 1);
  EXPECT_EQ(decoder.ColorType(), 3);
}

TEST(Chunks, HeaderFieldsAreReadAsTheyStand) {
  Bytes payload = {0x80, 0, 0, 1, 0x12, 0x34, 0x56, 0x78, 7, 9, 5, 3, 2};
  Bytes file = FileOf({Chunk("IHDR", payload), Chunk("IEND")});
  CPngDecoder decoder;
  decoder.LoadFromMemory(file);
  EXPECT_EQ(decoder.Width(), static_cast<Long>(0x80000001));
  EXPECT_EQ(decoder.Height(), 0x12345678);
  EXPECT_EQ(decoder.BitDepth(), 7);
  EXPECT_EQ(decoder.ColorType(), 9);
  EXPECT_EQ(decoder.CompressionMethod(), 5);
  EXPECT_EQ(decoder.InterlaceMethod(), 2);
}

TEST(Chunks, AnyFilterMethodIsReadAsMethodZero) {
  Header header = kHeader;
  header.filter = 77;
  EXPECT_EQ(Decoded(File(header, StoredZlib(Rows()))), GoodPixels());
}

TEST(Chunks, DataSplitByAnotherChunkJoins) {
  const Bytes stream = StoredZlib(Rows());
  for (std::size_t cut = 1; cut < stream.size(); cut += 7) {
    const auto at = stream.begin() + static_cast<std::ptrdiff_t>(cut);
    const Bytes file =
        FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", {stream.begin(), at}),
                Chunk("tEXt", Text("Comment")), Chunk("IDAT", {at, stream.end()}), Chunk("IEND")});
    EXPECT_EQ(Decoded(file), GoodPixels()) << cut;
    EXPECT_EQ(Walk(file).idat, stream) << cut;
  }
}

TEST(Chunks, DataInSingleBytesJoins) {
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload())});
  for (const std::uint8_t byte : StoredZlib(Rows())) Append(file, Chunk("IDAT", {byte}));
  Append(file, Chunk("IEND"));
  EXPECT_EQ(Decoded(file), GoodPixels());
}

TEST(Chunks, EmptyTextAfterDataSwallowsAsManyBytesAndLosesTheBoundary) {
  const Bytes data(100, 0x11);
  // What follows: 50 bytes of a chunk's payload, its checksum, and chunks that stand where nobody looks.
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", data), Chunk("tEXt"),
                       Chunk("tEXt", Bytes(300, 'x')), Chunk("IDAT", {1, 2, 3}), Chunk("IEND")});
  const Walked walked = Walk(file);
  EXPECT_FALSE(walked.decodes);
  // The empty chunk's payload begins with its own checksum, then the next chunk's length and type.
  Bytes swallowed(file.begin() + 8 + 25 + 112 + 8, file.begin() + 8 + 25 + 112 + 8 + 100);
  swallowed.push_back(0);
  EXPECT_EQ(walked.fields.TextBlock, std::string(swallowed.begin(), swallowed.end()));
}

TEST(Chunks, EmptyDataChunkTakesTheBytesOfTheNextOnes) {
  const Bytes first = {10, 11, 12}, hidden = {20, 21, 22, 23, 24};
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", first)});
  Append(file, BigEndian(0));
  Append(file, Text("IDAT"));
  Append(file, {30, 31, 32});  // three bytes, as many as the chunk before had
  Append(file, {0, 0, 0, 0});  // taken for the checksum
  Append(file, Chunk("IDAT", hidden));
  Append(file, Chunk("IEND"));
  EXPECT_EQ(Walk(file).idat, (Bytes{10, 11, 12, 30, 31, 32, 20, 21, 22, 23, 24}));
}

TEST(Chunks, EmptyFirstChunkSwallowsNothing) {
  EXPECT_EQ(Decoded(FileOf({Chunk("tEXt"), Chunk("IHDR", kHeader.Payload()),
                            Chunk("IDAT", StoredZlib(Rows())), Chunk("IEND")})),
            GoodPixels());
}

TEST(Chunks, NegativeLengthReadsTheStaleBufferAndTheWalkGoesOn) {
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload())});
  Append(file, BigEndian(0xFFFFFFF0));
  Append(file, Text("tEXt"));
  Append(file, Text("thirteen byte"));  // as many as the header had
  Append(file, {0, 0, 0, 0});
  Append(file, Chunk("IDAT", StoredZlib(Rows())));
  Append(file, Chunk("IEND"));
  const Walked walked = Walk(file);
  EXPECT_TRUE(walked.decodes);
  EXPECT_EQ(walked.fields.TextBlock, std::string("thirteen byte\0", 14));
  EXPECT_EQ(Decoded(file), GoodPixels());
}

TEST(Chunks, NegativeLengthAtTheEndOfTheFileEndsTheWalk) {
  // The header's buffer is read again from five bytes; its last eight keep what was there.
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", StoredZlib(Rows()))});
  Append(file, Chunk("tEXt", kHeader.Payload()));
  Append(file, BigEndian(0x80000000));
  Append(file, Text("IHDR"));
  Append(file, {0, 0, 0, 9, 0});
  const Walked walked = Walk(file);
  EXPECT_FALSE(walked.decodes);
  EXPECT_EQ(walked.fields.Width, 9);
  EXPECT_EQ(walked.fields.Height, 4);
}

TEST(Chunks, FileThatEndsAfterItsLastPayloadIsRefusedAndOneMoreByteIsEnough) {
  Bytes file = GoodFile();
  file.resize(file.size() - 4);  // ends after the type of the end chunk
  EXPECT_EQ(Decoded(file), Bytes());
  file.push_back(0xAE);
  EXPECT_EQ(Decoded(file), GoodPixels());
}

TEST(Chunks, DataThatReachesTheEndOfTheFileGivesNoPicture) {
  Bytes file = FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", StoredZlib(Rows()))});
  file.resize(file.size() - 4);
  CPngDecoder decoder;
  decoder.LoadFromMemory(file);
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  EXPECT_EQ(decoder.Width(), 4) << "fields stay as far as they got";
}

TEST(Chunks, EveryTruncationBeforeTheEndChunksChecksumGivesNoPicture) {
  const Bytes whole = GoodFile();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const Bytes file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(Decoded(file), size + 3 >= whole.size() ? GoodPixels() : Bytes()) << size;
  }
}

TEST(Chunks, FileWithoutEndChunkGivesNoPicture) {
  EXPECT_EQ(Decoded(FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IDAT", StoredZlib(Rows()))})), Bytes());
}

TEST(Chunks, FileWithoutDataGivesNoPicture) {
  EXPECT_EQ(Decoded(FileOf({Chunk("IHDR", kHeader.Payload()), Chunk("IEND")})), Bytes());
}

TEST(Chunks, FileWithoutHeaderGivesNoPicture) {
  EXPECT_EQ(Decoded(FileOf({Chunk("IDAT", StoredZlib(Rows())), Chunk("IEND")})), Bytes());
}

TEST(Chunks, ShortHeaderEndsDecoding) {
  const Walked walked = Walk(FileOf({Chunk("IHDR", {0, 0, 0, 4, 0, 0, 0, 4, 8, 6, 0, 0}),
                                     Chunk("IDAT", StoredZlib(Rows())), Chunk("IEND")}));
  EXPECT_FALSE(walked.decodes);
}

TEST(Chunks, UnknownAndKnownButUselessChunksAreSkipped) {
  Bytes extra;
  for (const char* type : {"ABCD", "cHRM", "oFFs", "pCaL", "sCAL", "hIST", "pHYs", "sBIT", "gIFg", "gIFx",
                           "cTXt", "tIME", "idat", "iend", "IDAt", "sRGB", "iCCP"})
    Append(extra, Chunk(type, {1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(Decoded(GoodFile(extra)), GoodPixels());
}

TEST(Chunks, LengthsThatWouldOverflowEndTheWalk) {
  EXPECT_EQ(Decoded(FileOf({Chunk("IHDR", kHeader.Payload()), ChunkOfLength(0x7FFFFFFF, "IDAT", {1, 2, 3}),
                            Chunk("IEND")})),
            Bytes());
}

TEST(Chunks, GammaIsKept) {
  EXPECT_EQ(Walk(GoodFile(Chunk("gAMA", {0, 0, 0xB1, 0x8F}))).fields.GammaValue, 45455);
  EXPECT_EQ(Walk(GoodFile(Chunk("gAMA", {1}))).fields.GammaValue, 0x01000000)
      << "short payloads are harmless";
}

TEST(Chunks, TransparencyIsNoted) {
  EXPECT_FALSE(Walk(GoodFile()).fields.HasTransparency);
  const Walked walked = Walk(GoodFile(Chunk("tRNS", {9, 8})));
  EXPECT_TRUE(walked.fields.HasTransparency);
  EXPECT_EQ(walked.fields.TransparencyBytes, (Bytes{9, 8}));
}

TEST(Chunks, TextsAreKeptWithANulAfterEach) {
  Bytes extra = Chunk("tEXt", Text("Author"));
  Append(extra, Chunk("tEXt", Text("Title")));
  EXPECT_EQ(Walk(GoodFile(extra)).fields.TextBlock, std::string("Author\0Title\0", 13));
}

TEST(Chunks, CompressedTextIsInflatedAfterItsKeyword) {
  Bytes payload = Text("Key");
  Append(payload, {0, 0, 0x78, 0x01});
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('H').Fixed('i').Fixed('!').Fixed(256);
  Append(payload, bits.bytes());
  EXPECT_EQ(Walk(GoodFile(Chunk("zTXt", payload))).fields.CompressedTextBlock, std::string("Key\0Hi!\0", 8));
}

TEST(Chunks, CompressedTextIsCutAtItsFirstZeroByte) {
  Bytes payload = Text("K");
  Append(payload, {0, 0, 0x78, 0x01});
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a').Fixed('b').ToByte();
  Append(payload, bits.bytes());
  Append(payload, {0, 0xFF, 0xFF});
  // After the cut codes are read as zero bits: the end of the block.
  EXPECT_EQ(Walk(GoodFile(Chunk("zTXt", payload))).fields.CompressedTextBlock, std::string("K\0ab\0", 5));
}

// Twelve times the stream's highest index, and what the decoder always grants beyond its limit.
TEST(Chunks, CompressedTextStopsAtTwelveTimesItsStream) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a');
  for (int i = 0; i < 40; ++i) bits.Fixed(285).Code(0, 5);  // 258 bytes more each
  bits.Put(7, 3);
  const Bytes& stream = bits.bytes();
  ASSERT_EQ(std::count(stream.begin(), stream.end(), 0), 0) << "it would be cut there";
  Bytes payload = Text("K");
  Append(payload, {0, 0, 0x78, 0x01});
  Append(payload, stream);
  const std::string text(12 * (stream.size() - 1) + 100, 'a');
  ASSERT_LT(text.size(), 10'000u);
  EXPECT_EQ(Walk(GoodFile(Chunk("zTXt", payload))).fields.CompressedTextBlock,
            std::string("K\0", 2) + text + std::string(1, '\0'));
}

TEST(Chunks, CompressedTextOfAnyLengthIsHarmless) {
  const Bytes payload = Text("Keyword");
  for (std::size_t size = 1; size < 7; ++size) {
    const Bytes cut(payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(Walk(GoodFile(Chunk("zTXt", cut))).fields.CompressedTextBlock,
              std::string(cut.begin(), cut.end()) + std::string(2, '\0'));
  }
}

}  // namespace
}  // namespace marklet::png::test
