// A stand-in for another module of the suite: its "CreateWgt" makes a view
// that carries the parameters it was given, so a test can see they arrived.
#include "ModuleExports.h"

#include <QLabel>

KO_MODULE_EXPORT QWidget* CreateWgt(const QVariantMap& _qmapParam)
{
    auto* pLabel = new QLabel;
    pLabel->setObjectName(_qmapParam.value(QStringLiteral("name")).toString());
    return pLabel;
}
