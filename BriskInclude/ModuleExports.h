#pragma once

#include <QVariantMap>

class QWidget;
class CLS_ModuleBasic;

// Entry points a module library exports with C linkage under these names.
//
// "GetModule": a new module object, owned by the host.
using GetModuleFn = CLS_ModuleBasic* (*)();
// "CreateWgt": a new top-level view of the module (derived from CLS_ViewBasic),
// owned by the caller.
using CreateWgtFn = QWidget* (*)(const QVariantMap& _qmapParam);

#if defined(_WIN32)
#define KO_MODULE_EXPORT extern "C" __declspec(dllexport)
#else
#define KO_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
#endif
