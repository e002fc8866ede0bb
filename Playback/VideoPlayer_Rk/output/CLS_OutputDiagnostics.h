#pragma once

#include <string>

namespace RK_Framework::VideoPlayer {

// Complaints of one output. A broken stream or a vanished window fails the
// same way for every frame, so a message is written once until it changes or
// things work again.
class CLS_OutputDiagnostics
{
public:
    explicit CLS_OutputDiagnostics(std::string _strSource) : m_strSource(std::move(_strSource)) {}

    void Report(const std::string& _strMessage);
    // Things work again: the next failure is worth a line.
    void Recovered() { m_strLast.clear(); }

private:
    std::string m_strSource;
    std::string m_strLast;
};

}  // namespace RK_Framework::VideoPlayer
