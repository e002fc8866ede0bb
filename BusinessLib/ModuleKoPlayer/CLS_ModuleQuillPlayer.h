#pragma once

#include "CLS_ModuleBasic.h"

// The player module object the host gets from GetModule. It handles no
// business request itself: the player dialog answers the module's requests.
class CLS_ModuleQuillPlayer : public CLS_ModuleBasic
{
    Q_OBJECT
public:
    CLS_ModuleQuillPlayer() = default;

    const char* GetModuleCode() override;
    CLS_BusinessHandler* GetBusinessHandler(const QVariantMap& _qmapParam) override;
    // A CLS_DlgQuillPlayer; "ParentWiget" (a QWidget*) and "UIType" (its start
    // parameters) are both optional.
    QWidget* CreateModuleWgt(const QVariantMap& _qmapParam) override;
};
