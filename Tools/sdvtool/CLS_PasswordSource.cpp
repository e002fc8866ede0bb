#include "CLS_PasswordSource.h"

#include <openssl/crypto.h>

#include <cstring>

CLS_PasswordSource::CLS_Secret::~CLS_Secret()
{
    OPENSSL_cleanse(m_szText, sizeof(m_szText));
}

bool CLS_PasswordSource::CLS_Secret::Equals(const CLS_Secret& _other) const
{
    return m_sizeText == _other.m_sizeText &&
           CRYPTO_memcmp(m_szText, _other.m_szText, m_sizeText) == 0;
}

CLS_PasswordSource::CLS_PasswordSource(std::string _strFile) : m_strFile(std::move(_strFile)) {}

CLS_PasswordSource::~CLS_PasswordSource()
{
    if (m_pFile) std::fclose(m_pFile);
}

bool CLS_PasswordSource::ReadLine(std::FILE* _pFile, CLS_Secret& _secret)
{
    _secret.m_sizeText = 0;
    int iChar = 0;
    bool blAny = false;
    while ((iChar = std::fgetc(_pFile)) != EOF && iChar != '\n') {
        blAny = true;
        if (_secret.m_sizeText == kMaxLength) return false;
        _secret.m_szText[_secret.m_sizeText++] = static_cast<char>(iChar);
    }
    // A file written on Windows ends its line in CR LF.
    if (_secret.m_sizeText > 0 && _secret.m_szText[_secret.m_sizeText - 1] == '\r')
        --_secret.m_sizeText;
    _secret.m_szText[_secret.m_sizeText] = '\0';
    return blAny || iChar == '\n';
}

bool CLS_PasswordSource::Read(const char* _pPrompt, CLS_Secret& _secret, std::string& _strError)
{
    bool blRead = false;
    if (!m_strFile.empty()) {
        if (!m_pFile) m_pFile = std::fopen(m_strFile.c_str(), "rb");
        if (!m_pFile) {
            _strError = "cannot read password file " + m_strFile;
            return false;
        }
        blRead = ReadLine(m_pFile, _secret);
    } else if (StdinIsTerminal()) {
        blRead = ReadHidden(_pPrompt, _secret);
    } else {
        blRead = ReadLine(stdin, _secret);
    }
    if (!blRead) {
        _strError = "no password given";
        return false;
    }
    if (_secret.Size() == 0) {
        _strError = "empty password";
        return false;
    }
    return true;
}

bool CLS_PasswordSource::ReadNew(CLS_Secret& _secret, std::string& _strError)
{
    if (!Read("New password: ", _secret, _strError)) return false;
    if (!m_strFile.empty() || !StdinIsTerminal()) return true;
    CLS_Secret again;
    if (!Read("Repeat new password: ", again, _strError)) return false;
    if (!_secret.Equals(again)) {
        _strError = "the passwords do not match";
        return false;
    }
    return true;
}
