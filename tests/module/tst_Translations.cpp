// The language files against the code: lupdate, run over the code and forms
// into a copy of each file, finds every text the code asks for finished.

#include <QDir>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>


namespace {

const QDir kSource(QStringLiteral(QUILL_SOURCE_DIR "/Lang/QuillPlayer"));

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
    // Texts the code no longer asks for come back "vanished" and are no fault:
    // the files also carry the texts of classes that are still to come. What lrelease
    // compiles is the committed file, so a text the code asks for must be finished
    // there, not merely revived by lupdate in the copy.
    void everyTextTheCodeUsesIsFinishedInEveryLanguage()
    {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        QStringList lstCopies;
        const QStringList lstFiles = kSource.entryList({QStringLiteral("*.ts")}, QDir::Files);
        QVERIFY(lstFiles.size() > 1);
        for (const QString& qstrFile : lstFiles) {
            lstCopies << tmp.filePath(qstrFile);
            QVERIFY(QFile::copy(kSource.filePath(qstrFile), lstCopies.last()));
        }
        QProcess lupdate;
        lupdate.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        lupdate.start(QUILL_LUPDATE,
                      QStringList{"-silent", "-locations", "none", "@" QUILL_LUPDATE_LIST, "-ts"} +
                          lstCopies);
        QVERIFY(lupdate.waitForFinished(60000));
        QCOMPARE(lupdate.exitStatus(), QProcess::NormalExit);
        QCOMPARE(lupdate.exitCode(), 0);

        QStringList lstFaults;
        for (const QString& qstrCopy : qAsConst(lstCopies)) {
            const QString qstrStem = QFileInfo(qstrCopy).completeBaseName();
            const QHash<QString, QString> hashCommitted =
                Messages(kSource.filePath(qstrStem + QStringLiteral(".ts")));
            const QHash<QString, QString> hashUpdated = Messages(qstrCopy);
            // A scan that misses the framework's own text sees nothing at all.
            QVERIFY2(hashUpdated.value("CLS_ModuleBasic\nModuleName", "?").isEmpty(),
                     qPrintable(qstrStem));
            const auto fault = [&](QString _qstrId, const char* _pszWhat) {
                lstFaults << qstrStem + ": " + _qstrId.replace('\n', " / ") + _pszWhat;
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
