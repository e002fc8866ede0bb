#pragma once

#include "CLS_MsgBoxRequest.h"

#include <QMap>
#include <QString>
#include <QVector>
#include <QWidget>

class QSettings;
class CLS_WgtPlayer7ToolboxBar;

namespace Ui {
class CLS_WgtHistroyList;
}

// Side panel of the player window listing recently played files, newest
// first, each with the position it was left at. Owns the history store and
// its file "HistroyInfo.json" in the working directory.
class CLS_WgtHistroyList : public QWidget
{
    Q_OBJECT
public:
    explicit CLS_WgtHistroyList(QWidget* _pParent = nullptr);
    ~CLS_WgtHistroyList() override;

    // Records that _qstrPath was played and stopped at _iPos seconds, then
    // rewrites the rows and the file.
    void AddHistroy(const QString& _qstrPath, int _iPos);
    // Path of the selected row, or empty when no row is selected.
    QString CurrentHistroyPath() const;

signals:
    void SignHideHistrouListWgt();
    void SignContinuePlay(QString _qstrFilaPath, long _lStopedTime);

private slots:
    void SlotTextDoubleClicked(QString _qstrVideoPath, bool _blIsExit);
    void SlotItelBtnClicked(QString _qstrFilePath);
    void SlotToolBarClicked(bool _blChecked);

private:
    void InitHistroyLog();
    void UpdateResult();
    void RebuildRows();
    void AddRow(const QString& _qstrPath);
    void ForgetHistroy(const QString& _qstrPath);
    void AskForgetMissingFile(const QString& _qstrPath);
    // A notice box under the title "lab_notice": OK alone, or OK and Cancel
    // when the user is asked.
    CLS_MsgBoxRequest::ST_Request Notice(const QString& _qstrContent, bool _blAsk);
    void SetStyleSheetByFile(const QString& _qstrPath);

    // Never read or written: AddHistroy only checks that it exists.
    QSettings* m_pSettings = nullptr;
    QMap<QString, int> m_mapHistroyPos;
    QVector<QString> m_vecHistroyPath;
    CLS_WgtPlayer7ToolboxBar* m_pToolboxBar = nullptr;
    Ui::CLS_WgtHistroyList* ui;
};
