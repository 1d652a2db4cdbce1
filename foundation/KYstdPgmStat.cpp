#include "foundation/KYstdPgmStat.h"

namespace {
// The process keeps one status; the flag says that a data object is attached.
KYstdPgmStat* g_pStatus = nullptr;
bool g_bAttached = false;
}  // namespace

KYstdPgmStat* KYstdPgmStat::CreateStatus(std::unique_ptr<KYstdPgmStat_DATA>& holder) {
    if (g_pStatus) return g_pStatus;
    if (!holder || !holder->IsValid()) return nullptr;
    try {
        auto* status = new KYstdPgmStat(holder.get());
        holder.release();
        g_pStatus = status;
        return status;
    } catch (...) {
        return nullptr;
    }
}

KYstdPgmStat* KYstdPgmStat::Instance() { return g_pStatus; }

KYstdPgmStat::KYstdPgmStat(KYstdPgmStat_DATA* data) {
    ClearStatus();
    if (!Attach(data)) {
        g_bAttached = false;
        m_pData = nullptr;  // the caller still owns the data it offered
        throw false;
    }
}

KYstdPgmStat::~KYstdPgmStat() {
    Detach();
    g_bAttached = false;
    if (g_pStatus == this) g_pStatus = nullptr;
}

bool KYstdPgmStat::Attach(KYstdPgmStat_DATA* data) {
    if (g_bAttached || !data || !data->IsValid()) {
        g_bAttached = false;
        Detach();
        return false;
    }
    m_pData = data;
    g_bAttached = true;
    return true;
}

void KYstdPgmStat::Detach() {
    delete m_pData;
    m_pData = nullptr;
}

void KYstdPgmStat::ClearStatus() {
    if (!m_pData) return;
    m_pData->ClearSituations();
    m_pData->ClearDetails();
}

uint32_t KYstdPgmStat::FirstSituation() const {
    return m_pData && m_pData->SituationCount() > 0 ? m_pData->Situation(0) : 0;
}

int KYstdPgmStat::ShowMessage(const std::wstring& text, const wchar_t* title, UINT style,
                              HWND owner) {
    if (!title && m_pData) title = m_pData->Title();
    return MessageBoxW(owner, text.c_str(), title, style);
}
