// The list's context menu: on a row, what can be done with the program; on the
// background, the view, arrangement, drives and the session's printers.
#include "app/KYjlpApp.h"
#include "foundation/UniqueHandle.h"
#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr UINT kContextMenu = 129;
constexpr int kBackgroundMenu = 0, kRowMenu = 1;
constexpr int kPrintersSubmenu = 8;
constexpr UINT kPrinterPanel = 32786;
}  // namespace

void KYjlpViewList::OnContextMenu(int x, int y) {
    POINT client{x, y};
    // From the keyboard the point is -1,-1: the menu shows at the focused row, or at the corner.
    const bool fromKeyboard = x == -1 && y == -1;
    if (!fromKeyboard) ::ScreenToClient(m_hwnd, &client);
    RECT area{};
    GetClientRect(area);
    if (!fromKeyboard && !::PtInRect(&area, client)) return;
    LVHITTESTINFO hit{};
    hit.pt = client;
    int row = fromKeyboard ? ListView_GetNextItem(m_hwnd, -1, LVNI_FOCUSED) : ListView_HitTest(m_hwnd, &hit);
    if (!fromKeyboard && !(hit.flags & LVHT_ONITEM)) row = -1;
    if (fromKeyboard) {
        RECT r{};
        if (row >= 0 && ListView_GetItemRect(m_hwnd, row, &r, LVIR_LABEL)) client = {r.left, r.bottom};
        else client = {area.left + 8, area.top + 8};
    }
    ky::UniqueHMenu menu(::LoadMenuW(fw::ResourceModule(), MAKEINTRESOURCEW(kContextMenu)));
    HMENU popup = menu ? ::GetSubMenu(menu.get(), row >= 0 ? kRowMenu : kBackgroundMenu) : nullptr;
    if (!popup) return;
    auto* app = dynamic_cast<KYjlpApp*>(fw::WinApp::Current());
    HMENU printers = row < 0 ? ::GetSubMenu(popup, kPrintersSubmenu) : nullptr;
    if (app && printers && ::GetMenuItemID(printers, 0) == kPrinterPanel)
        app->m_printerCfg.FillPrinterMenu(printers, 1, true);
    fw::FrameWnd* frame = app ? app->MainWindow() : nullptr;
    POINT screen = client;
    ::ClientToScreen(m_hwnd, &screen);
    ::TrackPopupMenu(popup, TPM_RIGHTBUTTON, screen.x, screen.y, 0, frame ? frame->Handle() : ::GetParent(m_hwnd),
                     nullptr);
}
