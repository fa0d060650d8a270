#pragma once

#include "tests/support/TestFolder.h"

namespace qm::tests {

/// Makes `folder` an object gallery for the life of the object. It describes rich.msm in that
/// folder, with a version and two download files; a third one is counted and not described.
class TestGallery {
 public:
  explicit TestGallery(const TestFolder& folder, const char* version = "4.0");
  ~TestGallery();
  TestGallery(const TestGallery&) = delete;
  TestGallery& operator=(const TestGallery&) = delete;

  /// The rich module's DownloadFiles, as Answers.h writes them.
  static constexpr wchar_t kDownloadFiles[] =
      L"one.bin;media1;http://one;11;sum1 / two.bin;media2;http://two;22;sum2 / ;;;0;";
};

}  // namespace qm::tests
