// make_modules FOLDER COUNT: builds merge modules for benchmarks, named Module0001.msm and so on.
// Each has an ID and a summary of its own, and needs the one with half its number. The last one
// also needs the first 300. Existing modules are kept.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "common/Path.h"
#include "msidb/Database.h"

namespace {

void WriteTable(const qm::common::WideString& path, const std::string& text) {
  FILE* const file = ::_wfopen(path.c_str(), L"wb");
  if (!file) {
    qm::com::RaiseLastError();
  }
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
}

std::string Number(int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d", number);
  return text;
}

std::string MakeSuffix(int number) {
  return Number(number) + ".C685A6B2_5C68_494B_8B13_7777875E" + Number(number);
}

/// Makes a row of ModuleDependency.
std::string MakeDependency(const std::string& id, int required) {
  return id + "\t1033\tLibrary" + MakeSuffix(required) + "\t1033\t2.0\r\n";
}

std::string MakeDependencies(const std::string& id, int number, bool isLast) {
  std::string rows = MakeDependency(id, number / 2);
  for (int required = 1; isLast && required <= std::min(300, number - 1); ++required) {
    rows += required == number / 2 ? "" : MakeDependency(id, required);
  }
  return rows;
}

void BuildModule(const qm::common::WideString& folder, const qm::common::WideString& path,
                 int number, int count) {
  const std::string suffix = MakeSuffix(number);
  const std::string id = "Library" + suffix;
  const struct {
    const wchar_t* name;
    std::string text;
  } tables[] = {
      {L"ModuleSignature.idt",
       "ModuleID\tLanguage\tVersion\r\ns72\ti2\ts32\r\nModuleSignature\tModuleID\tLanguage\r\n" +
           id + "\t1033\t2.4.1." + std::to_string(number) + "\r\n"},
      {L"_SummaryInformation.idt",
       "PropertyId\tValue\r\ni2\tl255\r\n_SummaryInformation\tPropertyId\r\n1\t1252\r\n"
       "3\tRuntime library number " +
           std::to_string(number) +
           "\r\n4\tLarkfield Software\r\n"
           "6\tFiles of the runtime library for programs and services\r\n"
           "9\t{C685A6B2-5C68-494B-8B13-7777875E" +
           Number(number) + "}\r\n"},
      {L"Component.idt",
       "Component\tComponentId\tDirectory_\tAttributes\tCondition\tKeyPath\r\n"
       "s72\tS38\ts72\ti2\tS255\tS72\r\nComponent\tComponent\r\n"
       "Main." +
           suffix + "\t\tSystemFolder." + suffix + "\t0\t\tDll." + suffix + "\r\n"},
      {L"File.idt",
       "File\tComponent_\tFileName\tFileSize\tVersion\tLanguage\tAttributes\tSequence\r\n"
       "s72\ts72\tl255\ti4\tS72\tS20\tI2\ti2\r\nFile\tFile\r\n"
       "Dll." +
           suffix + "\tMain." + suffix + "\tlib" + Number(number) +
           ".dll\t40960\t2.4.1.0\t"
           "1033\t\t1\r\n"},
      {L"ModuleDependency.idt",
       "ModuleID\tModuleLanguage\tRequiredID\tRequiredLanguage\tRequiredVersion\r\n"
       "s72\ti2\ts72\ti2\tS32\r\nModuleDependency\tModuleID\tModuleLanguage\tRequiredID\t"
       "RequiredLanguage\r\n" +
           MakeDependencies(id, number, number == count)},
  };
  {
    qm::msidb::Database database = qm::msidb::Database::Open(path + L".new", MSIDBOPEN_CREATE);
    for (const auto& table : tables) {
      WriteTable(qm::common::JoinPath(folder, table.name), table.text);
      database.Import(folder, table.name);
    }
    database.Commit();
  }
  for (const auto& table : tables) {
    ::DeleteFileW(qm::common::JoinPath(folder, table.name).c_str());
  }
  if (!::MoveFileW((path + L".new").c_str(), path.c_str())) {
    qm::com::RaiseLastError();
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) {
    std::fputs("usage: make_modules FOLDER COUNT\n", stderr);
    return 2;
  }
  const HRESULT hr = qm::com::RunAtBoundary(GUID_NULL, [&] {
    const qm::common::WideString folder = qm::common::ResolveFullPath(argv[1]);
    const int count = ::_wtoi(argv[2]);
    for (int number = 1; number <= count; ++number) {
      const qm::common::WideString path =
          qm::common::JoinPath(folder, qm::common::WideString::Format(L"Module%04d.msm", number));
      if (!qm::common::PathExists(path)) {
        BuildModule(folder, path, number, count);
      }
    }
    return S_OK;
  });
  return FAILED(hr) ? 1 : 0;
}
