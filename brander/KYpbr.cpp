#include "brander/KYpbr.h"

#include <memory>

namespace {
std::unique_ptr<KYpbr> g_brander;

// The brander's resources are linked into the module that holds its code.
HMODULE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&OwnModule), &module);
    return module;
}
}  // namespace

KYpbr* KYpbr::create(int version) {
    if (version != 2) return nullptr;
    if (!g_brander) {
        struct Made : KYpbr {
            explicit Made(HMODULE m) : KYpbr(m) {}
        };
        g_brander = std::make_unique<Made>(OwnModule());
    }
    return g_brander.get();
}

void KYpbr::destroy() { g_brander.reset(); }

HANDLE KYpbr::loadImage(int number, int width, int height, UINT flags) {
    if (number < 0) return nullptr;
    return LoadImageW(m_hModule, MAKEINTRESOURCEW(kImageBase + number), IMAGE_ICON, width, height,
                      flags | LR_SHARED);
}

wchar_t* KYpbr::loadText(int number, wchar_t* buffer, int capacity) {
    if (!buffer || capacity < 1) return buffer;
    buffer[0] = L'\0';
    if (number >= 0) LoadStringW(m_hModule, kTextBase + number, buffer, capacity);
    return buffer;
}
