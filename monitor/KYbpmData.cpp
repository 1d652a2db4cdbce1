#include "monitor/KYbpmData.h"

#include "monitor/KYbpmSelfCode.h"
#include "monitor/KYbpmText.h"

KYbpmData::KYbpmData(const int64_t& criteria) {
    m_settings.criteria = criteria;
}

KYbpmData::~KYbpmData() = default;

bool KYbpmData::fail(int code) {
    m_nSelfCode = code;
    return false;
}

bool KYbpmData::setCount(int& target, int n, int highest) {
    if (n < 0 || n > highest) return fail(KYbpmSelfCode::kOutOfRange);
    target = n;
    return true;
}

// The module that holds the monitor's code: the place of its own texts, and the
// module for situation texts until the program names another.
bool KYbpmData::learnSelfResourceModule() {
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&KYbpmText::LoadResourceString), &module) ||
        !module)
        return fail(KYbpmSelfCode::kModuleUnknown);
    m_settings.selfModule = module;
    return true;
}

int KYbpmData::getSelfDX_Code() const { return m_nSelfCode; }

void KYbpmData::forgetSelfDX_Code() { m_nSelfCode = KYbpmSelfCode::kNone; }

bool KYbpmData::isSelfSatisfied() const { return m_nSelfCode == KYbpmSelfCode::kNone; }

// The fault tolerance is kept for the log's header; the monitor answers the same way at every level.
bool KYbpmData::setSelfDX_FaultTolerance(int level) {
    return setCount(m_settings.faultTolerance, level, 3);
}

bool KYbpmData::setCharSetExternal(int charset) {
    return setCount(m_settings.charSet, charset, KYbpmCharSet::kUtf8);
}

bool KYbpmData::setLogFileByteCountLimit(uint32_t limit, uint32_t& granted) {
    granted = m_settings.logByteLimit;
    if (limit == 0) return fail(KYbpmSelfCode::kOutOfRange);
    if (limit < KYbpmLimits::kMinLogBytes) limit = KYbpmLimits::kMinLogBytes;
    if (limit > KYbpmLimits::kMaxLogBytes) limit = KYbpmLimits::kMaxLogBytes;
    m_settings.logByteLimit = granted = limit;
    return true;
}

// A blank tag is stored as blank (tag 10 always is) but still answers false,
// so that the caller can tell; the program forgives it.
bool KYbpmData::recordTag(const wchar_t* text, int tag) {
    if (tag < 0 || tag >= KYbpmLimits::kTagCount) return fail(KYbpmSelfCode::kOutOfRange);
    m_settings.tags[tag] = text ? text : L"";
    if (!text) return fail(KYbpmSelfCode::kNullInput);
    if (KYbpmText::IsBlank(text)) return fail(KYbpmSelfCode::kBlankInput);
    return true;
}

// No file name is no failure: inside a session the monitor writes no file.
bool KYbpmData::recordLogFileNomenclature(const wchar_t* logFile, const wchar_t* templatePath,
                                          uint32_t form) {
    m_settings.logFile = logFile ? logFile : L"";
    m_settings.templatePath = templatePath ? templatePath : L"";
    m_settings.logForm = form;
    return true;
}

bool KYbpmData::setSituationMode(uint32_t mode) {
    if (mode > KYbpmLimits::kMaxMode) return fail(KYbpmSelfCode::kOutOfRange);
    m_settings.mode = mode;
    return true;
}

bool KYbpmData::setResourceModule(HMODULE module) {
    if (!module) return fail(KYbpmSelfCode::kNullInput);
    m_settings.resourceModule = module;
    return true;
}

// Checked and kept; the monitor fills every filler of a description whatever the quantity.
bool KYbpmData::setDescriptionFillersQty(int n) {
    return setCount(m_settings.fillersQty, n, KYbpmLimits::kMaxFillers);
}

bool KYbpmData::setArgsIntQty(int n) {
    return setCount(m_settings.argsIntQty, n, KYbpmLimits::kArgsPerKind);
}

bool KYbpmData::setArgsStrQty(int n) {
    return setCount(m_settings.argsStrQty, n, KYbpmLimits::kArgsPerKind);
}

bool KYbpmData::setArgsUIntQty(int n) {
    return setCount(m_settings.argsUIntQty, n, KYbpmLimits::kArgsPerKind);
}

bool KYbpmData::setDescriptionAffixIDsQty(int n) {
    return setCount(m_settings.affixIdsQty, n, KYbpmLimits::kMaxAffixIds);
}

bool KYbpmData::setDescriptionAffixID_Min(int id) {
    if (id <= 0 || id > 0xFFFF - 1) return fail(KYbpmSelfCode::kOutOfRange);
    m_settings.affixIdMin = id;
    return true;
}

// A null caption puts back the default (tag 12, else the product's name); a
// blank one is refused.
bool KYbpmData::recordDialogBoxCaption(const wchar_t* caption) {
    if (!caption) {
        m_settings.caption.clear();
        return true;
    }
    if (KYbpmText::IsBlank(caption)) return fail(KYbpmSelfCode::kBlankInput);
    m_settings.caption = caption;
    return true;
}

bool KYbpmData::createPlugIns(int count) {
    return setCount(m_settings.plugIns, count, KYbpmLimits::kMaxPlugIns);
}

bool KYbpmData::sizeMapOfDataForThreads(int count) {
    if (count < 1) return fail(KYbpmSelfCode::kOutOfRange);
    return setCount(m_settings.threads, count, KYbpmLimits::kMaxThreads);
}

bool KYbpmData::recordSituationKind(int number, const KYbpmDirective& kind) {
    if (number <= 0) return fail(KYbpmSelfCode::kOutOfRange);
    m_settings.kinds[number] = kind;
    return true;
}
