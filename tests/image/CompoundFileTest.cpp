#include "image/CompoundFile.h"

#include <gtest/gtest.h>

#include "tests/support/DatabaseFile.h"

namespace qm::tests {

namespace {

TEST(CompoundFileTest, ReadsStreamsOfEverySize) {
  for (const unsigned sectorShift : {9U, 12U}) {
    std::vector<Stream> streams;
    for (const std::size_t size : {0, 1, 63, 64, 65, 4095, 4096, 4097, 9000, 9 << 20}) {
      image::Bytes bytes(size);
      for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 31 / 64);
      }
      streams.push_back({u"s" + std::u16string(streams.size(), u'X'), std::move(bytes)});
    }
    MemorySource source = WriteCompoundFile(streams, sectorShift).Source();
    image::CompoundFile file(source);
    for (const Stream& stream : streams) {
      const auto found = file.FindStream(stream.name);
      ASSERT_TRUE(found);
      EXPECT_EQ(file.Read(*found, image::DamagedPart::Row, "It"), stream.bytes);
    }
    EXPECT_TRUE(file.FindStream(u"Sxx"));
    EXPECT_FALSE(file.FindStream(u"t"));
  }
}

}  // namespace

}  // namespace qm::tests
