#pragma once

#include <cstddef>
#include <memory>
#include <string>

// Rotating per-channel log files. Every record is flushed as it is written so
// that a reader, or whoever inspects the files after a crash, sees it at once.
// All members are safe to call from any thread, including PrintLog racing with
// UnInit: a record either lands in the file or is dropped, and once UnInit has
// returned no record is written and every file is closed.
class CLS_LogService
{
public:
    struct Options
    {
        std::size_t m_sizeMaxFileBytes = 10u * 1024u * 1024u;
        std::size_t m_sizeMaxFiles = 5;
    };

    CLS_LogService();
    explicit CLS_LogService(const Options& _options);
    ~CLS_LogService();
    CLS_LogService(const CLS_LogService&) = delete;
    CLS_LogService& operator=(const CLS_LogService&) = delete;

    // Starts (or restarts, on another folder) logging below _strLogDir. False,
    // with the previous state kept, when the folder cannot be created or written.
    bool Init(const std::string& _strLogDir, int _iLevel);
    bool IsInit() const;
    bool SetLoggerConfig(const std::string& _strChannel, int _iLevel);
    bool SetLoggerConfigAll(int _iLevel);
    void PrintLog(unsigned _uiLevel, const char* _pChannel, const char* _pFile, unsigned _uiLine,
                  const char* _pFunction, const std::string* _pText);
    void UnInit();

    // The file name (without ".log") a channel writes to: anything that could
    // leave the folder or upset a file system is replaced.
    static std::string ChannelFileName(const std::string& _strChannel);

private:
    struct State;

    // Replaces the state and returns only when no call still uses the old one.
    void SwapState(std::shared_ptr<State> _pState);

    Options m_options;
    // Read with std::atomic_load by every call. A reader-writer lock would let
    // a steady stream of records starve UnInit for good.
    std::shared_ptr<State> m_pState;
};
