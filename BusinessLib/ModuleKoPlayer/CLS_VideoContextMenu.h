#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>

class QAction;
class QMenu;
class QPoint;
class QWidget;

// The right-click menu of the video area. Features put their entries into it;
// the menu knows nothing of playback. An entry with a key sequence also works
// while the menu is closed: its action is added to the area too, with the
// window as its shortcut context, so the keys reach it in the dialog and in
// the full-screen video window alike.
class CLS_VideoContextMenu : public QObject
{
    Q_OBJECT
public:
    // _pArea: the widget the menu opens on; the menu lives as long as it.
    explicit CLS_VideoContextMenu(QWidget* _pArea);
    ~CLS_VideoContextMenu() override;

    // _qstrName becomes the action's object name, by which tests and other
    // features find the entry.
    QAction* AddEntry(const QString& _qstrName, const QString& _qstrText,
                      const QKeySequence& _keys = QKeySequence());
    QAction* AddToggle(const QString& _qstrName, const QString& _qstrText, bool _blChecked);
    // Starts a new group of entries; nothing when the menu is still empty.
    void AddSeparator();

    QAction* Entry(const QString& _qstrName) const;
    QMenu* Menu() const { return m_pMenu; }
    // _posArea in the area's coordinates.
    void Popup(const QPoint& _posArea);

signals:
    // Just before the menu shows: the place to bring entries' enabled and
    // checked states up to date.
    void SignAboutToShow();

private:
    QWidget* m_pArea = nullptr;
    QMenu* m_pMenu = nullptr;
};
