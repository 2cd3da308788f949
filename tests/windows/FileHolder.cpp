// Locks the file that its argument names, creates a file named after it with ".held", and keeps both until it is ended.
#include <windows.h>

#include <string>

#include "platform/HeldFile.h"

int wmain(int count, wchar_t** arguments)
{
    const std::wstring path = count > 1 ? arguments[1] : L"";
    zupm::HeldFile file;
    if (file.Open(std::u16string(path.begin(), path.end())) < 0 || file.TryLock() < 0) {
        return 1;
    }
    const HANDLE sign = CreateFileW((path + L".held").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    CloseHandle(sign);
    Sleep(INFINITE);
    return 0;
}
