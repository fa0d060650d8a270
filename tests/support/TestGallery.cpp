#include "tests/support/TestGallery.h"

#include <windows.h>

#include <fstream>

namespace qm::tests {

TestGallery::TestGallery(const TestFolder& folder, const char* version) {
  const auto put = [&](const wchar_t* name, const std::string& text) {
    std::ofstream(std::filesystem::path(folder / name)) << text;
  };
  std::filesystem::create_directory(folder / L"ObjectGallery");
  put(L"ObjectGallery\\{00000000-0000-0000-0000-00000000ABCD}.ini",
      std::string("[MergeModule]\nFileName=rich.msm\nVersion=") + version +
          "\n[rich.msm]\nLocation=anything\n"
          "[DownloadFiles]\nKey1=one\nKey2=two\nother=one\n"
          "[one]\nLocation=one.bin\nMediaLocation=media1\nInternetLocation=http://"
          "one\nFileSize=11\n"
          "CheckSum=sum1\n"
          "[two]\nLocation=two.bin\nMediaLocation=media2\nInternetLocation=http://"
          "two\nFileSize=22\n"
          "CheckSum=sum2\n");
  put(L"one.bin", "");
  put(L"two.bin", "");
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", (folder / L"").c_str());
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", (folder / L"").c_str());
}

TestGallery::~TestGallery() {
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", nullptr);
  ::SetEnvironmentVariableW(L"QM_MODULE_PATH", nullptr);
}

}  // namespace qm::tests
