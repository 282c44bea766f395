// What the oldest supported Windows, 7 with service pack 1, exports of what the control may import, by
// library.
#pragma once

#include <string_view>

namespace ocx_test {

struct ExportsOfWindows7 {
  std::string_view library;
  unsigned bits;           // 32 or 64 for what only that Windows has; 0 for both
  std::string_view names;  // between blanks
};

inline constexpr ExportsOfWindows7 kExportsOfWindows7[] = {
    {"advapi32.dll", 0,
     " RegCloseKey RegCreateKeyExW RegDeleteTreeW RegOpenKeyExA RegOpenKeyExW RegQueryInfoKeyW"
     " RegQueryValueExA RegSetValueExW "},
    {"gdi32.dll", 0,
     " BeginPath BitBlt CloseEnhMetaFile CloseMetaFile CopyEnhMetaFileW CreateBitmap"
     " CreateCompatibleDC CreateDIBSection CreateEnhMetaFileW CreateFontIndirectW"
     " CreateMetaFileW CreatePatternBrush CreatePen CreateRectRgn CreateRectRgnIndirect"
     " CreateSolidBrush DeleteDC DeleteEnhMetaFile DeleteMetaFile DeleteObject EndPath"
     " EnumFontFamiliesA EnumFontFamiliesExW ExtTextOutW FlattenPath GdiFlush"
     " GetBitmapDimensionEx GetBkMode GetCharABCWidthsA GetClipBox GetClipRgn"
     " GetCurrentObject GetDeviceCaps GetGraphicsMode GetLayout GetObjectType GetObjectW GetPath GetRandomRgn"
     " GetStockObject GetTextAlign GetTextColor GetTextExtentExPointW GetTextExtentPoint32W"
     " GetTextMetricsW GetWorldTransform IntersectClipRect LineTo LPtoDP ModifyWorldTransform"
     " MoveToEx OffsetRgn OffsetViewportOrgEx PatBlt Polygon PolyPolygon RestoreDC SaveDC"
     " SelectClipRgn SelectObject SetBitmapDimensionEx SetBkColor SetBkMode SetBrushOrgEx"
     " SetDCBrushColor SetLayout SetMapMode SetPolyFillMode SetStretchBltMode SetTextAlign SetTextColor"
     " SetViewportExtEx SetViewportOrgEx SetWindowExtEx SetWindowOrgEx StretchBlt"
     " StretchDIBits TextOutW "},
    {"kernel32.dll", 0,
     " AcquireSRWLockExclusive AcquireSRWLockShared AddVectoredExceptionHandler CloseHandle"
     " CompareStringOrdinal CreateEventA CreateFileW CreateSemaphoreA DeleteCriticalSection"
     " DuplicateHandle EnterCriticalSection FormatMessageA FormatMessageW FreeLibrary"
     " GetCurrentProcess GetCurrentProcessId GetCurrentThread GetCurrentThreadId GetFileSizeEx"
     " GetFileType GetHandleInformation GetLastError GetModuleFileNameW GetModuleHandleA"
     " GetModuleHandleExW GetModuleHandleW GetProcAddress GetProcessAffinityMask"
     " GetSystemDirectoryW GetSystemTimeAsFileTime GetThreadContext GetThreadPriority"
     " GetTickCount GetTickCount64 GetVersionExA GlobalAlloc GlobalFree GlobalLock GlobalSize GlobalUnlock"
     " InitializeCriticalSection IsBadCodePtr IsDBCSLeadByteEx IsDebuggerPresent IsValidLocale"
     " LeaveCriticalSection LoadLibraryA LoadLibraryW LocalFree lstrcmpiW lstrcpynW lstrcpyW"
     " lstrlenW MulDiv MultiByteToWideChar OpenProcess OutputDebugStringA RaiseException"
     " ReadFile ReleaseSemaphore ReleaseSRWLockExclusive ReleaseSRWLockShared"
     " RemoveVectoredExceptionHandler ResetEvent ResumeThread SetEvent SetLastError"
     " SetProcessAffinityMask SetThreadContext SetThreadPriority Sleep SuspendThread TlsAlloc"
     " TlsGetValue TlsSetValue TryEnterCriticalSection VirtualAlloc VirtualFree VirtualProtect"
     " VirtualQuery WaitForMultipleObjects WaitForSingleObject WideCharToMultiByte "},
    {"kernel32.dll", 64,
     " __C_specific_handler RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind "},
    {"msimg32.dll", 0, " AlphaBlend "},
    {"msvcrt.dll", 0,
     " _aligned_free _aligned_malloc _amsg_exit _beginthreadex _close _endthreadex _errno _initterm _lock"
     " _read _strdup _ultoa _unlock abort atoi calloc exit fprintf fputc fputs fputwc free fwprintf fwrite"
     " localeconv longjmp malloc memchr memcmp memcpy memmove memset printf realloc setlocale signal strchr"
     " strcmp strerror strlen strncmp vfprintf wcslen "},
    {"msvcrt.dll", 32, " __mb_cur_max _iob _setjmp3 "},
    {"msvcrt.dll", 64, " ___lc_codepage_func ___mb_cur_max_func __iob_func _setjmp "},
    {"ole32.dll", 0,
     " CoGetClassObject CoTaskMemAlloc CoTaskMemFree CreateDataAdviseHolder CreateErrorInfo"
     " CreateOleAdviseHolder CreateStreamOnHGlobal DoDragDrop RegisterDragDrop"
     " ReleaseStgMedium RevokeDragDrop SetErrorInfo "},
    {"oleaut32.dll", 0,
     " LoadTypeLibEx OleCreateFontIndirect OleCreatePictureIndirect OleCreatePropertyFrame OleLoadPicture "
     "OleTranslateColor"
     " SafeArrayAccessData SafeArrayCreate SafeArrayGetDim SafeArrayGetElemsize SafeArrayGetLBound"
     " SafeArrayGetUBound SafeArrayUnaccessData SysAllocString SysAllocStringLen SysFreeString SysStringLen"
     " VariantChangeType VariantChangeTypeEx VariantClear VariantCopyInd VariantInit "},
    {"user32.dll", 0,
     " BeginPaint CallNextHookEx CallWindowProcA CallWindowProcW CharLowerBuffW CharUpperBuffW"
     " CopyImage CreateAcceleratorTableW CreateDialogIndirectParamW CreateIconIndirect"
     " CreateWindowExA CreateWindowExW DefWindowProcA DefWindowProcW DestroyAcceleratorTable"
     " DestroyIcon DestroyWindow DrawEdge DrawFocusRect DrawFrameControl DrawTextW"
     " EnableWindow EndPaint EnumWindows EqualRect FillRect FindWindowExW"
     " GetActiveWindow GetAncestor"
     " GetAsyncKeyState GetCapture GetClassInfoExW GetClassLongA GetClientRect GetCursorPos"
     " GetDC GetDCEx GetDesktopWindow GetDlgCtrlID GetDlgItem GetFocus GetKeyState"
     " GetNextDlgTabItem GetSysColor GetSysColorBrush GetWindow GetWindowLongW GetWindowRect"
     " GetWindowTextLengthW GetWindowTextW GetWindowThreadProcessId InflateRect IntersectRect"
     " InvalidateRect IsChild IsDialogMessageW IsWindow IsWindowEnabled IsWindowUnicode"
     " IsWindowVisible KillTimer LoadCursorW MapWindowPoints MessageBoxW MonitorFromWindow"
     " MoveWindow OffsetRect PtInRect RedrawWindow RegisterClassExW RegisterClipboardFormatW"
     " ReleaseCapture ReleaseDC ScreenToClient SendMessageW SetCapture SetClassLongA SetCursor"
     " SetFocus SetTimer SetWindowLongW SetWindowPos SetWindowRgn SetWindowsHookExA"
     " SetWindowsHookExW SetWindowTextW ShowWindow UnhookWindowsHookEx UnregisterClassW"
     " VkKeyScanW "},
    {"user32.dll", 32, " GetWindowLongA SetWindowLongA "},
    {"user32.dll", 64, " GetWindowLongPtrA GetWindowLongPtrW SetWindowLongPtrA SetWindowLongPtrW "},
};

}  // namespace ocx_test
