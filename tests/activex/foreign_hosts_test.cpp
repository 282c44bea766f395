// The control in containers of the system's: the ATL host window and the script host.
#include "activex/picture.h"
#include "activex/server.h"
#include "platform/system_colours.h"

namespace ocx_test {
namespace {

// --- AtlAxWin100 ------------------------------------------------------------------------------------------

class AtlHost : public ::testing::Test {
 protected:
  void SetUp() override {
    Server::Get();
    library_ = LoadLibraryW(L"atl100.dll");
    if (!library_) GTEST_SKIP() << "the system has no atl100.dll";
    // Registers the window class, which works once a program.
    static const bool initialised = Entry<BOOL WINAPI()>("AtlAxWinInit")() != FALSE;
    ASSERT_TRUE(initialised);
    parent_ =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
    ShowWindow(parent_, SW_SHOWNOACTIVATE);
    host_ = CreateWindowExW(0, L"AtlAxWin100", L"", WS_CHILD | WS_VISIBLE, 20, 10, 180, 60, parent_, nullptr,
                            nullptr, nullptr);
    ASSERT_TRUE(host_);
  }
  void TearDown() override {
    if (parent_) DestroyWindow(parent_);
    PumpMessages();
    EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  }

  template <typename Function>
  Function* Entry(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library_, name)));
  }

  // The host takes a control that has been started off.
  HRESULT Attach(IUnknown* control) {
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
    ComPtr<IUnknown> container;
    return Entry<HRESULT WINAPI(IUnknown*, HWND, IUnknown**)>("AtlAxAttachControl")(control, host_,
                                                                                    container.GetAddressOf());
  }

  HMODULE library_ = nullptr;
  HWND parent_ = nullptr, host_ = nullptr;
};

TEST_F(AtlHost, ShowsTheControl) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const HWND window = GetWindow(host_, GW_CHILD);
  ASSERT_TRUE(window);
  EXPECT_TRUE(IsWindowVisible(window));
  const auto object = As<IDispatch>(control);
  EXPECT_EQ(static_cast<long>(reinterpret_cast<LONG_PTR>(window)), GetNumber(object.Get(), L"hwnd"));
  PutNumber(object.Get(), L"BackColor", 0x0000FF);
  PutNumber(object.Get(), L"ForeColor", 0x00FFFF);
  PutText(object.Get(), L"Caption", L"<b>hosted</b>");
  const HDC dc = GetDC(window);
  EXPECT_EQ(0x0000FFu, GetPixel(dc, 170, 55));
  int text = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 60; ++x) text += GetPixel(dc, x, y) == 0x00FFFF;
  EXPECT_GT(text, 20);
  ReleaseDC(window, dc);
}

TEST_F(AtlHost, SizesTheControlWithItsWindow) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  MoveWindow(host_, 0, 0, 222, 111, TRUE);
  RECT client = {};
  GetClientRect(GetWindow(host_, GW_CHILD), &client);
  EXPECT_EQ(222, client.right);
  EXPECT_EQ(111, client.bottom);
}

TEST_F(AtlHost, AutoSizeChangesTheWindowThoughTheHostIgnoresTheWish) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const auto object = As<IDispatch>(control);
  PutByName(object.Get(), L"WordWrap", Variant::Bool(false));
  PutText(object.Get(), L"Caption", L"W");
  PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
  RECT client = {};
  GetClientRect(GetWindow(host_, GW_CHILD), &client);
  EXPECT_LT(client.right, 60);
}

// The host window draws nothing, and gives neither colours nor the members that forms have.
TEST_F(AtlHost, ATransparentControlShowsWhatStandsBehindTheHostWindow) {
  SetWindowLongPtrW(parent_, GWL_STYLE, WS_POPUP | WS_VISIBLE | SS_GRAYRECT);
  RedrawWindow(parent_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  PumpMessages();
  const HDC dc = GetDCEx(parent_, nullptr, DCX_CACHE);
  Picture without(180, 60), with(180, 60);
  BitBlt(without.Dc(), 0, 0, 180, 60, dc, 20, 10, marklet::SRCCOPY);
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const auto object = As<IDispatch>(control);
  PutNumber(object.Get(), L"ForeColor", 0x0000FF);
  PutText(object.Get(), L"Caption", L"<b>hosted</b>");
  PutNumber(object.Get(), L"BackStyle", 0);
  BitBlt(with.Dc(), 0, 0, 180, 60, dc, 20, 10, marklet::SRCCOPY);
  ReleaseDC(parent_, dc);
  EXPECT_NE(GetSysColor(marklet::COLOR_BTNFACE), without.At(150, 50))
      << "which is what it shows where nobody draws";
  EXPECT_GT(with.Count(0xFF0000), 20);
  for (int y = 0; y < 60; ++y)
    for (int x = 0; x < 180; ++x)
      EXPECT_TRUE(with.At(x, y) == 0xFF0000 || with.At(x, y) == without.At(x, y)) << x << "," << y;
}

TEST_F(AtlHost, GoesWithItsWindow) {
  ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const auto object = As<IDispatch>(control);
  DestroyWindow(host_);
  PutText(object.Get(), L"Caption", L"still here");
  EXPECT_EQ(L"still here", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(0, GetNumber(object.Get(), L"hwnd"));
}

// --- Scripts ----------------------------------------------------------------------------------------------

// Runs a script of ours with the script host and gives what it printed. A script prints "ok" last.
std::string RunScript(const std::wstring& name) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr, write = nullptr;
  CreatePipe(&read, &write, &inherited, 0);
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = start.hStdError = write;
  std::wstring command = L"cscript.exe //nologo \"" + ScriptsPath() + L"\\" + name + L"\"";
  PROCESS_INFORMATION process = {};
  std::string output;
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
    output = "cscript could not be started";
  CloseHandle(write);
  char buffer[512];
  DWORD count = 0;
  while (ReadFile(read, buffer, sizeof buffer, &count, nullptr) && count) output.append(buffer, count);
  CloseHandle(read);
  if (!process.hProcess) return output;
  WaitForSingleObject(process.hProcess, 60000);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  std::erase(output, '\r');
  return output;
}

class Scripts : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, Server::Get().Register()); }
  void TearDown() override { Server::Get().Unregister(); }
};

TEST_F(Scripts, VBScriptSetsAndReadsEveryProperty) { EXPECT_EQ("ok\n", RunScript(L"properties.vbs")); }
TEST_F(Scripts, VBScriptUsesFonts) { EXPECT_EQ("ok\n", RunScript(L"fonts.vbs")); }
TEST_F(Scripts, VBScriptSeesErrors) { EXPECT_EQ("ok\n", RunScript(L"errors.vbs")); }
TEST_F(Scripts, JScriptSetsAndReadsProperties) { EXPECT_EQ("ok\n", RunScript(L"properties.js")); }

// --- The script control -----------------------------------------------------------------------------------

class ScriptControl : public ::testing::TestWithParam<const wchar_t*> {
 protected:
  void SetUp() override {
    Server::Get();
    CLSID class_id = {};
    if (FAILED(CLSIDFromProgID(L"MSScriptControl.ScriptControl", &class_id)) ||
        FAILED(
            CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(script_.GetAddressOf()))))
      GTEST_SKIP() << "the system has no msscript.ocx";
    ASSERT_EQ(S_OK, PutByName(script_.Get(), L"Language", Variant(GetParam())));
    control_ = CreateControl();
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control_)->InitNew());
    Variant add[] = {Variant(L"label"), Variant(As<IDispatch>(control_).Get()), Variant::Bool(false)};
    ASSERT_EQ(S_OK, Call(L"AddObject", add, nullptr));
  }
  void TearDown() override {
    script_.Reset();
    control_.Reset();
    EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  }

  template <std::size_t Count>
  HRESULT Call(const wchar_t* method, Variant (&arguments)[Count], VARIANT* result) {
    VARIANT reversed[Count];
    for (std::size_t i = 0; i < Count; ++i) reversed[i] = arguments[Count - 1 - i];
    DISPPARAMS parameters = {reversed, nullptr, Count, 0};
    return script_->Invoke(IdOf(script_.Get(), method), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                           &parameters, result, nullptr, nullptr);
  }
  HRESULT Run(const wchar_t* statement) {
    Variant arguments[] = {Variant(statement)};
    return Call(L"ExecuteStatement", arguments, nullptr);
  }
  std::wstring Eval(const wchar_t* expression) {
    Variant arguments[] = {Variant(expression)}, result;
    EXPECT_EQ(S_OK, Call(L"Eval", arguments, &result));
    return result.Text();
  }

  ComPtr<IDispatch> script_;
  ComPtr<IUnknown> control_;
};

TEST_P(ScriptControl, UsesAControlThatItIsGiven) {
  EXPECT_EQ(S_OK, Run(L"label.Caption = \"<b>given</b>\""));
  EXPECT_EQ(S_OK, Run(L"label.TextEffect = 3"));
  EXPECT_EQ(S_OK, Run(L"label.Font.Bold = true"));
  EXPECT_EQ(L"<b>given</b>", GetText(As<IDispatch>(control_).Get(), L"Caption"));
  EXPECT_EQ(3, GetNumber(As<IDispatch>(control_).Get(), L"TextEffect"));
  EXPECT_EQ(-1, GetNumber(As<IDispatch>(control_).Get(), L"FontBold"));
  EXPECT_EQ(L"<b>given</b>", Eval(L"label.Caption"));
}

TEST_P(ScriptControl, SeesAnError) {
  EXPECT_NE(S_OK, Run(L"label.ForeColor = \"red\""));
  EXPECT_NE(S_OK, Run(L"label.Nonsense()"));
  EXPECT_EQ(S_OK, Run(L"label.Caption = \"still there\""));
}

INSTANTIATE_TEST_SUITE_P(Languages, ScriptControl, ::testing::Values(L"VBScript", L"JScript"));

}  // namespace
}  // namespace ocx_test
