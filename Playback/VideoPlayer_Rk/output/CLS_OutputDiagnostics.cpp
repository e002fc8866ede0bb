#include "CLS_OutputDiagnostics.h"

#include <cstdio>

namespace RK_Framework::VideoPlayer {

void CLS_OutputDiagnostics::Report(const std::string& _strMessage)
{
    if (_strMessage == m_strLast) return;
    m_strLast = _strMessage;
    std::fprintf(stderr, "%s: %s\n", m_strSource.c_str(), _strMessage.c_str());
}

}  // namespace RK_Framework::VideoPlayer
