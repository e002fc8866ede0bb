// The parameter file: any bytes give a working store, and a change written by
// the store leaves every other value of the file as it read it.

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <string>
#include <utility>
#include <vector>

#include "CLS_ParamStore.h"
#include "FuzzJsonNames.h"
#include "FuzzScratch.h"

namespace {

constexpr const char* kMissing = "\x01missing";
using ValueList = std::vector<std::pair<std::pair<std::string, std::string>, std::string>>;

// Every plainly named section and key of the file that holds a single value,
// with the value the store answers. (An object or array is answered as its
// JSON text, whose member order Qt may change for the odd names above.)
ValueList Values(const CLS_ParamStore& _store, const QJsonObject& _jsonRoot)
{
    ValueList vecValues;
    for (auto itSection = _jsonRoot.begin(); itSection != _jsonRoot.end(); ++itSection) {
        if (!QuillFuzz::PlainName(itSection.key(), _jsonRoot)) continue;
        const std::string strSection = itSection.key().toStdString();
        const QJsonObject jsonSection = itSection.value().toObject();
        for (auto itKey = jsonSection.begin(); itKey != jsonSection.end(); ++itKey) {
            if (!QuillFuzz::PlainName(itKey.key(), jsonSection) || itKey.value().isObject() ||
                itKey.value().isArray())
                continue;
            const std::string strKey = itKey.key().toStdString();
            vecValues.push_back(
                {{strSection, strKey}, _store.GetParam(strSection, strKey, kMissing)});
        }
    }
    return vecValues;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData)
{
    const std::string strPath = QuillFuzz::WriteScratchFile("param.json", _pData, _sizeData);
    const QJsonObject jsonRoot =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char*>(_pData),
                                                        static_cast<int>(_sizeData)))
            .object();
    // A key of the player's own section, which the file may hold too.
    const std::string strSection = "ModuleKoPlayer", strKey = "SoundSet";
    {
        CLS_ParamStore store;
        if (!store.Init(strPath)) QuillFuzz::Fail("the store did not start");
        const ValueList vecBefore = Values(store, jsonRoot);
        if (!store.SetParam(strSection, strKey, "37")) QuillFuzz::Fail("a value was not saved");
        store.UnInit();

        if (!store.Init(strPath)) QuillFuzz::Fail("the store did not start again");
        if (store.GetParam(strSection, strKey, kMissing) != "37")
            QuillFuzz::Fail("the saved value did not come back");
        for (const auto& [pairName, strValue] : vecBefore) {
            if (strValue == kMissing || pairName == std::make_pair(strSection, strKey)) continue;
            if (store.GetParam(pairName.first, pairName.second, kMissing) != strValue)
                QuillFuzz::Fail("a value changed that nobody set");
        }
        store.DeleteParam(strSection, strKey);
        store.UnInit();
    }
    QuillFuzz::ClearScratch();
    return 0;
}
