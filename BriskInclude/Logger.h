#pragma once

#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>

namespace Logger {

// Collects one log line with the stream operators and hands it to the logging
// service when the statement ends. Use it through KOLOG:
//
//     KOLOG(1, GetModuleCode()) << "handle " << blOk << " key:[" << _qstrKey << "]";
//
// When the logging service is missing the line is dropped silently.
class LogMessageStream : public std::ostringstream
{
public:
    LogMessageStream(std::uint32_t _uiLevel, const char* _pChannel, const char* _pFile,
                     std::uint32_t _uiLine, const char* _pFunction);
    ~LogMessageStream() override;

    LogMessageStream(const LogMessageStream&) = delete;
    LogMessageStream& operator=(const LogMessageStream&) = delete;

    // The stream as an lvalue, so a temporary takes every operator<<.
    std::ostream& Stream() { return *this; }

private:
    const char* m_pFile;
    const char* m_pChannel;
    const char* m_pFunction;  // the compiler's signature; qualified name taken on output
    std::uint32_t m_uiLine;
    std::uint32_t m_uiLevel;
};

// "void CLS_ModuleBasic::TaskRequest(const QString&, ...)" -> "CLS_ModuleBasic::TaskRequest".
std::string QualifiedFunctionName(const char* _pSignature);

// A map as the indented JSON of QJsonDocument: "{\n}\n" for an empty map.
std::string ToJson(const QVariantMap& _qmapValue);

}  // namespace Logger

std::ostream& operator<<(std::ostream& _os, const QString& _qstrValue);
std::ostream& operator<<(std::ostream& _os, const QVariantMap& _qmapValue);

#if defined(_MSC_VER)
#define KO_FUNCTION_SIGNATURE __FUNCSIG__
#else
#define KO_FUNCTION_SIGNATURE __PRETTY_FUNCTION__
#endif

// One log statement: level (0 trace, 1 outcome, 3 error), channel (the module
// code), and the caller's own file, line and function.
#define KOLOG(level, channel)                                                                 \
    ::Logger::LogMessageStream((level), (channel), __FILE__, __LINE__, KO_FUNCTION_SIGNATURE) \
        .Stream()
