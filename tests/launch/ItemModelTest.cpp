// The document's items built from a real catalogue in the registry: what is
// taken over, what is checked, what is left out and told.
#include <cstdlib>

#include "app/KYjlpCmdLineInfo.h"
#include "document/KYjlpDoc.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "tests/app/AppTestSupport.h"
#include "tests/launch/LogRows.h"

namespace lptest {
namespace {

class ItemModel : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        Establish(true);
        m_target = BinDir() + L"LaunchTarget.exe";
        LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kCatalogueKey);
    }
    void AddApp(const std::wstring& name, const std::wstring& path, const std::wstring& options = L"",
                const std::wstring& startDir = L"") {
        std::wstring key = std::wstring(kCatalogueKey) + L"\\" + name;
        LP_SET_STRING(HKEY_LOCAL_MACHINE, key, L"ExePath", path);
        if (!options.empty()) LP_SET_STRING(HKEY_LOCAL_MACHINE, key, L"CmdLineOptions", options);
        if (!startDir.empty()) LP_SET_STRING(HKEY_LOCAL_MACHINE, key, L"StartDirectory", startDir);
    }
    // The catalogue read as launch use reads it, then the document built from it.
    void ReadCatalogue() {
        m_app->m_pRegistrar = new KYjutlRegistrar();
        m_app->m_pRegistrar->m_hInstance = m_app->m_hResourceLibrary.get();
        ASSERT_TRUE(m_app->m_pRegistrar->ObtainInstalledApps()) << m_app->m_pRegistrar->m_uError;
    }
    const LV_TEXTLINE* Item(const wchar_t* name) const {
        POSITION pos = m_doc.FindItemByName(name, nullptr);
        return pos ? m_doc.Items()->GetAt(pos) : nullptr;
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }

    std::wstring m_target;
    KYjlpDoc m_doc;
    TempDir m_files;
};

TEST_F(ItemModel, ListWithoutUserInterfaceKeepsRunnableItemsAndTellsTheRest) {
    m_app->m_bShell = false;
    AddApp(L"Good", m_target, L"-go", m_files.path());
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Good", L"StartState", 2);
    AddApp(L"Missing", m_files / L"missing.exe");
    AddApp(L"Folder", m_files.path());
    AddApp(L"Wandering", m_target, L"", m_files / L"nowhere");
    ReadCatalogue();
    ASSERT_TRUE(m_doc.OnNewDocument());
    EXPECT_EQ(m_app->m_nItemFillMask, kCheckBinary | kCheckStartDir);
    ASSERT_EQ(m_doc.Items()->GetCount(), 2u);

    const LV_TEXTLINE* good = Item(L"GOOD");
    ASSERT_TRUE(good);
    EXPECT_STREQ(good->path, m_target.c_str());
    EXPECT_STREQ(good->parameters, L"-go");
    EXPECT_STREQ(good->startDir, m_files.path().c_str());
    EXPECT_EQ(good->showState, SW_SHOWMAXIMIZED);
    EXPECT_FALSE(good->isDocument);
    // The item owns the record's strings now: the record holds none of them.
    for (const KYjutlRegistrar_FILE* record : *m_app->m_pRegistrar->m_pAppList) {
        EXPECT_FALSE(record->pszAppName);
        EXPECT_FALSE(record->pszExePath);
    }
    // An unusable start directory costs the directory, not the item.
    const LV_TEXTLINE* wandering = Item(L"Wandering");
    ASSERT_TRUE(wandering);
    EXPECT_FALSE(wandering->startDir);

    auto rows = Rows();
    EXPECT_EQ(RowsOf(rows, 27209).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27208).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27198).size(), 1u) << Numbers(rows);
}

TEST_F(ItemModel, DocumentsLoseTheirParametersAndBadIconFilesTheirIcon) {
    m_app->m_bShell = false;
    // A document type of our own, opened by the test program.
    struct DocumentType {
        ~DocumentType() {
            DeleteTree(HKEY_CLASSES_ROOT, L".lptdoc");
            DeleteTree(HKEY_CLASSES_ROOT, L"LaunchPanel.TestDocument");
        }
    } documentType;
    LP_SET_STRING(HKEY_CLASSES_ROOT, L".lptdoc", L"", L"LaunchPanel.TestDocument");
    LP_SET_STRING(HKEY_CLASSES_ROOT, L"LaunchPanel.TestDocument\\shell\\open\\command", L"",
                  L"\"" + m_target + L"\" \"%1\"");
    std::wstring text = m_files / L"notes.lptdoc";
    LP_WRITE_FILE(text, "notes\r\n");
    AddApp(L"Notes", text, L"--ignored");
    AddApp(L"Odd icon", m_target);
    LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Odd icon", L"IconPath", text);
    AddApp(L"Lost icon", m_target);
    LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Lost icon", L"IconPath",
                  m_files / L"lost.ico");
    ReadCatalogue();
    ASSERT_TRUE(m_doc.OnNewDocument());
    const LV_TEXTLINE* notes = Item(L"notes");
    ASSERT_TRUE(notes) << Numbers(Rows());
    EXPECT_TRUE(notes->isDocument);
    EXPECT_FALSE(notes->parameters);
    ASSERT_TRUE(Item(L"Odd icon"));
    EXPECT_FALSE(Item(L"Odd icon")->iconPath);
    ASSERT_TRUE(Item(L"Lost icon"));
    EXPECT_FALSE(Item(L"Lost icon")->iconPath);
    auto rows = Rows();
    ASSERT_EQ(RowsOf(rows, 27195).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27195)[0].texts.at(1), L"--ignored");
    EXPECT_EQ(RowsOf(rows, 27202).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27203).size(), 1u) << Numbers(rows);
}

TEST_F(ItemModel, LaunchUseReadsTheNamedItemOnlyAndKeepsNoHoldOnTheName) {
    AddApp(L"Alpha", m_target);
    AddApp(L"Beta", m_target);
    m_app->m_pCmdLine = new KYjlpCmdLineInfo(*m_app);
    m_app->m_pCmdLine->m_pLaunchInfo = std::make_unique<LAUNCH_INFO>();
    m_app->m_pCmdLine->m_pLaunchInfo->pszName.reset(_wcsdup(L"beta"));
    m_app->m_pRegistrar = new KYjutlRegistrar();
    m_app->m_pRegistrar->m_hInstance = m_app->m_hResourceLibrary.get();
    ASSERT_TRUE(m_app->ReadCatalogueAtStart()) << m_app->m_pRegistrar->m_uError;
    ASSERT_EQ(m_app->m_pRegistrar->m_pAppList->size(), 1u);
    EXPECT_STREQ(m_app->m_pRegistrar->m_pAppList->front()->pszAppName, L"Beta");
    // The launch takes the name over and frees it: the registrar must not point at it.
    EXPECT_EQ(m_app->m_pRegistrar->m_pszOnlyApp, nullptr);
}

TEST_F(ItemModel, FindItemByNameIgnoresCaseAndCountsPlaces) {
    m_app->m_bShell = false;
    AddApp(L"Alpha", m_target);
    AddApp(L"Beta", m_target);
    ReadCatalogue();
    ASSERT_TRUE(m_doc.OnNewDocument());
    int index = 7;
    EXPECT_TRUE(m_doc.FindItemByName(L"bETA", &index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(m_doc.FindItemByName(L"Gamma", &index));
    EXPECT_EQ(index, -1);
    index = 7;
    EXPECT_FALSE(m_doc.FindItemByName(L"  ", &index));
    EXPECT_EQ(index, -1);
}

TEST_F(ItemModel, MakeItemMapsStartModesAndRefusesRecordsWithoutName) {
    KYjutlRegistrar_FILE record{};
    record.pszAppName = _wcsdup(L"Odd state");
    record.pszExePath = _wcsdup(m_target.c_str());
    record.iStartState = 5;
    LV_TEXTLINE* item = m_doc.MakeItem(&record);
    ASSERT_TRUE(item) << Numbers(Rows());
    EXPECT_EQ(item->showState, SW_SHOWNORMAL);
    KYjlpDoc::FreeItem(&item);
    EXPECT_FALSE(item);

    KYjutlRegistrar_FILE blank{};
    blank.pszAppName = _wcsdup(L"   ");
    blank.pszExePath = _wcsdup(m_target.c_str());
    EXPECT_FALSE(m_doc.MakeItem(&blank));
    // A missing record is left standing for the list building to tell.
    EXPECT_FALSE(m_doc.MakeItem(nullptr));
    EXPECT_EQ(m_app->m_pMonitor->getSituationID(), 27258);
    m_app->m_pMonitor->forgetSituation();
    auto rows = Rows();
    EXPECT_EQ(RowsOf(rows, 27194).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27205).size(), 1u) << Numbers(rows);
    EXPECT_TRUE(RowsOf(rows, 27258).empty());
}

TEST_F(ItemModel, ClonesAreDeepAndFactsComeFromTheTarget) {
    m_app->m_bShell = false;
    AddApp(L"Target", m_target, L"-x", m_files.path());
    ReadCatalogue();
    ASSERT_TRUE(m_doc.OnNewDocument());
    KYjlpDoc::ItemListPtr copy;
    ASSERT_TRUE(KYjlpDoc::CloneItemList(&copy, m_doc.Items()));
    ASSERT_EQ(copy->GetCount(), 1u);
    LV_TEXTLINE* clone = copy->GetAt(copy->GetHeadPosition());
    const LV_TEXTLINE* original = Item(L"Target");
    EXPECT_STREQ(clone->parameters, original->parameters);
    EXPECT_NE(clone->parameters, original->parameters);

    m_app->m_nItemFillMask = kCheckFacts;
    ASSERT_TRUE(m_doc.GatherListFacts(copy.get()));
    EXPECT_STREQ(clone->fileName, L"LaunchTarget.exe");
    EXPECT_STREQ(clone->baseName, L"LaunchTarget");
    EXPECT_GT(clone->size, 0u);
    EXPECT_GT(clone->modified, 0);
    // The live list was not touched.
    EXPECT_FALSE(original->fileName);

    // A target that has become a folder fails its facts and stays told to the caller.
    std::free(clone->path);
    clone->path = _wcsdup(m_files.path().c_str());
    EXPECT_FALSE(m_doc.GatherFileFacts(&clone));
    EXPECT_EQ(m_app->m_pMonitor->getSituationID(), 27210);
    m_app->m_pMonitor->forgetSituation();
}

TEST_F(ItemModel, EmptyCatalogueGivesAnEmptyListAndNoCatalogueNoList) {
    m_app->m_bShell = false;
    EXPECT_FALSE(m_doc.OnNewDocument());  // no registrar yet
    EXPECT_FALSE(m_doc.Items());
    m_app->m_pRegistrar = new KYjutlRegistrar();
    m_app->m_pRegistrar->m_pAppList = new KYjutlRegistrar_FILEList();
    ASSERT_TRUE(m_doc.OnNewDocument());
    ASSERT_TRUE(m_doc.Items());
    EXPECT_TRUE(m_doc.Items()->IsEmpty());
    auto rows = Rows();
    EXPECT_EQ(RowsOf(rows, 27728).size(), 1u) << Numbers(rows);
    EXPECT_EQ(RowsOf(rows, 27014).size(), 1u) << Numbers(rows);
}

}  // namespace
}  // namespace lptest
