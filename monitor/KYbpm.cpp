#include "monitor/KYbpm.h"

#include <new>

#include "monitor/KYbpmData.h"
#include "monitor/KYbpmEngine.h"
#include "monitor/KYbpmSelfCode.h"

KYbpm* KYbpm::create(KYbpmData* data) {
    if (!data) return nullptr;
    try {
        int selfCode = KYbpmSelfCode::kNone;
        auto engine = KYbpmEngine::create(data->m_settings, selfCode);
        if (!engine) {
            data->m_nSelfCode = selfCode;
            return nullptr;
        }
        return new KYbpm(std::move(engine));
    } catch (const std::bad_alloc&) {
        data->m_nSelfCode = KYbpmSelfCode::kNoMemory;
        return nullptr;
    }
}

void KYbpm::destroy(KYbpm** monitor, int reserved, bool nullIt) {
    (void)reserved;
    if (!monitor) return;
    delete *monitor;
    if (nullIt) *monitor = nullptr;
}

KYbpm::KYbpm(std::unique_ptr<KYbpmEngine> engine) : m_engine(std::move(engine)) {}

KYbpm::~KYbpm() = default;

void KYbpm::recordSituationID(int number) { m_engine->recordSituationID(number); }

bool KYbpm::recordArgument(int32_t value, int position) { return m_engine->recordInt(value, position); }

bool KYbpm::recordArgument(uint32_t value, int position) { return m_engine->recordUInt(value, position); }

bool KYbpm::recordArgument(const char* text, int position) {
    return m_engine->recordNarrowText(text, position);
}

bool KYbpm::recordArgument(const wchar_t* text, int position) { return m_engine->recordText(text, position); }

void KYbpm::recordPresentation(const wchar_t* text, const wchar_t* caption, UINT style) {
    m_engine->present({.text = text ? text : L"", .caption = caption ? caption : L"", .style = style});
}

bool KYbpm::respondToSituation() { return m_engine->respond(); }

void KYbpm::forgetSituation() { m_engine->forget(); }

bool KYbpm::isSituationNormal() const { return m_engine->isNormal(); }

int KYbpm::getSituationID() const { return m_engine->situationId(); }

int KYbpm::getSituationsCount() const { return m_engine->count(); }

KYbpm_FUZZY_CHOICE KYbpm::canRespondToSituations() const { return m_engine->canRespond(); }

int KYbpm::getDisplayDlgBoxResult() const { return m_engine->dlgBoxResult(); }

HWND KYbpm::getDisplayDlgBoxParent() const { return m_engine->dlgBoxParent(); }

void KYbpm::setDisplayDlgBoxParent(HWND parent) { m_engine->setDlgBoxParent(parent); }

const wchar_t* KYbpm::getTag(int tag) const { return m_engine->tag(tag); }

void KYbpm::setResourceModule(HMODULE module) { m_engine->setResourceModule(module); }

bool KYbpm::setBehaviorCriteria(int64_t criteria) { return m_engine->setCriteria(criteria); }

void KYbpm::forgetSelfDX_Code() { m_engine->forgetSelfCode(); }

int KYbpm::getSelfDX_Code() const { return m_engine->selfCode(); }

std::wstring KYbpm::describeSituation() const { return m_engine->describe(); }
