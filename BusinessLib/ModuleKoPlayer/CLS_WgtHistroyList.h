#pragma once

#include <QMap>
#include <QString>
#include <QVector>
#include <QWidget>

class QSettings;
class CLS_ViewBasic;
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
    // The suite's message box, or null when its module is missing. The caller
    // connects to its answer before SendShowMessage shows it.
    CLS_ViewBasic* CreateMsgBox();
    void SendShowMessage(CLS_ViewBasic* _pMsgBox, const QString& _qstrContent, int _iButtons);
    void SetStyleSheetByFile(const QString& _qstrPath);

    // Never read or written: AddHistroy only checks that it exists.
    QSettings* m_pSettings = nullptr;
    QMap<QString, int> m_mapHistroyPos;
    QVector<QString> m_vecHistroyPath;
    CLS_WgtPlayer7ToolboxBar* m_pToolboxBar = nullptr;
    Ui::CLS_WgtHistroyList* ui;
};
