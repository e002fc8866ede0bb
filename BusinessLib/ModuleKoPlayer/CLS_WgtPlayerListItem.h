#pragma once

#include <QWidget>

namespace Ui {
class CLS_WgtPlayerListItem;
}

// One row of the history list: the file's name and a "continue" button. The
// row only reports; the panel decides what a click means.
class CLS_WgtPlayerListItem : public QWidget
{
    Q_OBJECT
public:
    explicit CLS_WgtPlayerListItem(QWidget* _pParent = nullptr);
    ~CLS_WgtPlayerListItem() override;

    void SetFilePath(const QString& _qstrFilePath);
    void SetFileName(const QString& _qstrFileName);

    bool eventFilter(QObject* _pWatched, QEvent* _pEvent) override;

signals:
    void SignItemBtnClicked(QString _qstrFilePath);
    void SignTextDoubleCliced(QString _qstrVideoPath, bool _blIsExit);

private slots:
    void on_toolButton_play_clicked();

private:
    QString m_qstrFilePath;
    Ui::CLS_WgtPlayerListItem* ui;
};
