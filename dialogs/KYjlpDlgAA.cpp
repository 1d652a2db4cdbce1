#include "dialogs/KYjlpDlgAA.h"

#include <cwchar>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "dialogs/DialogHelpIds.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "monitor/KYbpmLocalizeHelpers.h"

namespace {
constexpr int kRightsLine = 12;
constexpr int kTrademarkLine = 13;
constexpr UINT kCaptionFormat = 24593;
constexpr UINT kRightsText = 24601;
constexpr UINT kBrandedRightsText = 24602;
constexpr UINT kBrandedTrademarkText = 24603;
constexpr UINT kFirstFixedLine = 24604;
constexpr UINT kLastFixedLine = 24611;
constexpr size_t kLegalChars = 1024;
constexpr wchar_t kLineEnd[] = L"\r\n";

KYbpm* Monitor() {
    KYjlpApp* app = TheApp();
    return app ? app->m_pMonitor : nullptr;
}

// A text of identity with a leading blank, as the dialog's fields show it; empty when unknown.
std::wstring Field(int tag) {
    std::wstring text;
    KYjlpApp* app = TheApp();
    if (!app || !app->GetTagText(text, tag)) return {};
    return L" " + text;
}

// The product version of the resource module, as four numbers.
std::wstring ModuleVersion(HMODULE module) {
    HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    HGLOBAL loaded = found ? ::LoadResource(module, found) : nullptr;
    const void* data = loaded ? ::LockResource(loaded) : nullptr;
    const DWORD size = found ? ::SizeofResource(module, found) : 0;
    if (!data || size == 0) return {};
    // VerQueryValueW may write into the block: it reads a copy with room to spare.
    std::vector<BYTE> block(static_cast<const BYTE*>(data), static_cast<const BYTE*>(data) + size);
    block.resize(static_cast<size_t>(size) * 2);
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    if (!::VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length) || !info) return {};
    wchar_t text[64];
    std::swprintf(text, 64, L"%u.%u.%u.%u", HIWORD(info->dwProductVersionMS), LOWORD(info->dwProductVersionMS),
                  HIWORD(info->dwProductVersionLS), LOWORD(info->dwProductVersionLS));
    return text;
}

// The catalogue names a group "<domain>!<name>"; a person reads "<domain>\<name>".
std::wstring ShownGroup(std::wstring group) {
    if (size_t separator = group.find(L'!'); separator != std::wstring::npos) group[separator] = L'\\';
    return group;
}
}  // namespace

KYjlpDlgAA::KYjlpDlgAA(const KYstdUI_DlgArgs& args) : KYstdUI_Dlg(args) {
    if (KYbpm* monitor = Monitor()) m_hSavedParent = monitor->getDisplayDlgBoxParent();
}

KYjlpDlgAA::~KYjlpDlgAA() {
    m_strLegal.clear();
    OnDestroyed();
}

void KYjlpDlgAA::FillFields() {
    if (m_strVersion.empty()) {
        std::wstring version = ModuleVersion(fw::ResourceModule());
        if (!version.empty()) m_strVersion = L" " + version;
    }
    if (m_strBuild.empty()) m_strBuild = Field(4);
    if (m_strDomain.empty()) m_strDomain = Field(8);
    if (m_strSysInfo.empty()) m_strSysInfo = Field(9);
    if (m_strUser.empty()) m_strUser = Field(11);
    if (!m_bGroupsRead) {
        if (KYjlpApp* app = TheApp())
            for (const std::wstring& group : app->m_astrGroups) m_groups.push_back(ShownGroup(group));
        m_bGroupsRead = true;
    }
    if (m_strLegal.empty()) ComposeLegalText();
}

INT_PTR KYjlpDlgAA::DoModal() {
    try {
        FillFields();
        return KYstdUI_Dlg::DoModal();
    } catch (...) {
        if (m_hwnd) EndDialog(-1);
        return -1;
    }
}

void KYjlpDlgAA::AppendPieces(wchar_t* text, const wchar_t* delimiters, const wchar_t* between, bool afterLast) {
    wchar_t* state = nullptr;
    bool first = true;
    for (wchar_t* piece = wcstok_s(text, delimiters, &state); piece; piece = wcstok_s(nullptr, delimiters, &state)) {
        if (!first && !afterLast) m_strLegal += between;
        m_strLegal += piece;
        if (afterLast) m_strLegal += between;
        first = false;
    }
}

bool KYjlpDlgAA::AppendLegalLines(HMODULE module, int which, wchar_t* scratch, size_t size,
                                  const wchar_t* delimiters) {
    if ((which != kRightsLine && which != kTrademarkLine) || !scratch || size == 0 || !delimiters) return false;
    scratch[0] = L'\0';
    KYjlpApp* app = TheApp();
    if (app && app->m_pBrander) app->m_pBrander->loadText(which, scratch, static_cast<int>(size));
    wchar_t local[kLegalChars] = {};
    if (which == kRightsLine)
        KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalCN(module, local, kLegalChars, nullptr, L"StringFileInfo", L'\\');
    else
        KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalTM(module, local, kLegalChars, nullptr, L"StringFileInfo", L'\\');
    // A brander with nothing of its own, or the module's own words, adds nothing.
    const bool equal = scratch[0] == L'\0' || std::wcscmp(scratch, local) == 0;
    if (equal) scratch[0] = L'\0';
    const UINT textId = which == kRightsLine ? (equal ? kRightsText : kBrandedRightsText)
                                             : (equal ? 0 : kBrandedTrademarkText);
    if (textId != 0) {
        std::wstring loaded;
        local[0] = L'\0';
        if (fw::LoadResString(textId, loaded)) std::wcsncpy(local, loaded.c_str(), kLegalChars - 1);
    }
    const bool hadScratch = scratch[0] != L'\0';
    if (hadScratch) AppendPieces(scratch, delimiters, kLineEnd, true);
    if (local[0]) {
        if (hadScratch) m_strLegal += kLineEnd;
        std::wcsncpy(scratch, local, size - 1);
        scratch[size - 1] = L'\0';
        AppendPieces(scratch, delimiters, kLineEnd, true);
    }
    if (which == kTrademarkLine && equal) m_strLegal += kLineEnd;
    return true;
}

bool KYjlpDlgAA::AppendFixedLines(wchar_t* scratch, size_t size, const wchar_t* delimiters) {
    if (!scratch || size == 0 || !delimiters) return false;
    for (UINT id = kFirstFixedLine; id <= kLastFixedLine; ++id) {
        std::wstring text;
        if (!fw::LoadResString(id, text) || text.empty()) continue;
        std::wcsncpy(scratch, text.c_str(), size - 1);
        scratch[size - 1] = L'\0';
        AppendPieces(scratch, delimiters, kLineEnd, false);
        if (id < kLastFixedLine) m_strLegal += kLineEnd;
    }
    return true;
}

bool KYjlpDlgAA::ComposeLegalText() {
    m_strLegal.clear();
    try {
        wchar_t scratch[kLegalChars];
        const HMODULE module = fw::ResourceModule();
        AppendLegalLines(module, kRightsLine, scratch, kLegalChars, L"\n");
        if (!m_strLegal.empty()) m_strLegal += kLineEnd;
        AppendLegalLines(module, kTrademarkLine, scratch, kLegalChars, L"\n");
        AppendFixedLines(scratch, kLegalChars, L"\n");
    } catch (...) {
        m_strLegal.clear();
    }
    return !m_strLegal.empty();
}

void KYjlpDlgAA::DoDataExchange(fw::DataExchange& dx) {
    if (dx.Saving()) return;  // the dialog only shows
    dx.Text(kVersion, m_strVersion);
    dx.Text(kBuild, m_strBuild);
    dx.Text(kDomain, m_strDomain);
    dx.Text(kComputer, m_strSysInfo);
    dx.Text(kUser, m_strUser);
}

bool KYjlpDlgAA::OnInitDialog() {
    KYstdUI_Dlg::OnInitDialog();
    if (KYbpm* monitor = Monitor()) {
        m_hSavedParent = monitor->getDisplayDlgBoxParent();
        monitor->setDisplayDlgBoxParent(m_hwnd);
        m_bParentTaken = true;
    }
    KYjlpApp* app = TheApp();
    std::wstring product, support;
    if (app && app->GetTagText(product, 2) && app->GetTagText(support, 14)) {
        wchar_t caption[512] = {};
        _snwprintf(caption, 511, fw::ResString(kCaptionFormat).c_str(), product.c_str(), support.c_str());
        if (caption[0]) SetText(caption);
    }
    if (HWND list = Item(kGroups)) {
        if (::SendMessageW(list, LB_GETCOUNT, 0, 0) > 0) ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const std::wstring& group : m_groups)
            ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(group.c_str()));
    }
    if (HWND legal = Item(kLegal)) {
        ::SendMessageW(legal, EM_SETREADONLY, TRUE, 0);
        ::SetWindowTextW(legal, m_strLegal.c_str());
    }
    CenterWindow();
    return true;
}

void KYjlpDlgAA::OnDestroyed() {
    KYbpm* monitor = Monitor();
    if (m_bParentTaken && monitor && monitor->getDisplayDlgBoxParent() != m_hSavedParent)
        monitor->setDisplayDlgBoxParent(m_hSavedParent);
    m_bParentTaken = false;
}

DWORD KYjlpDlgAA::HelpIdFromControl(WORD controlId) const {
    switch (controlId) {
    case kDomain: case kComputer: case kUser: case kGroups: case kVersion: case kLegal: case kBuild:
        return lphelp::ForControl(controlId);
    case 1001: return lphelp::ForControl(kDomain);
    case 1003: return lphelp::ForControl(kComputer);
    case 1006: return lphelp::ForControl(kGroups);
    case 1007: return lphelp::ForControl(kUser);
    case 1009: return lphelp::ForControl(kVersion);
    case 1057: return lphelp::ForControl(kBuild);
    default: return KYstdUI_Dlg::HelpIdFromControl(controlId);
    }
}
