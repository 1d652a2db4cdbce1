// The about dialog: what the program is and who runs it. Version, build
// identifier, the account's domain, the computer, the user and the user's
// groups, and the legal text. It changes nothing.
#pragma once
#include <string>
#include <vector>

#include "dialogs/KYstdUI_Dlg.h"

class KYjlpDlgAA : public KYstdUI_Dlg {
public:
    // The controls, by what they show.
    enum Control {
        kDomain = 1000, kComputer = 1002, kUser = 1004, kGroups = 1005,
        kVersion = 1008, kLegal = 1010, kBuild = 1056
    };
    static constexpr UINT kTemplateId = 400;

    explicit KYjlpDlgAA(const KYstdUI_DlgArgs& args);
    ~KYjlpDlgAA() override;

    // Fills what is still empty, then shows the dialog; -1 when it could not be shown.
    INT_PTR DoModal() override;
    // The legal text anew; true when it is not empty.
    bool ComposeLegalText();
    // The rights line (which 12) or the trademark line (13): the brander's own
    // text when it differs from the module's, then the program's.
    bool AppendLegalLines(HMODULE module, int which, wchar_t* scratch, size_t size, const wchar_t* delimiters);
    // The fixed lines of the legal text.
    bool AppendFixedLines(wchar_t* scratch, size_t size, const wchar_t* delimiters);
    DWORD HelpIdFromControl(WORD controlId) const override;

    const std::wstring& LegalText() const noexcept { return m_strLegal; }
    const std::wstring& Version() const noexcept { return m_strVersion; }
    const std::wstring& Build() const noexcept { return m_strBuild; }
    const std::vector<std::wstring>& Groups() const noexcept { return m_groups; }

protected:
    bool OnInitDialog() override;
    void DoDataExchange(fw::DataExchange& dx) override;
    void OnDestroyed() override;

private:
    void FillFields();
    void AppendPieces(wchar_t* text, const wchar_t* delimiters, const wchar_t* between, bool afterLast);

    std::wstring m_strLegal;
    HWND m_hSavedParent = nullptr;
    bool m_bParentTaken = false;
    std::vector<std::wstring> m_groups;
    bool m_bGroupsRead = false;
    std::wstring m_strVersion;
    std::wstring m_strBuild;
    std::wstring m_strDomain;
    std::wstring m_strSysInfo;
    std::wstring m_strUser;
};
