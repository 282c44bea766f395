// The loops of alpha_rows.h eight pixels at a time, for processors with AVX2.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bitmaps/alpha_rows.h"

namespace marklet {

void BlendRowsAvx2(const AlphaRows& rows, int destination_bits);
void PremultiplyPixelsAvx2(std::uint8_t* pixels, std::ptrdiff_t count);
void GreyPixelsAvx2(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key);

}  // namespace marklet
