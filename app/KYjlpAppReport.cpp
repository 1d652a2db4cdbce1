// The two message-box paths that work without the program monitor: the box of
// last resort at start-up, and ReportProblem for failures gathered later.
#include "app/KYjlpApp.h"
#include "foundation/KYstdPgmStat.h"
#include "foundation/SituationRange.h"
#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"

namespace {
bool InProgramRange(int number) { return ky::IsProgramSituation(number); }

// Texts of the resource library carry fillers for the monitor's arguments
// (%s1, %i2, %u3); a box without arguments shows the sentence without them.
std::wstring WithoutFillers(const std::wstring& text) {
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'%' && i + 1 < text.size()) {
            wchar_t kind = text[i + 1];
            if (kind == L'%') {
                out += L'%';
                ++i;
                continue;
            }
            if ((kind == L's' || kind == L'i' || kind == L'u') && i + 2 < text.size() &&
                text[i + 2] >= L'1' && text[i + 2] <= L'9') {
                i += 2;
                continue;
            }
        }
        out += text[i];
    }
    return out;
}
}  // namespace

std::wstring KYjlpApp::LoadSituationText(int number) {
    std::wstring text;
    if (!InProgramRange(number) || !fw::LoadResString(static_cast<UINT>(number), text)) return {};
    text.erase(0, text.find_first_not_of(L" \t\r\n"));
    return WithoutFillers(text);
}

bool KYjlpApp::ReportStartupFailure(int number, const wchar_t* caption, UINT flags) {
    std::wstring text;
    if (InProgramRange(number)) {
        text = LoadSituationText(number);
        if (text.empty()) return false;
    }
    std::wstring format = fw::ResString(24711);
    std::wstring first;
    GetTagText(first, 13);
    if (first.empty() || first == fw::ResString(24578)) first = L"000";
    wchar_t code[256] = {};
    bool inRange = InProgramRange(number);
    _snwprintf(code, 255, format.c_str(), first.c_str(), inRange ? 3 : 1, ky::CodeField(number));
    std::wstring line = code;
    if (number == 27700 || number == 27701) {
        wchar_t self[32] = {};
        _snwprintf(self, 31, L"%c%d", L'.', m_nMonitorSelfCode);
        line += self;
    }
    text = line + L"\n" + text;
    std::wstring title = caption ? caption : L"";
    if (!caption) GetTagText(title, 12);
    HWND owner = MainWindow() && *MainWindow() ? MainWindow()->Handle() : nullptr;
    return MessageBoxW(owner, text.c_str(), title.c_str(), flags | MB_SYSTEMMODAL) != 0;
}

bool KYjlpApp::ReportProblem(int number, int second, uint32_t index, const wchar_t* caption,
                             UINT flags) {
    std::wstring text = LoadSituationText(number);
    std::wstring secondText = second ? LoadSituationText(second) : std::wstring();
    if (!text.empty() && !secondText.empty()) text += L"\n\n";
    text += secondText;
    if (index != 0xFFFFFFFF) {
        wchar_t line[256] = {};
        _snwprintf(line, 255, fw::ResString(27112).c_str(), index);
        text += L"\n";
        text += line;
    }
    std::wstring tag13;
    GetTagText(tag13, 13);
    wchar_t code[256] = {};
    _snwprintf(code, 255, fw::ResString(24712).c_str(), _wtoi(tag13.c_str()), 3, ky::CodeField(number));
    std::wstring line = code;
    if (second) {
        _snwprintf(code, 255, L".%0*u", 3, ky::CodeField(second));
        line += code;
    }
    if (index != 0xFFFFFFFF) {
        _snwprintf(code, 255, L" [%u]", index);
        line += code;
    }
    text = line + L"\n" + text;
    std::wstring title = caption ? caption : L"";
    if (!caption) GetTagText(title, 12);
    HWND owner = MainWindow() && *MainWindow() ? MainWindow()->Handle() : nullptr;
    int result = m_pStatus ? m_pStatus->ShowMessage(text, title.c_str(), flags | MB_SYSTEMMODAL, owner)
                           : MessageBoxW(owner, text.c_str(), title.c_str(), flags | MB_SYSTEMMODAL);
    return result > 0;
}
