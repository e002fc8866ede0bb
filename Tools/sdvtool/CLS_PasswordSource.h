#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

// Where sdvtool takes passwords from, never the command line (it ends up in
// shell histories and process lists): a file named with --password-file, the
// terminal with echo off, or standard input when that is not a terminal.
// Secrets are held in buffers that are wiped when done with.
class CLS_PasswordSource
{
public:
    static constexpr std::size_t kMaxLength = 1024;

    class CLS_Secret
    {
    public:
        CLS_Secret() = default;
        ~CLS_Secret();
        CLS_Secret(const CLS_Secret&) = delete;
        CLS_Secret& operator=(const CLS_Secret&) = delete;
        const char* Data() const { return m_szText; }
        std::size_t Size() const { return m_sizeText; }
        bool Equals(const CLS_Secret& _other) const;

    private:
        friend class CLS_PasswordSource;
        char m_szText[kMaxLength + 1] = {};
        std::size_t m_sizeText = 0;
    };

    // _strFile empty: the terminal, or standard input.
    explicit CLS_PasswordSource(std::string _strFile);
    ~CLS_PasswordSource();
    CLS_PasswordSource(const CLS_PasswordSource&) = delete;
    CLS_PasswordSource& operator=(const CLS_PasswordSource&) = delete;
    // Reads the next password, prompting with _pPrompt on a terminal. False
    // when none could be read; _strError says why.
    bool Read(const char* _pPrompt, CLS_Secret& _secret, std::string& _strError);
    // A new password: asked twice on a terminal, which must agree.
    bool ReadNew(CLS_Secret& _secret, std::string& _strError);

private:
    // Platform part: is standard input a terminal, and a line from it read
    // without echo.
    static bool StdinIsTerminal();
    static bool ReadHidden(const char* _pPrompt, CLS_Secret& _secret);
    static bool ReadLine(std::FILE* _pFile, CLS_Secret& _secret);

    std::string m_strFile;
    std::FILE* m_pFile = nullptr;
};
