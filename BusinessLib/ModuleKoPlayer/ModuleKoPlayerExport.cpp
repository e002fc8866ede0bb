#include "CLS_ModuleQuillPlayer.h"
#include "ModuleExports.h"

// The module library's one entry point: a new module object per call, owned
// by the host.
KO_MODULE_EXPORT CLS_ModuleBasic* GetModule()
{
    return new CLS_ModuleQuillPlayer();
}
