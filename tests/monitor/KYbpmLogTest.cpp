// The run's log: made from a template with the tags filled, one row per
// answered situation (flushed at once), the tail at the end, the byte limit,
// the built-in page, the text form, and what each level shows.
#include <gtest/gtest.h>

#include "EventLogMessages.h"
#include "MonitorTestSupport.h"
#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmSelfCode.h"
#include "tests/support/TestSupport.h"

using namespace montest;
using lptest::ReadFile;

namespace {

const char* const kTemplate =
    "<html><head><title>{{TAG7}}</title></head><body>\n"
    "<h1>{{TAG7}} for {{TAG11}} on {{TAG9}}, build {{TAG4}}, blank [{{TAG10}}], {{TAG99}} {{OTHER}}</h1>\n"
    "<p>Started {{STARTED}}</p>\n"
    "<table>\n"
    "  <!--LP:ENTRIES-->\n"
    "</table><p>{{TAG14}}</p></body></html>\n";

std::wstring TemplateDir() { return lptest::BinDir() + L"monitor-templates\\"; }

}  // namespace

TEST(KYbpmLog, FromTemplateWithRowsAndTail) {
    lptest::TempDir dir;
    LP_WRITE_FILE(dir / L"t.html", kTemplate);
    const std::wstring logFile = dir / L"run.html";
    auto monitor = MakeMonitor({.logFile = logFile, .templatePath = dir / L"t.html", .affixes = false});
    ASSERT_TRUE(monitor);

    std::string log = ReadFile(logFile);
    EXPECT_EQ(log.rfind("<html><head><title>Launch &lt;Panel&gt;</title>", 0), 0u) << "no BOM, tags escaped";
    EXPECT_NE(log.find("Launch &lt;Panel&gt; for alice &amp; bob on HOST-9, build 7.3.12.4711, blank [], "
                       "{{TAG99}} {{OTHER}}</h1>"),
              std::string::npos);
    EXPECT_EQ(log.find("{{STARTED}}"), std::string::npos);
    EXPECT_EQ(log.find("LP:ENTRIES"), std::string::npos);
    EXPECT_EQ(log.find("</table>"), std::string::npos) << "the tail waits for the end";

    EXPECT_TRUE(monitor->respondToSituation(27036, 0, L"caf\u00e9 <b>", int32_t{-5}, uint32_t{7}, "a\"b"));
    monitor->forgetSituation();
    // Only links to the code pages stay links: one an argument brings to another
    // place is text.
    EXPECT_TRUE(monitor->respondToSituation(27038, 0, L"<a href=\"Codes/WLE.html#5\">WLE5</a>",
                                            L"<a href=\"//host/x\">x</a>\ny"));
    EXPECT_EQ(monitor->getSituationsCount(), 0) << "both were taken: none stands";

    log = ReadFile(logFile);  // rows are there before the monitor ends
    auto rows = SituationRows(log);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Attribute(rows[0], "data-number"), "27036");
    EXPECT_EQ(Attribute(rows[0], "data-kind"), "failure");
    EXPECT_EQ(Attribute(rows[0], "data-answer"), "1");
    EXPECT_EQ(Attribute(rows[0], "data-args-int"), "[-5]");
    EXPECT_EQ(Attribute(rows[0], "data-args-uint"), "[7]");
    EXPECT_EQ(Attribute(rows[0], "data-args-text"), "[\"caf\xC3\xA9 <b>\",\"a\\\"b\"]");
    EXPECT_EQ(Attribute(rows[0], "data-time").size(), 23u);
    EXPECT_EQ(Attribute(rows[0], "data-time")[10], 'T');
    EXPECT_NE(rows[0].find("Internal Error 42.036<br>Could not open caf\xC3\xA9 &lt;b&gt; (code -5, flags 7); "
                           "a&quot;b is missing."),
              std::string::npos);
    EXPECT_NE(rows[1].find("Opened <a href=\"Codes/WLE.html#5\">WLE5</a> with "
                           "&lt;a href=&quot;//host/x&quot;&gt;x&lt;/a&gt;<br>y."),
              std::string::npos);

    monitor.reset();
    log = ReadFile(logFile);
    EXPECT_EQ(SituationRows(log).size(), 2u);
    const size_t tail = log.find("</table><p>tag-14</p></body></html>\n");
    ASSERT_NE(tail, std::string::npos);
    EXPECT_EQ(tail + std::string("</table><p>tag-14</p></body></html>\n").size(), log.size());
    EXPECT_LT(log.find("data-number=\"27038\""), tail);
}

TEST(KYbpmLog, ShippedTemplatesAndTheBuiltInPage) {
    for (const wchar_t* name : {L"blp_template.html", L"aps_template.html"}) {
        lptest::TempDir dir;
        const std::wstring logFile = dir / L"run.html";
        auto monitor = MakeMonitor({.logFile = logFile, .templatePath = TemplateDir() + name});
        ASSERT_TRUE(monitor);
        EXPECT_TRUE(monitor->respondToSituation(27036, 0, L"a", int32_t{1}));
        monitor.reset();
        const std::string log = ReadFile(logFile);
        EXPECT_NE(log.find("<style>"), std::string::npos) << "the shipped template was used";
        EXPECT_NE(log.find("HOST-9"), std::string::npos);
        EXPECT_NE(log.find("alice &amp; bob"), std::string::npos);
        EXPECT_NE(log.find("7.3.12.4711"), std::string::npos);
        EXPECT_EQ(log.find("{{"), std::string::npos);
        EXPECT_EQ(SituationRows(log).size(), 1u);
        EXPECT_LT(log.find("<tr class=\"situation\""), log.find("</table>"));
    }
    for (const std::string& content : {std::string("missing"), std::string("<html>no marker</html>")}) {
        lptest::TempDir dir;
        if (content != "missing") LP_WRITE_FILE(dir / L"t.html", content);
        const std::wstring logFile = dir / L"run.html";
        auto monitor = MakeMonitor({.logFile = logFile, .templatePath = dir / L"t.html"});
        ASSERT_TRUE(monitor) << "a bad template is no failure";
        EXPECT_TRUE(monitor->respondToSituation(27036, 0, L"a"));
        monitor.reset();
        const std::string log = ReadFile(logFile);
        EXPECT_EQ(log.find("no marker"), std::string::npos);
        EXPECT_NE(log.find("<h1>Launch &lt;Panel&gt;</h1>"), std::string::npos);
        EXPECT_EQ(SituationRows(log).size(), 1u);
        EXPECT_LT(log.find("<tr class=\"situation\""), log.find("</table>"));
    }
}

TEST(KYbpmLog, LevelsDecideWhatWouldBeShownAndEverythingIsLogged) {
    // Per level: whether failure, warning, notice and question would be shown.
    const struct { uint32_t mode; const char* shown[4]; } levels[] = {
        {0, {"1", "0", "0", "1"}}, {2, {"1", "0", "0", "1"}}, {3, {"1", "1", "0", "1"}},
        {6, {"1", "1", "0", "1"}}, {7, {"1", "1", "1", "1"}}, {10, {"1", "1", "1", "1"}}};
    for (const auto& level : levels) {
        lptest::TempDir dir;
        auto monitor = MakeMonitor({.mode = level.mode, .logFile = dir / L"run.html"});
        ASSERT_TRUE(monitor);
        for (int number : {27036, 27100, 27101, 27102}) {
            EXPECT_TRUE(monitor->respondToSituation(number, 0, L"p"));
            monitor->forgetSituation();
        }
        const auto rows = SituationRows(ReadFile(dir / L"run.html"));
        ASSERT_EQ(rows.size(), 4u) << "level " << level.mode;
        const char* kinds[] = {"failure", "warning", "notice", "question"};
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(Attribute(rows[i], "data-kind"), kinds[i]);
            EXPECT_EQ(Attribute(rows[i], "data-shown"), level.shown[i]) << "level " << level.mode << " " << kinds[i];
            EXPECT_EQ(Attribute(rows[i], "data-boxed"), "0");
        }
        EXPECT_EQ(Attribute(rows[2], "data-answer"), level.mode >= 7 ? "1" : "0");
    }
}

TEST(KYbpmLog, QuestionsTakeTheirDefaultWhenUnattended) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.logFile = dir / L"run.html"});
    ASSERT_TRUE(monitor);
    const std::pair<int, int> answers[] = {{27102, IDYES}, {27103, IDNO}, {27104, IDCANCEL}, {27105, IDOK}};
    for (const auto& [number, answer] : answers) {
        EXPECT_TRUE(monitor->respondToSituation(number, 0, L"q"));
        EXPECT_EQ(monitor->getDisplayDlgBoxResult(), answer) << number;
        monitor->forgetSituation();
    }
    const auto rows = SituationRows(ReadFile(dir / L"run.html"));
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(Attribute(rows[1], "data-answer"), "7");
    EXPECT_EQ(Attribute(rows[2], "data-answer"), "2");
}

TEST(KYbpmLog, ByteLimitDropsEntriesAndSaysSoOnce) {
    lptest::TempDir dir;
    const std::wstring logFile = dir / L"run.html";
    auto monitor = MakeMonitor({.logFile = logFile, .byteLimit = 1000});
    ASSERT_TRUE(monitor);
    const std::wstring big(1500, L'z');
    int taken = 0;
    for (int i = 0; i < 40; ++i) {
        if (monitor->respondToSituation(27036, 0, big.c_str(), int32_t{i})) ++taken;
        monitor->forgetSituation();
    }
    EXPECT_GT(taken, 3);
    EXPECT_LT(taken, 40);
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::No) << "unattended and the log is full";
    monitor.reset();
    const std::string log = ReadFile(logFile);
    EXPECT_LE(log.size(), 64u * 1024u);
    EXPECT_EQ(SituationRows(log).size(), static_cast<size_t>(taken));
    EXPECT_EQ(CountOf(log, "class=\"log-full\""), 1u);
    EXPECT_LT(log.find("class=\"log-full\""), log.find("</table>"));
    EXPECT_GT(log.find("class=\"log-full\""), log.rfind("<tr class=\"situation\""));
}

TEST(KYbpmLog, TextFormAndNoLogForms) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.logFile = dir / L"run.txt", .form = 1});
    ASSERT_TRUE(monitor);
    EXPECT_TRUE(monitor->respondToSituation(27038, 0, L"<a href=\"Codes/WLE.html#2\">WLE2</a>", L"a\tb"));
    monitor.reset();
    const std::string log = ReadFile(dir / L"run.txt");
    EXPECT_EQ(log.rfind("log\tLaunch <Panel>\talice & bob\tHOST-9\t7.3.12.4711\t", 0), 0u);
    const size_t row = log.find("\t27038\tfailure\t1\t1\t0\tInternal Error 42.038\\n");
    ASSERT_NE(row, std::string::npos);
    EXPECT_NE(log.find("Opened WLE2 with a b.\\n\\nTell your administrator about WLE2.\r\n", row), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 5), "end\r\n");

    auto none = MakeMonitor({.logFile = dir / L"run.other", .form = 2});
    ASSERT_TRUE(none);
    EXPECT_FALSE(lptest::FileExists(dir / L"run.other"));
    EXPECT_EQ(none->canRespondToSituations(), KYbpm_FUZZY_CHOICE::No);
    EXPECT_FALSE(none->respondToSituation(27036, 0, L"a")) << "unattended with nowhere to write";
    EXPECT_EQ(none->getSituationsCount(), 1) << "not taken: it stands until forgotten";
    none->forgetSituation();
    EXPECT_EQ(none->getSituationsCount(), 0);
}

TEST(KYbpmLog, AFileThatCannotBeMadeFailsCreate) {
    lptest::TempDir dir;
    auto data = MakeData({.logFile = dir / L"missing\\run.html"});
    EXPECT_EQ(KYbpm::create(data.get()), nullptr);
    EXPECT_EQ(data->getSelfDX_Code(), KYbpmSelfCode::kLogCreate);
}

TEST(KYbpmLog, CriteriaAtRunTime) {
    lptest::TempDir dir;
    auto monitor = MakeMonitor({.logFile = dir / L"run.html"});
    ASSERT_TRUE(monitor);
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Yes);
    EXPECT_TRUE(monitor->setBehaviorCriteria(KYbpmCriteria::kUnattended | KYbpmCriteria::kNoLog));
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::No);
    EXPECT_FALSE(monitor->respondToSituation(27036, 0, L"a"));
    monitor->forgetSituation();
    EXPECT_TRUE(monitor->setBehaviorCriteria(0));
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Yes);
    EXPECT_TRUE(SituationRows(ReadFile(dir / L"run.html")).empty());
}

TEST(KYbpmLog, InsideASessionTheEventLogTakesTheEntries) {
    const std::wstring source = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\Launch Panel";
    lptest::DeleteTree(HKEY_LOCAL_MACHINE, source);
    const int64_t session = KYbpmCriteria::kInSession | KYbpmCriteria::kSessionLog;
    auto monitor = MakeMonitor({.criteria = session | KYbpmCriteria::kUnattended});
    ASSERT_TRUE(monitor);
    EXPECT_EQ(monitor->canRespondToSituations(), KYbpm_FUZZY_CHOICE::Unsure);
    EXPECT_TRUE(monitor->respondToSituation(27101, 0, L"P1"));
    EXPECT_TRUE(monitor->isSituationNormal()) << "a situation that was taken is over";

    // The source names a message file whose message shows an entry's text as it stands.
    std::wstring file;
    ASSERT_TRUE(lptest::GetString(HKEY_LOCAL_MACHINE, source, L"EventMessageFile", file));
    wchar_t expanded[MAX_PATH];
    ASSERT_GT(ExpandEnvironmentStringsW(file.c_str(), expanded, MAX_PATH), 0u);
    ky::UniqueHModule messages(LoadLibraryExW(expanded, nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(messages) << lptest::Narrow(expanded);
    const wchar_t* text = L"Internal Error 42.101\nPrinter P1 was added, 100% %2.";
    DWORD_PTR inserts[] = {reinterpret_cast<DWORD_PTR>(text)};
    wchar_t shown[256] = {};
    EXPECT_GT(FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ARGUMENT_ARRAY, messages.get(),
                             LP_EVENT_SITUATION, 0, shown, 256, reinterpret_cast<va_list*>(inserts)),
              0u);
    EXPECT_STREQ(shown, text);

    auto quiet = MakeMonitor({.criteria = session | KYbpmCriteria::kUnattended | KYbpmCriteria::kNoLog});
    ASSERT_TRUE(quiet);
    EXPECT_EQ(quiet->canRespondToSituations(), KYbpm_FUZZY_CHOICE::No);
    EXPECT_FALSE(quiet->respondToSituation(27101, 0, L"P1"));
    EXPECT_EQ(quiet->getSituationID(), 27101) << "one nobody took stands until forgotten";
}
