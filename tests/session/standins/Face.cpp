// The skin library face.dll, stood in for: the panel only loads it. When the
// environment names a record file (LP_FACE_RECORD), each process that loads this
// library adds one line there, "loaded=<its command line>", so that a test sees
// who loaded it and how often. Only kernel32 is called here: no other library
// may be loaded under the loader's lock.
#include <windows.h>

#include "foundation/UniqueHandle.h"

namespace {
void RecordLoad() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"LP_FACE_RECORD", path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return;
    ky::UniqueFile file(CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    char line[1024] = "loaded=";
    const int used = lstrlenA(line);
    WideCharToMultiByte(CP_UTF8, 0, GetCommandLineW(), -1, line + used, static_cast<int>(sizeof line) - used - 2,
                        nullptr, nullptr);
    lstrcatA(line, "\n");
    DWORD written = 0;
    WriteFile(file.get(), line, static_cast<DWORD>(lstrlenA(line)), &written, nullptr);
}
}  // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) RecordLoad();
    return TRUE;
}
