#include "text/Ascii.h"

#include <gtest/gtest.h>

#include <string>

namespace qm::tests {

namespace {

TEST(AsciiTest, AByteAboveAsciiIsFoundAtEveryPlaceOfATextOfAnyLength) {
  for (size_t size = 0; size <= 20; ++size) {
    const std::string text(size, '\x7F');
    EXPECT_TRUE(text::IsAscii(text)) << size;
    for (size_t place = 0; place < size; ++place) {
      std::string other = text;
      other[place] = '\x80';
      EXPECT_FALSE(text::IsAscii(other)) << place << " of " << size;
      EXPECT_TRUE(text::IsAscii(std::string_view(other).substr(0, place))) << "what precedes it";
    }
  }
}

}  // namespace

}  // namespace qm::tests
