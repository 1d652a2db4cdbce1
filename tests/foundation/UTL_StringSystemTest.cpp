// UTL_String against the system: string resources of real libraries (with and
// without a KYLoadStringW export), environment, short paths and window texts.
#include <gtest/gtest.h>

#include <string>

#include "foundation/UTL_Exception.h"
#include "foundation/UTL_String.h"
#include "foundation/UniqueHandle.h"
#include "tests/foundation/ExceptionCode.h"
#include "tests/support/TestSupport.h"

namespace {

using lptest::CodeOf;

class StringLoader : public ::testing::Test {
protected:
    void SetUp() override {
        m_export.reset(LoadLibraryW((lptest::BinDir() + L"kystr_export.dll").c_str()));
        m_table.reset(LoadLibraryW((lptest::BinDir() + L"kystr_table.dll").c_str()));
        ASSERT_TRUE(m_export) << "kystr_export.dll beside the test program";
        ASSERT_TRUE(m_table) << "kystr_table.dll beside the test program";
    }
    ky::UniqueHModule m_export;
    ky::UniqueHModule m_table;
};

TEST_F(StringLoader, TheExportComesBeforeTheStringTable) {
    const UTL_String supplied(m_export.get(), 100, 64);
    EXPECT_EQ(2, supplied.Encoding());
    EXPECT_STREQ(L"From the export", supplied.Wide());
    EXPECT_STREQ(L"Only the export knows this one", UTL_String(m_export.get(), 200, 64).Wide());
    // The export gives nothing for 102: the string table answers.
    EXPECT_STREQ(L"Second text of the table", UTL_String(m_export.get(), 102, 64).Wide());
    // Cut to the size given, terminator included.
    EXPECT_STREQ(L"From", UTL_String(m_export.get(), 100, 5).Wide());
}

TEST_F(StringLoader, WithoutTheExportTheStringTableAnswers) {
    const UTL_String text(m_table.get(), 100, 64);
    EXPECT_EQ(2, text.Encoding());
    EXPECT_STREQ(L"From the string table", text.Wide());
    EXPECT_EQ(0, CodeOf([&] { UTL_String(m_table.get(), 102, 64); }));
}

TEST_F(StringLoader, NothingFoundIsSevenOnlyWhenAnErrorIsSet) {
    // No export: the loader records "not found" itself, so an empty entry fails.
    EXPECT_EQ(7, CodeOf([&] { UTL_String(m_table.get(), 101, 64); }));
    EXPECT_EQ(7, CodeOf([&] { UTL_String(m_table.get(), 300, 64); }));
    // The export answered 0 without an error and the table's entry is empty.
    const UTL_String empty(m_export.get(), 101, 64);
    EXPECT_EQ(0u, empty.Length());
    EXPECT_EQ(2, empty.Encoding());
    EXPECT_EQ(7, CodeOf([&] { UTL_String(m_export.get(), 300, 64); }));
}

TEST_F(StringLoader, BadArgumentsOfTheThreeForms) {
    EXPECT_EQ(2, CodeOf([] { UTL_String(static_cast<HMODULE>(nullptr), 100, 64); }));
    EXPECT_EQ(2, CodeOf([&] { UTL_String(m_table.get(), 100, 0); }));
    EXPECT_EQ(4, CodeOf([] { UTL_String(static_cast<const char*>(nullptr), 100, 64); }));
    EXPECT_EQ(4, CodeOf([] { UTL_String("kystr_table.dll", 100, 0); }));
    EXPECT_EQ(10, CodeOf([] { UTL_String("no_such_library.dll", 100, 64); }));
    EXPECT_EQ(2, CodeOf([] { UTL_String(static_cast<const wchar_t*>(nullptr), 100, 64); }));
    EXPECT_EQ(2, CodeOf([] { UTL_String(L"kystr_table.dll", 100, 0); }));
    EXPECT_EQ(10, CodeOf([] { UTL_String(L"no_such_library.dll", 100, 64); }));
}

TEST_F(StringLoader, ModuleNamesUseThePlainStringTable) {
    const UTL_String narrow("kystr_table.dll", 100, 64);
    EXPECT_EQ(1, narrow.Encoding());
    EXPECT_STREQ("From the string table", narrow.Narrow());
    // By name, even the library with the export answers from its table.
    const UTL_String wide(L"kystr_export.dll", 100, 64);
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_STREQ(L"From the string table", wide.Wide());
    EXPECT_EQ(7, CodeOf([] { UTL_String("kystr_table.dll", 101, 64); }));
    EXPECT_EQ(7, CodeOf([] { UTL_String(L"kystr_table.dll", 300, 64); }));
}

TEST(UTL_StringEnvironment, ExpandsOnlyWhenThereIsAPercentSign) {
    ASSERT_TRUE(SetEnvironmentVariableW(L"LPSTR_TEST_VALUE", L"expanded"));
    EXPECT_STREQ("expanded\\x", UTL_String("%LPSTR_TEST_VALUE%\\x").ExpandEnvironment().Narrow());
    const UTL_String wide = UTL_String(L"<%LPSTR_TEST_VALUE%>").ExpandEnvironment();
    EXPECT_EQ(2, wide.Encoding());
    EXPECT_STREQ(L"<expanded>", wide.Wide());
    EXPECT_STREQ("%LPSTR_NOT_SET_ANYWHERE%", UTL_String("%LPSTR_NOT_SET_ANYWHERE%").ExpandEnvironment().Narrow());
    EXPECT_STREQ(L"plain", UTL_String(L"plain").ExpandEnvironment().Wide());
    SetEnvironmentVariableW(L"LPSTR_TEST_VALUE", nullptr);
}

TEST(UTL_StringShortPath, ShortensExistingPathsAndFailsOnMissingOnes) {
    lptest::TempDir temp;
    const std::wstring longDir = temp / L"A folder with a long name";
    ASSERT_TRUE(CreateDirectoryW(longDir.c_str(), nullptr));
    const UTL_String shortened = UTL_String(longDir.c_str()).ToShortPath();
    EXPECT_EQ(2, shortened.Encoding());
    EXPECT_EQ(std::wstring::npos, std::wstring(shortened.Wide()).find(L"A folder with"));
    // The short form names the same folder.
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(shortened.Wide()));
    const UTL_String narrow = UTL_String(lptest::Narrow(longDir).c_str()).ToShortPath();
    EXPECT_EQ(1, narrow.Encoding());
    EXPECT_STREQ(lptest::Narrow(shortened.Wide()).c_str(), narrow.Narrow());
    EXPECT_EQ(1, CodeOf([&] { UTL_String((temp / L"missing folder").c_str()).ToShortPath(); }));
    EXPECT_EQ(0u, UTL_String().ToShortPath().Length());
}

TEST(UTL_StringWindow, TakesTheWindowText) {
    HWND window = CreateWindowExW(0, L"STATIC", L"Window text", 0, 0, 0, 10, 10, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(nullptr, window);
    UTL_String text("old");
    text.SetFromWindowW(window);
    EXPECT_EQ(2, text.Encoding());
    EXPECT_STREQ(L"Window text", text.Wide());
    text.SetFromWindowA(window);
    EXPECT_EQ(1, text.Encoding());
    EXPECT_STREQ("Window text", text.Narrow());
    SetWindowTextW(window, L"");
    text.SetFromWindowW(window);
    EXPECT_EQ(0u, text.Length());
    DestroyWindow(window);
    text.SetFromWindowW(nullptr);
    EXPECT_EQ(0u, text.Length());
    EXPECT_EQ(2, text.Encoding());
}

}  // namespace
