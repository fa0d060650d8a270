#include "client/findings/Location.h"

#include <gtest/gtest.h>

namespace qm::tests {

namespace {

TEST(LocationTest, PathsAreRelativeToTheFolderAndValidAsUris) {
  const struct {
    const char* path;
    const char* base;
    const char* relative;
    const char* uri;
  } cases[] = {
      {"/src/modules/A.msm", "/src", "modules/A.msm", "modules/A.msm"},
      {"/src/A.msm", "/src/", "A.msm", "A.msm"},
      {"/shared/A.msm", "/src/main", "../../shared/A.msm", "../../shared/A.msm"},
      {"/Src/A.msm", "/src", "../Src/A.msm", "../Src/A.msm"},
      {"/src", "/src", "../src", "../src"},
      {R"(c:\Src\M\A.msm)", R"(C:\src)", "M/A.msm", "M/A.msm"},
      {R"(D:\M\A.msm)", R"(C:\src)", "D:/M/A.msm", "file:///D:/M/A.msm"},
      {R"(\\server\share\A.msm)", R"(\\SERVER\Share\b)", "../A.msm", "../A.msm"},
      {R"(\\other\share\A.msm)", R"(\\server\share)", "//other/share/A.msm",
       "file://other/share/A.msm"},
      {"/s/Größen 1/50%,#?.msm", "/s", "Größen 1/50%,#?.msm",
       "Gr%C3%B6%C3%9Fen%201/50%25,%23%3F.msm"},
      {"/src/a:b.msm", "/src", "a:b.msm", "a%3Ab.msm"},
      {"Offer.1:1031", "/src", "Offer.1:1031", "Offer.1%3A1031"},
  };
  for (const auto& [path, base, relative, uri] : cases) {
    const std::string actual = mmcat::MakeRelativePath(path, base);
    EXPECT_EQ(relative, actual);
    EXPECT_EQ(uri, mmcat::MakeUri(actual));
  }
}

}  // namespace

}  // namespace qm::tests
