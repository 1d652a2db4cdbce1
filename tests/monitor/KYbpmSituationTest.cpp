// What a situation says: fillers, argument places, the code line, affixes,
// class directives, and the built-in text of a number without a string.
#include <gtest/gtest.h>

#include "MonitorTestSupport.h"
#include "monitor/KYbpmData.h"
#include "monitor/KYbpmSelfCode.h"

using namespace montest;

TEST(KYbpmSituation, FillsEveryKindAndMarksMissingArguments) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    monitor->recordSituationID(27036);
    EXPECT_TRUE(monitor->recordArgument(L"C:\\data\\a.txt"));
    EXPECT_TRUE(monitor->recordArgument(int32_t{-5}));
    EXPECT_TRUE(monitor->recordArgument(uint32_t{4000000000u}));
    EXPECT_EQ(monitor->describeSituation(),
              L"Internal Error 42.036\nCould not open C:\\data\\a.txt (code -5, flags 4000000000); (none) is missing.");

    monitor->recordSituationID(27037);
    EXPECT_TRUE(monitor->recordArgument(int32_t{1}));
    EXPECT_TRUE(monitor->recordArgument(int32_t{3}, 2));
    EXPECT_TRUE(monitor->recordArgument(int32_t{2}));  // the next free place is 1
    EXPECT_TRUE(monitor->recordArgument(uint32_t{9}, 4));
    EXPECT_TRUE(monitor->recordArgument("caf\xC3\xA9"));  // narrow, UTF-8 external set
    EXPECT_TRUE(monitor->recordArgument(std::wstring(L"e"), 4));
    EXPECT_EQ(monitor->describeSituation(),
              L"Internal Error 42.037\nInts 1 2 3 (none) (none) | uints (none) (none) (none) (none) 9 | "
              L"texts caf\u00e9 (none) (none) (none) e | 100% done, %x1 %i6 %");
}

TEST(KYbpmSituation, ArgumentPlacesAreCappedByTheQuantities) {
    auto data = MakeData({.affixes = false});
    EXPECT_FALSE(data->setArgsIntQty(6));
    EXPECT_EQ(data->getSelfDX_Code(), KYbpmSelfCode::kOutOfRange);
    data->forgetSelfDX_Code();
    EXPECT_TRUE(data->setArgsIntQty(2));
    MonitorPtr monitor(KYbpm::create(data.get()));
    data.reset();  // the monitor keeps its own copy
    ASSERT_TRUE(monitor);

    EXPECT_FALSE(monitor->recordArgument(int32_t{1})) << "no situation stands";
    monitor->recordSituationID(27037);
    EXPECT_TRUE(monitor->recordArgument(int32_t{1}));
    EXPECT_TRUE(monitor->recordArgument(int32_t{2}));
    EXPECT_FALSE(monitor->recordArgument(int32_t{3}));
    EXPECT_FALSE(monitor->recordArgument(int32_t{3}, 2));
    EXPECT_FALSE(monitor->recordArgument(uint32_t{3}, 5));
    EXPECT_FALSE(monitor->recordArgument(L"x", -1));
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(monitor->recordArgument(L"t"));
    EXPECT_FALSE(monitor->recordArgument(L"sixth"));
    EXPECT_NE(monitor->describeSituation().find(L"Ints 1 2 (none) (none) (none)"), std::wstring::npos);
}

TEST(KYbpmSituation, CodeLineFollowsTheProgramsForm) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    monitor->recordSituationID(30000);
    monitor->recordArgument(int32_t{7});
    EXPECT_EQ(monitor->describeSituation(), L"Internal Error 42.30000\nOutside the range: 7.");

    auto blank = MakeMonitor({.affixes = false, .tag13 = L""});
    ASSERT_TRUE(blank);
    blank->recordSituationID(27001 + 107);
    EXPECT_EQ(blank->describeSituation(), L"Internal Error 0.108\nPlainly failed.");
}

TEST(KYbpmSituation, StateOfTheSlot) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    EXPECT_TRUE(monitor->isSituationNormal());
    EXPECT_LE(monitor->getSituationID(), 0);
    EXPECT_EQ(monitor->describeSituation(), L"");
    EXPECT_FALSE(monitor->respondToSituation());
    monitor->recordSituationID(27036);
    EXPECT_FALSE(monitor->isSituationNormal());
    EXPECT_EQ(monitor->getSituationID(), 27036);
    monitor->forgetSituation();
    monitor->forgetSituation();
    EXPECT_TRUE(monitor->isSituationNormal());
    EXPECT_STREQ(monitor->getTag(11), L"alice & bob");
    EXPECT_STREQ(monitor->getTag(10), L"");
    EXPECT_EQ(monitor->getTag(15), nullptr);
}

TEST(KYbpmSituation, AffixesFrameFailuresOnly) {
    auto monitor = MakeMonitor({});
    ASSERT_TRUE(monitor);
    monitor->recordSituationID(27038);
    monitor->recordArgument(L"notes.txt");
    monitor->recordArgument(L"Notepad");
    EXPECT_EQ(monitor->describeSituation(),
              L"Internal Error 42.038\nLaunch Panel met a problem.\n\nOpened notes.txt with Notepad.\n\n"
              L"Tell your administrator about notes.txt.");
    monitor->recordSituationID(27100);
    monitor->recordArgument(L"D:");
    EXPECT_EQ(monitor->describeSituation(), L"Internal Error 42.100\nDisk D: is nearly full.");
}

TEST(KYbpmSituation, DirectivesAreRemovedAndUnknownOnesStay) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    const std::pair<int, std::wstring> cases[] = {
        {27101, L"Printer P1 was added."},
        {27102, L"Replace P1?"},
        {27103, L"Delete P1?"},
        {27104, L"Continue with P1?"},
        {27105, L"Proceed with P1?"},
        {27106, L"{bogus} The directive is unknown."},
        {27107, L"{question:maybe} The question form is unknown."},
        {27108, L"Plainly failed."},
    };
    for (const auto& [number, text] : cases) {
        monitor->recordSituationID(number);
        monitor->recordArgument(L"P1");
        const std::wstring described = monitor->describeSituation();
        EXPECT_EQ(described.substr(described.find(L'\n') + 1), text) << number;
    }
}

TEST(KYbpmSituation, LongTextsAndNumbersWithoutText) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    monitor->recordSituationID(27109);
    const std::wstring described = monitor->describeSituation();
    EXPECT_EQ(described.size(), std::wstring(L"Internal Error 42.109\nLong text: ").size() + 400);
    EXPECT_EQ(described.substr(described.size() - 10), L"0123456789");

    monitor->recordSituationID(27500);
    monitor->recordArgument(int32_t{3});
    monitor->recordArgument(L"x");
    EXPECT_EQ(monitor->describeSituation(),
              L"Internal Error 42.500\nNo description is available for situation 27500.\nArguments: 3, \"x\".");
}

TEST(KYbpmSituation, CodeLinksShowAsLabels) {
    auto monitor = MakeMonitor({.affixes = false});
    ASSERT_TRUE(monitor);
    monitor->recordSituationID(27038);
    monitor->recordArgument(L"<a href=\"Codes/WLE.html#5\">WLE5</a>");
    monitor->recordArgument(L"<a href=\"//host/x\">bad</a>");
    EXPECT_EQ(monitor->describeSituation(), L"Internal Error 42.038\nOpened WLE5 with <a href=\"//host/x\">bad</a>.");
}
