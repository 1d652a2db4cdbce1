#include "framework/ResourceModule.h"

namespace fw {

namespace {
HMODULE g_resourceModule = nullptr;
}

HMODULE ResourceModule() noexcept {
    return g_resourceModule ? g_resourceModule : GetModuleHandleW(nullptr);
}

void SetResourceModule(HMODULE module) noexcept { g_resourceModule = module; }

bool LoadResString(UINT id, std::wstring& text, HMODULE module) {
    text.clear();
    const wchar_t* data = nullptr;
    // The pointer form gives the whole text however long, without a copy buffer.
    int length = LoadStringW(module ? module : ResourceModule(), id,
                             reinterpret_cast<LPWSTR>(&data), 0);
    if (length <= 0 || !data) return false;
    text.assign(data, static_cast<size_t>(length));
    return true;
}

std::wstring ResString(UINT id, HMODULE module) {
    std::wstring text;
    LoadResString(id, text, module);
    return text;
}

}  // namespace fw
