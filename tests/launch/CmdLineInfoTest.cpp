// The command line's grammar, with the option words of lp.dll.
#include <initializer_list>
#include <vector>

#include "app/KYjlpCmdLineInfo.h"
#include "foundation/KYstdPgmStat.h"
#include "tests/app/AppTestSupport.h"

namespace lptest {
namespace {

class CmdLine : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        Establish(false);
        m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    }
    void TearDown() override {
        m_info.reset();
        AppTest::TearDown();
    }
    bool Parse(std::initializer_list<const wchar_t*> arguments) {
        m_args.clear();
        for (const wchar_t* a : arguments) m_args.emplace_back(a);
        m_argv.clear();
        for (auto& a : m_args) m_argv.push_back(a.data());
        return m_info->ParseCommandLine(static_cast<int>(m_argv.size()), m_argv.data());
    }
    uint32_t First() const { return m_app->m_pStatus->FirstSituation(); }
    static std::wstring Text(const HeapString& s) { return s ? s.get() : L"(null)"; }

    std::unique_ptr<KYjlpCmdLineInfo> m_info;
    std::vector<std::wstring> m_args;
    std::vector<wchar_t*> m_argv;
};

TEST_F(CmdLine, NoArgumentsIsTheListWindowWithoutLoadingTheWords) {
    EXPECT_TRUE(Parse({L"LaunchPanel.exe"}));
    EXPECT_TRUE(m_info->m_astrKeywords.empty());
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kNew);
    EXPECT_TRUE(m_info->m_bShowSplash);
    EXPECT_FALSE(m_info->m_pLaunchInfo);
}

TEST_F(CmdLine, LaunchOptionTakesPathArgumentsStateAndDirectory) {
    SetEnvironmentVariableW(L"LP_TEST_PLACE", L"C:\\Programs");
    EXPECT_TRUE(Parse({L"lp", L"-LAUNCH", L"%LP_TEST_PLACE%\\tool.exe", L"  -a b", L"2", L"%LP_TEST_PLACE%\\work"}));
    SetEnvironmentVariableW(L"LP_TEST_PLACE", nullptr);
    ASSERT_TRUE(m_info->m_pLaunchInfo);
    const LAUNCH_INFO& info = *m_info->m_pLaunchInfo;
    EXPECT_EQ(Text(info.pszName), L"C:\\Programs\\tool.exe");
    EXPECT_EQ(Text(info.pszArguments), L"-a b");  // leading blanks skipped; a leader is fine here
    EXPECT_EQ(info.nWindowState, 2);
    EXPECT_EQ(Text(info.pszDirectory), L"C:\\Programs\\work");
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kLaunchProgram);
    EXPECT_FALSE(m_info->m_bShowSplash);
}

TEST_F(CmdLine, LaunchPositionsEndAtTheNextOptionAndEmptyArgumentsKeepTheirPlace) {
    EXPECT_TRUE(Parse({L"lp", L"/launch", L"tool", L"", L"1", L"/classic"}));
    const LAUNCH_INFO& info = *m_info->m_pLaunchInfo;
    EXPECT_FALSE(info.pszArguments);
    EXPECT_EQ(info.nWindowState, 1);
    EXPECT_FALSE(info.pszDirectory);
    // Classic and a launch exclude each other: the launch wins.
    EXPECT_FALSE(m_info->m_bClassic);

    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    EXPECT_TRUE(Parse({L"lp", L"/classic", L"/settings", L"/launch", L"tool", L"/nm"}));
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kLaunchProgram);
    EXPECT_EQ(Text(m_info->m_pLaunchInfo->pszArguments), L"/nm");
    EXPECT_FALSE(m_info->m_bPreferenceSetGiven);
}

TEST_F(CmdLine, OptionWordsMatchWithoutCaseAndCharacterForCharacter) {
    EXPECT_TRUE(Parse({L"lp", L"/Launch", L"tool", L"/CLASSIC"}));
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kLaunchProgram);
    // A comparison by the user's language would pass over the soft hyphen (and on
    // a Turkish server would not pair I with i): option words are no language.
    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    EXPECT_FALSE(Parse({L"lp", L"/laun\u00ADch", L"tool"}));
    EXPECT_EQ(First(), 27148u);
    EXPECT_FALSE(m_info->m_pLaunchInfo);
    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    EXPECT_TRUE(Parse({L"lp", L"/printers", L"a\u00ADll"}));
    EXPECT_EQ(m_info->m_nPrinterStartMode, 0) << "an unknown printer mode value";
}

TEST_F(CmdLine, RefusedCommandLinesLeaveTheirNumberAndNoLaunchRecord) {
    struct Case {
        std::initializer_list<const wchar_t*> args;
        uint32_t number;
    };
    const Case cases[] = {
        {{L"lp", L"launch", L"tool"}, 27151},
        {{L"lp", L"/bogus"}, 27148},
        {{L"lp", L"/launch"}, 27154},
        {{L"lp", L"/nm", L"/launch", L"tool"}, 27146},
        {{L"lp", L"/launch", L"tool", L"x", L"1", L"dir", L"/launch", L"other"}, 27147},
        {{L"lp", L"/nm", L"/nm"}, 27147},
        {{L"lp", L"/launch", L"tool", L"x", L"1", L"dir", L"/nmargs", L"y"}, 27146},
        {{L"lp", L"/nmargs"}, 27155},
    };
    for (const Case& c : cases) {
        m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
        EXPECT_FALSE(Parse(c.args)) << c.number;
        EXPECT_EQ(First(), c.number);
        EXPECT_FALSE(m_info->m_pLaunchInfo) << c.number;
    }
}

TEST_F(CmdLine, NodeManagerOptionsNameTheProgramBesideLaunchPanel) {
    EXPECT_TRUE(Parse({L"lp", L"/NM"}));
    ASSERT_TRUE(m_info->m_pLaunchInfo);
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kLaunchNodeManager);
    EXPECT_EQ(Text(m_info->m_pLaunchInfo->pszName), L"Node Manager");
    EXPECT_EQ(_wcsicmp(Text(m_info->m_pLaunchInfo->pszPath).c_str(), (BinDir() + L"nm.exe").c_str()), 0);
    EXPECT_EQ(Text(m_info->m_pLaunchInfo->pszClass), L"Application");
    EXPECT_FALSE(m_info->m_pLaunchInfo->pszArguments);

    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    EXPECT_TRUE(Parse({L"lp", L"/nmargs", L"  /connect host"}));
    EXPECT_EQ(Text(m_info->m_pLaunchInfo->pszArguments), L"/connect host");
}

TEST_F(CmdLine, PrinterModeValuesAndAnUnknownOneThatCostsOnlyTheValue) {
    EXPECT_TRUE(Parse({L"lp", L"/printers", L"ALL"}));
    EXPECT_EQ(m_info->m_nPrinterStartMode, 1);
    EXPECT_TRUE(Parse({L"lp", L"/printers", L"default"}));
    EXPECT_EQ(m_info->m_nPrinterStartMode, 2);
    EXPECT_TRUE(Parse({L"lp", L"/printers", L"sometimes", L"/classic"}));
    EXPECT_EQ(m_info->m_nPrinterStartMode, 0);
    EXPECT_EQ(First(), 0u);
    EXPECT_TRUE(m_info->m_bClassic);
}

TEST_F(CmdLine, PreferenceSetValueIsExpandedAndAMissingValueIsNoted) {
    SetEnvironmentVariableW(L"LP_TEST_PLACE", L"C:\\Sets");
    EXPECT_TRUE(Parse({L"lp", L"/settings", L"%LP_TEST_PLACE%\\mine.dat"}));
    SetEnvironmentVariableW(L"LP_TEST_PLACE", nullptr);
    EXPECT_TRUE(m_info->m_bPreferenceSetGiven);
    EXPECT_EQ(m_info->m_strPreferenceSet, L"C:\\Sets\\mine.dat");
    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    EXPECT_TRUE(Parse({L"lp", L"/settings"}));
    EXPECT_FALSE(m_info->m_bPreferenceSetGiven);
}

TEST_F(CmdLine, CopyToTheFrameworkRecordRefusesTheLaunchCommands) {
    CommandLineInfo standard;
    EXPECT_TRUE(Parse({L"lp", L"/launch", L"tool"}));
    EXPECT_FALSE(m_info->CopyToStandardInfo(standard));
    m_info = std::make_unique<KYjlpCmdLineInfo>(*m_app);
    m_info->m_strFileName = L"list.lpd";
    EXPECT_TRUE(m_info->ValidateCommandLine());
    EXPECT_EQ(m_info->m_nShellCommand, KYjlpCmdLineInfo::kOpen);
    ASSERT_TRUE(m_info->CopyToStandardInfo(standard));
    EXPECT_EQ(standard.m_nShellCommand, CommandLineInfo::FileOpen);
    EXPECT_EQ(standard.m_strFileName, L"list.lpd");
}

}  // namespace
}  // namespace lptest
