#include "activex/automation/error_report.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "activex/com/guid.h"

namespace marklet::activex {
namespace {

using SystemText = std::array<wchar_t, 256>;

// Empty when the system has no words. A report must not need memory: it may be about the lack of it.
void Describe(HRESULT result, SystemText& text) {
  text[0] = 0;
  DWORD length =
      ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(result), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  while (length > 0 && text[length - 1] <= L' ') text[--length] = 0;
}

constexpr wchar_t kSource[] = L"zvsMarklet.Marklet";

bool IsTheCallersFault(HRESULT result) { return HRESULT_FACILITY(result) == FACILITY_DISPATCH; }

}  // namespace

HRESULT LeaveErrorInfo(HRESULT result) noexcept {
  if (SUCCEEDED(result)) return result;
  ComPtr<ICreateErrorInfo> made;
  ComPtr<IErrorInfo> info;
  if (FAILED(::CreateErrorInfo(made.GetAddressOf())) || FAILED(made.As(&info))) return result;
  SystemText text;
  Describe(result, text);
  std::array<wchar_t, std::size(kSource)> source;
  std::copy(std::begin(kSource), std::end(kSource), source.begin());
  made->SetGUID(kDispatchGuid);
  made->SetSource(source.data());
  made->SetDescription(text.data());
  ::SetErrorInfo(0, info.Get());
  return result;
}

HRESULT ReportInvoke(HRESULT result, EXCEPINFO* exception) noexcept {
  LeaveErrorInfo(result);
  if (SUCCEEDED(result) || IsTheCallersFault(result) || !exception) return result;
  SystemText text;
  Describe(result, text);
  *exception = {};
  exception->scode = result;
  exception->bstrSource = ::SysAllocString(kSource);
  // Without words of the system's the caller is left its own.
  if (text[0] != 0) exception->bstrDescription = ::SysAllocString(text.data());
  return DISP_E_EXCEPTION;
}

HRESULT ErrorInfoFace::InterfaceSupportsErrorInfo(REFIID iid) {
  return iid == kDispatchGuid || iid == __uuidof(IDispatch) ? S_OK : S_FALSE;
}

}  // namespace marklet::activex
