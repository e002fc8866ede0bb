#include "CLS_WgtMsgBox.h"
#include "Logger.h"
#include "ModuleExports.h"

KO_MODULE_EXPORT QWidget* CreateWgt(const QVariantMap& _qmapParam)
{
    try {
        Q_UNUSED(_qmapParam)
        auto* pView = new CLS_WgtMsgBox();
        pView->Init();
        return pView;
    } catch (...) {
        KOLOG(3, "WgtMsgBox") << "CreateWgt Fail";
        return nullptr;
    }
}
