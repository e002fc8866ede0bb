#include "CLS_AtomicFile.h"

#include <openssl/rand.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

CLS_AtomicFile::CLS_AtomicFile(std::string _strTarget) : m_strTarget(std::move(_strTarget)) {}

CLS_AtomicFile::~CLS_AtomicFile()
{
    if (m_blCommitted || m_strTemporary.empty()) return;
    m_ofFile.close();
    std::error_code ec;
    std::filesystem::remove(m_strTemporary, ec);
}

bool CLS_AtomicFile::Open()
{
    // Same folder as the target, so the rename never crosses file systems.
    unsigned char arrTag[6] = {};
    RAND_bytes(arrTag, sizeof(arrTag));
    char szTag[16] = {};
    for (std::size_t i = 0; i < sizeof(arrTag); ++i)
        std::snprintf(szTag + 2 * i, 3, "%02x", arrTag[i]);
    m_strTemporary = m_strTarget + ".part-" + szTag;
    m_ofFile.open(m_strTemporary, std::ios::binary | std::ios::trunc);
    return m_ofFile.is_open();
}

bool CLS_AtomicFile::Write(const void* _pData, std::size_t _sizeData)
{
    m_ofFile.write(static_cast<const char*>(_pData), static_cast<std::streamsize>(_sizeData));
    return static_cast<bool>(m_ofFile);
}

bool CLS_AtomicFile::Seek(std::int64_t _i64Pos)
{
    if (_i64Pos < 0) return false;
    m_ofFile.seekp(static_cast<std::streamoff>(_i64Pos));
    return static_cast<bool>(m_ofFile);
}

std::int64_t CLS_AtomicFile::Tell()
{
    return static_cast<std::int64_t>(m_ofFile.tellp());
}

bool CLS_AtomicFile::Commit()
{
    m_ofFile.flush();
    const bool blWritten = static_cast<bool>(m_ofFile);
    m_ofFile.close();
    if (!blWritten || m_ofFile.fail()) return false;
    std::error_code ec;
    std::filesystem::rename(m_strTemporary, m_strTarget, ec);
    m_blCommitted = !ec;
    return m_blCommitted;
}
