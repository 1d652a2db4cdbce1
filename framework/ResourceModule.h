// The framework's current resource module (stands for AfxGetResourceHandle /
// AfxSetResourceHandle and CString::LoadString): where dialogs, menus and texts
// are looked up. It starts as the program itself and becomes lp.dll once loaded.
#pragma once
#include <windows.h>
#include <string>

namespace fw {

HMODULE ResourceModule() noexcept;
void SetResourceModule(HMODULE module) noexcept;

// The string id from module (the current one by default); false when it is missing.
bool LoadResString(UINT id, std::wstring& text, HMODULE module = nullptr);
// The string, or an empty text when it is missing.
std::wstring ResString(UINT id, HMODULE module = nullptr);

}  // namespace fw
