// The dialog base with real windows: each test shows a modal dialog whose set-up
// posts what a user would do (a key, a right click, the caption's help button,
// a click); the help call of the dialog's data records what it was asked.
#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <vector>

#include "dialogs/KYstdButtonColor.h"
#include "dialogs/KYstdUI_Dlg.h"
#include "framework/ResourceModule.h"

namespace {

constexpr UINT kTemplate = 100;
constexpr UINT kEndTest = WM_APP + 1;
constexpr UINT kLaterStep = WM_APP + 2;
constexpr int kTopicButton = 3, kNoTopicButton = 20, kSwatch = 30;

struct HelpCall {
    UINT command;
    DWORD_PTR data;
    DWORD pair[2];
    HWND window;
};
std::vector<HelpCall> g_calls;

BOOL RecordHelp(UINT command, DWORD_PTR data, HWND window, BYTE, BYTE) {
    HelpCall call{command, data, {0, 0}, window};
    if (command == 16 && data) {
        const auto* pair = reinterpret_cast<const DWORD*>(data);
        call.pair[0] = pair[0];
        call.pair[1] = pair[1];
    }
    g_calls.push_back(call);
    return TRUE;
}

// A dialog whose set-up runs the test's steps; kEndTest ends it with OK.
class StepDialog : public KYstdUI_Dlg {
public:
    StepDialog(const KYstdUI_DlgData* data, std::function<void(StepDialog&)> steps)
        : KYstdUI_Dlg({.templateId = kTemplate, .data = data}), m_steps(std::move(steps)) {}
    bool initialized = false;
    LONG_PTR exStyle = 0;
    bool quietHandled = false;
    bool noTopicHandled = true;

    // The pointer over the middle of a control, for the next posted mouse message.
    POINT PointOver(int id) {
        RECT r{};
        ::GetWindowRect(Item(id), &r);
        POINT p{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
        ::SetCursorPos(p.x, p.y);
        return p;
    }
    void End() { ::PostMessageW(m_hwnd, kEndTest, 0, 0); }
    // A step for once the dialog shows, and then the end.
    void Later(std::function<void()> step) {
        m_later = std::move(step);
        ::PostMessageW(m_hwnd, kLaterStep, 0, 0);
    }

protected:
    bool OnInitDialog() override {
        KYstdUI_Dlg::OnInitDialog();
        initialized = true;
        exStyle = ExStyle();
        quietHandled = ShowControlHelp(0xFFFF);
        noTopicHandled = ShowControlHelp(kNoTopicButton);
        m_steps(*this);
        return false;
    }
    bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override {
        if (msg == kEndTest) {
            EndDialog(IDOK);
            return true;
        }
        if (msg == kLaterStep && m_later) {
            m_later();
            End();
            return true;
        }
        return KYstdUI_Dlg::OnDialogMessage(msg, w, l, result);
    }

private:
    std::function<void(StepDialog&)> m_steps;
    std::function<void()> m_later;
};

KYstdUI_DlgData HelpData(UINT kind) {
    return KYstdUI_DlgData{.uHelpCommand = 32849, .uHelpKind = kind, .pfnHelp = RecordHelp, .bHelpOn = TRUE,
                           .uContextMenu = 130};
}

class DialogBase : public ::testing::Test {
protected:
    void SetUp() override { g_calls.clear(); }
};

TEST_F(DialogBase, F1AsksHtmlHelpForTheFocusedControlWithItsTopic) {
    const KYstdUI_DlgData data = HelpData(KYstdUI_DlgData::kHtmlHelp);
    HWND button = nullptr;
    StepDialog dialog(&data, [&](StepDialog& d) {
        button = d.Item(kTopicButton);
        ::SetFocus(button);
        ::PostMessageW(button, WM_KEYDOWN, VK_F1, 0x003B0001);
        d.End();
    });
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_NE(dialog.exStyle & WS_EX_CONTEXTHELP, 0) << "help shows the caption's help button";
    EXPECT_TRUE(dialog.quietHandled) << "a quiet control is handled with nothing shown";
    EXPECT_FALSE(dialog.noTopicHandled) << "a control without a topic is not";
    ASSERT_EQ(g_calls.size(), 1u);
    EXPECT_EQ(g_calls[0].command, 16u);
    EXPECT_EQ(g_calls[0].pair[0], DWORD(kTopicButton));
    EXPECT_EQ(g_calls[0].pair[1], DWORD(0x50000 + kTopicButton));
    EXPECT_EQ(g_calls[0].window, button);
}

TEST_F(DialogBase, ARightClickShowsHtmlHelpAtOnceAndClassicHelpThroughItsOneItemMenu) {
    for (UINT kind : {KYstdUI_DlgData::kHtmlHelp, KYstdUI_DlgData::kWinHelp}) {
        SCOPED_TRACE(kind);
        g_calls.clear();
        const KYstdUI_DlgData data = HelpData(kind);
        StepDialog dialog(&data, [&](StepDialog& d) {
            const POINT at = d.PointOver(kTopicButton);
            POINT client = at;
            ::ScreenToClient(d.Item(kTopicButton), &client);
            ::PostMessageW(d.Item(kTopicButton), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(client.x, client.y));
            d.End();
        });
        ASSERT_EQ(dialog.DoModal(), IDOK);
        ASSERT_EQ(g_calls.size(), 1u);
        if (kind == KYstdUI_DlgData::kHtmlHelp) {
            EXPECT_EQ(g_calls[0].command, 16u);
            EXPECT_EQ(g_calls[0].pair[0], DWORD(kTopicButton));
        } else {
            EXPECT_EQ(g_calls[0].command, 8u) << "classic help: the topic's popup";
            EXPECT_EQ(g_calls[0].data, DWORD_PTR(0x50000 + kTopicButton));
        }
    }
}

TEST_F(DialogBase, TheCaptionsHelpButtonThenAClickAsksForThatControl) {
    const KYstdUI_DlgData data = HelpData(KYstdUI_DlgData::kHtmlHelp);
    StepDialog dialog(&data, [&](StepDialog& d) {
        ::PostMessageW(d.Handle(), WM_SYSCOMMAND, SC_CONTEXTHELP, 0);
        const POINT at = d.PointOver(kTopicButton);
        POINT client = at;
        ::ScreenToClient(d.Handle(), &client);
        ::PostMessageW(d.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.x, client.y));
        d.End();
    });
    ASSERT_EQ(dialog.DoModal(), IDOK);
    ASSERT_EQ(g_calls.size(), 1u);
    EXPECT_EQ(g_calls[0].pair[0], DWORD(kTopicButton));
}

TEST_F(DialogBase, WithoutHelpThereIsNoHelpButtonAndNoHelp) {
    StepDialog dialog(nullptr, [&](StepDialog& d) {
        ::SetFocus(d.Item(kTopicButton));
        ::PostMessageW(d.Item(kTopicButton), WM_KEYDOWN, VK_F1, 0x003B0001);
        d.PointOver(kTopicButton);
        ::PostMessageW(d.Item(kTopicButton), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        d.End();
    });
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.exStyle & WS_EX_CONTEXTHELP, 0);
    EXPECT_FALSE(dialog.quietHandled);
    EXPECT_TRUE(g_calls.empty());
    EXPECT_FALSE(dialog.Data().bHelpOn);
}

TEST_F(DialogBase, ADialogWithoutItsTemplateIsNotShown) {
    KYstdUI_Dlg missing({.templateId = 4711});
    EXPECT_EQ(missing.DoModal(), -1);
    KYstdUI_Dlg base({.templateId = kTemplate});
    EXPECT_EQ(base.HelpIdFromControl(0), 0u);
    EXPECT_EQ(base.HelpIdFromControl(1), 0x50001u);
    EXPECT_EQ(base.HelpIdFromControl(11), 0x5000Bu);
    EXPECT_EQ(base.HelpIdFromControl(12), 0u);
}

TEST_F(DialogBase, TheSwatchPaintsItsColourAndNamesIt) {
    KYstdButtonColor swatch;
    COLORREF painted = CLR_INVALID;
    std::wstring name;
    StepDialog dialog(nullptr, [&](StepDialog& d) {
        ASSERT_TRUE(swatch.AttachTo(d.Handle(), kSwatch));
        swatch.SetColor(RGB(10, 200, 30), true);
        d.Later([&] {
            ::UpdateWindow(swatch.Handle());
            RECT r{};
            ::GetClientRect(swatch.Handle(), &r);
            HDC dc = ::GetDC(swatch.Handle());
            painted = ::GetPixel(dc, r.right / 2, r.bottom / 2);
            ::ReleaseDC(swatch.Handle(), dc);
            name = swatch.GetText();
        });
    });
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(painted, RGB(10, 200, 30));
    EXPECT_EQ(name, L"RGB(10, 200, 30)");
}

}  // namespace
