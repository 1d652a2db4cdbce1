// The frame's menu: the About item named after the product, the Disconnect item
// offered exactly while the session allows it, and the prompts of the menu bar.
#include <utility>
#include <vector>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "framework/ResourceModule.h"
#include "window/KYjlpFrameMain.h"

namespace {
constexpr UINT kAbout = 32780, kDisconnect = 32820, kExit = 57665, kPrinterPanel = 32786;
constexpr int kPrintersSubmenu = 5;
constexpr UINT kTopMenuFlags = MF_HILITE | MF_MOUSESELECT | MF_POPUP;  // 32912
constexpr UINT kFirstTopPrompt = 24614;

// Calls visit(menu, position, id) for each command item, submenus first-order;
// a false answer stops the walk and is returned.
template <class Visit>
bool WalkMenu(HMENU menu, Visit&& visit) {
    const int count = GetMenuItemCount(menu);
    for (int i = count - 1; i >= 0; --i) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_SUBMENU | MIIM_ID;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) continue;
        if (info.hSubMenu) {
            if (!WalkMenu(info.hSubMenu, visit)) return false;
        } else if (!visit(menu, i, info.wID)) {
            return false;
        }
    }
    return true;
}
}  // namespace

void KYjlpFrameMain::ReadyMenu() {
    KYjlpApp* app = TheApp();
    HMENU menu = Menu();
    if (!app || !app->m_abShow[1] || !menu) return;
    AdjustMenuTexts(menu);
    AddDisconnectItem(menu);
}

void KYjlpFrameMain::AdjustMenuTexts(HMENU menu) {
    KYjlpApp* app = TheApp();
    if (!menu || !app || !app->m_pBrander) return;
    wchar_t company[260] = {}, product[260] = {};
    app->m_pBrander->loadText(2, company, 260);
    app->m_pBrander->loadText(14, product, 260);
    if (!company[0] || !product[0]) return;
    wchar_t text[600] = {};
    _snwprintf(text, 599, fw::ResString(24613).c_str(), company, product);
    WalkMenu(menu, [&](HMENU owner, int position, UINT id) {
        if (id != kAbout) return true;
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_STRING;
        info.dwTypeData = text;
        SetMenuItemInfoW(owner, static_cast<UINT>(position), TRUE, &info);
        return true;
    });
    if (*this) DrawMenuBar(m_hwnd);
}

bool KYjlpFrameMain::AddDisconnectItem(HMENU menu) {
    KYjlpApp* app = TheApp();
    if (!menu || !app || app->m_bStandalone) return true;
    const int available = app->IsDisconnectAvailable(false);
    if (available < 0) return false;
    bool present = false, changed = false;
    // The walk goes from the end of each menu up, so that Exit is met before a
    // Disconnect item above it, and an item deleted does not move those still to come.
    std::vector<std::pair<HMENU, int>> exits;
    WalkMenu(menu, [&](HMENU owner, int position, UINT id) {
        if (id == kDisconnect) {
            if (available == 0) {
                DeleteMenu(owner, static_cast<UINT>(position), MF_BYPOSITION);
                changed = true;
            } else {
                present = true;
            }
        } else if (id == kExit) {
            exits.emplace_back(owner, position);
        }
        return true;
    });
    if (available == 1 && !present) {
        std::wstring text = fw::ResString(24654);
        if (text.empty()) text = L"&Disconnect\tCtrl+D";
        for (auto [owner, position] : exits)
            if (InsertMenuW(owner, static_cast<UINT>(position), MF_BYPOSITION | MF_STRING, kDisconnect, text.c_str()))
                changed = true;
    }
    if (changed && *this) DrawMenuBar(m_hwnd);
    return true;
}

void KYjlpFrameMain::RebuildMenu() {
    if (!*this || !Menu()) return;
    AddDisconnectItem(Menu());
    DrawMenuBar(m_hwnd);
}

// The printers submenu is the sixth item of File, with the add command first.
void KYjlpFrameMain::ReloadPrinterMenu() {
    KYjlpApp* app = TheApp();
    HMENU bar = Menu();
    HMENU file = bar ? GetSubMenu(bar, 0) : nullptr;
    HMENU printers = file ? GetSubMenu(file, kPrintersSubmenu) : nullptr;
    if (!app || !printers || GetMenuItemID(printers, 0) != kPrinterPanel) return;
    app->m_printerCfg.FillPrinterMenu(printers, 1, true);
}

// A menu of the menu bar opened with the mouse: the status bar says what it holds.
void KYjlpFrameMain::OnTopMenuSelect(UINT item, UINT flags, HMENU menu) {
    if (!m_pStatusBar || !m_pStatusBar->IsVisible() || !Menu() || menu != Menu()) return;
    if (flags != kTopMenuFlags || item > 3) return;
    SetMessageText(fw::ResString(kFirstTopPrompt + item));
}
