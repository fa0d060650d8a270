#pragma once

#include "tests/support/TestFolder.h"

/// Makes a folder an object gallery that describes the rich module, which is to lie there as
/// rich.msm, as one of a version and with two download files, of three that it counts. The
/// environment tells of the folder for as long as the object lives.
class CTestGallery {
 public:
  explicit CTestGallery(const CTestFolder& folder, const char* version = "4.0");
  ~CTestGallery();
  CTestGallery(const CTestGallery&) = delete;
  CTestGallery& operator=(const CTestGallery&) = delete;

  /// What the rich module's DownloadFiles then gives, see Answers.h.
  static constexpr wchar_t kDownloadFiles[] =
      L"one.bin;media1;http://one;11;sum1 / two.bin;media2;http://two;22;sum2 / ;;;0;";
};
