#pragma once

// Reading the translation sources and finding the texts the code passes
// through the translator, for tst_Translations.

#include <QHash>
#include <QList>
#include <QString>

namespace LangScan {

struct Message
{
    QString qstrTranslation;
    bool blFinished = false;
};

struct TsFile
{
    QString qstrLanguage;
    // MessageId(context, source) -> message
    QHash<QString, Message> hashMessages;
    QString qstrError;
};

struct CodeUse
{
    QString qstrContext;
    QString qstrText;
    QString qstrWhere;  // the place that asks for it, "path:line"
};

QString MessageId(const QString& _qstrContext, const QString& _qstrSource);

// Parses a Qt Linguist source file.
TsFile ReadTs(const QString& _qstrPath);

// Every tr()/translate() call with a literal text in the .cpp and .h files
// below _qstrRoot/<folder>, and every translatable text of the .ui forms there,
// each with its translation context.
QList<CodeUse> ScanSources(const QString& _qstrRoot, const QStringList& _lstFolders);

}  // namespace LangScan
