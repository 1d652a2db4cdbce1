#include "tools/lpdriver/probe/MenuWalker.h"

namespace lpdriver {

namespace {

// How long the frame may take to update one submenu; a frame that hangs does not
// hold the reader beyond it.
constexpr UINT kUpdateAnswerMs = 5000;
// How deep submenus may nest: a menu that contains itself ends here.
constexpr size_t kDeepestPath = 16;

struct ItemFacts {
    MENUITEMINFOW info{};
    std::wstring text;
};

bool ReadItem(HMENU menu, int position, ItemFacts& item) {
    wchar_t text[256] = {};
    item.info.cbSize = sizeof item.info;
    item.info.fMask = MIIM_ID | MIIM_STATE | MIIM_SUBMENU | MIIM_FTYPE | MIIM_STRING;
    item.info.dwTypeData = text;
    item.info.cch = 255;
    if (!::GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &item.info)) return false;
    item.text = text;
    return true;
}

void AskToUpdate(HWND frame, HMENU submenu, int position) {
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutW(frame, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(submenu),
                          MAKELPARAM(position, FALSE), SMTO_NORMAL, kUpdateAnswerMs, &ignored);
}

}  // namespace

std::vector<MenuItemRecord> MenuWalker::Walk(HWND frame, HMENU menu) {
    std::vector<MenuItemRecord> found;
    if (menu) WalkInto(frame, menu, L"", 0, found);
    return found;
}

std::wstring MenuWalker::PlainName(const std::wstring& text) {
    std::wstring plain;
    for (size_t i = 0; i < text.size() && text[i] != L'\t'; ++i) {
        if (text[i] == L'&' && i + 1 < text.size()) ++i;
        else if (text[i] == L'&') break;
        plain += text[i];
    }
    return plain;
}

void MenuWalker::WalkInto(HWND frame, HMENU menu, const std::wstring& path, size_t depth,
                          std::vector<MenuItemRecord>& found) {
    const int count = ::GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        ItemFacts item;
        if (!ReadItem(menu, i, item) || (item.info.fType & MFT_SEPARATOR)) continue;
        const std::wstring itemPath = path + PlainName(item.text);
        if (item.info.hSubMenu) {
            if (depth >= kDeepestPath) continue;
            AskToUpdate(frame, item.info.hSubMenu, i);
            WalkInto(frame, item.info.hSubMenu, itemPath + L"/", depth + 1, found);
            continue;
        }
        found.push_back({item.info.wID, itemPath, item.text, (item.info.fState & MFS_DISABLED) == 0,
                         (item.info.fState & MFS_CHECKED) != 0});
    }
}

}  // namespace lpdriver
