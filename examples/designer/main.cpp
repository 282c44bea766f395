// A small designer of forms with Marklet controls.
//
//   designer                        with an empty form
//   designer FILE.mform             with a saved one
//   designer --sample               with a form to look at
//   designer --picture FILE.png     writes a picture of that, with the page for images open, and ends
//
// The control must be registered (regsvr32 zvsMarklet.ocx), or lie beside the program with its manifest.
#include <windows.h>

// commctrl.h needs windows.h first.
#include <commctrl.h>
#include <objbase.h>

#include <cstdio>

#include "designer.h"
#include "examples/shared/program.h"
#include "sample.h"

namespace designer {
namespace {

// Makes what the control's manifest beside the program describes known to this thread, without registration.
class ManifestBeside {
 public:
  ManifestBeside() {
    const std::wstring file = example::BesideProgram(L"zvsMarklet.manifest");
    ACTCTXW request = {};
    request.cbSize = sizeof request;
    request.lpSource = file.c_str();
    context_ = CreateActCtxW(&request);
    if (context_ != INVALID_HANDLE_VALUE) ActivateActCtx(context_, &cookie_);
  }
  ~ManifestBeside() {
    if (context_ == INVALID_HANDLE_VALUE) return;
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  ManifestBeside(const ManifestBeside&) = delete;
  ManifestBeside& operator=(const ManifestBeside&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

std::vector<Tool> Tools() {
  CLSID id;
  if (FAILED(CLSIDFromProgID(L"zvsMarklet.Marklet", &id))) return {};
  return {{id, L"Marklet"}};
}

int Show(const std::vector<std::wstring>& arguments) {
  Prompts prompts;
  const std::vector<Tool> tools = Tools();
  if (tools.empty()) {
    prompts.Tell(nullptr,
                 L"The control isn't here. Register it, with regsvr32 zvsMarklet.ocx, or put it and its "
                 L"manifest beside this program.");
    return 1;
  }
  Designer designer(prompts, tools, {SystemPerInch()}, [] { PostQuitMessage(0); });
  ShowWindow(designer.Window(), SW_SHOWDEFAULT);
  if (!arguments.empty() && arguments[0].starts_with(L"--")) {
    PlaceSample(designer);
    if (arguments.size() == 2) return TakePicture(designer, arguments[1]) ? 0 : 1;
  } else if (!arguments.empty()) {
    designer.Open(arguments[0]);
  }
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    if (designer.Translate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}

bool AreKnown(const std::vector<std::wstring>& arguments) {
  if (arguments.size() == 2) return arguments[0] == L"--picture";
  return arguments.empty() ||
         (arguments.size() == 1 && (arguments[0] == L"--sample" || !arguments[0].starts_with(L"-")));
}

int Run() {
  const std::vector<std::wstring> arguments = example::Arguments();
  if (!AreKnown(arguments)) {
    std::fwprintf(stderr, L"usage: designer [FILE.mform | --sample | --picture FILE.png]\n");
    return 2;
  }
  const ManifestBeside beside;
  try {
    return Show(arguments);
  } catch (HRESULT result) {
    std::fwprintf(stderr, L"designer: failed with 0x%08lX\n", static_cast<unsigned long>(result));
    return 1;
  }
}

}  // namespace
}  // namespace designer

int main() {
  if (FAILED(OleInitialize(nullptr))) return 1;
  InitCommonControls();
  const int result = designer::Run();
  OleUninitialize();
  return result;
}
