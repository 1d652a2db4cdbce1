// The wizard's finish page: what was chosen, and the Finish that adds the printer.
#pragma once
#include "printers/KYjlpDlgPC_Pg.h"

class KYjlpDlgPC_PgWizBye : public KYjlpDlgPC_Pg {
public:
    static constexpr UINT kTemplateId = 405;
    KYjlpDlgPC_PgWizBye() : KYjlpDlgPC_Pg({.templateId = kTemplateId}) {}

    DWORD GetControlHelpId(UINT id) override;

protected:
    bool OnInitDialog() override;
    bool OnSetActive() override;
    bool OnWizardFinish() override;

private:
    void ShowChoice();
};
