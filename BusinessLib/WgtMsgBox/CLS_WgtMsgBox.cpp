#include "CLS_WgtMsgBox.h"

#include "Logger.h"
#include "ui_CLS_WgtMsgBox.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

namespace {

const char* const kModuleCode = "WgtMsgBox";
const char* const kShowMessage = "ShowMessage";

enum MsgBoxType { MessageOnly = 0, MessageWithInput = 1 };

struct ButtonText
{
    QDialogButtonBox::StandardButton eButton;
    const char* pObjectName;
    const char* pTextKey;
};

// Captions are translation keys of this class's context; the object names are
// what the skins select on.
const ButtonText kButtonTexts[] = {
    {QDialogButtonBox::Ok, "btn_ok", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_ok")},
    {QDialogButtonBox::Cancel, "btn_cancel", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_cancel")},
    {QDialogButtonBox::Yes, "btn_yes", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_yes")},
    {QDialogButtonBox::No, "btn_no", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_no")},
    {QDialogButtonBox::Save, "btn_save", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_save")},
    {QDialogButtonBox::Discard, "btn_discard", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_discard")},
    {QDialogButtonBox::Close, "btn_close", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_close")},
    {QDialogButtonBox::Apply, "btn_apply", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_apply")},
    {QDialogButtonBox::Retry, "btn_retry", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_retry")},
    {QDialogButtonBox::Ignore, "btn_ignore", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_ignore")},
    {QDialogButtonBox::Abort, "btn_abort", QT_TRANSLATE_NOOP("CLS_WgtMsgBox", "btn_abort")},
};

constexpr int kKnownButtons =
    QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Yes | QDialogButtonBox::No |
    QDialogButtonBox::Save | QDialogButtonBox::Discard | QDialogButtonBox::Close |
    QDialogButtonBox::Apply | QDialogButtonBox::Retry | QDialogButtonBox::Ignore |
    QDialogButtonBox::Abort;

// The requester's "parent" arrives as whatever its code had at hand (a widget
// pointer, a void pointer, an address, or 0). It is only used when it names a
// widget that is alive now, so a stale value cannot crash the box.
QWidget* ResolveParent(const QVariant& _qvarParent)
{
    if (!_qvarParent.isValid()) return nullptr;
    quintptr uiAddress = 0;
    const int iType = _qvarParent.userType();
    if (iType == QMetaType::VoidStar) {
        uiAddress = reinterpret_cast<quintptr>(_qvarParent.value<void*>());
    } else if (QMetaType::typeFlags(iType) & QMetaType::PointerToQObject) {
        uiAddress =
            reinterpret_cast<quintptr>(*static_cast<QObject* const*>(_qvarParent.constData()));
    } else {
        bool blOk = false;
        uiAddress = static_cast<quintptr>(_qvarParent.toULongLong(&blOk));
        if (!blOk) return nullptr;
    }
    if (uiAddress == 0) return nullptr;
    const QWidgetList lstWidgets = QApplication::allWidgets();
    for (QWidget* pWidget : lstWidgets) {
        if (reinterpret_cast<quintptr>(pWidget) == uiAddress ||
            reinterpret_cast<quintptr>(static_cast<QObject*>(pWidget)) == uiAddress)
            return pWidget;
    }
    return nullptr;
}

}  // namespace

CLS_WgtMsgBox::CLS_WgtMsgBox(QWidget* _pParent)
    : CLS_ViewBasic(_pParent, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      ui(new Ui::CLS_WgtMsgBox)
{
    // Built here rather than in InitUi so that a request handled before the
    // first show finds its widgets.
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    ui->widget_input->hide();
    SlotShowPassword(false);
}

CLS_WgtMsgBox::~CLS_WgtMsgBox()
{
    delete ui;
}

const char* CLS_WgtMsgBox::GetModuleCode()
{
    return kModuleCode;
}

void CLS_WgtMsgBox::InitUi() {}

void CLS_WgtMsgBox::InitConnect()
{
    connect(ui->buttonBox, &QDialogButtonBox::clicked, this, &CLS_WgtMsgBox::SlotButtonClicked,
            Qt::UniqueConnection);
    connect(ui->tlb_showPassword, &QToolButton::toggled, this, &CLS_WgtMsgBox::SlotShowPassword,
            Qt::UniqueConnection);
}

bool CLS_WgtMsgBox::HandleTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                               QVariantMap& _qmapResult)
{
    Q_UNUSED(_qmapResult)
    if (_qstrBusinessKey != QLatin1String(kShowMessage)) {
        KOLOG(3, kModuleCode) << "unknown business key:[" << _qstrBusinessKey << "]";
        return false;
    }
    return ShowMessage(_qmapParam);
}

bool CLS_WgtMsgBox::ShowMessage(const QVariantMap& _qmapParam)
{
    // One box, one question, one answer: a second request would leave the
    // first requester without its answer.
    if (m_blAsked) {
        KOLOG(3, kModuleCode) << "ShowMessage refused: this box is already asking";
        return false;
    }
    m_blAsked = true;
    m_qstrBusinessUUID = CurrentBusinessUUID();

    // Init connects the buttons; it normally ran when the view was created.
    InitConnect();

    const QString qstrTitle = _qmapParam.value(QStringLiteral("title")).toString();
    ui->lbl_title->setText(qstrTitle);
    setWindowTitle(qstrTitle);
    ui->lbl_content->setText(_qmapParam.value(QStringLiteral("content")).toString());

    const bool blInput =
        _qmapParam.value(QStringLiteral("msgboxtype"), MessageOnly).toInt() == MessageWithInput;
    ui->widget_input->setVisible(blInput);
    ui->lineEdit_input->setPlaceholderText(
        _qmapParam.value(QStringLiteral("inputholder")).toString());

    SetButtons(_qmapParam.value(QStringLiteral("standbuttons"), QDialogButtonBox::Ok).toInt(),
               _qmapParam.value(QStringLiteral("defaultbutton"), QDialogButtonBox::Ok).toInt());
    PlaceAndShow(ResolveParent(_qmapParam.value(QStringLiteral("parent"))));

    if (blInput)
        ui->lineEdit_input->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
    return true;
}

void CLS_WgtMsgBox::SetButtons(int _iButtons, int _iDefaultButton)
{
    int iButtons = _iButtons & kKnownButtons;
    // A box without a button could only be left by Escape.
    if (iButtons == 0) iButtons = QDialogButtonBox::Ok;
    ui->buttonBox->setStandardButtons(QDialogButtonBox::StandardButtons(iButtons));

    for (const ButtonText& button : kButtonTexts) {
        if (QPushButton* pButton = ui->buttonBox->button(button.eButton)) {
            pButton->setObjectName(QString::fromLatin1(button.pObjectName));
            pButton->setText(tr(button.pTextKey));
        }
    }

    QPushButton* pDefault = ui->buttonBox->button(static_cast<QDialogButtonBox::StandardButton>(
        _iDefaultButton & kKnownButtons ? _iDefaultButton : 0));
    if (!pDefault) {
        const QList<QAbstractButton*> lstButtons = ui->buttonBox->buttons();
        pDefault = lstButtons.isEmpty() ? nullptr : qobject_cast<QPushButton*>(lstButtons.first());
    }
    if (pDefault) pDefault->setDefault(true);
}

void CLS_WgtMsgBox::PlaceAndShow(QWidget* _pParent)
{
    // Modal to the window the question is about: the requester's, else the
    // one the user is working in; with no window at all, to the application.
    QWidget* pOwner = _pParent ? _pParent->window() : QApplication::activeWindow();
    // Never another message box: a box asked from an answer handler would
    // otherwise be deleted with the box that is just closing. By class name,
    // as each module library carries its own copy of this class.
    while (pOwner && (pOwner == this || pOwner->inherits("CLS_WgtMsgBox")))
        pOwner = pOwner->parentWidget() ? pOwner->parentWidget()->window() : nullptr;
    if (pOwner) {
        setParent(pOwner, windowFlags());
        setWindowModality(Qt::WindowModal);
    } else {
        setWindowModality(Qt::ApplicationModal);
    }

    adjustSize();
    QRect qrcArea;
    if (pOwner)
        qrcArea = pOwner->frameGeometry();
    else if (QScreen* pScreen = QGuiApplication::primaryScreen())
        qrcArea = pScreen->availableGeometry();
    if (qrcArea.isValid()) move(qrcArea.center() - rect().center());

    show();
    raise();
    activateWindow();
}

void CLS_WgtMsgBox::SlotButtonClicked(QAbstractButton* _pButton)
{
    try {
        Answer(static_cast<int>(ui->buttonBox->standardButton(_pButton)));
    } catch (...) {
        KOLOG(3, kModuleCode) << "SlotButtonClicked Fail";
    }
}

void CLS_WgtMsgBox::SlotShowPassword(bool _blShow)
{
    ui->lineEdit_input->setEchoMode(_blShow ? QLineEdit::Normal : QLineEdit::Password);
    ui->tlb_showPassword->setToolTip(_blShow ? tr("btn_hide_password") : tr("btn_show_password"));
    ui->tlb_showPassword->setProperty("state",
                                      _blShow ? QStringLiteral("show") : QStringLiteral("hide"));
    style()->unpolish(ui->tlb_showPassword);
    style()->polish(ui->tlb_showPassword);
}

void CLS_WgtMsgBox::Answer(int _iButton)
{
    if (m_blAnswered) return;
    m_blAnswered = true;

    QVariantMap qmapResult;
    qmapResult.insert(QStringLiteral("type"), _iButton);
    qmapResult.insert(QStringLiteral("inputtext"), ui->lineEdit_input->text());
    ui->lineEdit_input->clear();
    KOLOG(1, kModuleCode) << "answer key:[" << kShowMessage << "] type:[" << _iButton << "] UUID:["
                          << m_qstrBusinessUUID << "]";

    // The receiver may delete this box from its handler.
    QPointer<CLS_WgtMsgBox> pGuard(this);
    emit SignRequestTaskRsulted(QLatin1String(kShowMessage), qmapResult, m_qstrBusinessUUID);
    if (pGuard) close();
}

void CLS_WgtMsgBox::keyPressEvent(QKeyEvent* _pEvent)
{
    switch (_pEvent->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            for (QAbstractButton* pButton : ui->buttonBox->buttons()) {
                auto* pPush = qobject_cast<QPushButton*>(pButton);
                if (pPush && pPush->isDefault()) {
                    pPush->click();
                    return;
                }
            }
            break;
        case Qt::Key_Escape:
            Answer(QDialogButtonBox::Cancel);
            return;
        default:
            break;
    }
    CLS_ViewBasic::keyPressEvent(_pEvent);
}

void CLS_WgtMsgBox::closeEvent(QCloseEvent* _pEvent)
{
    // Closed by the window system or its owner before a button was pressed:
    // the requester still gets its one answer, as Cancel.
    if (m_blAsked && !m_blAnswered) {
        m_blAnswered = true;
        QVariantMap qmapResult;
        qmapResult.insert(QStringLiteral("type"), static_cast<int>(QDialogButtonBox::Cancel));
        qmapResult.insert(QStringLiteral("inputtext"), ui->lineEdit_input->text());
        ui->lineEdit_input->clear();
        KOLOG(1, kModuleCode) << "answer key:[" << kShowMessage << "] closed as cancel UUID:["
                              << m_qstrBusinessUUID << "]";
        emit SignRequestTaskRsulted(QLatin1String(kShowMessage), qmapResult, m_qstrBusinessUUID);
    }
    _pEvent->accept();
}

void CLS_WgtMsgBox::mousePressEvent(QMouseEvent* _pEvent)
{
    // Frameless: the box is moved by dragging its own background.
    if (_pEvent->button() == Qt::LeftButton) {
        m_blDragging = true;
        m_ptDragOffset = _pEvent->globalPos() - frameGeometry().topLeft();
    }
    CLS_ViewBasic::mousePressEvent(_pEvent);
}

void CLS_WgtMsgBox::mouseMoveEvent(QMouseEvent* _pEvent)
{
    if (m_blDragging && (_pEvent->buttons() & Qt::LeftButton))
        move(_pEvent->globalPos() - m_ptDragOffset);
    CLS_ViewBasic::mouseMoveEvent(_pEvent);
}

void CLS_WgtMsgBox::mouseReleaseEvent(QMouseEvent* _pEvent)
{
    m_blDragging = false;
    CLS_ViewBasic::mouseReleaseEvent(_pEvent);
}
