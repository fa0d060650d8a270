// bench_ini RUNS: reading INI files with the reader component.
//
//   keys            milliseconds for loading 1,000 gallery descriptions and reading all their keys
//   key_calls       its baseline: GetPrivateProfileStringW for every key
//   rate            MB per second for loading an index file of 10 MB in one section
//   one_key         milliseconds for loading that file and finding one key by name
//   reader_bytes    heap bytes of a loaded reader
//   gallery_bytes   heap bytes of a gallery record with its description open
//   module_bytes    heap bytes of a module record filled from the gallery

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/HeapBytes.h"
#include "bench/Measure.h"
#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ComServer.h"
#include "com/frame/DllPath.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/Path.h"
#include "idl/siblings.h"
#include "module/CacheMSM.h"

namespace {

constexpr int kRecords = 1000;

/// A key of a description: the name of its section and its own name.
struct Place {
  CUniqueBstr section;
  CUniqueBstr key;
};

CUniqueBstr Wide(const std::string& ascii) {
  return CUniqueBstr(AllocBstr(std::wstring(ascii.begin(), ascii.end())));
}

/// A gallery description: its text and all its keys.
struct Description {
  void Section(const std::string& name) {
    section = name;
    text += "[" + name + "]\r\n";
  }
  void Key(const std::string& name, const std::string& value) {
    text += name + "=" + value + "\r\n";
    places.push_back({Wide(section), Wide(name)});
  }

  std::string text;
  std::vector<Place> places;
  std::string section;  ///< the section that keys are added to
};

/// Adds a section that lists `count` items, and a section for each item.
void AddList(Description& description, const std::string& list, int count,
             const std::vector<const char*>& fields) {
  const auto itemName = [&](int i) { return list + ".Item" + std::to_string(i); };
  description.Section(list);
  for (int i = 1; i <= count; ++i) {
    description.Key("Key" + std::to_string(i), itemName(i));
  }
  for (int i = 1; i <= count; ++i) {
    description.Section(itemName(i));
    for (const char* const field : fields) {
      description.Key(field, "Value of this field");
    }
  }
}

Description MakeDescription() {
  Description description;
  description.Section("MergeModule");
  for (const char* const name :
       {"FileName", "Language", "ModuleID", "Author", "Comments", "Subject", "Version"}) {
    description.Key(name, "Filters for older documents");
  }
  description.Section("Filters.msm");
  description.Key("Location", "Modules");
  AddList(description, "Dependency", 2, {"Version", "Language"});
  AddList(description, "Exclusions", 1,
          {"ExcludedMinVersion", "ExcludedMaxVersion", "ExcludedLanguage"});
  AddList(description, "Files", 6, {"FileName", "Version", "FileSize", "Language"});
  AddList(description, "DownloadFiles", 2,
          {"Location", "MediaLocation", "InternetLocation", "FileSize", "CheckSum"});
  return description;
}

void Write(const CWideString& path, const std::string& bytes) {
  FILE* const file = ::_wfopen(path.c_str(), L"wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

/// A temporary gallery root with a folder for descriptions. Removed at the end with all files.
class CScratch {
 public:
  CScratch() {
    wchar_t folder[MAX_PATH + 1];
    ::GetTempPathW(MAX_PATH + 1, folder);
    m_root = JoinPath(folder, L"QmIniBench");
    m_folder = JoinPath(m_root, L"ObjectGallery");
    ::CreateDirectoryW(m_root.c_str(), nullptr);
    ::CreateDirectoryW(m_folder.c_str(), nullptr);
  }
  ~CScratch() {
    for (const CWideString& file : m_files) {
      ::DeleteFileW(file.c_str());
    }
    ::RemoveDirectoryW(m_folder.c_str());
    ::RemoveDirectoryW(m_root.c_str());
  }
  CScratch(const CScratch&) = delete;
  CScratch& operator=(const CScratch&) = delete;

  const CWideString& Add(const CWideString& name, const std::string& bytes) {
    m_files.push_back(JoinPath(m_folder, name));
    Write(m_files.back(), bytes);
    return m_files.back();
  }
  const CWideString& Root() const { return m_root; }
  const std::vector<CWideString>& Files() const { return m_files; }

 private:
  CWideString m_root;
  CWideString m_folder;
  std::vector<CWideString> m_files;
};

/// Returns the class object of the reader that this build made. From now on records load their
/// siblings from its folder.
CComPtr<IClassFactory> ReaderFactory() {
  const CWideString build = FolderOf(FolderOf(ModulePath(nullptr)));
  const HMODULE dll = ::LoadLibraryW(JoinPath(build, L"bin\\Gleaner.dll").c_str());
  if (!dll) {
    RaiseLastError();
  }
  CComModule::Instance().Init({}, dll);
  const auto getClassObject = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(::GetProcAddress(dll, "DllGetClassObject")));
  CComPtr<IClassFactory> factory;
  RaiseIfFailed(getClassObject(CLSID_IniReader, __uuidof(IClassFactory),
                               reinterpret_cast<void**>(factory.Put())));
  return factory;
}

CComPtr<IIniReader> Load(IClassFactory* factory, const CWideString& path) {
  CComPtr<IIniReader> reader;
  RaiseIfFailed(factory->CreateInstance(nullptr, __uuidof(IIniReader),
                                        reinterpret_cast<void**>(reader.Put())));
  const CUniqueBstr text(AllocBstr(path));
  RaiseIfFailed(reader->Load(text.Get()));
  return reader;
}

VARIANT Named(BSTR name) {
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name;
  return index;
}

/// Gets a value, starting at the reader, as the server does for every key. Returns its length.
size_t ReadKey(IIniReader* reader, BSTR sectionName, BSTR keyName) {
  CComPtr<IIniSections> sections;
  CComPtr<IIniSection> section;
  CComPtr<IIniKeys> keys;
  CComPtr<IIniKey> key;
  CUniqueBstr value;
  RaiseIfFailed(reader->get_Sections(sections.Put()));
  RaiseIfFailed(sections->get_Item(Named(sectionName), section.Put()));
  RaiseIfFailed(section->get_Keys(keys.Put()));
  RaiseIfFailed(keys->get_Item(Named(keyName), key.Put()));
  RaiseIfFailed(key->get_Value(value.Put()));
  return ViewOf(value.Get()).size();
}

size_t ReadRecords(IClassFactory* factory, const std::vector<CWideString>& files,
                   const std::vector<Place>& places) {
  size_t length = 0;
  for (const CWideString& file : files) {
    const CComPtr<IIniReader> reader = Load(factory, file);
    for (const Place& place : places) {
      length += ReadKey(reader.Get(), place.section.Get(), place.key.Get());
    }
  }
  return length;
}

size_t ReadWithThePlatform(const std::vector<CWideString>& files,
                           const std::vector<Place>& places) {
  size_t length = 0;
  wchar_t value[1024];
  for (const CWideString& file : files) {
    for (const Place& place : places) {
      length += ::GetPrivateProfileStringW(place.section.Get(), place.key.Get(), L"", value, 1024,
                                           file.c_str());
    }
  }
  return length;
}

CWideString NameOf(int record) { return CWideString::Format(L"Record%d", record); }

/// Creates a gallery record and opens its description.
std::unique_ptr<CMMGallery> MakeGalleryRecord(int number) {
  auto record = std::make_unique<CMMGallery>();
  record->SetNameAndVersion(NameOf(number), L"1.0");
  if (record->GetSubject().empty()) {
    std::fputs("bench_ini: a description was not opened\n", stderr);
    std::exit(1);
  }
  return record;
}

/// Creates a module record from its description, which stays open.
std::unique_ptr<CCacheMSM> MakeModuleRecord(int number) {
  auto record = std::make_unique<CCacheMSM>();
  record->InitFromGallery(NameOf(number));
  if (record->Subject().empty()) {
    std::fputs("bench_ini: a description was not opened\n", stderr);
    std::exit(1);
  }
  return record;
}

/// Returns the average heap size in bytes of the objects that `make` creates for all record
/// numbers.
template <class Make>
double BytesOf(Make make) {
  std::vector<decltype(make(0))> objects;
  objects.reserve(kRecords);
  make(0);  // allocates what all objects share
  const size_t before = HeapBytes();
  for (int i = 0; i < kRecords; ++i) {
    objects.push_back(make(i));
  }
  return static_cast<double>(HeapBytes() - before) / kRecords;
}

/// Returns the text of a file index: 10 MB in one section.
std::string MakeIndex() {
  std::string text = "[FilesToModules]\r\n";
  for (int i = 0; text.size() < 10'000'000; ++i) {
    text += "file" + std::to_string(i) + ".dll=0:Filters.3D72D161_A763_4DD3_85DC_E7D8D172CD5D\r\n";
  }
  return text;
}

void MeasureRecords(IClassFactory* factory, int runs) {
  const Description description = MakeDescription();
  CScratch scratch;
  for (int i = 0; i < kRecords; ++i) {
    scratch.Add(NameOf(i) + L".ini", description.text);
  }
  ReadRecords(factory, scratch.Files(), description.places);
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", scratch.Root().c_str());
  for (int i = 0; i < runs; ++i) {
    size_t length = 0;
    size_t platformLength = 0;
    PrintRun("keys", Milliseconds([&] {
               length = ReadRecords(factory, scratch.Files(), description.places);
             }));
    PrintRun("key_calls", Milliseconds([&] {
               platformLength = ReadWithThePlatform(scratch.Files(), description.places);
             }));
    if (length != platformLength) {
      std::fputs("bench_ini: the two did not read the same\n", stderr);
      std::exit(1);
    }
    PrintRun("reader_bytes",
             BytesOf([&](int number) { return Load(factory, scratch.Files()[number]); }));
    PrintRun("gallery_bytes", BytesOf(MakeGalleryRecord));
    PrintRun("module_bytes", BytesOf(MakeModuleRecord));
  }
}

void MeasureIndex(IClassFactory* factory, int runs) {
  CScratch scratch;
  const std::string text = MakeIndex();
  const CWideString& path = scratch.Add(L"Index.ini", text);
  const CUniqueBstr section(AllocBstr(L"FilesToModules"));
  const CUniqueBstr name(AllocBstr(L"FILE4711.DLL"));
  Load(factory, path);
  for (int i = 0; i < runs; ++i) {
    const double load = Milliseconds([&] { Load(factory, path); });
    PrintRun("rate", static_cast<double>(text.size()) / 1000.0 / load);
    PrintRun("one_key",
             Milliseconds([&] { ReadKey(Load(factory, path).Get(), section.Get(), name.Get()); }));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 2 ? std::atoi(argv[1]) : 5;
  const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
    const CComPtr<IClassFactory> factory = ReaderFactory();
    MeasureRecords(factory.Get(), runs);
    MeasureIndex(factory.Get(), runs);
    return S_OK;
  });
  return FAILED(hr) ? 1 : 0;
}
