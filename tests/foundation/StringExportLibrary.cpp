// A resource library that supplies some texts through its own loader export and
// leaves the others to its string table (by returning 0 without an error).
#include <windows.h>

#include <cwchar>

namespace {

int Supply(const wchar_t* text, LPWSTR buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;
    const int length = static_cast<int>(std::wcslen(text));
    const int copied = length < size ? length : size - 1;
    std::wmemcpy(buffer, text, static_cast<size_t>(copied));
    buffer[copied] = L'\0';
    return copied;
}

}  // namespace

extern "C" __declspec(dllexport) int WINAPI KYLoadStringW(UINT id, LPWSTR buffer, int size) {
    switch (id) {
    case 100: return Supply(L"From the export", buffer, size);
    case 200: return Supply(L"Only the export knows this one", buffer, size);
    default: return 0;
    }
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
