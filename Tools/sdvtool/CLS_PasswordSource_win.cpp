#include <windows.h>

#include <io.h>
#include <cstdio>

#include "CLS_PasswordSource.h"

bool CLS_PasswordSource::StdinIsTerminal()
{
    return _isatty(_fileno(stdin)) != 0;
}

bool CLS_PasswordSource::ReadHidden(const char* _pPrompt, CLS_Secret& _secret)
{
    std::fputs(_pPrompt, stderr);
    std::fflush(stderr);
    HANDLE hInput = GetStdHandle(STD_INPUT_HANDLE);
    DWORD dwOld = 0;
    const bool blHave = GetConsoleMode(hInput, &dwOld) != 0;
    if (blHave) SetConsoleMode(hInput, dwOld & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
    const bool blRead = ReadLine(stdin, _secret);
    if (blHave) SetConsoleMode(hInput, dwOld);
    std::fputs("\n", stderr);
    return blRead;
}
