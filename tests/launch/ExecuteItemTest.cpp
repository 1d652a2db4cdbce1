// The shell call of a launch: what counts as started, what is told, and what is
// handed to the launch requests.
#include <windows.h>
#include <shellapi.h>

#include <string>

#include "app/KYjlpItemLaunchRequest.h"
#include "document/LV_TEXTLINE.h"
#include "tests/app/AppTestSupport.h"
#include "tests/launch/LogRows.h"
#include "window/KYjlpViewList.h"

namespace lptest {
namespace {

bool Mentions(const LogRow& row, size_t position, const std::wstring& text) {
    return position < row.texts.size() && row.texts[position].find(text) != std::wstring::npos;
}

// The shell's answers as the test chooses them: among them those that the shell
// of the test's system never gives (it shows a box of its own before it refuses
// a program of the wrong format, and clears the error of every start).
class AnsweringView : public KYjlpViewList {
public:
    BOOL succeed = TRUE;
    INT_PTR code = 33;
    DWORD errorAfterwards = 0;
    int calls = 0;

protected:
    BOOL CallShell(SHELLEXECUTEINFOW& info) override {
        ++calls;
        info.hInstApp = reinterpret_cast<HINSTANCE>(code);
        if (errorAfterwards) SetLastError(errorAfterwards);
        return succeed;
    }
};

class ExecuteItem : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        Establish(true);
        m_app->m_bShell = false;
        SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
        SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    }
    void TearDown() override {
        // A program that was started ends by itself; its request holds its handle.
        for (auto& request : m_app->m_listLaunchRequests)
            if (request && request->hProcess) WaitForSingleObject(request->hProcess.get(), 30000);
        m_app->m_listLaunchRequests.clear();
        FreeTextLine(m_item);
        DeleteTree(HKEY_CLASSES_ROOT, L".cab");
        DeleteTree(HKEY_CLASSES_ROOT, L"LaunchPanel.TestCabinet");
        SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
        AppTest::TearDown();
    }
    // The item as a cleared launch gives it to the shell call.
    INT_PTR Execute(KYjlpViewList& view, const std::wstring& name, const std::wstring& path, bool cleared = true) {
        FreeTextLine(m_item);
        m_item = new LV_TEXTLINE();
        m_item->name = DuplicateText(name.c_str());
        m_item->path = DuplicateText(path.c_str());
        view.m_launchCleared = cleared;
        return view.ExecuteItem(nullptr, m_item);
    }
    INT_PTR Execute(const std::wstring& name, const std::wstring& path, bool cleared = true) {
        return Execute(m_view, name, path, cleared);
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }

    KYjlpViewList m_view;
    LV_TEXTLINE* m_item = nullptr;
    TempDir m_files;
};

TEST_F(ExecuteItem, StartedProgramIsHandedToTheLaunchRequests) {
    INT_PTR code = Execute(L"Target", BinDir() + L"LaunchTarget.exe");
    EXPECT_GT(code, 32);
    ASSERT_EQ(m_app->m_listLaunchRequests.size(), 1u);
    EXPECT_STREQ(m_app->m_listLaunchRequests.front()->pszName.get(), L"Target");
    EXPECT_FALSE(m_view.m_launchCleared) << "a clearance serves one launch";
    EXPECT_TRUE(RowsOf(Rows(), 27535).empty()) << Numbers(Rows());
}

TEST_F(ExecuteItem, ItemThatWasNotClearedIsRefused) {
    AnsweringView view;
    EXPECT_EQ(Execute(view, L"Unchecked", BinDir() + L"LaunchTarget.exe", false), 1);
    EXPECT_EQ(view.calls, 0) << "the shell is not asked";
    auto rows = RowsOf(Rows(), 27536);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), L"Unchecked");
}

TEST_F(ExecuteItem, CabinetWhoseOpenerIsNotFoundCountsAsStartedWithoutARequest) {
    // Cabinets opened by a program that is not there: the shell answers "not found".
    LP_SET_STRING(HKEY_CLASSES_ROOT, L".cab", L"", L"LaunchPanel.TestCabinet");
    LP_SET_STRING(HKEY_CLASSES_ROOT, L"LaunchPanel.TestCabinet\\shell\\open\\command", L"",
                  L"\"" + (m_files / L"gone\\extract.exe") + L"\" \"%1\"");
    std::wstring cabinet = m_files / L"setup.cab";
    LP_WRITE_FILE(cabinet, "MSCF");
    EXPECT_EQ(Execute(L"Setup", cabinet), 42);
    EXPECT_TRUE(m_app->m_listLaunchRequests.empty());
    EXPECT_TRUE(RowsOf(Rows(), 27535).empty()) << Numbers(Rows());
}

TEST_F(ExecuteItem, ProgramOfTheWrongFormatIsToldOnceAndNotAgainByTheCaller) {
    AnsweringView view;
    view.succeed = FALSE;
    view.code = ERROR_BAD_FORMAT;
    view.errorAfterwards = ERROR_BAD_EXE_FORMAT;
    std::wstring broken = m_files / L"broken.exe";
    LP_WRITE_FILE(broken, "this is no program at all\r\n");
    // A code above 32: the caller sees no failure and tells nothing more.
    EXPECT_EQ(Execute(view, L"Broken", broken), ERROR_BAD_EXE_FORMAT);
    auto rows = RowsOf(Rows(), 27535);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), L"Broken");
    EXPECT_TRUE(Mentions(rows[0], 2, L"WLE193")) << Narrow(rows[0].texts.at(2));
}

TEST_F(ExecuteItem, ErrorStandingAfterAStartIsNotTakenForTheShellsAnswer) {
    AnsweringView view;
    view.errorAfterwards = ERROR_FILE_NOT_FOUND;  // what a start may leave behind
    std::wstring cabinet = m_files / L"setup.cab";
    LP_WRITE_FILE(cabinet, "MSCF");
    EXPECT_EQ(Execute(view, L"Setup", cabinet), 33) << "the shell's own code of a start";
    EXPECT_TRUE(RowsOf(Rows(), 27535).empty()) << Numbers(Rows());
}

TEST_F(ExecuteItem, ErrorStandingFromBeforeIsNotTakenForTheShellsAnswer) {
    AnsweringView view;
    view.succeed = FALSE;
    view.code = SE_ERR_NOASSOC;
    std::wstring orphan = m_files / L"orphan.lptnone";
    LP_WRITE_FILE(orphan, "nobody opens this\r\n");
    SetLastError(ERROR_BAD_EXE_FORMAT);
    EXPECT_EQ(Execute(view, L"Orphan", orphan), SE_ERR_NOASSOC) << "an old error must not turn a refusal into a start";
    auto rows = RowsOf(Rows(), 27535);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(Mentions(rows[0], 1, L"WSE31")) << Narrow(rows[0].texts.at(1));
    EXPECT_FALSE(Mentions(rows[0], 2, L"WLE193")) << Narrow(rows[0].texts.at(2));
}

}  // namespace
}  // namespace lptest
