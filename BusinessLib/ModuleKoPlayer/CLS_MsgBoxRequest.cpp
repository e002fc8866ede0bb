#include "CLS_MsgBoxRequest.h"

#include "CLS_ViewBasic.h"
#include "ModuleKoPlayerLog.h"

#include <QUuid>
#include <QVariantMap>

namespace {
const char* const kMsgBoxModule = "WgtMsgBox";
const char* const kShowMessage = "ShowMessage";
}  // namespace

bool CLS_MsgBoxRequest::Show(const ST_Request& _stRequest, QObject* _pContext, AnswerFn _fnAnswer)
{
    QWidget* pWidget = CLS_ViewBasic::GetWgtView(QLatin1String(kMsgBoxModule), QVariantMap());
    auto* pMsgBox = dynamic_cast<CLS_ViewBasic*>(pWidget);
    if (!pMsgBox) {
        delete pWidget;
        PLAYER_LOG(3) << "message box not available";
        return false;
    }

    if (_fnAnswer) {
        QObject::connect(
            pMsgBox, &CLS_ViewBasic::SignRequestTaskRsulted, _pContext ? _pContext : pMsgBox,
            [_fnAnswer](QString _qstrBusinessKey, QVariantMap _qmapData, QString) {
                try {
                    if (_qstrBusinessKey != QLatin1String(kShowMessage)) return;
                    QString qstrInput = _qmapData.value(QStringLiteral("inputtext")).toString();
                    _qmapData.remove(QStringLiteral("inputtext"));
                    _fnAnswer(_qmapData.value(QStringLiteral("type"), 0).toInt(), qstrInput);
                    // Typed text may be a password: leave no copy of it behind.
                    qstrInput.fill(QChar(0));
                } catch (...) {
                    PLAYER_LOG(3) << "message box answer Fail";
                }
            });
    }

    // The box reads its keys in this order.
    QVariantMap qmapParam;
    qmapParam.insert(QStringLiteral("parent"), 0);
    qmapParam.insert(QStringLiteral("msgboxtype"), _stRequest.iMsgBoxType);
    qmapParam.insert(QStringLiteral("title"), _stRequest.qstrTitle);
    qmapParam.insert(QStringLiteral("content"), _stRequest.qstrContent);
    qmapParam.insert(QStringLiteral("inputholder"), QString());
    qmapParam.insert(QStringLiteral("defaultbutton"), _stRequest.iDefaultButton);
    qmapParam.insert(QStringLiteral("standbuttons"), _stRequest.iButtons);
    if (!pMsgBox->TaskRequest(QLatin1String(kShowMessage), qmapParam,
                              QUuid::createUuid().toString(QUuid::WithoutBraces))) {
        pMsgBox->deleteLater();
        return false;
    }
    return true;
}
