#pragma once

#include <cstdint>
#include <string>

#include "ST_SdvHeader.h"

namespace RK_Framework::VideoPlayer {
class CLS_SdvReader;
}

// The commands of sdvtool. Each answers the process's exit status and says
// what went wrong in one line on standard error; no password ever appears in
// what it prints.
class CLS_SdvTool
{
public:
    enum EM_Exit {
        EXIT_OK = 0,
        EXIT_USAGE = 1,
        EXIT_WRONG_PASSWORD = 2,
        EXIT_DAMAGED = 3,
        EXIT_IO = 4
    };

    struct ST_Options
    {
        std::string m_strPasswordFile;
        std::string m_strNewPasswordFile;
        bool m_blPlain = false;  // seal: write a plain .sdv, no password
    };

    explicit CLS_SdvTool(ST_Options _stOptions);

    int Seal(const std::string& _strIn, const std::string& _strOut);
    int Unseal(const std::string& _strIn, const std::string& _strOut);
    int Info(const std::string& _strFile);
    int Verify(const std::string& _strFile);
    int Passwd(const std::string& _strFile);
    // Cuts seconds _dFrom to _dTo of _strIn into _strOut without
    // re-encoding: a sealed .sdv when _strOut ends in ".sdv", else MP4.
    int Export(const std::string& _strIn, const std::string& _strOut, double _dFrom, double _dTo);

    static int Fail(int _iStatus, const std::string& _strMessage);

private:
    using Reader = RK_Framework::VideoPlayer::CLS_SdvReader;
    // Opens _strFile and reads its header; the exit status and a line on
    // standard error when it cannot.
    int OpenHeader(const std::string& _strFile, Reader& _reader);
    // Opens _strFile and, when sealed, unlocks it with a password asked for.
    int OpenUnlocked(const std::string& _strFile, Reader& _reader);
    // Reads the whole payload through _reader, handing each piece to
    // _pfnSink (may be null); also checks that nothing follows the payload.
    int ReadThrough(const std::string& _strFile, Reader& _reader,
                    bool (*_pfnSink)(void*, const std::uint8_t*, std::size_t), void* _pSink);
    // Fills the metadata of _stHeader from the media file _strIn.
    static bool Probe(const std::string& _strIn, RK_Framework::VideoPlayer::ST_SdvHeader& _stHeader,
                      std::string& _strError);

    ST_Options m_stOptions;
};
