#include "FuzzScratch.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace QuillFuzz {

namespace fs = std::filesystem;

namespace {

struct ST_Scratch
{
    std::string m_strDir;
    ST_Scratch()
    {
        std::error_code ec;
        const fs::path base =
            fs::is_directory("/dev/shm", ec) ? fs::path("/dev/shm") : fs::temp_directory_path(ec);
        m_strDir = (base / "quill-fuzz-XXXXXX").string();
        if (!mkdtemp(m_strDir.data())) Fail("cannot make the scratch folder");
    }
    ~ST_Scratch()
    {
        std::error_code ec;
        fs::remove_all(m_strDir, ec);
    }
};

}  // namespace

const std::string& ScratchDir()
{
    static const ST_Scratch s_scratch;
    return s_scratch.m_strDir;
}

std::string WriteScratchFile(const std::string& _strName, const std::uint8_t* _pData,
                             std::size_t _sizeData)
{
    const fs::path path = fs::path(ScratchDir()) / _strName;
    std::error_code ec;
    fs::create_directories(path.parent_path(), ec);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(_pData), static_cast<std::streamsize>(_sizeData));
    out.close();
    if (!out) Fail("cannot write the scratch file");
    return path.string();
}

void ClearScratch()
{
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(ScratchDir(), ec))
        fs::remove_all(entry.path(), ec);
}

void Fail(const char* _pWhat)
{
    std::fprintf(stderr, "quill-fuzz: %s\n", _pWhat);
    std::abort();
}

}  // namespace QuillFuzz
