#include "monitor/KYbpmEngine.h"

#include <cstdio>

#include "foundation/SituationRange.h"
#include "monitor/KYbpmText.h"

namespace {

// Levels of PM_Assertiveness from which each class is shown; failures and
// questions are shown at every level.
constexpr uint32_t kWarningLevel = 3;
constexpr uint32_t kNoticeLevel = 7;

}  // namespace

std::unique_ptr<KYbpmEngine> KYbpmEngine::create(const KYbpmSettings& settings, int& selfCode) {
    std::unique_ptr<KYbpmEngine> engine(new KYbpmEngine(settings));
    engine->m_log = KYbpmLogFile::open(settings, selfCode);
    if (!engine->m_log && selfCode != 0) return nullptr;
    return engine;
}

void KYbpmEngine::recordSituationID(int number) { m_situation.reset(number); }

bool KYbpmEngine::recordInt(int32_t value, int position) {
    return m_situation.addInt(value, position, m_settings.argsIntQty);
}

bool KYbpmEngine::recordUInt(uint32_t value, int position) {
    return m_situation.addUInt(value, position, m_settings.argsUIntQty);
}

bool KYbpmEngine::recordText(const wchar_t* text, int position) {
    return m_situation.addText(text ? text : L"", position, m_settings.argsStrQty);
}

bool KYbpmEngine::recordNarrowText(const char* text, int position) {
    return m_situation.addText(KYbpmText::FromNarrow(text, m_settings.charSet), position,
                               m_settings.argsStrQty);
}

void KYbpmEngine::forget() { m_situation.reset(0); }

const wchar_t* KYbpmEngine::tag(int tag) const {
    if (tag < 0 || tag >= KYbpmLimits::kTagCount) return nullptr;
    return m_settings.tags[static_cast<size_t>(tag)].c_str();
}

void KYbpmEngine::setResourceModule(HMODULE module) {
    if (module) m_settings.resourceModule = module;
}

bool KYbpmEngine::setCriteria(int64_t criteria) {
    m_settings.criteria = criteria;
    return true;
}

HMODULE KYbpmEngine::textModule() const {
    if (m_settings.resourceModule) return m_settings.resourceModule;
    if (m_settings.selfModule) return m_settings.selfModule;
    return GetModuleHandleW(nullptr);
}

// "Internal Error 1.036": tag 13 as a number, then the place of the number in
// the program's range, or the number itself outside it.
std::wstring KYbpmEngine::codeLine(const KYbpmSituation& situation) const {
    const int prefix = _wtoi(m_settings.tags[13].c_str());
    const int number = situation.number();
    wchar_t line[64];
    if (ky::IsProgramSituation(number))
        swprintf(line, 64, L"Internal Error %d.%03d", prefix, ky::CodeField(number));
    else
        swprintf(line, 64, L"Internal Error %d.%d", prefix, number);
    return line;
}

std::wstring KYbpmEngine::builtInDescription(const KYbpmSituation& situation) const {
    std::wstring text = L"No description is available for situation " +
                        std::to_wstring(situation.number()) + L".";
    std::wstring given;
    const auto add = [&given](const std::wstring& value) { given += (given.empty() ? L"" : L", ") + value; };
    for (const auto& v : situation.ints()) if (v) add(std::to_wstring(*v));
    for (const auto& v : situation.uints()) if (v) add(std::to_wstring(*v));
    for (const auto& v : situation.texts()) if (v) add(L"\"" + *v + L"\"");
    if (!given.empty()) text += L"\nArguments: " + given + L".";
    return text;
}

// The texts that frame a failure's description, when the resource module has them.
void KYbpmEngine::addAffixes(const KYbpmSituation& situation, std::wstring& description) const {
    std::wstring affix;
    if (m_settings.affixIdsQty >= 1 && KYbpmText::LoadResourceString(textModule(), m_settings.affixIdMin, affix) &&
        !KYbpmText::IsBlank(affix))
        description = situation.fill(affix) + L"\n\n" + description;
    if (m_settings.affixIdsQty >= 2 &&
        KYbpmText::LoadResourceString(textModule(), m_settings.affixIdMin + 1, affix) && !KYbpmText::IsBlank(affix))
        description += L"\n\n" + situation.fill(affix);
}

// The class comes from the program's own table where it has the number: the
// answer of a question must not depend on a translator keeping a directive.
KYbpmEngine::Composed KYbpmEngine::compose(const KYbpmSituation& situation) const {
    Composed composed;
    std::wstring pattern;
    std::wstring description;
    if (KYbpmText::LoadResourceString(textModule(), situation.number(), pattern)) {
        composed.directive = KYbpmDirective::take(pattern);
        description = situation.fill(pattern);
    } else {
        description = builtInDescription(situation);
    }
    if (const auto kind = m_settings.kinds.find(situation.number()); kind != m_settings.kinds.end())
        composed.directive = kind->second;
    if (const auto& given = situation.presentation()) {
        composed.text = situation.fill(given->text);
        composed.caption = given->caption;
        composed.style = given->style;
        return composed;
    }
    if (composed.directive.kind == KYbpmKind::Failure) addAffixes(situation, description);
    composed.text = codeLine(situation) + L"\n" + description;
    return composed;
}

std::wstring KYbpmEngine::describe() const {
    if (!m_situation.stands()) return {};
    return KYbpmText::PlainText(compose(m_situation).text);
}

bool KYbpmEngine::visibleAtLevel(KYbpmKind kind) const {
    switch (kind) {
    case KYbpmKind::Warning: return m_settings.mode >= kWarningLevel;
    case KYbpmKind::Notice: return m_settings.mode >= kNoticeLevel;
    case KYbpmKind::Failure:
    case KYbpmKind::Question: break;
    }
    return true;
}

const wchar_t* KYbpmEngine::caption() const {
    if (!m_settings.caption.empty()) return m_settings.caption.c_str();
    if (!KYbpmText::IsBlank(m_settings.tags[12])) return m_settings.tags[12].c_str();
    return L"Launch Panel";
}

KYbpm_FUZZY_CHOICE KYbpmEngine::canRespond() const {
    const int64_t criteria = m_settings.criteria;
    const bool logging = !(criteria & KYbpmCriteria::kNoLog);
    if (!(criteria & KYbpmCriteria::kUnattended)) return KYbpm_FUZZY_CHOICE::Yes;
    if (logging && m_log && !m_log->full()) return KYbpm_FUZZY_CHOICE::Yes;
    if (logging && !m_log && (criteria & KYbpmCriteria::kSessionLog)) return KYbpm_FUZZY_CHOICE::Unsure;
    return KYbpm_FUZZY_CHOICE::No;
}

bool KYbpmEngine::log(const KYbpmSituation& situation, const Composed& composed, int answer, bool shown,
                      bool boxed) {
    const int64_t criteria = m_settings.criteria;
    if (criteria & KYbpmCriteria::kNoLog) return false;
    if (m_log) {
        KYbpmLogEntry entry;
        GetLocalTime(&entry.time);
        entry.situation = &situation;
        entry.kind = composed.directive.kindName();
        entry.answer = answer;
        entry.shown = shown;
        entry.boxed = boxed;
        entry.text = composed.text;
        return m_log->append(entry, m_nSelfCode);
    }
    if (!(criteria & KYbpmCriteria::kSessionLog)) return false;
    return m_eventLog.report(composed.directive.kind, situation.number(), KYbpmText::PlainText(composed.text));
}

int KYbpmEngine::showBox(const Composed& composed) {
    const std::wstring plain = KYbpmText::PlainText(composed.text);
    const UINT style = composed.style ? composed.style : composed.directive.boxStyle();
    const wchar_t* title = composed.caption.empty() ? caption() : composed.caption.c_str();
    m_bBoxOpen = true;
    const int answer = MessageBoxW(m_hParent, plain.c_str(), title, style | MB_SETFOREGROUND);
    m_bBoxOpen = false;
    return answer;
}

// Shown when the class and the level allow it and nobody said "unattended";
// logged whatever the level. Taken when shown or logged. While a box of ours
// is open (its modal loop dispatches messages) a new situation is only logged:
// the user answers one box at a time, and a question asked meanwhile is refused
// rather than answered for the user.
bool KYbpmEngine::respond() {
    if (!m_situation.stands()) return false;
    // The answer works on a copy: a handler that runs during the box may record
    // a situation of its own, and this one must reach the log as it was.
    const KYbpmSituation situation = m_situation;
    const Composed composed = compose(situation);
    const KYbpmDirective& directive = composed.directive;
    const bool nested = m_bBoxOpen;
    const bool shown = visibleAtLevel(directive.kind) && !nested;
    const bool unattended = (m_settings.criteria & KYbpmCriteria::kUnattended) != 0;
    int answer = shown && !unattended ? showBox(composed) : 0;
    const bool boxed = answer != 0;
    if (!boxed && (shown || directive.kind == KYbpmKind::Question))
        answer = nested ? directive.refusal() : directive.defaultAnswer();
    m_nDlgBoxResult = answer;
    OutputDebugStringW((KYbpmText::PlainText(composed.text) + L"\n").c_str());
    const bool logged = log(situation, composed, answer, shown, boxed);
    if (!boxed && !logged) {
        m_situation = situation;  // not taken: it stands for its caller to forget
        return false;
    }
    // Taken: the situation is over, and the slot is free for the next one.
    m_situation.reset(0);
    return true;
}
