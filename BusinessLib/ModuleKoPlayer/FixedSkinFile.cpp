#include "FixedSkinFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QVariant>
#include <QWidget>

QString FixedSkinFilePath(const QString& _qstrFileName)
{
    const bool blLight = qApp && qApp->property("Skin").toInt() == 1;
    return QStringLiteral("./resource/skin/%1/ModuleKoPlayer/qss/%2")
        .arg(blLight ? QStringLiteral("light") : QStringLiteral("dark"), _qstrFileName);
}

bool SetStyleSheetFromFile(QWidget* _pWidget, const QString& _qstrPath)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return false;
    _pWidget->setStyleSheet(QString::fromUtf8(file.readAll()));
    return true;
}
