// The real widgets under each installed language: every caption, tooltip and
// form title they show must come out of the language file, not as the bare
// key. This catches what reading the sources cannot: a class whose tr() runs
// in another context than its name (no Q_OBJECT of its own), a form whose
// class is not the widget's, a key set before the translator is asked.

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QToolButton>
#include <QTranslator>
#include <QtTest>

#include "CLS_WgtHistroyList.h"
#include "CLS_WgtMsgBox.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerListItem.h"
#include "CLS_WgtPlayerTopBar.h"
#include "QuillTestSupport.h"

namespace {

const char* const kLanguageFiles[] = {
    "QuillPlayer_CN",      "QuillPlayer_EN",      "QuillPlayer_Russian", "QuillPlayer_Korean",
    "QuillPlayer_Thai",    "QuillPlayer_Vietnames", "QuillPlayer_French", "QuillPlayer_Italian",
    "QuillPlayer_Abrabic", "QuillPlayer_Farsi",   "QuillPlayer_TradCHS", "QuillPlayer_Turkish",
    "QuillPlayer_Spanish", "QuillPlayer_Polish",  "QuillPlayer_Hebrew",  "QuillPlayer_Dutch",
    "QuillPlayer_Czech",   "QuillPlayer_Slovak",  "QuillPlayer_DE",
};

// Installs a language for the life of the object, as the player dialog does.
class ScopedLanguage
{
public:
    explicit ScopedLanguage(const QString& _qstrQmPath)
    {
        m_blLoaded = m_translator.load(_qstrQmPath, QString(), QString(), QString()) &&
                     QCoreApplication::installTranslator(&m_translator);
    }
    ~ScopedLanguage() { QCoreApplication::removeTranslator(&m_translator); }
    ScopedLanguage(const ScopedLanguage&) = delete;
    ScopedLanguage& operator=(const ScopedLanguage&) = delete;

    bool IsLoaded() const { return m_blLoaded; }
    const QTranslator& Translator() const { return m_translator; }

private:
    QTranslator m_translator;
    bool m_blLoaded = false;
};

// Texts that are still keys: what a user sees when a translation is missing.
QStringList UntranslatedTexts(QWidget* _pRoot)
{
    static const QRegularExpression reKey(QStringLiteral("^(btn|lab|msg)_[a-z_]+$"));
    QStringList lstFound;
    QList<QWidget*> lstWidgets = _pRoot->findChildren<QWidget*>();
    lstWidgets.prepend(_pRoot);
    for (QWidget* pWidget : qAsConst(lstWidgets)) {
        QStringList lstTexts{pWidget->toolTip(), pWidget->windowTitle()};
        if (auto* pButton = qobject_cast<QAbstractButton*>(pWidget)) lstTexts << pButton->text();
        if (auto* pLabel = qobject_cast<QLabel*>(pWidget)) lstTexts << pLabel->text();
        for (const QString& qstrText : qAsConst(lstTexts)) {
            if (reKey.match(qstrText).hasMatch()) {
                lstFound << pWidget->objectName() + QStringLiteral(": ") + qstrText;
            }
        }
    }
    return lstFound;
}

int CountToolTips(QWidget* _pRoot)
{
    int iCount = 0;
    for (QWidget* pWidget : _pRoot->findChildren<QWidget*>()) {
        if (!pWidget->toolTip().isEmpty()) ++iCount;
    }
    return iCount;
}

}  // namespace

class tst_TranslatedWidgets : public QObject
{
    Q_OBJECT

private slots:
    void widgetsShowNoKey_data();
    void widgetsShowNoKey();
};

void tst_TranslatedWidgets::widgetsShowNoKey_data()
{
    QTest::addColumn<QString>("qmPath");
    for (const char* pszStem : kLanguageFiles) {
        QTest::newRow(pszStem) << QuillTest::BinPath(QStringLiteral("Lang/QuillPlayer/") +
                                                     QLatin1String(pszStem) +
                                                     QStringLiteral(".qm"));
    }
}

void tst_TranslatedWidgets::widgetsShowNoKey()
{
    QFETCH(QString, qmPath);
    // The history panel reads and writes its files in the working directory.
    QuillTest::ScopedWorkDir workDir;
    ScopedLanguage language(qmPath);
    QVERIFY2(language.IsLoaded(), qPrintable(qmPath));

    CLS_WgtPlayerControlBar controlBar;
    CLS_WgtPlayerTopBar topBar;
    CLS_WgtPlayerListItem listItem;
    CLS_WgtHistroyList historyList;

    QPointer<CLS_WgtMsgBox> pMsgBox = new CLS_WgtMsgBox();
    pMsgBox->Init();
    QVariantMap qmapRequest;
    qmapRequest.insert(QStringLiteral("parent"), 0);
    qmapRequest.insert(QStringLiteral("msgboxtype"), 1);
    qmapRequest.insert(QStringLiteral("title"), QStringLiteral("title"));
    qmapRequest.insert(QStringLiteral("content"), QStringLiteral("content"));
    qmapRequest.insert(QStringLiteral("inputholder"), QString());
    qmapRequest.insert(QStringLiteral("defaultbutton"), int(QDialogButtonBox::Ok));
    // Every button the box knows, so each caption is looked up.
    qmapRequest.insert(QStringLiteral("standbuttons"),
                       int(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Yes |
                           QDialogButtonBox::No | QDialogButtonBox::Save |
                           QDialogButtonBox::Discard | QDialogButtonBox::Close |
                           QDialogButtonBox::Apply | QDialogButtonBox::Retry |
                           QDialogButtonBox::Ignore | QDialogButtonBox::Abort));
    QVERIFY(pMsgBox->TaskRequest(QStringLiteral("ShowMessage"), qmapRequest,
                                 QStringLiteral("lang-uuid")));
    QCOMPARE(pMsgBox->findChildren<QAbstractButton*>(QRegularExpression(QStringLiteral("^btn_")))
                 .size(),
             11);

    // The restore tooltip only appears once the window is maximised.
    QVERIFY(QMetaObject::invokeMethod(&topBar, "SlotSetWindowStatus", Q_ARG(bool, true)));

    QStringList lstFound;
    for (QWidget* pWidget : std::initializer_list<QWidget*>{&controlBar, &topBar, &listItem,
                                                             &historyList, pMsgBox.data()}) {
        lstFound << UntranslatedTexts(pWidget);
        // A form's title comes out of the form class's own context.
        const char* pszClass = pWidget->metaObject()->className();
        const QString qstrFormTitle = language.Translator().translate(pszClass, "Form");
        if (!qstrFormTitle.isEmpty()) {
            QCOMPARE(pWidget->windowTitle(), qstrFormTitle);
        }
    }
    QVERIFY2(lstFound.isEmpty(), qPrintable(lstFound.join(QLatin1Char('\n'))));

    // Guard against a tree that shows nothing at all.
    QVERIFY(CountToolTips(&controlBar) >= 10);
    QVERIFY(CountToolTips(&topBar) >= 3);

    if (pMsgBox) {
        pMsgBox->hide();
        delete pMsgBox;
    }
}

QTEST_MAIN(tst_TranslatedWidgets)
#include "tst_TranslatedWidgets.moc"
