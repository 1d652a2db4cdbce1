// LaunchPanel.exe in launch use: it starts one program named on its command
// line, waits for it to come up, and ends without a window.
#include <windows.h>

#include "tests/e2e/LaunchUseFixture.h"
#include "tests/support/ChildProcess.h"

namespace lptest {
namespace {

bool HasText(const LogRow& row, const std::wstring& text) {
    for (const std::wstring& t : row.texts)
        if (t == text) return true;
    return false;
}

class LaunchUseCatalogue : public LaunchUse {};

TEST_F(LaunchUseCatalogue, StartsItemByNameWithItsCatalogueSettings) {
    AddApp(L"Target", Target(), L"from catalogue", m_work->path());
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, AppKey(L"Target"), L"StartState", 1);
    RunPanel(L"/launch target");
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].args, L"from catalogue");
    EXPECT_EQ(records[0].dir + L"\\", m_work->path());
    EXPECT_EQ(records[0].show, SW_SHOWMINIMIZED);
    auto started = RowsOf(Rows(), 27540);
    ASSERT_EQ(started.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(HasText(started[0], L"Target"));
}

TEST_F(LaunchUseCatalogue, CommandLineOverridesArgumentsWindowStateAndDirectory) {
    TempDir other;
    AddApp(L"Target", Target(), L"from catalogue", m_work->path());
    std::wstring directory = other.path().substr(0, other.path().size() - 1);  // no \" at the end
    RunPanel(L"/launch Target \"one two\" 2 " + Quoted(directory));
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].args, L"one two");
    EXPECT_EQ(records[0].dir + L"\\", other.path());
    EXPECT_EQ(records[0].show, SW_SHOWMAXIMIZED);
}

TEST_F(LaunchUseCatalogue, UserOverrideOfTheCatalogueApplies) {
    TempDir userDir;
    AddApp(L"Target", Target(), L"for everyone", m_work->path());
    LP_SET_STRING(HKEY_LOCAL_MACHINE, UserOverrideKey(L"Target"), L"CmdLineOptions", L"for this user");
    LP_SET_STRING(HKEY_LOCAL_MACHINE, UserOverrideKey(L"Target"), L"StartDirectory", userDir.path());
    RunPanel(L"/launch Target");
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].args, L"for this user");
    EXPECT_EQ(records[0].dir + L"\\", userDir.path());
}

TEST_F(LaunchUseCatalogue, UnusableStartDirectoryIsToldOnceAndTheLaunchGoesOn) {
    std::wstring missing = *m_work / L"no such folder";
    AddApp(L"Target", Target(), L"", missing);
    RunPanel(L"/launch Target");
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_NE(records[0].dir, missing);
    auto rows = RowsOf(Rows(), 27198);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(HasText(rows[0], missing));
}

TEST_F(LaunchUseCatalogue, MissingTargetIsToldAndNothingStarts) {
    std::wstring missing = *m_work / L"gone.exe";
    AddApp(L"Gone", missing);
    RunPanel(L"/launch Gone");
    EXPECT_TRUE(Records().empty());
    auto rows = Rows();
    auto notFound = RowsOf(rows, 27209);
    ASSERT_EQ(notFound.size(), 1u) << Numbers(rows);
    EXPECT_TRUE(HasText(notFound[0], missing));
    // Left out of the list, the name is then looked for as a program, in vain.
    EXPECT_EQ(RowsOf(rows, 27193).size(), 1u) << Numbers(rows);
}

TEST_F(LaunchUseCatalogue, FolderAsTargetIsRefused) {
    AddApp(L"Folder", m_work->path());
    RunPanel(L"/launch Folder");
    auto rows = Rows();
    auto refused = RowsOf(rows, 27208);
    ASSERT_EQ(refused.size(), 1u) << Numbers(rows);
    EXPECT_EQ(refused[0].texts.at(0), m_work->path());
    EXPECT_TRUE(Records().empty());
}

TEST_F(LaunchUseCatalogue, ProgramThatComesUpLateKeepsThePanelWaiting) {
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", L"3000");
    AddApp(L"Slow", Target());
    RunPanel(L"/launch Slow");
    ASSERT_EQ(Records().size(), 1u);
    EXPECT_GE(m_runMs, 3000u) << "the panel ended before the program was up";
    auto rows = Rows();
    auto started = RowsOf(rows, 27540);
    ASSERT_EQ(started.size(), 1u) << Numbers(rows);
    EXPECT_TRUE(HasText(started[0], L"Slow"));
    EXPECT_TRUE(RowsOf(rows, 27541).empty()) << Numbers(rows);
}

TEST_F(LaunchUseCatalogue, PathsWithBlanksOtherLettersAndVariablesAreFollowed) {
    const std::wstring programs = *m_work / L"Programme für Tests ω";
    const std::wstring workplace = *m_work / L"Arbeit im Ordner ß";
    ASSERT_TRUE(CreateDirectoryW(programs.c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW(workplace.c_str(), nullptr));
    ASSERT_TRUE(CopyFileTo(Target(), programs + L"\\Zielprogramm élan.exe"));
    std::wstring root = m_work->path().substr(0, m_work->path().size() - 1);
    SetEnvironmentVariableW(L"LP_TEST_ROOT", root.c_str());  // the panel inherits it
    AddApp(L"Übersicht Ω", L"%LP_TEST_ROOT%\\Programme für Tests ω\\Zielprogramm élan.exe", L"erste zweite",
           L"%LP_TEST_ROOT%\\Arbeit im Ordner ß");
    RunPanel(L"/launch \"Übersicht Ω\"");
    SetEnvironmentVariableW(L"LP_TEST_ROOT", nullptr);
    auto records = Records();
    ASSERT_EQ(records.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(_wcsicmp(records[0].program.c_str(), (programs + L"\\Zielprogramm élan.exe").c_str()), 0)
        << Narrow(records[0].program);
    EXPECT_EQ(records[0].args, L"erste zweite");
    EXPECT_EQ(_wcsicmp(records[0].dir.c_str(), workplace.c_str()), 0) << Narrow(records[0].dir);
    auto started = RowsOf(Rows(), 27540);
    ASSERT_EQ(started.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(HasText(started[0], L"Übersicht Ω"));
}

class LaunchUseDocument : public LaunchUse {
protected:
    void SetUp() override {
        LaunchUse::SetUp();
        // A document type of our own whose handler is the test program.
        LP_SET_STRING(HKEY_CLASSES_ROOT, L".lptdoc", L"", L"LaunchPanel.TestDocument");
        LP_SET_STRING(HKEY_CLASSES_ROOT, L"LaunchPanel.TestDocument\\shell\\open\\command", L"",
                      Quoted(Target()) + L" \"%1\"");
        m_document = *m_work / L"letter.lptdoc";
        LP_WRITE_FILE(m_document, "a document\r\n");
    }
    void TearDown() override {
        DeleteTree(HKEY_CLASSES_ROOT, L".lptdoc");
        DeleteTree(HKEY_CLASSES_ROOT, L"LaunchPanel.TestDocument");
        LaunchUse::TearDown();
    }
    std::wstring m_document;
};

TEST_F(LaunchUseDocument, OpensThroughItsHandlerWithoutTheParameters) {
    AddApp(L"Letter", m_document, L"not for documents");
    RunPanel(L"/launch Letter");
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_NE(records[0].args.find(L"letter.lptdoc"), std::wstring::npos) << Narrow(records[0].args);
    EXPECT_EQ(records[0].args.find(L"not for documents"), std::wstring::npos);
    auto dropped = RowsOf(Rows(), 27195);
    ASSERT_EQ(dropped.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(HasText(dropped[0], L"not for documents"));
}

TEST_F(LaunchUseDocument, DocumentWithoutAHandlerIsRefused) {
    std::wstring orphan = *m_work / L"orphan.lptnone";
    LP_WRITE_FILE(orphan, "nobody opens this\r\n");
    AddApp(L"Orphan", orphan);
    RunPanel(L"/launch Orphan");
    auto rows = Rows();
    EXPECT_EQ(RowsOf(rows, 27577).size(), 1u) << Numbers(rows);
    EXPECT_TRUE(Records().empty());
}

class LaunchUseByPath : public LaunchUse {};

TEST_F(LaunchUseByPath, NameNotInTheCatalogueIsFoundBySearchPath) {
    AddApp(L"Other", Target());
    RunPanel(L"/launch LaunchTarget \"by path\"");
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(_wcsicmp(records[0].program.c_str(), Target().c_str()), 0) << Narrow(records[0].program);
    EXPECT_EQ(records[0].args, L"by path");
    // The program's own folder is its working directory.
    EXPECT_EQ(_wcsicmp((records[0].dir + L"\\").c_str(), BinDir().c_str()), 0) << Narrow(records[0].dir);
    EXPECT_EQ(records[0].show, SW_SHOWNORMAL);
}

TEST_F(LaunchUseByPath, NameFoundNowhereIsToldWithTheName) {
    RunPanel(L"/launch NoSuchProgramAnywhere");
    auto rows = RowsOf(Rows(), 27193);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_TRUE(HasText(rows[0], L"NoSuchProgramAnywhere"));
}

TEST_F(LaunchUseByPath, ConsoleProgramIsGivenItsTimeAndTold) {
    RunPanel(L"/launch " + Quoted(BinDir() + L"LaunchTargetConsole.exe"));
    ASSERT_EQ(Records().size(), 1u);
    // Its start cannot be watched: the panel gives it five seconds, once, before it ends.
    EXPECT_GE(m_runMs, 5000u);
    // A console program has no input idle state: the wait on it fails at once.
    auto rows = RowsOf(Rows(), 27539);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].ints.at(0), 3);
}

// A program of the same name in the folder the panel was started from, and in
// the system's folder.
class LaunchUseSearch : public LaunchUse {
protected:
    void SetUp() override {
        LaunchUse::SetUp();
        wchar_t system[MAX_PATH] = {};
        GetSystemDirectoryW(system, MAX_PATH);
        m_systemCopy = std::wstring(system) + L"\\" + kName + L".exe";
        ASSERT_TRUE(CopyFileTo(Target(), m_systemCopy));
        ASSERT_TRUE(CopyFileTo(Target(), *m_work / kName + L".exe"));
    }
    void TearDown() override {
        LaunchUse::TearDown();
        DeleteFileW(m_systemCopy.c_str());
    }
    static constexpr const wchar_t* kName = L"lp_searched_tool";
    std::wstring m_systemCopy;
};

TEST_F(LaunchUseSearch, ProgramInTheStartFolderDoesNotShadowTheSystemsOwn) {
    RunPanel(std::wstring(L"/launch ") + kName);  // started in the work folder
    auto records = Records();
    ASSERT_EQ(records.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(_wcsicmp(records[0].program.c_str(), m_systemCopy.c_str()), 0) << Narrow(records[0].program);
}

class LaunchUseNodeManager : public LaunchUse {
protected:
    void SetUp() override {
        LaunchUse::SetUp();
        m_install = std::make_unique<TempDir>();
        for (const wchar_t* file : {L"LaunchPanel.exe", L"lp.dll"})
            ASSERT_TRUE(CopyFileTo(BinDir() + file, m_install->path() + file));
        ASSERT_TRUE(CopyFileTo(Target(), m_install->path() + L"nm.exe"));
    }
    void TearDown() override {
        LaunchUse::TearDown();
        m_install.reset();
    }
    std::unique_ptr<TempDir> m_install;
};

TEST_F(LaunchUseNodeManager, StartsNodeManagerBesideTheProgram) {
    RunPanel(L"/nm", m_install->path());
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(_wcsicmp(records[0].program.c_str(), (m_install->path() + L"nm.exe").c_str()), 0)
        << Narrow(records[0].program);
    EXPECT_EQ(records[0].args, L"");
}

TEST_F(LaunchUseNodeManager, GivesNodeManagerItsArguments) {
    RunPanel(L"/nmargs \"-connect server\"", m_install->path());
    auto records = Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].args, L"-connect server");
}

// A command line that cannot be read ends the program before the monitor
// stands: unattended, nobody is asked, the log has the number and the exit code
// tells the script.
class LaunchUseBadCommandLine : public LaunchUse {
protected:
    void ExpectRefused(const std::wstring& arguments, int number) {
        RunResult run = RunProgram(BinDir() + L"LaunchPanel.exe", arguments, 20000, m_work->path());
        ASSERT_TRUE(run.finished) << Narrow(arguments) << " waited for somebody";
        EXPECT_EQ(run.exitCode, 2u) << "a bad command line";
        EXPECT_EQ(RowsOf(Rows(), number).size(), 1u) << Numbers(Rows());
        EXPECT_TRUE(Records().empty());
    }
};

TEST_F(LaunchUseBadCommandLine, LaunchOptionWithoutPath) { ExpectRefused(L"/launch", 27154); }
TEST_F(LaunchUseBadCommandLine, LaunchAndNodeManagerTogether) { ExpectRefused(L"/nm /launch Target", 27146); }

}  // namespace
}  // namespace lptest
