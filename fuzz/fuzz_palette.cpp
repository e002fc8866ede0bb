// A skin's palette file: any bytes read without harm, and every colour the
// file names as text is the one handed out.

#include <QJsonDocument>
#include <QJsonObject>

#include <string>

#include "CLS_PaletteStore.h"
#include "FuzzJsonNames.h"
#include "FuzzScratch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData)
{
    QuillFuzz::WriteScratchFile("resource/skin/dark/palette.json", _pData, _sizeData);
    CLS_PaletteStore store({}, QString::fromStdString(QuillFuzz::ScratchDir()));
    store.GetNamedColor("", "", "");

    const QJsonObject jsonRoot =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char*>(_pData),
                                                        static_cast<int>(_sizeData)))
            .object();
    for (auto itGroup = jsonRoot.begin(); itGroup != jsonRoot.end(); ++itGroup) {
        if (!QuillFuzz::PlainName(itGroup.key(), jsonRoot)) continue;
        const QJsonObject jsonGroup = itGroup.value().toObject();
        for (auto itKey = jsonGroup.begin(); itKey != jsonGroup.end(); ++itKey) {
            if (!QuillFuzz::PlainName(itKey.key(), jsonGroup)) continue;
            const std::string strColor =
                store.GetNamedColor(itGroup.key().toStdString(), itKey.key().toStdString(), "dark");
            const std::string strWant =
                itKey.value().isString() ? itKey.value().toString().toStdString() : std::string();
            if (strColor != strWant) QuillFuzz::Fail("a colour other than the file's");
        }
    }
    return 0;
}
