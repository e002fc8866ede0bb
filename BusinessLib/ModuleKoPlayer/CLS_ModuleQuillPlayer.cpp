#include "CLS_ModuleQuillPlayer.h"

#include "CLS_DlgQuillPlayer.h"
#include "ModuleKeys.h"
#include "ModuleKoPlayerLog.h"

#include <QJsonObject>

const char* CLS_ModuleQuillPlayer::GetModuleCode()
{
    return kModuleKoPlayerCode;
}

CLS_BusinessHandler* CLS_ModuleQuillPlayer::GetBusinessHandler(const QVariantMap&)
{
    return nullptr;
}

QWidget* CLS_ModuleQuillPlayer::CreateModuleWgt(const QVariantMap& _qmapParam)
{
    QWidget* pParent = nullptr;
    if (_qmapParam.contains(QLatin1String(ModuleKeys::kParentWiget)))
        pParent = _qmapParam.value(QLatin1String(ModuleKeys::kParentWiget)).value<QWidget*>();
    if (!_qmapParam.contains(QLatin1String(ModuleKeys::kUIType)))
        return new CLS_DlgQuillPlayer(pParent);
    return new CLS_DlgQuillPlayer(
        pParent, _qmapParam.value(QLatin1String(ModuleKeys::kUIType)).toJsonObject());
}
