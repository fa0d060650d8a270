#pragma once

#include "tests/support/TestFolder.h"

/// Makes `folder` an object gallery for the life of the object. It describes rich.msm in that
/// folder, with a version and two download files; a third one is counted and not described.
class CTestGallery {
 public:
  explicit CTestGallery(const CTestFolder& folder, const char* version = "4.0");
  ~CTestGallery();
  CTestGallery(const CTestGallery&) = delete;
  CTestGallery& operator=(const CTestGallery&) = delete;

  /// The rich module's DownloadFiles, as Answers.h writes them.
  static constexpr wchar_t kDownloadFiles[] =
      L"one.bin;media1;http://one;11;sum1 / two.bin;media2;http://two;22;sum2 / ;;;0;";
};
