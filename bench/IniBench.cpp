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
  qm::common::UniqueBstr section;
  qm::common::UniqueBstr key;
};

qm::common::UniqueBstr ToBstr(const std::string& ascii) {
  return qm::common::UniqueBstr(
      qm::common::TryAllocateBstr(std::wstring(ascii.begin(), ascii.end())));
}

/// A gallery description: its text and all its keys.
struct Description {
  void Section(const std::string& name) {
    section = name;
    text += "[" + name + "]\r\n";
  }
  void Key(const std::string& name, const std::string& value) {
    text += name + "=" + value + "\r\n";
    places.push_back({ToBstr(section), ToBstr(name)});
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

void Write(const qm::common::WideString& path, const std::string& bytes) {
  FILE* const file = ::_wfopen(path.c_str(), L"wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

/// A temporary gallery root with a folder for descriptions. The destructor removes it with all its
/// files.
class Scratch {
 public:
  Scratch() {
    wchar_t folder[MAX_PATH + 1];
    ::GetTempPathW(MAX_PATH + 1, folder);
    m_root = qm::common::JoinPath(folder, L"QmIniBench");
    m_folder = qm::common::JoinPath(m_root, L"ObjectGallery");
    ::CreateDirectoryW(m_root.c_str(), nullptr);
    ::CreateDirectoryW(m_folder.c_str(), nullptr);
  }
  ~Scratch() {
    for (const qm::common::WideString& file : m_files) {
      ::DeleteFileW(file.c_str());
    }
    ::RemoveDirectoryW(m_folder.c_str());
    ::RemoveDirectoryW(m_root.c_str());
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const qm::common::WideString& Add(const qm::common::WideString& name, const std::string& bytes) {
    m_files.push_back(qm::common::JoinPath(m_folder, name));
    Write(m_files.back(), bytes);
    return m_files.back();
  }
  const qm::common::WideString& Root() const { return m_root; }
  const std::vector<qm::common::WideString>& Files() const { return m_files; }

 private:
  qm::common::WideString m_root;
  qm::common::WideString m_folder;
  std::vector<qm::common::WideString> m_files;
};

/// Returns the class object of the reader that this build made. From now on records load their
/// siblings from its folder.
qm::common::ComPtr<IClassFactory> ReaderFactory() {
  const qm::common::WideString build =
      qm::common::ParentFolder(qm::common::ParentFolder(qm::com::DllPath(nullptr)));
  const HMODULE dll = ::LoadLibraryW(qm::common::JoinPath(build, L"bin\\Gleaner.dll").c_str());
  if (!dll) {
    qm::com::RaiseLastError();
  }
  qm::com::ComServer::Instance().Init({}, dll);
  const auto getClassObject = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(::GetProcAddress(dll, "DllGetClassObject")));
  qm::common::ComPtr<IClassFactory> factory;
  qm::com::RaiseIfFailed(getClassObject(CLSID_IniReader, __uuidof(IClassFactory),
                                        reinterpret_cast<void**>(factory.Put())));
  return factory;
}

qm::common::ComPtr<IIniReader> Load(IClassFactory* factory, const qm::common::WideString& path) {
  qm::common::ComPtr<IIniReader> reader;
  qm::com::RaiseIfFailed(factory->CreateInstance(nullptr, __uuidof(IIniReader),
                                                 reinterpret_cast<void**>(reader.Put())));
  const qm::common::UniqueBstr text(qm::common::TryAllocateBstr(path));
  qm::com::RaiseIfFailed(reader->Load(text.Get()));
  return reader;
}

VARIANT Named(BSTR name) {
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name;
  return index;
}

/// Reads a value through all objects from the reader down, as the server does for every key.
/// Returns its length.
size_t ReadKey(IIniReader* reader, BSTR sectionName, BSTR keyName) {
  qm::common::ComPtr<IIniSections> sections;
  qm::common::ComPtr<IIniSection> section;
  qm::common::ComPtr<IIniKeys> keys;
  qm::common::ComPtr<IIniKey> key;
  qm::common::UniqueBstr value;
  qm::com::RaiseIfFailed(reader->get_Sections(sections.Put()));
  qm::com::RaiseIfFailed(sections->get_Item(Named(sectionName), section.Put()));
  qm::com::RaiseIfFailed(section->get_Keys(keys.Put()));
  qm::com::RaiseIfFailed(keys->get_Item(Named(keyName), key.Put()));
  qm::com::RaiseIfFailed(key->get_Value(value.Put()));
  return qm::common::ViewOf(value.Get()).size();
}

size_t ReadRecords(IClassFactory* factory, const std::vector<qm::common::WideString>& files,
                   const std::vector<Place>& places) {
  size_t length = 0;
  for (const qm::common::WideString& file : files) {
    const qm::common::ComPtr<IIniReader> reader = Load(factory, file);
    for (const Place& place : places) {
      length += ReadKey(reader.Get(), place.section.Get(), place.key.Get());
    }
  }
  return length;
}

size_t ReadWithThePlatform(const std::vector<qm::common::WideString>& files,
                           const std::vector<Place>& places) {
  size_t length = 0;
  wchar_t value[1024];
  for (const qm::common::WideString& file : files) {
    for (const Place& place : places) {
      length += ::GetPrivateProfileStringW(place.section.Get(), place.key.Get(), L"", value, 1024,
                                           file.c_str());
    }
  }
  return length;
}

qm::common::WideString MakeRecordName(int record) {
  return qm::common::WideString::Format(L"Record%d", record);
}

/// Creates a gallery record and opens its description.
std::unique_ptr<qm::gallery::CMMGallery> MakeGalleryRecord(int number) {
  auto record = std::make_unique<qm::gallery::CMMGallery>();
  record->SetNameAndVersion(MakeRecordName(number), L"1.0");
  if (record->GetSubject().empty()) {
    std::fputs("bench_ini: a description was not opened\n", stderr);
    std::exit(1);
  }
  return record;
}

/// Creates a module record from its description, which stays open.
std::unique_ptr<qm::module::CCacheMSM> MakeModuleRecord(int number) {
  auto record = std::make_unique<qm::module::CCacheMSM>();
  record->InitFromGallery(MakeRecordName(number));
  if (record->Subject().empty()) {
    std::fputs("bench_ini: a description was not opened\n", stderr);
    std::exit(1);
  }
  return record;
}

/// Returns the average heap size in bytes of the objects that `make` creates for all record
/// numbers.
template <class Make>
double MeasureBytes(Make make) {
  std::vector<decltype(make(0))> objects;
  objects.reserve(kRecords);
  make(0);  // allocates what all objects share
  const size_t before = qm::bench::HeapBytes();
  for (int i = 0; i < kRecords; ++i) {
    objects.push_back(make(i));
  }
  return static_cast<double>(qm::bench::HeapBytes() - before) / kRecords;
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
  Scratch scratch;
  for (int i = 0; i < kRecords; ++i) {
    scratch.Add(MakeRecordName(i) + L".ini", description.text);
  }
  ReadRecords(factory, scratch.Files(), description.places);
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", scratch.Root().c_str());
  for (int i = 0; i < runs; ++i) {
    size_t length = 0;
    size_t platformLength = 0;
    qm::bench::PrintRun("keys", qm::bench::Milliseconds([&] {
                          length = ReadRecords(factory, scratch.Files(), description.places);
                        }));
    qm::bench::PrintRun("key_calls", qm::bench::Milliseconds([&] {
                          platformLength = ReadWithThePlatform(scratch.Files(), description.places);
                        }));
    if (length != platformLength) {
      std::fputs("bench_ini: the two did not read the same\n", stderr);
      std::exit(1);
    }
    qm::bench::PrintRun("reader_bytes", MeasureBytes([&](int number) {
                          return Load(factory, scratch.Files()[number]);
                        }));
    qm::bench::PrintRun("gallery_bytes", MeasureBytes(MakeGalleryRecord));
    qm::bench::PrintRun("module_bytes", MeasureBytes(MakeModuleRecord));
  }
}

void MeasureIndex(IClassFactory* factory, int runs) {
  Scratch scratch;
  const std::string text = MakeIndex();
  const qm::common::WideString& path = scratch.Add(L"Index.ini", text);
  const qm::common::UniqueBstr section(qm::common::TryAllocateBstr(L"FilesToModules"));
  const qm::common::UniqueBstr name(qm::common::TryAllocateBstr(L"FILE4711.DLL"));
  Load(factory, path);
  for (int i = 0; i < runs; ++i) {
    const double load = qm::bench::Milliseconds([&] { Load(factory, path); });
    qm::bench::PrintRun("rate", static_cast<double>(text.size()) / 1000.0 / load);
    qm::bench::PrintRun("one_key", qm::bench::Milliseconds([&] {
                          ReadKey(Load(factory, path).Get(), section.Get(), name.Get());
                        }));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 2 ? std::atoi(argv[1]) : 5;
  const HRESULT hr = qm::com::RunAtBoundary(GUID_NULL, [&] {
    const qm::common::ComPtr<IClassFactory> factory = ReaderFactory();
    MeasureRecords(factory.Get(), runs);
    MeasureIndex(factory.Get(), runs);
    return S_OK;
  });
  return FAILED(hr) ? 1 : 0;
}
