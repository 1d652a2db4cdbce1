// Command routing and the document template, with real windows.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>
#include <objbase.h>

#include <vector>

#include "framework/DocTemplate.h"
#include "framework/WinApp.h"

namespace {

std::vector<std::string> g_calls;

class TestDoc : public fw::Document {
public:
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override { return Route<TestDoc>(this, kMap, id, ui); }
    void OnShared(UINT) { g_calls.push_back("doc shared"); }
    void OnDocOnly(UINT) { g_calls.push_back("doc only"); }
    bool OnNewDocument() override {
        g_calls.push_back("new document");
        return !g_failNewDocument;
    }
    static inline bool g_failNewDocument = false;

private:
    static constexpr fw::CommandEntry<TestDoc> kMap[] = {
        {100, 100, &TestDoc::OnShared, nullptr},
        {101, 101, &TestDoc::OnDocOnly, nullptr},
    };
};

class TestView : public fw::View {
public:
    bool CreateView(fw::FrameWnd& frame, UINT id) override {
        HWND hwnd = CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10,
                                    frame.Handle(), reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                                    GetModuleHandleW(nullptr), nullptr);
        return hwnd && Subclass(hwnd);
    }
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override { return Route<TestView>(this, kMap, id, ui); }
    void OnShared(UINT) { g_calls.push_back("view shared"); }
    void OnRange(UINT id) { g_calls.push_back("view range " + std::to_string(id)); }
    void OnUpdateRange(fw::CmdUI& ui) { ui.Enable(ui.m_nID % 2 == 0); }
    void OnUpdateOnly(fw::CmdUI& ui) { ui.SetCheck(1); }
    bool PreTranslateMessage(MSG& msg) override {
        if (msg.message != WM_KEYDOWN || msg.wParam != VK_F5) return false;
        g_calls.push_back("view key");
        return true;
    }

private:
    static constexpr fw::CommandEntry<TestView> kMap[] = {
        {100, 100, &TestView::OnShared, nullptr},
        {200, 209, &TestView::OnRange, &TestView::OnUpdateRange},
        {300, 300, nullptr, &TestView::OnUpdateOnly},
    };
};

class Framework : public ::testing::Test {
protected:
    void SetUp() override {
        g_calls.clear();
        TestDoc::g_failNewDocument = false;
        app.m_nCmdShow = SW_HIDE;
        app.AddDocTemplate(std::make_unique<fw::DocTemplate>(fw::DocTemplateArgs{
            .resourceId = 1,
            .makeDocument = [] { return std::make_unique<TestDoc>(); },
            .makeFrame = [] { return std::make_unique<fw::FrameWnd>(); },
            .makeView = [] { return std::make_unique<TestView>(); }}));
    }
    fw::WinApp app{L"Framework test"};
};

TEST_F(Framework, NewFileMakesDocumentFrameAndViewWithTheFrameAsMainWindow) {
    ASSERT_TRUE(app.OnCmdMsg(fw::ID_FILE_NEW, nullptr));
    fw::DocTemplate& t = *app.Templates().front();
    ASSERT_NE(t.GetDocument(), nullptr);
    ASSERT_NE(t.GetFrame(), nullptr);
    EXPECT_EQ(app.MainWindow(), t.GetFrame());
    EXPECT_FALSE(t.GetFrame()->IsVisible()) << "a hidden start shows nothing";
    ASSERT_EQ(t.GetDocument()->Views().size(), 1u);
    EXPECT_EQ(t.GetFrame()->ActiveView()->GetDocument(), t.GetDocument());
    EXPECT_EQ(g_calls, std::vector<std::string>{"new document"});
}

TEST_F(Framework, ADocumentThatCannotBeBuiltLeavesNoWindow) {
    TestDoc::g_failNewDocument = true;
    EXPECT_EQ(app.OpenDocumentFile(nullptr), nullptr);
    EXPECT_EQ(app.MainWindow(), nullptr);
    EXPECT_EQ(app.Templates().front()->GetFrame(), nullptr);
    MSG msg;
    EXPECT_FALSE(PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "no quit for a frame never shown";
    TestDoc::g_failNewDocument = false;
    EXPECT_NE(app.OpenDocumentFile(nullptr), nullptr) << "a later try builds afresh";
    EXPECT_NE(app.MainWindow(), nullptr);
}

TEST_F(Framework, CommandsGoToTheViewFirstThenTheDocument) {
    app.OnFileNew();
    fw::FrameWnd& frame = *app.MainWindow();
    g_calls.clear();
    EXPECT_TRUE(frame.OnCmdMsg(100, nullptr));
    EXPECT_TRUE(frame.OnCmdMsg(101, nullptr));
    EXPECT_TRUE(frame.OnCmdMsg(205, nullptr));
    EXPECT_FALSE(frame.OnCmdMsg(210, nullptr)) << "past the end of the range";
    EXPECT_FALSE(frame.OnCmdMsg(300, nullptr)) << "an update handler alone does not take the command";
    EXPECT_EQ(g_calls, (std::vector<std::string>{"view shared", "doc only", "view range 205"}));
}

TEST_F(Framework, UpdateHandlersDecideAndHandlersAloneEnable) {
    app.OnFileNew();
    fw::FrameWnd& frame = *app.MainWindow();
    fw::CmdUI even(204), odd(205), checked(300), handled(101), unknown(999);
    EXPECT_TRUE(frame.OnCmdMsg(204, &even));
    EXPECT_TRUE(even.m_bEnabled);
    EXPECT_TRUE(frame.OnCmdMsg(205, &odd));
    EXPECT_FALSE(odd.m_bEnabled);
    EXPECT_TRUE(frame.OnCmdMsg(300, &checked));
    EXPECT_EQ(checked.m_nCheck, 1);
    EXPECT_TRUE(frame.OnCmdMsg(101, &handled));
    EXPECT_TRUE(handled.m_bEnabled);
    EXPECT_FALSE(frame.OnCmdMsg(999, &unknown));
    EXPECT_TRUE(g_calls.empty() || g_calls == std::vector<std::string>{"new document"})
        << "updates run no command";
}

TEST_F(Framework, WmCommandThroughThePumpReachesTheView) {
    app.OnFileNew();
    PostMessageW(app.MainWindow()->Handle(), WM_COMMAND, 207, 0);
    g_calls.clear();
    ASSERT_TRUE(app.PumpMessage());
    EXPECT_EQ(g_calls, std::vector<std::string>{"view range 207"});
}

TEST_F(Framework, TheViewSeesItsKeysBeforeTheyAreDispatched) {
    app.OnFileNew();
    HWND view = app.MainWindow()->ActiveView()->Handle();
    g_calls.clear();
    MSG msg{view, WM_KEYDOWN, VK_F5, 0, 0, {}};
    EXPECT_TRUE(app.PreTranslateMessage(msg));
    msg.wParam = VK_F6;
    EXPECT_FALSE(app.PreTranslateMessage(msg)) << "a key nobody wants is dispatched";
    msg.hwnd = app.MainWindow()->Handle();
    msg.wParam = VK_F5;
    EXPECT_FALSE(app.PreTranslateMessage(msg)) << "the frame's own messages do not reach its child";
    EXPECT_EQ(g_calls, std::vector<std::string>{"view key"});
}

TEST_F(Framework, ClosingTheMainWindowQuitsTheLoop) {
    app.OnFileNew();
    PostMessageW(app.MainWindow()->Handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(app.Run(), 0);
    EXPECT_EQ(app.MainWindow(), nullptr);
}

// What the application's thread is to COM while the application starts.
class ApartmentProbe : public fw::WinApp {
public:
    bool InitInstance() override {
        APTTYPEQUALIFIER qualifier{};
        result = CoGetApartmentType(&type, &qualifier);
        return false;
    }
    HRESULT result = E_FAIL;
    APTTYPE type = APTTYPE_CURRENT;
};

// A shell verb may be carried out by a COM handler, which needs an apartment of
// the single-threaded kind on the thread that asks.
TEST(Application, RunsInASingleThreadedApartmentAndLeavesItAtTheEnd) {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier{};
    ASSERT_EQ(CoGetApartmentType(&type, &qualifier), CO_E_NOTINITIALIZED) << "the test starts outside COM";
    ApartmentProbe probe;
    fw::RunApplication(SW_HIDE);
    EXPECT_EQ(probe.result, S_OK);
    EXPECT_TRUE(probe.type == APTTYPE_MAINSTA || probe.type == APTTYPE_STA) << probe.type;
    EXPECT_EQ(CoGetApartmentType(&type, &qualifier), CO_E_NOTINITIALIZED);
}

}  // namespace
