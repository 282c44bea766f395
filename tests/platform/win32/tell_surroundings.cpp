// Prints what a Windows program sees when the scripts run it. Not part of the build: the scripts' tests
// compile it.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "platform/types.h"
#include "platform/win32/sdk.h"

int wmain(int count, wchar_t** arguments);

static void PrintUtf8(const char* name, const wchar_t* text) {
  char bytes[1024] = "";
  WideCharToMultiByte(marklet::CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr);
  printf("%s=%s\n", name, bytes);
}

int wmain(int count, wchar_t** arguments) {
  if (count > 1 && wcscmp(arguments[1], L"hang") == 0) {
    puts("hanging");
    fflush(stdout);
    Sleep(INFINITE);
  }
  printf("bits=%d\n", static_cast<int>(sizeof(void*) * 8));
  for (int i = 1; i < count; ++i) PrintUtf8("argument", arguments[i]);
  const wchar_t* word = _wgetenv(L"MARKLET_TEST_WORD");
  PrintUtf8("word", word ? word : L"");
  wchar_t folder[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, folder);
  PrintUtf8("folder", wcsrchr(folder, L'\\') + 1);
  char line[100] = "";
  if (!fgets(line, sizeof line, stdin)) return 1;
  line[strcspn(line, "\r\n")] = 0;
  printf("input=%s\n", line);
  HDC dc = GetDC(nullptr);
  printf("dots=%d\n", GetDeviceCaps(dc, LOGPIXELSX));
  HWND window = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99, 99, nullptr,
                              nullptr, nullptr, nullptr);
  printf("window=%d\n", window != nullptr);
  SelectObject(dc, CreateFontW(-11, 0, 0, 0, 400, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma"));
  wchar_t face[LF_FACESIZE];
  GetTextFaceW(dc, LF_FACESIZE, face);
  PrintUtf8("font", face);
  fputs("told\n", stderr);
  return 42;
}
