#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

// An output file that appears whole or not at all: written under a temporary
// name beside its target and renamed into place by Commit. Dropped without
// Commit, it leaves nothing behind.
class CLS_AtomicFile
{
public:
    explicit CLS_AtomicFile(std::string _strTarget);
    ~CLS_AtomicFile();
    CLS_AtomicFile(const CLS_AtomicFile&) = delete;
    CLS_AtomicFile& operator=(const CLS_AtomicFile&) = delete;

    bool Open();
    bool Write(const void* _pData, std::size_t _sizeData);
    // Moves the write position (a muxer patching sizes, a header written
    // last); false when the file cannot seek there.
    bool Seek(std::int64_t _i64Pos);
    std::int64_t Tell();
    bool Commit();

private:
    std::string m_strTarget;
    std::string m_strTemporary;
    std::ofstream m_ofFile;
    bool m_blCommitted = false;
};
