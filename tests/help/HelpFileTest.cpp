// LaunchPanel.chm as built, read back through the system's InfoTech storage: the
// pages of its contents are inside, its context map gives every help id of
// HelpContext.h its topic, and the what-is-this texts name every control.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <regex>
#include <string>

#include "resources/HelpContext.h"
#include "tests/help/ChmStorage.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

// The help ids of the header by name, as the header's text has them.
std::map<std::string, unsigned long> HeaderIds() {
    const std::string text = ReadFile(BinDir() + L"help-sources\\HelpContext.h");
    std::map<std::string, unsigned long> ids;
    const std::regex line(R"(#define[ \t]+(HID[A-Z0-9_]*)[ \t]+(0x[0-9A-Fa-f]+|[0-9]+))");
    for (std::sregex_iterator it(text.begin(), text.end(), line), end; it != end; ++it)
        ids[(*it)[1]] = std::stoul((*it)[2], nullptr, 0);
    return ids;
}

// The context map as the viewer looks a context id up: #IVB holds its size, then
// pairs of id and offset into #STRINGS, where the topic's name stands.
std::map<unsigned long, std::string> ContextMap(const ChmStorage& chm) {
    const std::string ivb = chm.Read(L"#IVB");
    const std::string strings = chm.Read(L"#STRINGS");
    std::map<unsigned long, std::string> map;
    if (ivb.size() < 4) return map;
    uint32_t size = 0;
    std::memcpy(&size, ivb.data(), 4);
    for (size_t at = 4; at + 8 <= ivb.size() && at + 8 <= 4 + size; at += 8) {
        uint32_t pair[2];
        std::memcpy(pair, ivb.data() + at, 8);
        map[pair[0]] = pair[1] < strings.size() ? std::string(strings.c_str() + pair[1]) : "(outside #STRINGS)";
    }
    return map;
}

std::wstring Wide(const std::string& text) { return Widen(text); }

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    return text;
}

class HelpFile : public ::testing::Test {
protected:
    ChmStorage m_chm{BinDir() + L"LaunchPanel.chm"};
};

TEST_F(HelpFile, OpensAsCompiledHelp) {
    ASSERT_TRUE(FileExists(BinDir() + L"LaunchPanel.chm"));
    ASSERT_TRUE(m_chm.ok()) << std::hex << m_chm.error();
    EXPECT_TRUE(m_chm.Has(L"#SYSTEM"));
    EXPECT_FALSE(m_chm.Has(L"no-such-page.htm")) << "a reader that finds everything proves nothing";
}

TEST_F(HelpFile, EveryPageOfTheContentsAndIndexIsInside) {
    ASSERT_TRUE(m_chm.ok());
    const char* pages[] = {"index.htm", "gethelp.htm", "window.htm", "list.htm", "launching.htm",
                           "classic.htm", "printers.htm", "session.htm", "settings.htm", "options.htm",
                           "about.htm", "admin.htm", "cmdline.htm", "runlog.htm"};
    for (const char* page : pages) {
        const std::string html = m_chm.Read(Wide(page));
        EXPECT_NE(html.find("<title>"), std::string::npos) << page;
        EXPECT_NE(html.find("</html>"), std::string::npos) << page << " is whole";
    }
    for (const wchar_t* list : {L"LaunchPanel.hhc", L"LaunchPanel.hhk"}) {
        const std::string sitemap = m_chm.Read(list);
        ASSERT_FALSE(sitemap.empty()) << Narrow(list);
        const std::regex local(R"re(name="Local" value="([^"]+)")re");
        int entries = 0;
        for (std::sregex_iterator it(sitemap.begin(), sitemap.end(), local), end; it != end; ++it, ++entries)
            EXPECT_TRUE(m_chm.Has(Wide((*it)[1]))) << (*it)[1] << " of " << Narrow(list);
        EXPECT_GE(entries, 14) << Narrow(list);
    }
    EXPECT_NE(m_chm.Read(L"admin.htm").find("LaunchPanelCloseOption"), std::string::npos);
}

TEST_F(HelpFile, ContextMapGivesEveryIdOfTheHeaderItsTopic) {
    ASSERT_TRUE(m_chm.ok());
    const auto header = HeaderIds();
    ASSERT_GE(header.size(), 60u) << "the header as the program was built with it";
    const auto map = ContextMap(m_chm);
    EXPECT_EQ(map.size(), header.size()) << "one entry per id, and no other";
    // The pages of their own; every other id has a short topic named after it.
    const std::map<unsigned long, std::string> ownPages = {
        {HIDR_MAINFRAME, "window.htm"}, {HIDD_ABOUT, "about.htm"}, {HIDD_VIEW_OPTIONS, "options.htm"}};
    for (const auto& [name, id] : header) {
        const auto found = map.find(id);
        ASSERT_NE(found, map.end()) << name << " (" << id << ") is not in the map";
        const auto own = ownPages.find(id);
        const std::string expected = own != ownPages.end() ? own->second : Lower(name) + ".htm";
        // The page's name as it stands inside the file, without the folder it was compiled in.
        EXPECT_EQ(found->second, expected) << name;
        EXPECT_TRUE(m_chm.Has(Wide(expected))) << name << ": " << expected << " is not inside";
    }
}

TEST_F(HelpFile, IdsThatTheProgramUsesOpenTheirTopics) {
    ASSERT_TRUE(m_chm.ok());
    const auto map = ContextMap(m_chm);
    ASSERT_TRUE(map.count(HID_VIEW_OPTIONS));
    const std::string topic = m_chm.Read(Wide(map.at(HID_VIEW_OPTIONS)));
    EXPECT_NE(topic.find("<h1>Options</h1>"), std::string::npos) << topic;
    EXPECT_NE(topic.find("href=\"options.htm\""), std::string::npos) << "links to the dialog's page";
    ASSERT_TRUE(map.count(HIDC_VO_HEADER_DRAG));
    EXPECT_NE(m_chm.Read(Wide(map.at(HIDC_VO_HEADER_DRAG))).find("Column headers"), std::string::npos);
    ASSERT_TRUE(map.count(HIDC_FRAME_LIST));
    EXPECT_EQ(map.at(HIDC_FRAME_LIST), "hidc_frame_list.htm");
    EXPECT_EQ(map.count(0x1FFFF), 0u);
}

TEST_F(HelpFile, ShortTopicsLinkToPagesThatAreInside) {
    ASSERT_TRUE(m_chm.ok());
    const std::regex link(R"re(href="([^"]+\.htm)")re");
    for (const auto& [id, topic] : ContextMap(m_chm)) {
        const std::string html = m_chm.Read(Wide(topic));
        for (std::sregex_iterator it(html.begin(), html.end(), link), end; it != end; ++it)
            EXPECT_TRUE(m_chm.Has(Wide((*it)[1]))) << topic << " links to " << (*it)[1];
    }
}

// The popup texts: ".topic <id>" and its text, up to an empty line.
std::map<unsigned long, std::string> PopupTopics(const std::string& text) {
    std::map<unsigned long, std::string> topics;
    const std::regex topic(R"(\.topic[ \t]+([0-9]+)\r?\n([^\r\n]+))");
    for (std::sregex_iterator it(text.begin(), text.end(), topic), end; it != end; ++it)
        topics[std::stoul((*it)[1])] = (*it)[2];
    return topics;
}

TEST_F(HelpFile, WhatIsThisTextsNameEveryControl) {
    ASSERT_TRUE(m_chm.ok());
    const std::string popups = m_chm.Read(L"KYjlpContext.txt");
    ASSERT_FALSE(popups.empty()) << "the file that help on a control (command 16) opens";
    const auto topics = PopupTopics(popups);
    int controls = 0;
    for (const auto& [name, id] : HeaderIds()) {
        if (name.rfind("HIDC_", 0) != 0) continue;
        ++controls;
        const auto found = topics.find(id);
        ASSERT_NE(found, topics.end()) << name << " has no what-is-this text";
        EXPECT_GT(found->second.size(), 5u) << name;
    }
    EXPECT_EQ(topics.size(), static_cast<size_t>(controls)) << "one text per control, and no other";
    EXPECT_NE(topics.at(HIDC_ABOUT_BUILD).find("build"), std::string::npos);
    EXPECT_NE(topics.at(HIDC_VO_DEFAULTS).find("starting value"), std::string::npos);
}

}  // namespace
}  // namespace lptest
