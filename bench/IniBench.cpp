// INI files: 1,000 gallery descriptions read with all their keys, through the reader's interfaces
// and, as the baseline, with the platform's own function; a file of 10 MB; the memory of a reader
// and of the records that hold one.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/HeapBytes.h"
#include "bench/Measure.h"
#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ComModule.h"
#include "com/frame/ModulePath.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/Path.h"
#include "idl/siblings.h"
#include "module/CacheMSM.h"

namespace {

constexpr int kRecords = 1000;

/// A key of a description, by the names of its section and its own.
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
  std::string section;  ///< that keys are added to
};

/// Adds a section that lists `count` items, and the section of each.
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

/// The folder of the descriptions below a gallery root of its own; removed with its files.
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

/// The class object of the build's own reader. Records look for their siblings beside it from now
/// on.
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
  ThrowIfFailed(getClassObject(CLSID_IniReader, __uuidof(IClassFactory),
                               reinterpret_cast<void**>(factory.Put())));
  return factory;
}

CComPtr<IIniReader> Load(IClassFactory* factory, const CWideString& path) {
  CComPtr<IIniReader> reader;
  ThrowIfFailed(factory->CreateInstance(nullptr, __uuidof(IIniReader),
                                        reinterpret_cast<void**>(reader.Put())));
  const CUniqueBstr text(AllocBstr(path));
  ThrowIfFailed(reader->Load(text.Get()));
  return reader;
}

VARIANT Named(BSTR name) {
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name;
  return index;
}

/// From the reader to the value, as the server does for every key.
size_t ReadKey(IIniReader* reader, BSTR sectionName, BSTR keyName) {
  CComPtr<IIniSections> sections;
  CComPtr<IIniSection> section;
  CComPtr<IIniKeys> keys;
  CComPtr<IIniKey> key;
  CUniqueBstr value;
  ThrowIfFailed(reader->get_Sections(sections.Put()));
  ThrowIfFailed(sections->get_Item(Named(sectionName), section.Put()));
  ThrowIfFailed(section->get_Keys(keys.Put()));
  ThrowIfFailed(keys->get_Item(Named(keyName), key.Put()));
  ThrowIfFailed(key->get_Value(value.Put()));
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

/// A record of the gallery with its description open.
std::unique_ptr<CMMGallery> MakeGalleryRecord(int number) {
  auto record = std::make_unique<CMMGallery>();
  record->SetNameAndVersion(NameOf(number).c_str(), L"1.0");
  if (record->GetSubject().empty()) {
    std::printf("A description was not opened.\n");
  }
  return record;
}

/// A module record filled from its description, which stays open.
std::unique_ptr<CCacheMSM> MakeModuleRecord(int number) {
  auto record = std::make_unique<CCacheMSM>();
  record->InitFromGallery(NameOf(number));
  if (record->Subject().empty()) {
    std::printf("A description was not opened.\n");
  }
  return record;
}

/// Prints how many bytes each of the objects holds that `make` gives for the numbers of all
/// records.
template <class Make>
void MemoryRow(const char* name, Make make) {
  std::vector<decltype(make(0))> objects;
  objects.reserve(kRecords);
  make(0);  // what is made once for all
  const size_t before = HeapBytes();
  for (int i = 0; i < kRecords; ++i) {
    objects.push_back(make(i));
  }
  std::printf("%-58s %9u bytes\n", name, static_cast<unsigned>((HeapBytes() - before) / kRecords));
}

/// An index of files in one section, of 10 MB.
std::string MakeIndex() {
  std::string text = "[FilesToModules]\r\n";
  for (int i = 0; text.size() < 10'000'000; ++i) {
    text += "file" + std::to_string(i) + ".dll=0:Filters.3D72D161_A763_4DD3_85DC_E7D8D172CD5D\r\n";
  }
  return text;
}

void Row(const char* name, double time, double baseline) {
  std::printf("%-58s %9.1f ms %7.2f\n", name, time, time / baseline);
}

void MeasureRecords(IClassFactory* factory) {
  const Description description = MakeDescription();
  CScratch scratch;
  for (int i = 0; i < kRecords; ++i) {
    scratch.Add(NameOf(i) + L".ini", description.text);
  }
  size_t platformLength = 0;
  size_t length = 0;
  const double baseline = MedianMilliseconds(
      [&] { platformLength = ReadWithThePlatform(scratch.Files(), description.places); });
  const double time = MedianMilliseconds(
      [&] { length = ReadRecords(factory, scratch.Files(), description.places); });
  std::printf("1,000 gallery descriptions of %u keys and %u bytes\n",
              static_cast<unsigned>(description.places.size()),
              static_cast<unsigned>(description.text.size()));
  Row("baseline: GetPrivateProfileStringW, each key", baseline, baseline);
  Row("reader, each key from the reader to its value", time, baseline);
  ::SetEnvironmentVariableW(L"QM_GALLERY_ROOT", scratch.Root().c_str());
  MemoryRow("memory of one loaded reader",
            [&](int i) { return Load(factory, scratch.Files()[i]); });
  MemoryRow("memory of one gallery record, its description open", MakeGalleryRecord);
  MemoryRow("memory of one module record, filled from the gallery", MakeModuleRecord);
  if (length != platformLength) {
    std::printf("The two did not read the same.\n");
  }
}

void MeasureIndex(IClassFactory* factory) {
  CScratch scratch;
  const std::string text = MakeIndex();
  const CWideString& path = scratch.Add(L"Index.ini", text);
  const double load = MedianMilliseconds([&] { Load(factory, path); });
  std::printf("An index file of 10 MB in one section\n");
  std::printf("%-58s %9.1f ms %7.0f MB/s\n", "loaded", load,
              static_cast<double>(text.size()) / 1000.0 / load);
  const CUniqueBstr section(AllocBstr(L"FilesToModules"));
  const CUniqueBstr name(AllocBstr(L"FILE4711.DLL"));
  const double first =
      MedianMilliseconds([&] { ReadKey(Load(factory, path).Get(), section.Get(), name.Get()); });
  std::printf("%-58s %9.1f ms\n", "loaded, and one key found by name", first);
}

}  // namespace

int main() {
  const HRESULT hr = RunAtBoundary(GUID_NULL, [] {
    const CComPtr<IClassFactory> factory = ReaderFactory();
    MeasureRecords(factory.Get());
    MeasureIndex(factory.Get());
    return S_OK;
  });
  return FAILED(hr) ? 1 : 0;
}
