/// Entry of the Windows tool: the arguments are UTF-16, and the console gets UTF-8.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Run.h"

int wmain(int count, wchar_t** arguments)
{
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        const std::wstring argument = arguments[i];
        texts.push_back(zupm::tool::ToUtf8(std::u16string(argument.begin(), argument.end())));
    }
    SetConsoleOutputCP(CP_UTF8);
    // A value must be read and printed unchanged; text mode would change each line break in it.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    return zupm::tool::Run(texts, std::cout, std::cerr);
}
