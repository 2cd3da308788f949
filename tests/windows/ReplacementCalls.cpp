// This program's imports of the calls lead here.
#include "tests/windows/ReplacementCalls.h"

namespace zupm::test {

namespace {

template <class Call>
Call SystemCall(const wchar_t* module, const char* name)
{
    return reinterpret_cast<Call>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(module), name)));
}

using Move = BOOL(WINAPI*)(LPCWSTR, LPCWSTR, DWORD);
using Replace = BOOL(WINAPI*)(LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID);
using GetSecurity = BOOL(WINAPI*)(LPCWSTR, SECURITY_INFORMATION, PSECURITY_DESCRIPTOR, DWORD, LPDWORD);

BOOL Answer(DWORD error)
{
    SetLastError(error);
    return error == ERROR_SUCCESS ? TRUE : FALSE;
}

BOOL WINAPI MoveOrAsk(LPCWSTR from, LPCWSTR to, DWORD flags)
{
    return Answer(Calls().move ? Calls().move(from, to) : MoveBySystem(from, to, flags));
}

BOOL WINAPI ReplaceOrAsk(LPCWSTR target, LPCWSTR replacement, LPCWSTR backup, DWORD, LPVOID, LPVOID)
{
    return Answer(Calls().replace ? Calls().replace(target, replacement, backup)
                                  : ReplaceBySystem(target, replacement, backup));
}

BOOL WINAPI GetSecurityOrFail(LPCWSTR path, SECURITY_INFORMATION parts, PSECURITY_DESCRIPTOR descriptor, DWORD size,
                              LPDWORD needed)
{
    if (Calls().accessListError != 0) {
        return Answer(Calls().accessListError);
    }
    return SystemCall<GetSecurity>(L"advapi32.dll", "GetFileSecurityW")(path, parts, descriptor, size, needed);
}

}  // namespace

ReplacementCalls& Calls()
{
    static ReplacementCalls calls;
    return calls;
}

DWORD MoveBySystem(const std::wstring& from, const std::wstring& to, DWORD flags)
{
    const auto call = SystemCall<Move>(L"kernel32.dll", "MoveFileExW");
    return call(from.c_str(), to.c_str(), flags) != 0 ? ERROR_SUCCESS : GetLastError();
}

DWORD ReplaceBySystem(const std::wstring& target, const std::wstring& replacement, const std::wstring& backup)
{
    const auto call = SystemCall<Replace>(L"kernel32.dll", "ReplaceFileW");
    return call(target.c_str(), replacement.c_str(), backup.c_str(), 0, nullptr, nullptr) != 0 ? ERROR_SUCCESS
                                                                                               : GetLastError();
}

// What a dllimport declaration calls through.
extern "C" {
extern const Move __imp_MoveFileExW;
extern const Replace __imp_ReplaceFileW;
extern const GetSecurity __imp_GetFileSecurityW;
const Move __imp_MoveFileExW = MoveOrAsk;
const Replace __imp_ReplaceFileW = ReplaceOrAsk;
const GetSecurity __imp_GetFileSecurityW = GetSecurityOrFail;
}

}  // namespace zupm::test
