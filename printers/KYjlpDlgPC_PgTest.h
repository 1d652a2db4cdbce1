// The wizard's test page: whether a test page follows the new printer. Printing
// one is the default, also when the page is gone.
#pragma once
#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgTest : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 404;
    KYjlpDlgPC_PgTest() : KYjlpDlgPC_Pg({.templateId = kTemplateId, .headerTitleId = 24640, .headerSubtitleId = 24641}) {}
    ~KYjlpDlgPC_PgTest() override;

    DWORD GetControlHelpId(UINT id) override;
    bool CommitToRecord(bool commit) override;

protected:
    void DoDataExchange(fw::DataExchange& dx) override;
    bool OnCommand(UINT id, UINT code, HWND control) override;
    bool OnKillActive() override;

private:
    int m_nTestStart = 0;
    int m_nTestChoice = m_nTestStart;
};
