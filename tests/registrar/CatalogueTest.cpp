// The catalogue of published applications: records, expansion, the user, group
// and application overrides, narrowing to one application, and the strictness
// that fails the whole read for one unreadable entry.
#include "tests/registrar/RegistrarTestSupport.h"

using namespace regtest;

namespace {

const HKEY kMachine = HKEY_LOCAL_MACHINE;

std::wstring App(const std::wstring& name) { return std::wstring(lptest::kCatalogueKey) + L"\\" + name; }

std::wstring Expanded(const wchar_t* text) {
    wchar_t out[1024];
    ExpandEnvironmentStringsW(text, out, 1024);
    return out;
}

const KYjutlRegistrar_FILE* Find(const KYjutlRegistrar_FILEList& list, const wchar_t* name) {
    for (const KYjutlRegistrar_FILE* record : list)
        if (std::wstring(record->pszAppName) == name) return record;
    return nullptr;
}

}  // namespace

TEST_F(RegistrarTest, NoCatalogueKeyIsAnEmptyListNotAFailure) {
    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->empty());
    EXPECT_EQ(registrar->m_uError, 0u);
}

TEST_F(RegistrarTest, ApplicationWithExePathOnlyGivesABareRecord) {
    LP_SET_STRING(kMachine, App(L"Notepad"), L"ExePath", L"%SystemRoot%\\notepad.exe", REG_EXPAND_SZ);
    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    ASSERT_EQ(list->size(), 1u);
    const KYjutlRegistrar_FILE& record = *list->front();
    EXPECT_STREQ(record.pszAppName, L"Notepad");
    EXPECT_EQ(std::wstring(record.pszExePath), Expanded(L"%SystemRoot%\\notepad.exe"));
    EXPECT_EQ(record.pszCmdLineOptions, nullptr);
    EXPECT_EQ(record.pszStartDirectory, nullptr);
    EXPECT_EQ(record.pszIconPath, nullptr);
    EXPECT_EQ(record.iIconIndex, 0);
    EXPECT_EQ(record.iStartState, 0);
    ASSERT_NE(record.pszFileType, nullptr);
    EXPECT_NE(std::wstring(record.pszFileType), L"") << "the class registry knows .exe";
}

TEST_F(RegistrarTest, OptionalValuesAreReadExpandedAndChecked) {
    LP_SET_STRING(kMachine, App(L"Tool"), L"ExePath", L"C:\\tools\\tool.exe");
    LP_SET_STRING(kMachine, App(L"Tool"), L"IconPath", L"%WINDIR%\\tool.ico");
    LP_SET_DWORD(kMachine, App(L"Tool"), L"IconIndex", static_cast<DWORD>(-1));
    LP_SET_DWORD(kMachine, App(L"Tool"), L"StartState", 3);
    LP_SET_STRING(kMachine, App(L"Tool"), L"StartDirectory", L"%TEMP%");
    LP_SET_STRING(kMachine, App(L"Viewer"), L"ExePath", L"C:\\tools\\view.exe");
    LP_SET_DWORD(kMachine, App(L"Viewer"), L"IconIndex", 4);
    LP_SET_DWORD(kMachine, App(L"Viewer"), L"StartState", 2);

    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    ASSERT_EQ(list->size(), 2u);
    const KYjutlRegistrar_FILE* tool = Find(*list, L"Tool");
    const KYjutlRegistrar_FILE* viewer = Find(*list, L"Viewer");
    ASSERT_TRUE(tool && viewer);
    EXPECT_EQ(std::wstring(tool->pszIconPath), Expanded(L"%WINDIR%\\tool.ico"));
    EXPECT_EQ(std::wstring(tool->pszStartDirectory), Expanded(L"%TEMP%"));
    EXPECT_EQ(tool->iIconIndex, 0) << "a negative index counts as 0";
    EXPECT_EQ(tool->iStartState, 0) << "a start state out of range is refused, the entry stays";
    EXPECT_EQ(viewer->iIconIndex, 4);
    EXPECT_EQ(viewer->iStartState, 2);
}

TEST_F(RegistrarTest, UserOverrideBeatsGroupsAndGroupsBeatTheApplication) {
    const std::wstring app = App(L"Office");
    LP_SET_STRING(kMachine, app, L"ExePath", L"C:\\office\\office.exe");
    LP_SET_STRING(kMachine, app, L"CmdLineOptions", L"/app");
    LP_SET_STRING(kMachine, app, L"StartDirectory", L"C:\\app");
    LP_SET_DWORD(kMachine, app, L"StartState", 0);
    LP_SET_STRING(kMachine, app + L"\\Groups\\Corp!Staff", L"CmdLineOptions", L"/group");
    LP_SET_STRING(kMachine, app + L"\\Groups\\Corp!Staff", L"StartDirectory", L"C:\\second");
    LP_SET_DWORD(kMachine, app + L"\\Groups\\Corp!Staff", L"StartState", 1);
    LP_SET_STRING(kMachine, app + L"\\Groups\\BUILTIN!Users", L"StartDirectory", L"%SystemRoot%\\first");
    LP_SET_STRING(kMachine, app + L"\\Users\\TESTDOM!alice", L"CmdLineOptions", L"");
    LP_SET_STRING(kMachine, app + L"\\Users\\TESTDOM!bob", L"StartDirectory", L"C:\\bob");
    m_groups = {L"Nobody!Else", L"BUILTIN!Users", L"Corp!Staff"};

    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    const KYjutlRegistrar_FILE& record = *list->front();
    ASSERT_NE(record.pszCmdLineOptions, nullptr);
    EXPECT_STREQ(record.pszCmdLineOptions, L"") << "an empty user override hides the others";
    EXPECT_EQ(std::wstring(record.pszStartDirectory), Expanded(L"%SystemRoot%\\first"))
        << "the earlier group wins, its value expanded";
    EXPECT_EQ(record.iStartState, 1);

    registrar->m_strUser.clear();  // no user: straight to the groups
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    EXPECT_STREQ(list->front()->pszCmdLineOptions, L"/group");
    m_groups.clear();
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    EXPECT_STREQ(list->front()->pszCmdLineOptions, L"/app");
    EXPECT_STREQ(list->front()->pszStartDirectory, L"C:\\app");
    EXPECT_EQ(list->front()->iStartState, 0);
}

TEST_F(RegistrarTest, OnlyAppStopsAtItsCaseInsensitiveMatch) {
    LP_SET_STRING(kMachine, App(L"Alpha"), L"ExePath", L"C:\\a.exe");
    LP_SET_STRING(kMachine, App(L"Mixed Case App"), L"ExePath", L"C:\\m.exe");
    LP_CREATE_KEY(kMachine, App(L"Zulu"));  // unreadable: no ExePath
    auto registrar = Fresh();
    registrar->m_pszOnlyApp = L"MIXED CASE APP";
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << "the broken entry after the match must not be read";
    ASSERT_EQ(list->size(), 1u);
    EXPECT_STREQ(list->front()->pszAppName, L"Mixed Case App");

    lptest::DeleteTree(kMachine, App(L"Zulu"));
    registrar->m_pszOnlyApp = L"Nothing Published";
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->empty());
    EXPECT_EQ(registrar->m_uError, 0u);
}

TEST_F(RegistrarTest, MissingExePathFailsTheWholeCatalogueAndNamesTheEntryReached) {
    LP_SET_STRING(kMachine, App(L"A First"), L"ExePath", L"C:\\a.exe");
    LP_SET_STRING(kMachine, App(L"B Second"), L"IconPath", L"C:\\b.ico");
    LP_SET_STRING(kMachine, App(L"C Third"), L"ExePath", L"C:\\c.exe");
    auto registrar = Fresh();
    EXPECT_EQ(registrar->ObtainInstalledApps(), nullptr);
    EXPECT_EQ(registrar->m_uError, 39u);
    EXPECT_EQ(registrar->m_uErrorDetail, static_cast<uint32_t>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(registrar->m_iErrorItem, 2);
    EXPECT_EQ(registrar->m_pAppList, nullptr);
    EXPECT_EQ(KYjutlRegistrar::SituationFromError(registrar->m_uError), 27259);

    registrar->m_hInstance = nullptr;
    EXPECT_EQ(registrar->ObtainInstalledApps(), nullptr);
    EXPECT_EQ(registrar->m_uError, 258u);
    EXPECT_EQ(registrar->m_iErrorItem, 0) << "a failure before the first entry names none reached";
}

TEST_F(RegistrarTest, ExePathLongerThanTheBufferIsARefusedEntry) {
    const std::wstring longest = L"C:\\" + Repeat(L'x', 1016) + L".exe";  // 1023 characters
    ASSERT_EQ(longest.size(), 1023u);
    LP_SET_STRING(kMachine, App(L"Long"), L"ExePath", longest);
    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    EXPECT_EQ(std::wstring(list->front()->pszExePath), longest);

    LP_SET_STRING(kMachine, App(L"Long"), L"ExePath", longest + L"e");
    EXPECT_EQ(registrar->ObtainInstalledApps(), nullptr);
    EXPECT_EQ(registrar->m_uError, 39u);
    const std::wstring unterminated = Repeat(L'y', 1024);
    LP_SET_BINARY(kMachine, App(L"Long"), L"ExePath", unterminated.data(), 2048, REG_SZ);
    EXPECT_EQ(registrar->ObtainInstalledApps(), nullptr);
    EXPECT_EQ(registrar->m_uError, 39u);
}

TEST_F(RegistrarTest, TypeTextComesFromTheClassRegistryOrTheFormat) {
    const auto forgetType = [] {
        lptest::DeleteTree(HKEY_CLASSES_ROOT, L".lpdemo");
        lptest::DeleteTree(HKEY_CLASSES_ROOT, L"LaunchPanel.Demo");
    };
    forgetType();
    LP_SET_STRING(HKEY_CLASSES_ROOT, L".lpdemo", L"", L"LaunchPanel.Demo");
    LP_SET_STRING(HKEY_CLASSES_ROOT, L"LaunchPanel.Demo", L"", L"Launch Panel demo plan");
    LP_SET_STRING(kMachine, App(L"Known"), L"ExePath", L"C:\\plans\\week.lpdemo");
    LP_SET_STRING(kMachine, App(L"Odd"), L"ExePath", L"C:\\bin\\tool.zqxw");
    LP_SET_STRING(kMachine, App(L"Bare"), L"ExePath", L"C:\\bin.d\\tool");
    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    forgetType();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    EXPECT_STREQ(Find(*list, L"Known")->pszFileType, L"Launch Panel demo plan");
    EXPECT_STREQ(Find(*list, L"Odd")->pszFileType, L".ZQXW File");
    EXPECT_STREQ(Find(*list, L"Bare")->pszFileType, L"File");
}

// A second reading answers unchanged entries from the first; every kind of change
// made between the two must still show, and an entry's faults must still be told.
TEST_F(RegistrarTest, ASecondReadingShowsEveryChangeSinceTheFirst) {
    LP_SET_STRING(kMachine, App(L"Kept"), L"ExePath", L"C:\\kept.exe");
    LP_SET_STRING(kMachine, App(L"Kept"), L"CmdLineOptions", L"/same");
    LP_SET_STRING(kMachine, App(L"Changed"), L"ExePath", L"C:\\changed.exe");
    LP_SET_DWORD(kMachine, App(L"Changed"), L"IconIndex", 2);
    LP_SET_STRING(kMachine, App(L"Removed"), L"ExePath", L"C:\\removed.exe");
    LP_SET_STRING(kMachine, App(L"Overridden"), L"ExePath", L"C:\\over.exe");
    LP_SET_STRING(kMachine, App(L"Overridden"), L"CmdLineOptions", L"/everyone");
    LP_SET_STRING(kMachine, App(L"Broken Later"), L"ExePath", L"C:\\broken.exe");
    // Entries written just before a reading are read again the next time, whatever
    // their time says: these are old enough to be answered from the first reading.
    Sleep(300);
    m_groups = {L"Corp!Staff"};
    auto registrar = Fresh();
    KYjutlRegistrar_FILEList* list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    ASSERT_EQ(list->size(), 5u);

    LP_SET_STRING(kMachine, App(L"Changed"), L"CmdLineOptions", L"/new");
    LP_SET_DWORD(kMachine, App(L"Changed"), L"IconIndex", 7);
    lptest::DeleteTree(kMachine, App(L"Removed"));
    LP_SET_STRING(kMachine, App(L"Added"), L"ExePath", L"C:\\added.exe");
    LP_SET_STRING(kMachine, App(L"Overridden") + L"\\Groups\\Corp!Staff", L"CmdLineOptions", L"/staff");
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    ASSERT_EQ(list->size(), 5u);
    EXPECT_EQ(Find(*list, L"Removed"), nullptr);
    ASSERT_NE(Find(*list, L"Added"), nullptr);
    EXPECT_STREQ(Find(*list, L"Kept")->pszCmdLineOptions, L"/same");
    EXPECT_STREQ(Find(*list, L"Kept")->pszExePath, L"C:\\kept.exe");
    EXPECT_STREQ(Find(*list, L"Changed")->pszCmdLineOptions, L"/new");
    EXPECT_EQ(Find(*list, L"Changed")->iIconIndex, 7);
    EXPECT_STREQ(Find(*list, L"Overridden")->pszCmdLineOptions, L"/staff") << "a new group override";
    ASSERT_NE(Find(*list, L"Kept")->pszFileType, nullptr) << "unchanged entries are named as before";

    // A later change inside an override that existed already: that key's own time moves, not the entry's.
    Sleep(300);
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    LP_SET_STRING(kMachine, App(L"Overridden") + L"\\Groups\\Corp!Staff", L"CmdLineOptions", L"/staff2");
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr);
    EXPECT_STREQ(Find(*list, L"Overridden")->pszCmdLineOptions, L"/staff2");

    // An entry that loses its program fails the reading as in a first one, and
    // the reading after the repair is whole again.
    lptest::DeleteValue(kMachine, App(L"Broken Later"), L"ExePath");
    EXPECT_EQ(registrar->ObtainInstalledApps(), nullptr);
    EXPECT_EQ(registrar->m_uError, 39u);
    LP_SET_STRING(kMachine, App(L"Broken Later"), L"ExePath", L"C:\\mended.exe");
    list = registrar->ObtainInstalledApps();
    ASSERT_NE(list, nullptr) << registrar->m_uError;
    EXPECT_STREQ(Find(*list, L"Broken Later")->pszExePath, L"C:\\mended.exe");
    EXPECT_STREQ(Find(*list, L"Kept")->pszCmdLineOptions, L"/same");
}
