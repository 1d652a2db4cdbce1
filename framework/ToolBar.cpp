#include "framework/ToolBar.h"

#include <vector>

#include "framework/CmdTarget.h"
#include "framework/CmdUI.h"
#include "framework/ResourceModule.h"

namespace fw {

namespace {
// The layout of a toolbar resource: version, button size, then one command id
// per button, 0 for a gap.
struct ToolBarResource {
    WORD version;
    WORD width;
    WORD height;
    WORD count;
    WORD ids[1];
};
constexpr COLORREF kTransparent = RGB(255, 0, 255);

// A button's state as its update handler sets it.
class ButtonCmdUI : public CmdUI {
public:
    ButtonCmdUI(UINT id, HWND bar) noexcept : CmdUI(id), m_bar(bar) {}
    void Enable(bool on) override {
        CmdUI::Enable(on);
        ::SendMessageW(m_bar, TB_ENABLEBUTTON, m_nID, MAKELPARAM(on ? TRUE : FALSE, 0));
    }
    void SetCheck(int state) override {
        CmdUI::SetCheck(state);
        ::SendMessageW(m_bar, TB_CHECKBUTTON, m_nID, MAKELPARAM(state ? TRUE : FALSE, 0));
    }
    void SetRadio(bool on) override { SetCheck(on ? 1 : 0); }
    void SetText(const wchar_t*) override { m_bHandled = true; }

private:
    HWND m_bar;
};
}  // namespace

bool ToolBar::Create(HWND parent, DWORD style, UINT id) {
    // The low word of style holds the frame's bar bits (where it docks), not the control's.
    const DWORD windowBits = (style & 0xFFFF0000) & ~static_cast<DWORD>(WS_VISIBLE);
    m_hwnd = ::CreateWindowExW(0, TOOLBARCLASSNAMEW, L"", windowBits | WS_CHILD | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS |
                                   CCS_TOP | CCS_NODIVIDER, 0, 0, 0, 0,
                               parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                               ::GetModuleHandleW(nullptr), nullptr);
    if (!m_hwnd) return false;
    Send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    return true;
}

bool ToolBar::LoadToolBar(UINT resourceId) {
    HINSTANCE module = ResourceModule();
    HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(resourceId), MAKEINTRESOURCEW(241));
    HGLOBAL loaded = found ? ::LoadResource(module, found) : nullptr;
    const auto* data = loaded ? static_cast<const ToolBarResource*>(::LockResource(loaded)) : nullptr;
    if (!data || data->version != 1 || data->count == 0) return false;
    ky::UniqueHBitmap bitmap(static_cast<HBITMAP>(::LoadImageW(module, MAKEINTRESOURCEW(resourceId), IMAGE_BITMAP, 0,
                                                               0, LR_CREATEDIBSECTION)));
    if (!bitmap) return false;
    BITMAP info{};
    ::GetObjectW(bitmap.get(), sizeof info, &info);
    const int images = data->width ? info.bmWidth / data->width : 0;
    m_images.reset(::ImageList_Create(data->width, data->height, ILC_COLOR24 | ILC_MASK, images, 0));
    if (!m_images || ::ImageList_AddMasked(m_images.get(), bitmap.get(), kTransparent) < 0) return false;
    Send(TB_SETBITMAPSIZE, 0, MAKELPARAM(data->width, data->height));
    Send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_images.get()));
    std::vector<TBBUTTON> buttons;
    int image = 0;
    for (WORD i = 0; i < data->count; ++i) {
        TBBUTTON button{};
        button.idCommand = data->ids[i];
        button.fsState = TBSTATE_ENABLED;
        button.fsStyle = data->ids[i] ? BTNS_BUTTON : BTNS_SEP;
        button.iBitmap = data->ids[i] ? image++ : 0;
        button.iString = -1;
        buttons.push_back(button);
    }
    if (!Send(TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()))) return false;
    Send(TB_AUTOSIZE);
    return true;
}

void ToolBar::UpdateButtons(CmdTarget& target) {
    const int count = ButtonCount();
    for (int i = 0; i < count; ++i) {
        TBBUTTON button{};
        if (!Send(TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button))) continue;
        if (button.fsStyle & BTNS_SEP) continue;
        ButtonCmdUI ui(static_cast<UINT>(button.idCommand), m_hwnd);
        if (!target.OnCmdMsg(ui.m_nID, &ui)) ui.Enable(false);
    }
}

int ToolBar::Height() const {
    if (!m_hwnd || !IsVisible()) return 0;
    RECT r{};
    ::GetWindowRect(m_hwnd, &r);
    return r.bottom - r.top;
}

}  // namespace fw
