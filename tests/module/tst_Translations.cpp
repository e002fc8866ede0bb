// The language files against the code: every language file is compiled to
// the place the dialog loads it from, and lupdate, run over the code and forms
// into a copy of each file, finds every text the code asks for finished.

#include <QDir>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include "QuillTestSupport.h"

namespace {

QDir SourceFolder()
{
    return QDir(QStringLiteral(QUILL_SOURCE_DIR "/Lang/QuillPlayer"));
}

QStringList Languages()
{
    QStringList lstStems = SourceFolder().entryList({QStringLiteral("*.ts")}, QDir::Files);
    lstStems.replaceInStrings(QStringLiteral(".ts"), QString());
    return lstStems;
}

// "context\nsource" -> the translation's type: empty when finished; an empty
// translation counts as unfinished.
QHash<QString, QString> Messages(const QString& _qstrPath)
{
    QHash<QString, QString> hashMessages;
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return hashMessages;
    QXmlStreamReader xml(&file);
    QString qstrContext;
    QString qstrSource;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QLatin1String("name")) {
            qstrContext = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            qstrSource = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            QString qstrType = xml.attributes().value(QLatin1String("type")).toString();
            if (xml.readElementText().trimmed().isEmpty() && qstrType.isEmpty())
                qstrType = QStringLiteral("unfinished");
            hashMessages.insert(qstrContext + QLatin1Char('\n') + qstrSource, qstrType);
        }
    }
    return hashMessages;
}

}  // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void compiledFileLoadsAndTranslates_data()
    {
        QTest::addColumn<QString>("qmPath");
        const QStringList lstStems = Languages();
        QVERIFY(lstStems.size() > 1);
        for (const QString& qstrStem : lstStems)
            QTest::newRow(qPrintable(qstrStem))
                << QuillTest::BinPath(QStringLiteral("Lang/QuillPlayer/%1.qm").arg(qstrStem));
    }

    // The dialog loads "./Lang/QuillPlayer/<file>.qm" from the installation.
    void compiledFileLoadsAndTranslates()
    {
        QFETCH(QString, qmPath);
        QTranslator translator;
        QVERIFY2(translator.load(qmPath, QString(), QString(), QString()), qPrintable(qmPath));
        const QString qstrSample =
            translator.translate("CLS_WgtPlayerControlBar", "btn_play_pause");
        QVERIFY(!qstrSample.isEmpty() && qstrSample != QLatin1String("btn_play_pause"));
    }

    // Texts the code no longer asks for come back "vanished" and are no fault:
    // the files also carry the texts of classes that are still to come. What lrelease
    // compiles is the committed file, so a text the code asks for must be finished
    // there, not merely revived by lupdate in the copy.
    void everyTextTheCodeUsesIsFinishedInEveryLanguage()
    {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        QStringList lstCopies;
        for (const QString& qstrStem : Languages()) {
            lstCopies << tmp.filePath(qstrStem + QStringLiteral(".ts"));
            QVERIFY(QFile::copy(SourceFolder().filePath(qstrStem + QStringLiteral(".ts")),
                                lstCopies.last()));
        }
        QProcess lupdate;
        lupdate.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        lupdate.start(QStringLiteral(QUILL_LUPDATE),
                      QStringList{QStringLiteral("-silent"), QStringLiteral("-locations"),
                                  QStringLiteral("none"), QStringLiteral("@" QUILL_LUPDATE_LIST),
                                  QStringLiteral("-ts")} +
                          lstCopies);
        QVERIFY(lupdate.waitForFinished(60000));
        QCOMPARE(lupdate.exitStatus(), QProcess::NormalExit);
        QCOMPARE(lupdate.exitCode(), 0);

        QStringList lstFaults;
        for (const QString& qstrCopy : qAsConst(lstCopies)) {
            const QString qstrStem = QFileInfo(qstrCopy).completeBaseName();
            const QHash<QString, QString> hashCommitted =
                Messages(SourceFolder().filePath(qstrStem + QStringLiteral(".ts")));
            const QHash<QString, QString> hashUpdated = Messages(qstrCopy);
            // A scan that misses the framework's own text sees nothing at all.
            QVERIFY2(hashUpdated
                         .value(QStringLiteral("CLS_ModuleBasic\nModuleName"), QStringLiteral("?"))
                         .isEmpty(),
                     qPrintable(qstrStem));
            const auto fault = [&](const QString& _qstrId, const char* _pszWhat) {
                lstFaults << qstrStem + QStringLiteral(": ") +
                                 QString(_qstrId).replace(QLatin1Char('\n'),
                                                          QStringLiteral(" / ")) +
                                 QLatin1String(_pszWhat);
            };
            for (auto it = hashCommitted.cbegin(); it != hashCommitted.cend(); ++it)
                if (it.value() == QLatin1String("unfinished")) fault(it.key(), " is unfinished");
            for (auto it = hashUpdated.cbegin(); it != hashUpdated.cend(); ++it) {
                if (!hashCommitted.contains(it.key()))
                    fault(it.key(), " is new in the code");
                else if (it.value().isEmpty() && !hashCommitted.value(it.key()).isEmpty())
                    fault(it.key(), " is used by the code but not finished in the file");
            }
        }
        QVERIFY2(lstFaults.isEmpty(),
                 qPrintable(QStringLiteral("run the update_translations target, then translate in "
                                           "Qt Linguist:\n") +
                            lstFaults.join(QLatin1Char('\n'))));
    }
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_Translations.moc"
