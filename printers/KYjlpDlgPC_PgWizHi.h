// The wizard's welcome page, beside the watermark, with a big title.
#pragma once
#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgWizHi : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 406;
    KYjlpDlgPC_PgWizHi() : KYjlpDlgPC_Pg({.templateId = kTemplateId}) {}

    DWORD GetControlHelpId(UINT id) override;

protected:
    bool OnInitDialog() override;
    bool OnSetActive() override;
};

// The welcome and finish pages' big title: the page's font at 28 points, times
// `scale`. The control keeps the handle; the font object goes at once.
void SetBigTitleFont(HWND page, int controlId, int scale);
