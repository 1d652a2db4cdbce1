// The checks of a target before the shell is asked: the program's binary type,
// the handler of a document, and the start directory.
#include <cstdlib>
#include <string>

#include "document/KYjlpDoc.h"
#include "tests/app/AppTestSupport.h"
#include "tests/launch/LogRows.h"

namespace lptest {
namespace {

class TargetCheck : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        Establish(true);
        m_app->m_bShell = false;
        m_app->m_nItemFillMask = kCheckBinary | kCheckStartDir;
    }
    void TearDown() override {
        for (const std::wstring& key : m_classKeys) DeleteTree(HKEY_CLASSES_ROOT, key);
        std::free(m_startDir);
        AppTest::TearDown();
    }
    bool Validate(KYjlpDoc& doc, const std::wstring& path, const std::wstring& startDir = L"") {
        std::free(m_startDir);
        m_startDir = startDir.empty() ? nullptr : _wcsdup(startDir.c_str());
        SHFILEINFOW scratch{};
        m_isDocument = false;
        return doc.ValidateTarget(path.c_str(), &scratch, &m_startDir, &m_isDocument);
    }
    bool Validate(const std::wstring& path, const std::wstring& startDir = L"") {
        return Validate(m_doc, path, startDir);
    }
    // A document type of the test, opened by the command given; removed at the end.
    void RegisterType(const std::wstring& extension, const std::wstring& className, const std::wstring& command) {
        m_classKeys.push_back(extension);
        std::wstring commandKey = extension;
        if (!className.empty()) {
            m_classKeys.push_back(className);
            LP_SET_STRING(HKEY_CLASSES_ROOT, extension, L"", className);
            commandKey = className;
        }
        LP_SET_STRING(HKEY_CLASSES_ROOT, commandKey + L"\\shell\\open\\command", L"", command);
    }
    std::wstring CodeText(uint32_t code, UINT format) {
        std::wstring text;
        m_app->FormatCode(code, format, text);
        return text;
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }

    KYjlpDoc m_doc;
    TempDir m_files;
    wchar_t* m_startDir = nullptr;
    bool m_isDocument = false;
    std::vector<std::wstring> m_classKeys;
};

TEST_F(TargetCheck, ProgramThatIsNoWindowsProgramIsRefusedWithItsType) {
    // A .com file is an MS-DOS program to the system, whatever it holds.
    std::wstring dos = m_files / L"tool.com";
    LP_WRITE_FILE(dos, "an old program\r\n");
    EXPECT_FALSE(Validate(dos));
    EXPECT_FALSE(m_isDocument);
    auto rows = RowsOf(Rows(), 27578);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), dos);
    EXPECT_EQ(rows[0].texts.at(2), CodeText(SCS_DOS_BINARY, 24643));
}

TEST_F(TargetCheck, DocumentWhoseHandlerIsNoWindowsProgramNamesTheHandler) {
    std::wstring handler = m_files / L"viewer.com";
    LP_WRITE_FILE(handler, "an old viewer\r\n");
    RegisterType(L".lptold", L"LaunchPanel.OldDocument", L"\"" + handler + L"\" \"%1\"");
    std::wstring document = m_files / L"report.lptold";
    LP_WRITE_FILE(document, "a report\r\n");
    EXPECT_FALSE(Validate(document));
    EXPECT_TRUE(m_isDocument);
    auto rows = RowsOf(Rows(), 27579);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), document);
    EXPECT_EQ(rows[0].texts.at(2), CodeText(SCS_DOS_BINARY, 24643));
    EXPECT_EQ(_wcsicmp(rows[0].texts.at(3).c_str(), handler.c_str()), 0) << Narrow(rows[0].texts.at(3));
    EXPECT_TRUE(RowsOf(Rows(), 27578).empty()) << "the document is not at fault";
}

TEST_F(TargetCheck, DocumentTypeWithoutClassIsOpenedByTheHandlerItsExtensionNames) {
    std::wstring target = BinDir() + L"LaunchTarget.exe";
    RegisterType(L".lptbare", L"", L"\"" + target + L"\" \"%1\"");
    std::wstring document = m_files / L"plain.lptbare";
    LP_WRITE_FILE(document, "plain\r\n");
    wchar_t found[MAX_PATH] = {};
    ASSERT_EQ(reinterpret_cast<INT_PTR>(FindExecutableW(document.c_str(), nullptr, found)), SE_ERR_NOASSOC)
        << "the shell's search for the handler finds none: the association is asked";
    EXPECT_TRUE(Validate(document)) << Numbers(Rows());
    EXPECT_TRUE(m_isDocument);
    EXPECT_EQ(_wcsicmp(m_doc.HandlerPath(), target.c_str()), 0) << Narrow(m_doc.HandlerPath());
    EXPECT_TRUE(Rows().empty()) << Numbers(Rows());
}

TEST_F(TargetCheck, StartDirectoryThatCannotBeSearchedIsToldAndDropped) {
    std::wstring target = BinDir() + L"LaunchTarget.exe";
    std::wstring tooLong = m_files / std::wstring(300, L'x');
    EXPECT_TRUE(Validate(target, tooLong)) << "not fatal: the launch goes on without it";
    EXPECT_FALSE(m_startDir);
    auto rows = RowsOf(Rows(), 27197);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), target);
    EXPECT_EQ(rows[0].texts.at(1), tooLong);
    EXPECT_EQ(rows[0].texts.at(2), CodeText(ERROR_FILENAME_EXCED_RANGE, 24645));
}

// The system refuses no directory to the account the tests run as: the
// document is told the refusal as the system would tell it.
class DeniedDirectoryDoc : public KYjlpDoc {
public:
    bool CheckStartDirectory(const wchar_t* dir, DWORD* error) override {
        (void)dir;
        *error = ERROR_ACCESS_DENIED;
        return false;
    }
};

TEST_F(TargetCheck, StartDirectoryThatIsDeniedIsToldAsSuchAndDropped) {
    DeniedDirectoryDoc doc;
    std::wstring target = BinDir() + L"LaunchTarget.exe";
    EXPECT_TRUE(Validate(doc, target, m_files.path()));
    EXPECT_FALSE(m_startDir);
    auto rows = RowsOf(Rows(), 27199);
    ASSERT_EQ(rows.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(rows[0].texts.at(0), target);
    EXPECT_EQ(rows[0].texts.at(1), m_files.path());
    EXPECT_EQ(rows[0].texts.at(2), CodeText(ERROR_ACCESS_DENIED, 24645));
}

TEST_F(TargetCheck, StartDirectoryWhoseSearchPatternJustFitsIsAccepted) {
    // The pattern is the directory, a separator and "*.*": 255 characters leave room for them.
    const std::wstring base = m_files.path();
    const std::wstring fits = base + std::wstring(MAX_PATH - 5 - base.size(), L'd');
    const std::wstring over = base + std::wstring(MAX_PATH - 4 - base.size(), L'e');
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + fits).c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + over).c_str(), nullptr));
    DWORD error = 99;
    EXPECT_TRUE(m_doc.CheckStartDirectory(fits.c_str(), &error));
    EXPECT_EQ(error, 0u);
    EXPECT_TRUE(m_doc.CheckStartDirectory((fits + L"\\").c_str(), &error)) << "its separator is already there";
    EXPECT_EQ(error, 0u);
    EXPECT_FALSE(m_doc.CheckStartDirectory(over.c_str(), &error));
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_FILENAME_EXCED_RANGE));
    RemoveDirectoryW((L"\\\\?\\" + fits).c_str());
    RemoveDirectoryW((L"\\\\?\\" + over).c_str());
}

}  // namespace
}  // namespace lptest
