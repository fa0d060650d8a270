#include "common/Bstr.h"
#include "tests/support/Answers.h"
#include "tests/support/ServerFixture.h"
#include "tests/support/TestGallery.h"

namespace qm::tests {

namespace {

class RoutesTest : public ServerFixture {
 protected:
  common::ComPtr<IMMFiles> OpenFiles() const {
    common::ComPtr<IMMFiles> files;
    EXPECT_EQ(S_OK, OpenRichModule()->get_Files(files.Put()));
    return files;
  }
};

TEST_F(RoutesTest, BothRoutesReturnAllOfARichModule) {
  const Answers expected{
      {L"Dialogs", L"ZuluDialog / AlphaDialog"},
      {L"CustomActions", L"ZuluAction / AlphaAction"},
      {L"PackageCode", L"{00000000-0000-0000-0000-00000000ABCD}"},
      {L"ModuleID", L"Rich.0A1B"},
      {L"Key", L"Rich.0A1B:1033"},
      {L"Path", m_rich},
      {L"Comments", L"The comments"},
      {L"Subject", L"A rich module"},
      {L"Author", L"The author"},
      {L"Language", L"1033"},
      {L"Version", L"3.1.4"},
      {L"Dependencies", L"Need.A:0;Need.A;;0 / Need.B:1031;Need.B;2.0;1031"},
      {L"Exclusions", L"Avoid.A:-1033;Avoid.A;;7.0;-1033 / Avoid.B:1036;Avoid.B;1.5;1.9;1036"},
      {L"Files",
       L"DirB.0A1B;AlphaFile;815;ALPHA.TXT|alphafile.txt;ZuluFile;1042;2 / "
       L"DirA.0A1B;ZuluFile;4711;ZULU.DLL|zulufile.dll;6.0.1;1040,1041;1"},
      {L"DisplayName", L"A rich module"},
      {L"Present", L"True"},
      {L"NeedsDownload", L"False"},
      {L"DownloadFiles", L""},
      {L"LocalPath", L""},
      {L"HasOrigin", L"False"},
      {L"Origin", L""},
  };
  EXPECT_EQ(expected, ReadModule(OpenRichModule().Get(), Route::VirtualTable));
  EXPECT_EQ(expected, ReadModule(OpenRichModule().Get(), Route::Dispatch));

  const common::ComPtr<IMergeModuleTavik> module = NewModule();
  const common::UniqueBstr path(common::TryAllocateBstr(m_rich));
  EXPECT_EQ(S_OK, CallSlot(module.Get(), 16, path.Get())) << "Open";
  EXPECT_EQ(expected, ReadModule(module.Get(), Route::VirtualTable));
}

TEST_F(RoutesTest, BothRoutesReturnWhatTheGalleryDescribes) {
  const TestGallery gallery(m_folder, "3.1.4.0");
  Settle();  // the type library of the classes describes download files
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  for (const Route route : {Route::VirtualTable, Route::Dispatch}) {
    const Answers answers = ReadModule(module.Get(), route);
    EXPECT_EQ(L"True", answers.at(L"Present"));
    EXPECT_EQ(L"False", answers.at(L"NeedsDownload")) << "the version of the file";
    EXPECT_EQ(TestGallery::kDownloadFiles, answers.at(L"DownloadFiles"));
    EXPECT_EQ(m_rich, answers.at(L"LocalPath"));
  }
  common::ComPtr<IMMGalleryDownloadFilesCaskel> files;
  common::ComPtr<IMMGalleryDownloadFileCaskel> second;
  ASSERT_EQ(S_OK, module->get_DownloadFiles(files.Put()));
  ASSERT_EQ(S_OK, files->get_Item(Variant(L"2"), second.Put())) << "the key is the position";
  EXPECT_EQ(L"two.bin;media2;http://two;22;sum2",
            ReadItem(second.Get(), L"IMMGalleryDownloadFileCaskel", Route::VirtualTable));
  for (const size_t text : {1u, 2u, 3u, 5u}) {
    EXPECT_EQ(E_POINTER, CallSlotWithNull(second.Get(), text, nullptr));
  }
}

/// The outcome of a call through IDispatch or ITypeInfo, as text.
template <class Call>
std::wstring AnswerOf(Call call, bool withResult) {
  Variant result;
  EXCEPINFO exception{};
  UINT badArgument = 99;
  const HRESULT hr = call(withResult ? &result : nullptr, &exception, &badArgument);
  std::wstring answer =
      FailureText(hr, L"") + std::to_wstring(badArgument) + L" " + std::to_wstring(exception.scode);
  if (SUCCEEDED(hr)) {  // after a failure the result is meaningless
    answer += L" type " + std::to_wstring(result.vt);
  }
  if (SUCCEEDED(hr) && result.vt == VT_BSTR) {
    answer.append(L" ").append(common::ViewOf(result.bstrVal));
  } else if (SUCCEEDED(hr) && (result.vt == VT_I4 || result.vt == VT_BOOL)) {
    answer += L" " + std::to_wstring(result.vt == VT_BOOL ? result.boolVal : result.lVal);
  }
  for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) {
    answer.append(L" ").append(common::ViewOf(text));
    ::SysFreeString(text);
  }
  return answer;
}

/// Calls every member of an object in every way that a host may try, and expects the answers of the
/// type information.
void ExpectAnswersOfTypeInfo(IDispatch* object) {
  common::ComPtr<ITypeInfo> info;
  ASSERT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_NEUTRAL, info.Put()));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
  const GUID iid = attributes->guid;
  info->ReleaseTypeAttr(attributes);
  common::ComPtr<IUnknown> interfacePointer;
  ASSERT_EQ(S_OK, object->QueryInterface(iid, reinterpret_cast<void**>(interfacePointer.Put())));

  Variant number(1);
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS arguments[] = {
      {nullptr, nullptr, 0, 0}, {&number, nullptr, 1, 0}, {&number, &named, 1, 1}};
  for (DISPID member = -6; member < 30; ++member) {
    for (const WORD flags : {DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                             DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
      for (DISPPARAMS& parameters : arguments) {
        for (const bool withResult : {true, false}) {
          SCOPED_TRACE(testing::Message()
                       << "member " << member << ", flags " << flags << ", " << parameters.cArgs
                       << " arguments, " << parameters.cNamedArgs << " named");
          EXPECT_EQ(AnswerOf(
                        [&](auto... out) {
                          return info->Invoke(interfacePointer.Get(), member, flags, &parameters,
                                              out...);
                        },
                        withResult),
                    AnswerOf(
                        [&](auto... out) {
                          return object->Invoke(member, IID_NULL, LOCALE_NEUTRAL, flags,
                                                &parameters, out...);
                        },
                        withResult));
        }
      }
    }
    common::UniqueBstr name;
    UINT count = 0;
    if (member >= 0 && SUCCEEDED(info->GetNames(member, name.Put(), 1, &count)) && count == 1) {
      ::CharUpperW(name.Get());
      for (const wchar_t* const suffix : {L"", L"x"}) {
        std::wstring text = std::wstring(common::ViewOf(name.Get())) + suffix;
        wchar_t* names[] = {text.data()};
        DISPID expected = 7, found = 7;
        EXPECT_EQ(info->GetIDsOfNames(names, 1, &expected),
                  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &found));
        EXPECT_EQ(expected, found);
      }
    }
  }
}

TEST_F(RoutesTest, DispatchAnswersAsTheTypeInformationDoes) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  ExpectAnswersOfTypeInfo(module.Get());
  ExpectAnswersOfTypeInfo(NewModule().Get());  // every property of which fails
  const common::ComPtr<IMMFiles> files = OpenFiles();
  ExpectAnswersOfTypeInfo(files.Get());
  common::ComPtr<IMMFile> file;
  ASSERT_EQ(S_OK, files->get_Item(Variant(1), file.Put()));
  ExpectAnswersOfTypeInfo(file.Get());
}

}  // namespace

}  // namespace qm::tests
