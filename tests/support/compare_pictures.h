// Comparison of two PNG files.
#pragma once

#include <string>

namespace marklet::testing {

// What differs, or empty when the pictures are the same. Natively the pixels are compared, and `difference`
// becomes a picture of what differs; elsewhere the bytes of the files are.
std::string ComparePictures(const std::string& expected, const std::string& actual,
                            const std::string& difference);

// Whether text is drawn with the same fonts on every machine.
bool FontsArePinned();

}  // namespace marklet::testing
