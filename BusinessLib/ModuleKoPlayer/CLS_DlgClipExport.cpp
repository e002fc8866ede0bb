#include "CLS_DlgClipExport.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace RK_Framework::ClipExport;

namespace {

QLineEdit* PasswordEdit(const QString& _qstrName, QWidget* _pParent)
{
    auto* pEdit = new QLineEdit(_pParent);
    pEdit->setObjectName(_qstrName);
    pEdit->setEchoMode(QLineEdit::Password);
    return pEdit;
}

QString SuffixOf(int _iFormat)
{
    return _iFormat == CLIP_FORMAT_SDV ? QStringLiteral("sdv") : QStringLiteral("mp4");
}

std::string Utf8(const QLineEdit* _pEdit)
{
    return _pEdit ? _pEdit->text().toStdString() : std::string();
}

}  // namespace

CLS_DlgClipExport::CLS_DlgClipExport(const QString& _qstrSource, bool _blSourceSealed,
                                     QWidget* _pParent)
    : QDialog(_pParent), m_qstrSource(_qstrSource)
{
    setObjectName(QStringLiteral("DlgClipExport"));
    setWindowTitle(tr("lab_export_clip"));
    auto* pForm = new QFormLayout;

    m_pFormat = new QComboBox(this);
    m_pFormat->setObjectName(QStringLiteral("comboBox_exportFormat"));
    m_pFormat->addItem(tr("lab_export_mp4"), CLIP_FORMAT_MP4);
    m_pFormat->addItem(tr("lab_export_sdv"), CLIP_FORMAT_SDV);
    pForm->addRow(tr("lab_export_format"), m_pFormat);

    m_pTarget = new QLineEdit(this);
    m_pTarget->setObjectName(QStringLiteral("lineEdit_exportTarget"));
    m_pTarget->setMinimumWidth(360);
    auto* pBrowse = new QPushButton(tr("btn_browse"), this);
    pBrowse->setObjectName(QStringLiteral("pushButton_exportBrowse"));
    auto* pTargetRow = new QHBoxLayout;
    pTargetRow->addWidget(m_pTarget);
    pTargetRow->addWidget(pBrowse);
    pForm->addRow(tr("lab_export_target"), pTargetRow);

    m_pPassword = PasswordEdit(QStringLiteral("lineEdit_exportPassword"), this);
    m_pPasswordAgain = PasswordEdit(QStringLiteral("lineEdit_exportPasswordAgain"), this);
    pForm->addRow(tr("lab_password"), m_pPassword);
    pForm->addRow(tr("lab_password_again"), m_pPasswordAgain);
    if (_blSourceSealed) {
        m_pSourcePassword = PasswordEdit(QStringLiteral("lineEdit_sourcePassword"), this);
        pForm->addRow(tr("lab_source_password"), m_pSourcePassword);
    }

    m_pProblem = new QLabel(this);
    m_pProblem->setObjectName(QStringLiteral("label_exportProblem"));
    auto* pOk = new QPushButton(tr("btn_ok"), this);
    pOk->setObjectName(QStringLiteral("pushButton_exportOk"));
    pOk->setDefault(true);
    auto* pCancel = new QPushButton(tr("btn_cancel"), this);
    pCancel->setObjectName(QStringLiteral("pushButton_exportCancel"));
    auto* pButtons = new QHBoxLayout;
    pButtons->addWidget(m_pProblem, 1);
    pButtons->addWidget(pOk);
    pButtons->addWidget(pCancel);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addLayout(pForm);
    pLayout->addLayout(pButtons);

    connect(m_pFormat, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CLS_DlgClipExport::SlotFormatChanged);
    connect(pBrowse, &QPushButton::clicked, this, &CLS_DlgClipExport::SlotBrowse);
    connect(pOk, &QPushButton::clicked, this, &CLS_DlgClipExport::accept);
    connect(pCancel, &QPushButton::clicked, this, &CLS_DlgClipExport::reject);
    // A rejected dialog keeps no password in its fields either.
    connect(this, &QDialog::rejected, this, &CLS_DlgClipExport::WipePasswords);

    const QFileInfo qfiSource(_qstrSource);
    m_pTarget->setText(
        qfiSource.dir().filePath(qfiSource.completeBaseName() + QStringLiteral("_clip.mp4")));
    SlotFormatChanged(0);
}

CLS_DlgClipExport::~CLS_DlgClipExport()
{
    WipePasswords();
}

void CLS_DlgClipExport::WipePasswords()
{
    for (QLineEdit* pEdit : {m_pPassword, m_pPasswordAgain, m_pSourcePassword}) {
        if (!pEdit) continue;
        pEdit->setText(QString(pEdit->text().size(), QLatin1Char(' ')));
        pEdit->clear();
    }
}

void CLS_DlgClipExport::SlotFormatChanged(int _iIndex)
{
    const int iFormat = m_pFormat->itemData(_iIndex).toInt();
    m_pPassword->setEnabled(iFormat == CLIP_FORMAT_SDV);
    m_pPasswordAgain->setEnabled(iFormat == CLIP_FORMAT_SDV);
    // The suffix follows the format, so the file tells what it holds.
    const QString qstrTarget = m_pTarget->text();
    const QFileInfo qfiTarget(qstrTarget);
    if (!qstrTarget.isEmpty() && qfiTarget.suffix() != SuffixOf(iFormat))
        m_pTarget->setText(qfiTarget.dir().filePath(qfiTarget.completeBaseName() +
                                                    QLatin1Char('.') + SuffixOf(iFormat)));
}

void CLS_DlgClipExport::SlotBrowse()
{
    const QString qstrSuffix = SuffixOf(m_pFormat->currentData().toInt());
    const QString qstrPath = QFileDialog::getSaveFileName(
        this, tr("lab_export_target"), m_pTarget->text(), QStringLiteral("(*.%1)").arg(qstrSuffix));
    if (!qstrPath.isEmpty()) m_pTarget->setText(qstrPath);
}

QString CLS_DlgClipExport::Problem() const
{
    const QString qstrTarget = m_pTarget->text().trimmed();
    const QFileInfo qfiTarget(qstrTarget);
    if (qstrTarget.isEmpty() || qfiTarget.isDir() || !qfiTarget.dir().exists())
        return tr("msg_export_no_target");
    if (qfiTarget.absoluteFilePath() == QFileInfo(m_qstrSource).absoluteFilePath())
        return tr("msg_export_no_target");
    if (m_pFormat->currentData().toInt() == CLIP_FORMAT_SDV) {
        if (m_pPassword->text().isEmpty()) return tr("msg_password_empty");
        if (m_pPassword->text() != m_pPasswordAgain->text()) return tr("msg_password_mismatch");
    }
    if (m_pSourcePassword && m_pSourcePassword->text().isEmpty()) return tr("msg_password_empty");
    return QString();
}

void CLS_DlgClipExport::accept()
{
    const QString qstrProblem = Problem();
    m_pProblem->setText(qstrProblem);
    if (qstrProblem.isEmpty()) QDialog::accept();
}

ST_ClipRequest CLS_DlgClipExport::Request() const
{
    ST_ClipRequest stRequest;
    stRequest.m_strSource = m_qstrSource.toStdString();
    stRequest.m_strTarget = m_pTarget->text().trimmed().toStdString();
    stRequest.m_emFormat = static_cast<EM_ClipFormat>(m_pFormat->currentData().toInt());
    if (stRequest.m_emFormat == CLIP_FORMAT_SDV) stRequest.m_strTargetPassword = Utf8(m_pPassword);
    stRequest.m_strSourcePassword = Utf8(m_pSourcePassword);
    return stRequest;
}
