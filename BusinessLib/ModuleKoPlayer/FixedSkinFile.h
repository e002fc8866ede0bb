#pragma once

#include <QString>

class QWidget;

// The chrome widgets that style themselves from one fixed file of the player's
// skin folder, rather than through the suite's scaled sheet lookup. Each logs
// the outcome itself, in its own words and under its own function name.

// "./resource/skin/<skin>/ModuleKoPlayer/qss/<file>": light when the
// application property "Skin" is 1, dark for any other value or none.
QString FixedSkinFilePath(const QString& _qstrFileName);

// Makes the file's whole text the widget's style sheet; false, and the widget
// left as it is, when the file cannot be opened.
bool SetStyleSheetFromFile(QWidget* _pWidget, const QString& _qstrPath);
