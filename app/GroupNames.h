// The user's groups as the catalogue's group overrides name them.
#pragma once
#include <windows.h>
#include <string>
#include <vector>

// Fills groups from the session's token, in the token's order, each as
// "<domain>!<name>" (only "<name>" when the account has no domain): the form of the
// subkeys under an application's Groups key. userIsAdmin tells whether one of them
// is the local administrators' group, whose name comes from strings 24579 and 24580
// of resources ("BUILTIN" and "Administrators" when they can't be loaded).
// Returns 0, or the situation number of the failure (27091 to 27096); after a
// failure groups is empty.
int ObtainGroupNames(HMODULE resources, std::vector<std::wstring>& groups, bool& userIsAdmin);
