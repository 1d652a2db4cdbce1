// The program's own reports: the box of last resort at start-up and
// ReportProblem for failures gathered later. Both compose their text by hand
// and hand it to one door, the program monitor, so that every report is logged
// and unattended mode never shows a box. Before the monitor stands a small one
// is brought up for the reports alone.
#include "app/KYjlpApp.h"
#include "foundation/KYstdPgmStat.h"
#include "foundation/SituationRange.h"
#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "monitor/KYbpmData.h"
#include "monitor/KYbpmDataQRW.h"
#include "monitor/KYbpmDirective.h"
#include "monitor/KYbpmLocalizeHelpers.h"

namespace {
bool InProgramRange(int number) { return ky::IsProgramSituation(number); }

// Texts of the resource library carry fillers for the monitor's arguments
// (%s1, %i2, %u3); a box shown without the monitor shows the sentence without them.
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

std::wstring Formatted(const wchar_t* format, auto... values) {
    wchar_t text[256] = {};
    _snwprintf(text, 255, format, values...);
    return text;
}
}  // namespace

// The number's text with its fillers, for the monitor to fill from the
// report's arguments; without the class directive, since a report is a failure.
std::wstring KYjlpApp::LoadSituationText(int number) {
    std::wstring text;
    if (!InProgramRange(number) || !fw::LoadResString(static_cast<UINT>(number), text)) return {};
    KYbpmDirective::take(text);
    text.erase(0, text.find_first_not_of(L" \t\r\n"));
    return text;
}

// The program's title from its own version data: the caption of every box
// that is shown before the brander can name the product.
std::wstring KYjlpApp::ProgramTitle() {
    wchar_t title[256] = {};
    if (KYbpmLocalizeHelpers::extractModuleVerValueSFI_ProductName(nullptr, title, 256, nullptr,
                                                                   L"StringFileInfo", L'\\') &&
        title[0])
        return title;
    std::wstring fallback;
    if (fw::LoadResString(57344, fallback, GetModuleHandleW(nullptr)) && !fallback.empty()) return fallback;
    return L"Launch Panel";
}

bool KYjlpApp::ReportStartupFailure(int number, const wchar_t* caption, UINT flags) {
    std::wstring text;
    if (InProgramRange(number)) {
        text = LoadSituationText(number);
        if (text.empty()) return false;
    }
    std::wstring first;
    GetTagText(first, 13);
    if (first.empty() || first == fw::ResString(24578)) first = L"000";
    const bool inRange = InProgramRange(number);
    std::wstring line = Formatted(fw::ResString(24711).c_str(), first.c_str(), inRange ? 3 : 1, ky::CodeField(number));
    Report report{.number = number, .caption = caption, .flags = flags};
    if (number == 27700 || number == 27701) {
        line += Formatted(L"%c%d", L'.', m_nMonitorSelfCode);
        report.selfCode = m_nMonitorSelfCode;
    }
    report.text = line + L"\n" + text;
    return DeliverReport(report) != 0;
}

bool KYjlpApp::ReportProblem(int number, int second, uint32_t index, const wchar_t* caption, UINT flags) {
    std::wstring text = LoadSituationText(number);
    std::wstring secondText = second ? LoadSituationText(second) : std::wstring();
    if (!text.empty() && !secondText.empty()) text += L"\n\n";
    text += secondText;
    if (index != 0xFFFFFFFF) text += L"\n" + Formatted(fw::ResString(27112).c_str(), index);
    std::wstring tag13;
    GetTagText(tag13, 13);
    std::wstring line = Formatted(fw::ResString(24712).c_str(), _wtoi(tag13.c_str()), 3, ky::CodeField(number));
    if (second) line += Formatted(L".%0*u", 3, ky::CodeField(second));
    if (index != 0xFFFFFFFF) line += Formatted(L" [%u]", index);
    Report report{.number = number, .second = second, .index = index, .caption = caption, .flags = flags};
    report.text = line + L"\n" + text;
    int result = DeliverReport(report);
    return result > 0;
}

// The answer of the report: the button taken, the default one when nobody
// could be asked, 0 when the report reached nobody.
int KYjlpApp::DeliverReport(const Report& report) {
    if (KYbpm* monitor = ReportingMonitor()) {
        monitor->forgetSituation();
        monitor->recordSituationID(report.number);
        // The arguments the texts name: %u1 the second number, %i1 the item.
        if (report.second) monitor->recordArgument(static_cast<uint32_t>(report.second));
        if (report.index != 0xFFFFFFFF) monitor->recordArgument(static_cast<int32_t>(report.index));
        if (report.selfCode) monitor->recordArgument(static_cast<int32_t>(report.selfCode));
        monitor->recordPresentation(report.text.c_str(), report.caption, report.flags | MB_SYSTEMMODAL);
        const bool taken = monitor->respondToSituation();
        monitor->forgetSituation();
        return taken ? monitor->getDisplayDlgBoxResult() : 0;
    }
    // No monitor at all: the administrator's unattended bit still holds.
    const std::wstring plain = WithoutFillers(report.text);
    OutputDebugStringW((plain + L"\n").c_str());
    if (KYbpmDataQRW::obtainBehaviorCriteria() & KYbpmCriteria::kUnattended) return 0;
    std::wstring title = report.caption ? report.caption : ProgramTitle();
    HWND owner = MainWindow() && *MainWindow() ? MainWindow()->Handle() : nullptr;
    UINT style = report.flags | MB_SYSTEMMODAL;
    return m_pStatus ? m_pStatus->ShowMessage(plain, title.c_str(), style, owner)
                     : MessageBoxW(owner, plain.c_str(), title.c_str(), style);
}

KYbpm* KYjlpApp::ReportingMonitor() {
    if (m_pMonitor) return m_pMonitor;
    if (!m_pReportMonitor) EstablishReportMonitor();
    return m_pReportMonitor;
}

// The monitor of the reports made before the program monitor stands: the
// run's log when one can be made (standalone), else the event log, with the
// behaviour criteria of the server key, the program's title as caption and
// the texts of whatever resource module is current.
void KYjlpApp::EstablishReportMonitor() {
    const int failure = m_nFailure;
    try {
        m_nFailure = 0;  // the failure being told must not stop its own log
        if (!m_bSessionDetected) DetectSession();
        std::wstring logFile, templatePath;
        if (m_bStandalone && BuildLogFileName(logFile, 0) && !BuildLogTemplatePath(templatePath))
            templatePath.clear();
        m_nFailure = 0;
        int64_t criteria = m_bStandalone ? 0 : KYbpmCriteria::kInSession;
        if (logFile.empty()) criteria |= KYbpmCriteria::kSessionLog;
        for (int attempt = 0; attempt < 2 && !m_pReportMonitor; ++attempt) {
            KYbpmData data(criteria);
            data.learnSelfResourceModule();
            data.setCharSetExternal(2);
            for (int tag = 0; tag < kTagCount; ++tag) {
                std::wstring text;
                GetTagText(text, tag);
                data.recordTag(text.c_str(), tag);
            }
            data.recordLogFileNomenclature(logFile.c_str(), templatePath.c_str(), 0);
            data.setResourceModule(fw::ResourceModule());
            data.recordDialogBoxCaption(ProgramTitle().c_str());
            RecordSituationKinds(data);
            KYbpmDataQRW::updateBehaviorCriteria(&data);
            m_pReportMonitor = KYbpm::create(&data);
            // A log file that cannot be written leaves the event log.
            logFile.clear();
            criteria |= KYbpmCriteria::kSessionLog;
        }
    } catch (...) {
        m_pReportMonitor = nullptr;
    }
    m_nFailure = failure;
}
