// Lists the files of the catalog's modules whose names match a pattern, and where each is
// installed.
//
//   FindFiles PATTERN
//
// The server and QmMergeSet.dll must be registered. It needs idl/qmmmupdater.h, idl/mergeset.h,
// ole32 and oleaut32:
//
//   i686-w64-mingw32-g++ -std=c++17 -municode -DUNICODE -static -I ../../include FindFiles.cpp
//     -lole32 -loleaut32 -o FindFiles.exe
//
// Exits with 0, with 3 if no file matches, with 2 without a pattern, or with 5 after a failure.

#include <comdef.h>
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>

#include "idl/mergeset.h"
#include "idl/qmmmupdater.h"

_COM_SMARTPTR_TYPEDEF(IMMCatalog, __uuidof(IMMCatalog));
_COM_SMARTPTR_TYPEDEF(IMergeSet, __uuidof(IMergeSet));
_COM_SMARTPTR_TYPEDEF(ISetFiles, __uuidof(ISetFiles));
_COM_SMARTPTR_TYPEDEF(ISetFile, __uuidof(ISetFile));

namespace {

void Check(HRESULT result) {
  if (FAILED(result)) {
    IErrorInfo* info = nullptr;
    ::GetErrorInfo(0, &info);
    throw _com_error(result, info);
  }
}

/// Prints the files and returns their number.
long PrintFiles(const wchar_t* pattern) {
  const IMMCatalogPtr catalog(L"QmMMUpdater.MMCatalog");
  const IMergeSetPtr set(L"QmMMUpdater.MergeSet");
  ISetFilesPtr files;
  long count = 0;
  Check(set->Load(catalog));
  Check(set->FindFiles(_bstr_t(pattern), &files));
  Check(files->get_Count(&count));
  for (long number = 1; number <= count; ++number) {
    ISetFilePtr file;
    _bstr_t name;
    _bstr_t folder;
    Check(files->get_Item(_variant_t(number), &file));
    Check(file->get_Name(name.GetAddress()));
    Check(file->get_TargetPath(folder.GetAddress()));
    std::wprintf(L"%ls in %ls\n", name.GetBSTR(), folder.GetBSTR());
  }
  return count;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    ::fputs("usage: FindFiles PATTERN\n", stderr);
    return 2;
  }
  ::_setmode(::_fileno(stdout), _O_U8TEXT);
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  int exitCode = 5;
  try {
    exitCode = PrintFiles(argv[1]) > 0 ? 0 : 3;
  } catch (const _com_error& failure) {
    std::fwprintf(stderr, L"FindFiles: 0x%08lX %ls\n", static_cast<unsigned long>(failure.Error()),
                  (_bstr_t(L"") + failure.Description()).GetBSTR());
  }
  ::CoUninitialize();
  return exitCode;
}
