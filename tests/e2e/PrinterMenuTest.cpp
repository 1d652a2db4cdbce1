// Client printers end to end: the real program in a session of our stand-ins,
// with our KyPrintMon.dll over Wine's spooler and printers of Wine's PostScript
// driver. The printers submenu is read from outside, the printer dialog is
// worked through the driver as a user would.
#include <optional>

#include "printmonitor/PrintMonitorRecords.h"
#include "tests/e2e/ShellFrameFixture.h"
#include "tests/support/SessionStandIns.h"
#include "tests/support/TestPrinters.h"

namespace lptest {
namespace {

constexpr UINT kFirstPrinter = 32788, kLastPrinter = 32817;
constexpr const wchar_t* kDriverName = L"LP E2E Ghostscript PDF";
constexpr int kOk = IDOK, kYes = IDYES;
constexpr const wchar_t* kLimit = L"15000";

struct MenuPrinter {
    UINT id = 0;
    std::wstring text;
    bool enabled = false, checked = false;
};

class ClientPrinters : public ShellFrame {
protected:
    void SetUp() override {
        ShellFrame::SetUp();
        DeleteTree(HKEY_CURRENT_USER, kypm::kClientKey);
        const std::wstring ppd = FindGhostscriptPpd(L"ghostpdf.ppd");
        ASSERT_FALSE(ppd.empty()) << "ghostscript's PPD files are missing (Debian package ghostscript)";
        LP_INSTALL_DRIVER(m_printers, kDriverName, ppd);
    }
    void TearDown() override {
        ShellFrame::TearDown();
        DeleteTree(HKEY_CURRENT_USER, kypm::kClientKey);
    }
    // A session whose client offers client printing.
    void EnterSession() {
        ASSERT_TRUE(m_device.emplace().Install());
        LP_SET_DWORD(HKEY_CURRENT_USER, kypm::kClientKey, L"ClientPrinting", 1);
    }
    // The printer items of the menu bar as the program's update handlers leave them.
    std::vector<MenuPrinter> MenuPrinters() {
        auto frame = m_driver.Run({L"frame", m_pid, L"--menu"});
        EXPECT_EQ(frame.Value(L"menu-read"), L"1") << Narrow(frame.Text());
        std::vector<MenuPrinter> found;
        for (auto& item : frame.Records(L"item")) {
            const UINT id = static_cast<UINT>(std::stoul(item[L"item"]));
            if (id < kFirstPrinter || id > kLastPrinter) continue;
            found.push_back({id, item[L"text"], item[L"enabled"] == L"1", item[L"checked"] == L"1"});
        }
        return found;
    }
    // Waits until the menu lists exactly these printers, in any order.
    std::vector<MenuPrinter> AwaitMenu(std::vector<std::wstring> names) {
        std::sort(names.begin(), names.end());
        std::vector<MenuPrinter> menu;
        for (int look = 0; look < 100; ++look) {
            menu = MenuPrinters();
            std::vector<std::wstring> shown;
            for (const MenuPrinter& item : menu) shown.push_back(item.text);
            std::sort(shown.begin(), shown.end());
            if (shown == names) return menu;
            Sleep(150);
        }
        std::wstring shown;
        for (const MenuPrinter& item : menu) shown += L" \"" + item.text + L"\"";
        ADD_FAILURE() << "the menu never came to the printers asked for; it shows" << Narrow(shown) << Numbers(Rows());
        return menu;
    }
    static const MenuPrinter* Find(const std::vector<MenuPrinter>& menu, const std::wstring& name) {
        for (const MenuPrinter& item : menu)
            if (item.text == name) return &item;
        return nullptr;
    }
    // The dialog of a printer of the menu, posted: the dialog holds the window's thread.
    lpdriver::DriverAnswer OpenPrinterDialog(const MenuPrinter& item) {
        m_driver.Run({L"command", m_pid, std::to_wstring(item.id), L"--post"});
        return m_driver.Run({L"dialog", m_pid, L"--title", item.text + L" Properties", kLimit});
    }
    std::map<int, std::map<std::wstring, std::wstring>> DialogControls(const lpdriver::DriverAnswer& dialog) {
        std::map<int, std::map<std::wstring, std::wstring>> controls;
        for (auto& record : dialog.Records(L"control")) controls[std::stoi(record[L"control"])] = record;
        return controls;
    }
    void Press(const std::wstring& button, const std::wstring& title = L"") {
        std::vector<std::wstring> words = {L"press", m_pid, button};
        if (!title.empty()) words.insert(words.end(), {L"--title", title});
        words.push_back(kLimit);
        auto pressed = m_driver.Run(words);
        ASSERT_EQ(pressed.exitCode, 0u) << Narrow(pressed.Text()) << Numbers(Rows());
    }

    TestPrinters m_printers;
    StandInsOnPath m_path;
    std::optional<SessionDevice> m_device;
};

TEST_F(ClientPrinters, TheMenuListsTheSessionsPrintersAndFollowsThemWithoutARestart) {
    LP_ADD_PRINTER(m_printers, L"LP Alpha", kDriverName);
    LP_ADD_PRINTER(m_printers, L"LP Beta", kDriverName);
    LP_SET_DEFAULT_PRINTER(m_printers, L"LP Beta");
    LP_SET_STRING(HKEY_CURRENT_USER, kypm::kClientKey, L"Fixed", L"LP Alpha\0", REG_MULTI_SZ);
    EnterSession();
    StartPanel();

    auto menu = AwaitMenu({L"LP Alpha", L"LP Beta"});
    const MenuPrinter* alpha = Find(menu, L"LP Alpha");
    const MenuPrinter* beta = Find(menu, L"LP Beta");
    ASSERT_TRUE(alpha && beta);
    EXPECT_TRUE(beta->checked) << "the default printer is checked";
    EXPECT_TRUE(beta->enabled);
    EXPECT_FALSE(alpha->checked);
    EXPECT_FALSE(alpha->enabled) << "a printer the client fixes cannot be opened";

    // Another program adds and removes printers: the session's change reaches the menu.
    ASSERT_TRUE(AddSpooledPrinter(L"LP Gamma", kDriverName, m_printers.OutputFile(L"LP Alpha")));
    AwaitMenu({L"LP Alpha", L"LP Beta", L"LP Gamma"});
    ASSERT_TRUE(DeleteSpooledPrinter(L"LP Gamma"));
    AwaitMenu({L"LP Alpha", L"LP Beta"});
    EXPECT_FALSE(Logged(27105)) << Numbers(Rows());
}

TEST_F(ClientPrinters, ThePrinterDialogSetsTheDefaultPrintsATestPageAndDeletes) {
    LP_ADD_PRINTER(m_printers, L"LP Main", kDriverName);
    LP_ADD_PRINTER(m_printers, L"LP Spare", kDriverName);
    LP_SET_DEFAULT_PRINTER(m_printers, L"LP Main");
    EnterSession();
    SetUnattended(false);
    StartPanel();
    auto menu = AwaitMenu({L"LP Main", L"LP Spare"});

    // The default printer's box is fixed: the focus stands on Preferences.
    auto main = OpenPrinterDialog(*Find(menu, L"LP Main"));
    ASSERT_EQ(main.exitCode, 0u) << Narrow(main.Text()) << Numbers(Rows());
    auto controls = DialogControls(main);
    EXPECT_EQ(controls[1017][L"text"], L"LP Main");
    EXPECT_EQ(controls[1023][L"checked"], L"1");
    EXPECT_EQ(controls[1023][L"enabled"], L"0");
    EXPECT_EQ(controls[1016][L"visible"], L"0") << "a dialog has no list of client names";
    wchar_t folder[MAX_PATH] = {};
    if (GetEnvironmentVariableW(L"LP_SCREENSHOT_DIR", folder, MAX_PATH)) {
        const std::wstring sheet = main.Value(L"hwnd");
        m_driver.Run({L"screenshot", sheet, std::wstring(folder) + L"\\printer-dialog.bmp"});
        // Ctrl+Tab brings the next page forward, as it does for a user.
        for (const wchar_t* page : {L"printer-dialog-driver", L"printer-dialog-port", L"printer-dialog"}) {
            m_driver.Run({L"chord", sheet, L"17+9"});
            Sleep(700);
            if (std::wstring(page) != L"printer-dialog")
                m_driver.Run({L"screenshot", sheet, std::wstring(folder) + L"\\" + page + L".bmp"});
        }
    }
    Press(L"2", L"LP Main Properties");

    // Another printer becomes the default through its box and OK.
    auto spare = OpenPrinterDialog(*Find(menu, L"LP Spare"));
    ASSERT_EQ(spare.exitCode, 0u) << Narrow(spare.Text());
    EXPECT_EQ(DialogControls(spare)[1023][L"checked"], L"0");
    auto checked = m_driver.Run({L"check", m_pid, L"1023", L"1", L"--title", L"LP Spare Properties", kLimit});
    ASSERT_EQ(checked.exitCode, 0u) << Narrow(checked.Text());
    Press(L"1", L"LP Spare Properties");
    EXPECT_EQ(DefaultPrinter(), L"LP Spare") << Numbers(Rows());
    menu = AwaitMenu({L"LP Main", L"LP Spare"});
    for (int look = 0; look < 50 && !Find(menu, L"LP Spare")->checked; ++look) {
        Sleep(100);
        menu = MenuPrinters();
    }
    EXPECT_TRUE(Find(menu, L"LP Spare")->checked);

    // A test page from the dialog comes out of the printer and names it.
    ASSERT_EQ(OpenPrinterDialog(*Find(menu, L"LP Main")).exitCode, 0u);
    Press(L"1021", L"LP Main Properties");
    const std::string page = WaitForPostScript(m_printers.OutputFile(L"LP Main"), 20000);
    EXPECT_NE(PostScriptText(page).find("LP Main"), std::string::npos) << page.substr(0, 400);

    // Delete asks first; Yes removes the printer from the spooler and the menu.
    Press(L"1020", L"LP Main Properties");
    auto question = m_driver.Run({L"msgbox", m_pid, kLimit});
    EXPECT_NE(question.Value(L"text").find(L"LP Main"), std::wstring::npos) << Narrow(question.Text());
    Press(std::to_wstring(kYes));
    auto notice = m_driver.Run({L"msgbox", m_pid, kLimit});
    if (notice.exitCode == 0 && notice.Value(L"caption").find(L"Properties") == std::wstring::npos)
        Press(std::to_wstring(kOk));
    AwaitMenu({L"LP Spare"});
    EXPECT_FALSE(FindSpooledPrinter(L"LP Main").found);
}

TEST_F(ClientPrinters, StandaloneAndLaunchUseStartNoClientPrinters) {
    LP_ADD_PRINTER(m_printers, L"LP Local", kDriverName);
    LP_SET_STRING(HKEY_CURRENT_USER, kypm::kClientKey, L"Printers", L"LP Client Offered\0", REG_MULTI_SZ);
    LP_SET_STRING(HKEY_CURRENT_USER, kypm::kClientKey, L"Driver", kDriverName);
    LP_SET_STRING(HKEY_CURRENT_USER, kypm::kClientKey, L"Port", m_printers.OutputFile(L"LP Local"));

    // Standalone: the menu keeps only its own command.
    StartPanel({L"/printers", L"all"});
    Sleep(1500);
    EXPECT_TRUE(MenuPrinters().empty());
    m_driver.Run({L"close", m_pid, L"--all", L"--wait", kFrameLimit});
    m_pid.clear();
    EXPECT_FALSE(FindSpooledPrinter(L"LP Client Offered").found) << "standalone connects no client printer";

    // Launch use in a session: the program starts one program and ends, and the
    // client's printers are not connected.
    EnterSession();
    auto launched = m_driver.Run({L"start", BinDir() + L"LaunchPanel.exe", L"--wait", L"30000", L"--", L"/printers", L"all",
                                  L"/launch", L"Beta Tool"});
    EXPECT_EQ(launched.Value(L"exit"), L"0") << Narrow(launched.Text()) << Numbers(Rows());
    EXPECT_FALSE(FindSpooledPrinter(L"LP Client Offered").found);

    // Shell use in the session with the same option connects them.
    StartPanel({L"/printers", L"all"});
    AwaitMenu({L"LP Local", L"LP Client Offered"});
    DeleteSpooledPrinter(L"LP Client Offered");
}

}  // namespace
}  // namespace lptest
