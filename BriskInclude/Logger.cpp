#include "Logger.h"

#include "KoServices.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstring>

namespace Logger {

LogMessageStream::LogMessageStream(std::uint32_t _uiLevel, const char* _pChannel,
                                   const char* _pFile, std::uint32_t _uiLine,
                                   const char* _pFunction)
    : m_pFile(_pFile),
      m_pChannel(_pChannel),
      m_pFunction(_pFunction),
      m_uiLine(_uiLine),
      m_uiLevel(_uiLevel)
{}

LogMessageStream::~LogMessageStream()
{
    try {
        const std::string strFunction = QualifiedFunctionName(m_pFunction);
        KoService::PrintLog(m_uiLevel, m_pChannel ? m_pChannel : "", m_pFile ? m_pFile : "",
                            m_uiLine, strFunction.c_str(), str());
    } catch (...) {
        // A log line is never worth an exception out of a destructor.
    }
}

std::string QualifiedFunctionName(const char* _pSignature)
{
    if (!_pSignature) return {};
    const std::string strSignature(_pSignature);

    // The name ends at the first "(" outside template brackets that is not the
    // "()" of an operator() name.
    std::size_t uiOpen = std::string::npos;
    int iDepth = 0;
    for (std::size_t i = 0; i < strSignature.size(); ++i) {
        const char ch = strSignature[i];
        if (ch == '<') {
            ++iDepth;
        } else if (ch == '>') {
            if (iDepth > 0 && !(i > 0 && strSignature[i - 1] == '-')) --iDepth;
        } else if (ch == '(' && iDepth == 0) {
            if (i >= 8 && strSignature.compare(i - 8, 8, "operator") == 0 &&
                strSignature.compare(i, 2, "()") == 0) {
                ++i;
                continue;
            }
            uiOpen = i;
            break;
        }
    }
    if (uiOpen == std::string::npos) return strSignature;

    // It starts after the last blank outside template brackets before it (the
    // return type and specifiers come first).
    std::size_t uiStart = 0;
    iDepth = 0;
    for (std::size_t i = uiOpen; i-- > 0;) {
        const char ch = strSignature[i];
        if (ch == '>') {
            ++iDepth;
        } else if (ch == '<') {
            if (iDepth > 0) --iDepth;
        } else if (ch == ' ' && iDepth == 0) {
            uiStart = i + 1;
            break;
        }
    }
    std::string strName = strSignature.substr(uiStart, uiOpen - uiStart);
    while (!strName.empty() && (strName.front() == '*' || strName.front() == '&'))
        strName.erase(0, 1);
    return strName;
}

std::string ToJson(const QVariantMap& _qmapValue)
{
    return QJsonDocument(QJsonObject::fromVariantMap(_qmapValue)).toJson().toStdString();
}

}  // namespace Logger

std::ostream& operator<<(std::ostream& _os, const QString& _qstrValue)
{
    return _os << _qstrValue.toStdString();
}

std::ostream& operator<<(std::ostream& _os, const QVariantMap& _qmapValue)
{
    return _os << Logger::ToJson(_qmapValue);
}
