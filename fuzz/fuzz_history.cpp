// The play history file: any bytes read without harm, and what was read comes
// back unchanged from the file the panel would write of it.

#include <QMap>
#include <QString>
#include <QVector>

#include "CLS_HistroyFile.h"
#include "FuzzScratch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData)
{
    const QString qstrPath =
        QString::fromStdString(QuillFuzz::WriteScratchFile("HistroyInfo.json", _pData, _sizeData));
    QMap<QString, int> mapPos;
    QVector<QString> vecPath;
    if (CLS_HistroyFile::Read(qstrPath, mapPos, vecPath) != CLS_HistroyFile::ReadResult::Loaded)
        return 0;
    for (const QString& qstrEntry : vecPath)
        if (!mapPos.contains(qstrEntry)) QuillFuzz::Fail("a path read without a position");

    const QString qstrCopy = QString::fromStdString(QuillFuzz::ScratchDir() + "/copy.json");
    if (!CLS_HistroyFile::Write(qstrCopy, mapPos, vecPath)) QuillFuzz::Fail("history not written");
    QMap<QString, int> mapAgain;
    QVector<QString> vecAgain;
    if (CLS_HistroyFile::Read(qstrCopy, mapAgain, vecAgain) != CLS_HistroyFile::ReadResult::Loaded)
        QuillFuzz::Fail("a written history does not read back");
    if (vecAgain != vecPath || mapAgain != mapPos)
        QuillFuzz::Fail("the history changed on its way through the file");
    return 0;
}
