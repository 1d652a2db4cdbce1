// The class of a situation's text, given by a directive at its start:
// {notice}, {warning}, {failure}, {question:yesno} or {question:okcancel},
// the questions optionally with ";default=no" or ";default=cancel". A text
// without a directive is a failure.
#pragma once
#include <windows.h>
#include <string>

enum class KYbpmKind { Failure, Warning, Notice, Question };

struct KYbpmDirective {
    KYbpmKind kind = KYbpmKind::Failure;
    UINT buttons = MB_OK;       // MB_OK, MB_YESNO or MB_OKCANCEL
    bool defaultSecond = false; // the question's default is no / cancel

    // Reads the directive at the start of text (leading blanks allowed) and
    // removes it with the blanks after it. An unknown directive is left in the
    // text, which then counts as a failure.
    static KYbpmDirective take(std::wstring& text);

    // The button a question answers by itself; IDOK for the other classes.
    int defaultAnswer() const;
    // The button that declines: no or cancel for questions, IDOK for the rest.
    int refusal() const;
    // The icon and button flags of its message box.
    UINT boxStyle() const;
    const wchar_t* kindName() const;
};
