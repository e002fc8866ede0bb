#pragma once

#include <QObject>
#include <QVariantMap>

// The application-wide signal hub. Modules publish and follow suite-wide state
// through it; the one instance lives in the KoAppManager library.
class I_AppSignals : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~I_AppSignals() override = default;

signals:
    // A module switched its sound on or off: "ModuleName" (its code) and
    // "SoundOpen" (bool). Every module that follows sound, the sender included,
    // receives it.
    void SignSoundStateChanged(QVariantMap _qmapParam);
};
