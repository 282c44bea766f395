// The fuzzers: each runs one input and returns, or ends the program at a finding. The tests replay the corpus
// through the same functions.
#pragma once

#include <cstdint>
#include <span>

namespace marklet {

// Tokenizer and interpreter of captions.
void FuzzMarkup(std::span<const std::uint8_t> input);

// Saved forms, as bytes and as a host's property bag.
void FuzzSavedForm(std::span<const std::uint8_t> input);
void FuzzPropertyBag(std::span<const std::uint8_t> input);

// Icon files, and other files and arrays that images are made of.
void FuzzIcon(std::span<const std::uint8_t> input);

// JPG files.
void FuzzJpeg(std::span<const std::uint8_t> input);

// PNG files.
void FuzzPng(std::span<const std::uint8_t> input);

// Files of the form designer.
void FuzzFormFile(std::span<const std::uint8_t> input);

}  // namespace marklet
