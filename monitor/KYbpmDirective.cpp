#include "monitor/KYbpmDirective.h"

#include <cwctype>

namespace {

bool ParseQuestion(const std::wstring& body, KYbpmDirective& directive) {
    std::wstring form = body, option;
    const size_t semicolon = body.find(L';');
    if (semicolon != std::wstring::npos) {
        form = body.substr(0, semicolon);
        option = body.substr(semicolon + 1);
    }
    if (form == L"yesno") {
        directive.buttons = MB_YESNO;
        if (option == L"default=no") directive.defaultSecond = true;
        else if (!option.empty() && option != L"default=yes") return false;
    } else if (form == L"okcancel") {
        directive.buttons = MB_OKCANCEL;
        if (option == L"default=cancel") directive.defaultSecond = true;
        else if (!option.empty() && option != L"default=ok") return false;
    } else {
        return false;
    }
    directive.kind = KYbpmKind::Question;
    return true;
}

bool ParseBody(const std::wstring& body, KYbpmDirective& directive) {
    if (body == L"notice") directive.kind = KYbpmKind::Notice;
    else if (body == L"warning") directive.kind = KYbpmKind::Warning;
    else if (body == L"failure") directive.kind = KYbpmKind::Failure;
    else if (body.rfind(L"question:", 0) == 0) return ParseQuestion(body.substr(9), directive);
    else return false;
    return true;
}

}  // namespace

KYbpmDirective KYbpmDirective::take(std::wstring& text) {
    KYbpmDirective directive;
    size_t start = 0;
    while (start < text.size() && std::iswspace(text[start])) ++start;
    if (start >= text.size() || text[start] != L'{') return directive;
    const size_t close = text.find(L'}', start);
    if (close == std::wstring::npos) return directive;
    KYbpmDirective parsed;
    if (!ParseBody(text.substr(start + 1, close - start - 1), parsed)) return directive;
    size_t rest = close + 1;
    while (rest < text.size() && std::iswspace(text[rest])) ++rest;
    text.erase(0, rest);
    return parsed;
}

int KYbpmDirective::defaultAnswer() const {
    if (buttons == MB_YESNO) return defaultSecond ? IDNO : IDYES;
    if (buttons == MB_OKCANCEL) return defaultSecond ? IDCANCEL : IDOK;
    return IDOK;
}

int KYbpmDirective::refusal() const {
    if (buttons == MB_YESNO) return IDNO;
    if (buttons == MB_OKCANCEL) return IDCANCEL;
    return IDOK;
}

UINT KYbpmDirective::boxStyle() const {
    UINT icon = MB_ICONERROR;
    switch (kind) {
    case KYbpmKind::Warning: icon = MB_ICONWARNING; break;
    case KYbpmKind::Notice: icon = MB_ICONINFORMATION; break;
    case KYbpmKind::Question: icon = MB_ICONQUESTION; break;
    case KYbpmKind::Failure: break;
    }
    return buttons | icon | (defaultSecond ? MB_DEFBUTTON2 : MB_DEFBUTTON1);
}

const wchar_t* KYbpmDirective::kindName() const {
    switch (kind) {
    case KYbpmKind::Warning: return L"warning";
    case KYbpmKind::Notice: return L"notice";
    case KYbpmKind::Question: return L"question";
    case KYbpmKind::Failure: break;
    }
    return L"failure";
}
