#include "CLS_LogService.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

namespace fs = std::filesystem;

struct CLS_LogService::State
{
    std::string m_strDir;
    int m_iDefaultLevel = 0;
    std::mutex m_mutex;
    std::map<std::string, int> m_mapChannelLevel;
    // Keyed by file name, not channel: two channels that sanitise to the same
    // file must share one sink, or their rotations would fight over the file.
    // A null entry marks a file that could not be opened; it is not retried so
    // that a broken folder costs one message, not one per record.
    std::map<std::string, std::shared_ptr<spdlog::logger>> m_mapLoggers;
};

namespace {

spdlog::level::level_enum ToSpdLevel(unsigned _uiLevel)
{
    switch (_uiLevel) {
        case 0:
            return spdlog::level::trace;
        case 1:
            return spdlog::level::info;
        case 2:
            return spdlog::level::warn;
        case 3:
            return spdlog::level::err;
        default:
            return spdlog::level::critical;
    }
}

const char* BaseName(const char* _pPath)
{
    const char* pBase = _pPath;
    for (const char* p = _pPath; *p; ++p) {
        if (*p == '/' || *p == '\\') pBase = p + 1;
    }
    return pBase;
}

bool IsWindowsDeviceName(std::string _strName)
{
    std::transform(_strName.begin(), _strName.end(), _strName.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    static const char* const s_reserved[] = {"CON", "PRN", "AUX", "NUL"};
    for (const char* pReserved : s_reserved) {
        if (_strName == pReserved) return true;
    }
    return _strName.size() == 4 &&
           (_strName.rfind("COM", 0) == 0 || _strName.rfind("LPT", 0) == 0) &&
           std::isdigit(static_cast<unsigned char>(_strName[3]));
}

bool CanWriteInto(const fs::path& _dir)
{
    const fs::path probe = _dir / ".kolog-write-probe";
    {
        std::ofstream out(probe, std::ios::out | std::ios::trunc);
        if (!out) return false;
        out << '\n';
        if (!out) return false;
    }
    std::error_code ec;
    fs::remove(probe, ec);
    return true;
}

}  // namespace

CLS_LogService::CLS_LogService() : CLS_LogService(Options{}) {}

CLS_LogService::CLS_LogService(const Options& _options) : m_options(_options)
{
    m_options.m_sizeMaxFileBytes = std::max<std::size_t>(m_options.m_sizeMaxFileBytes, 1024);
    m_options.m_sizeMaxFiles = std::max<std::size_t>(m_options.m_sizeMaxFiles, 1);
}

CLS_LogService::~CLS_LogService() = default;

std::string CLS_LogService::ChannelFileName(const std::string& _strChannel)
{
    std::string strName;
    strName.reserve(_strChannel.size());
    for (const char c : _strChannel) {
        const bool blSafe =
            std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.';
        strName += blSafe ? c : '_';
    }
    constexpr std::size_t kMaxLength = 120;
    if (strName.size() > kMaxLength) strName.resize(kMaxLength);
    // A leading dot would hide the file, and "." or ".." would name a folder.
    if (!strName.empty() && strName.front() == '.') strName.front() = '_';
    if (strName.empty()) strName = "Default";
    if (IsWindowsDeviceName(strName)) strName.insert(0, 1, '_');
    return strName;
}

bool CLS_LogService::Init(const std::string& _strLogDir, int _iLevel)
{
    if (_strLogDir.empty()) return false;
    std::error_code ec;
    const fs::path dir = fs::u8path(_strLogDir);
    fs::create_directories(dir, ec);
    if (!fs::is_directory(dir, ec) || !CanWriteInto(dir)) {
        std::cerr << "KoLog: cannot write log files into \"" << _strLogDir << "\"" << std::endl;
        return false;
    }
    auto pState = std::make_shared<State>();
    pState->m_strDir = dir.u8string();
    pState->m_iDefaultLevel = _iLevel;
    SwapState(std::move(pState));
    return true;
}

void CLS_LogService::SwapState(std::shared_ptr<State> _pState)
{
    std::shared_ptr<State> pOld = std::atomic_exchange(&m_pState, std::move(_pState));
    // Calls that picked up the old state before the exchange finish their
    // record; none can pick it up any more, so this wait is short and bounded.
    while (pOld && pOld.use_count() > 1)
        std::this_thread::yield();
}

bool CLS_LogService::IsInit() const
{
    return std::atomic_load(&m_pState) != nullptr;
}

bool CLS_LogService::SetLoggerConfig(const std::string& _strChannel, int _iLevel)
{
    const std::shared_ptr<State> pState = std::atomic_load(&m_pState);
    if (!pState) return false;
    std::lock_guard stateLock(pState->m_mutex);
    pState->m_mapChannelLevel[_strChannel] = _iLevel;
    return true;
}

bool CLS_LogService::SetLoggerConfigAll(int _iLevel)
{
    const std::shared_ptr<State> pState = std::atomic_load(&m_pState);
    if (!pState) return false;
    std::lock_guard stateLock(pState->m_mutex);
    pState->m_iDefaultLevel = _iLevel;
    pState->m_mapChannelLevel.clear();
    return true;
}

void CLS_LogService::PrintLog(unsigned _uiLevel, const char* _pChannel, const char* _pFile,
                              unsigned _uiLine, const char* _pFunction, const std::string* _pText)
{
    const std::shared_ptr<State> pState = std::atomic_load(&m_pState);
    if (!pState) return;
    const std::string strChannel = _pChannel ? _pChannel : "";

    std::shared_ptr<spdlog::logger> pLogger;
    {
        State& state = *pState;
        std::lock_guard stateLock(state.m_mutex);
        const auto itLevel = state.m_mapChannelLevel.find(strChannel);
        const int iMinLevel =
            itLevel != state.m_mapChannelLevel.end() ? itLevel->second : state.m_iDefaultLevel;
        if (static_cast<long long>(_uiLevel) < iMinLevel) return;

        const std::string strFile = ChannelFileName(strChannel);
        const auto itLogger = state.m_mapLoggers.find(strFile);
        if (itLogger != state.m_mapLoggers.end()) {
            pLogger = itLogger->second;
        } else {
            const std::string strPath =
                (fs::u8path(state.m_strDir) / (strFile + ".log")).u8string();
            try {
                auto pSink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(
                    strPath, m_options.m_sizeMaxFileBytes, m_options.m_sizeMaxFiles - 1);
                pLogger = std::make_shared<spdlog::logger>(strFile, std::move(pSink));
                pLogger->set_pattern("[%Y-%m-%d %H:%M:%S.%e] [%l] [%t] %v");
                pLogger->set_level(spdlog::level::trace);
                pLogger->flush_on(spdlog::level::trace);
            } catch (const std::exception& e) {
                std::cerr << "KoLog: cannot open \"" << strPath << "\": " << e.what() << std::endl;
            }
            state.m_mapLoggers.emplace(strFile, pLogger);
        }
    }
    if (!pLogger) return;

    const char* pFile = _pFile && *_pFile ? BaseName(_pFile) : "?";
    const char* pFunction = _pFunction && *_pFunction ? _pFunction : "?";
    const std::string strText = _pText ? *_pText : std::string();
    pLogger->log(ToSpdLevel(_uiLevel), "[{}] [{}:{}] [{}] {}", strChannel, pFile, _uiLine,
                 pFunction, strText);
}

void CLS_LogService::UnInit()
{
    SwapState(nullptr);
}
