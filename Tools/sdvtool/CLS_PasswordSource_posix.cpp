#include <termios.h>
#include <unistd.h>

#include <cstdio>

#include "CLS_PasswordSource.h"

bool CLS_PasswordSource::StdinIsTerminal()
{
    return isatty(STDIN_FILENO) == 1;
}

bool CLS_PasswordSource::ReadHidden(const char* _pPrompt, CLS_Secret& _secret)
{
    std::fputs(_pPrompt, stderr);
    std::fflush(stderr);
    termios stOld{};
    const bool blHave = tcgetattr(STDIN_FILENO, &stOld) == 0;
    if (blHave) {
        termios stQuiet = stOld;
        stQuiet.c_lflag &= static_cast<tcflag_t>(~ECHO);
        stQuiet.c_lflag |= ECHONL;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &stQuiet);
    }
    const bool blRead = ReadLine(stdin, _secret);
    if (blHave) tcsetattr(STDIN_FILENO, TCSAFLUSH, &stOld);
    return blRead;
}
