#include "restricted_token.h"

OwnedHandle make_restricted_token() {
    OwnedHandle own;
    OwnedHandle restricted;
    BYTE administrators[SECURITY_MAX_SID_SIZE] = {};
    DWORD size = sizeof administrators;
    if (OpenProcessToken(GetCurrentProcess(),
                         TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY | TOKEN_QUERY | TOKEN_ADJUST_DEFAULT,
                         own.out()) != FALSE &&
        CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) != FALSE) {
        SID_AND_ATTRIBUTES disabled = {administrators, 0};
        if (CreateRestrictedToken(own.get(), 0, 1, &disabled, 0, nullptr, 0, nullptr, restricted.out()) ==
            FALSE) {
            restricted.reset();
        }
    }
    return restricted;
}
