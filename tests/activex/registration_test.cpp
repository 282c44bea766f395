// What registration writes, and that removal leaves nothing.
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "activex/server.h"

namespace ocx_test {
namespace {

using Values = std::map<std::wstring, std::wstring>;  // "key|name" to text

void ReadTree(HKEY root, const std::wstring& path, Values& values) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  values[path] = L"";
  wchar_t name[256], text[512];
  for (DWORD i = 0;; ++i) {
    DWORD name_length = 256, bytes = sizeof text, type = 0;
    if (RegEnumValueW(key, i, name, &name_length, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes) !=
        ERROR_SUCCESS)
      break;
    EXPECT_EQ(static_cast<DWORD>(REG_SZ), type);
    values[path + L"|" + name] = text;
  }
  for (DWORD i = 0;; ++i) {
    DWORD name_length = 256;
    if (RegEnumKeyExW(key, i, name, &name_length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    ReadTree(root, path + L"\\" + name, values);
  }
  RegCloseKey(key);
}

const wchar_t* const kTrees[] = {L"CLSID\\{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}",
                                 L"zvsMarklet.Marklet",
                                 L"TypeLib\\{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}",
                                 L"Interface\\{310A4F20-C1CC-4F0F-90A4-9826804A23C7}",
                                 L"Interface\\{6E85A505-50AA-4694-9B51-64C50D1D2045}",
                                 L"Interface\\{215FB7C9-18D0-42C9-BE97-3A3FA3C703E4}",
                                 L"Interface\\{FBF96550-A8CD-41BE-9064-EBFBF5BB0A63}",
                                 L"CLSID\\{E7111604-8459-4582-BAD0-28915B59AB15}"};

Values ReadRegistration(HKEY hive) {
  HKEY root = nullptr;
  Values values;
  RegCreateKeyExW(hive, L"Software\\Classes", 0, nullptr, 0, KEY_READ, nullptr, &root, nullptr);
  for (const wchar_t* tree : kTrees) ReadTree(root, tree, values);
  RegCloseKey(root);
  return values;
}

void ExpectRegistered(HKEY hive) {
  Values values = ReadRegistration(hive);
  const std::wstring key = kTrees[0], library = kTrees[2];
  const std::wstring system = sizeof(void*) == 8 ? L"win64" : L"win32";
  const auto expect = [&](const std::wstring& at, const std::wstring& text) {
    ASSERT_TRUE(values.count(at)) << "missing: " << std::string(at.begin(), at.end());
    EXPECT_STRCASEEQ(std::string(text.begin(), text.end()).c_str(),
                     std::string(values[at].begin(), values[at].end()).c_str());
  };
  expect(L"zvsMarklet.Marklet\\CLSID|", L"{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}");
  expect(key + L"\\ProgID|", L"zvsMarklet.Marklet");
  expect(key + L"\\InprocServer32|", ServerPath());
  expect(key + L"\\InprocServer32|ThreadingModel", L"Apartment");
  expect(key + L"\\MiscStatus\\1|", L"139665");
  expect(key + L"\\ToolboxBitmap32|", ServerPath() + L", 101");
  expect(key + L"\\TypeLib|", L"{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}");
  expect(key + L"\\Verb\\1|", L"&Properties...,0,2");
  expect(key + L"\\Version|", L"3.0");
  const std::wstring page = kTrees[7];
  expect(page + L"|", L"zvsMarklet.prpImage");
  expect(page + L"\\InprocServer32|", ServerPath());
  expect(page + L"\\InprocServer32|ThreadingModel", L"Apartment");
  expect(page + L"\\TypeLib|", L"{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}");
  EXPECT_TRUE(values.count(key + L"\\Control"));
  EXPECT_TRUE(values.count(key + L"\\Implemented Categories\\{40FC6ED4-2438-11CF-A3DB-080036F12502}"));
  expect(library + L"\\3.0|", L"Zarvo Marklet Control");
  expect(library + L"\\3.0\\0\\" + system + L"|", ServerPath());
  expect(library + L"\\3.0\\409\\" + system + L"|", ServerPath());
  expect(std::wstring(kTrees[3]) + L"|", L"_Marklet");
  expect(std::wstring(kTrees[3]) + L"\\TypeLib|Version", L"3.0");
  expect(std::wstring(kTrees[4]) + L"\\ProxyStubClsid32|", L"{00020420-0000-0000-C000-000000000046}");
}

class Registration : public ::testing::Test {
 protected:
  // Another test, or a build before this one, may have left the server registered.
  void SetUp() override { Clean(); }
  void TearDown() override { Clean(); }
  static void Clean() {
    Server::Get().Unregister();
    Server::Get().Install(false, L"user");
  }
};

TEST_F(Registration, OfTheMachineIsCompleteAndGoesWithoutATrace) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  ExpectRegistered(HKEY_LOCAL_MACHINE);
  EXPECT_TRUE(ReadRegistration(HKEY_CURRENT_USER).empty());
  ASSERT_EQ(S_OK, Server::Get().Unregister());
  EXPECT_TRUE(ReadRegistration(HKEY_LOCAL_MACHINE).empty());
}

TEST_F(Registration, OfTheUserLeavesTheMachineAlone) {
  ASSERT_EQ(S_OK, Server::Get().Install(true, L"user"));
  ExpectRegistered(HKEY_CURRENT_USER);
  EXPECT_TRUE(ReadRegistration(HKEY_LOCAL_MACHINE).empty());
  ASSERT_EQ(S_OK, Server::Get().Install(false, L"USER"));
  EXPECT_TRUE(ReadRegistration(HKEY_CURRENT_USER).empty());
}

TEST_F(Registration, CanBeRepeatedAndRemovedTwice) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  const Values once = ReadRegistration(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(S_OK, Server::Get().Register());
  EXPECT_EQ(once, ReadRegistration(HKEY_LOCAL_MACHINE));
  EXPECT_EQ(S_OK, Server::Get().Unregister());
  EXPECT_EQ(S_OK, Server::Get().Unregister());
}

TEST_F(Registration, KeepsTheTypeLibraryOfTheOtherBitness) {
  const wchar_t* const other = sizeof(void*) == 8 ? L"win32" : L"win64";
  const std::wstring key =
      std::wstring(L"Software\\Classes\\TypeLib\\{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}\\3.0\\0\\") + other;
  HKEY created = nullptr;
  ASSERT_EQ(S_OK, Server::Get().Install(true, L"user"));
  ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                                           &created, nullptr));
  RegCloseKey(created);
  ASSERT_EQ(S_OK, Server::Get().Install(false, L"user"));
  HKEY opened = nullptr;
  EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &opened));
  RegCloseKey(opened);
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib\\{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}");
}

// For the machine: not every system looks into the user's classes as well.
TEST_F(Registration, LetsTheSystemFindClassAndTypeLibrary) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  CLSID class_id = {};
  ASSERT_EQ(S_OK, CLSIDFromProgID(L"zvsMarklet.Marklet", &class_id));
  EXPECT_EQ(kClassId, class_id);
  ComPtr<IDispatch> control;
  EXPECT_EQ(S_OK,
            CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(control.GetAddressOf())));
  ComPtr<IPropertyPage2> page;
  constexpr GUID kPageId = {0xE7111604, 0x8459, 0x4582, {0xBA, 0xD0, 0x28, 0x91, 0x5B, 0x59, 0xAB, 0x15}};
  EXPECT_EQ(S_OK,
            CoCreateInstance(kPageId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(page.GetAddressOf())));
  for (const LCID locale : {LCID{0}, LCID{0x409}, LCID{0x407}}) {
    ComPtr<ITypeLib> library;
    EXPECT_EQ(S_OK, LoadRegTypeLib(kLibraryId, 3, 0, locale, library.GetAddressOf())) << "locale " << locale;
  }
}

// The list is a part of the control: nobody else makes one.
TEST_F(Registration, HasNoClassForTheHiddenListOfImages) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  CLSID class_id = {};
  EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromProgID(L"zvsMarklet.InternalAlphaImageList", &class_id));
}

using VerbRow = std::tuple<LONG, std::wstring, DWORD, DWORD>;

std::vector<VerbRow> Take(IEnumOLEVERB& from) {
  std::vector<VerbRow> rows;
  OLEVERB verb = {};
  while (from.Next(1, &verb, nullptr) == S_OK) {
    rows.emplace_back(verb.lVerb, verb.lpszVerbName, verb.fuFlags, verb.grfAttribs);
    CoTaskMemFree(verb.lpszVerbName);
  }
  return rows;
}

// A container may ask the system for the verbs of an object that it hasn't loaded.
TEST_F(Registration, ListsTheVerbsThatTheControlLists) {
  ASSERT_EQ(S_OK, Server::Get().Register());
  ComPtr<IOleObject> control;
  ASSERT_EQ(S_OK,
            CoCreateInstance(kClassId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(control.GetAddressOf())));
  ComPtr<IEnumOLEVERB> own, registered;
  ASSERT_EQ(S_OK, control->EnumVerbs(own.GetAddressOf()));
  ASSERT_EQ(S_OK, OleRegEnumVerbs(kClassId, registered.GetAddressOf()));
  const std::vector<VerbRow> rows = Take(*own.Get());
  EXPECT_FALSE(rows.empty());
  EXPECT_EQ(rows, Take(*registered.Get()));
  control.Reset();
  ASSERT_EQ(S_OK, Server::Get().Unregister());
  EXPECT_EQ(REGDB_E_CLASSNOTREG, OleRegEnumVerbs(kClassId, registered.GetAddressOf()));
}

TEST_F(Registration, ShowsToolboxesABitmap) {
  const HRSRC bitmap = FindResourceW(Server::Get().Module(), MAKEINTRESOURCEW(101), RT_BITMAP);
  ASSERT_TRUE(bitmap);
  const auto* header =
      static_cast<const BITMAPINFOHEADER*>(LockResource(LoadResource(Server::Get().Module(), bitmap)));
  EXPECT_EQ(16, header->biWidth);
  EXPECT_EQ(16, header->biHeight);
}

}  // namespace
}  // namespace ocx_test
