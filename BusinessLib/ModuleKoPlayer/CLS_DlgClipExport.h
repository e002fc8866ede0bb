#pragma once

#include <QDialog>
#include <QString>

#include "CLS_ClipExporter.h"

class QComboBox;
class QLabel;
class QLineEdit;

// Asks where a clip goes and how: MP4, or a sealed .sdv with its password
// typed twice; and the source's password when the source is sealed. Accepts
// only a complete answer; the passwords leave it only inside the request.
class CLS_DlgClipExport : public QDialog
{
    Q_OBJECT
public:
    // _qstrSource: the file the clip comes from; _blSourceSealed asks for its
    // password too.
    CLS_DlgClipExport(const QString& _qstrSource, bool _blSourceSealed,
                      QWidget* _pParent = nullptr);
    ~CLS_DlgClipExport() override;

    // Target, format and passwords as entered; the times are the caller's.
    RK_Framework::ClipExport::ST_ClipRequest Request() const;

public slots:
    void accept() override;

private slots:
    void SlotFormatChanged(int _iIndex);
    void SlotBrowse();

private:
    // An empty text when the answer is complete, else what is missing.
    QString Problem() const;
    void WipePasswords();

    QString m_qstrSource;
    QComboBox* m_pFormat = nullptr;
    QLineEdit* m_pTarget = nullptr;
    QLineEdit* m_pPassword = nullptr;
    QLineEdit* m_pPasswordAgain = nullptr;
    QLineEdit* m_pSourcePassword = nullptr;
    QLabel* m_pProblem = nullptr;
};
