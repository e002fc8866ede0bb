#pragma once

#include <QString>

// Style sheets of the active skin, read from the skin tree below the current
// directory ("./resource/skin/<skin>/...") and kept for the life of the
// process: a skin or scale change takes effect at the next start.

// "Player" -> "ModulePlayer"; names starting with "Wgt", "Module" or "Ko" stay.
QString NormaliseModuleName(const QString& _qstrModuleName);

// Path of a module's own style file, preferring the high-DPI variant
// ("<name>_3K.qss" at QT_SCALE_FACTOR 1.5) when the display is scaled and the
// variant exists. False when either name is empty (path untouched) or the file
// does not exist (path set).
bool GetQssFilePath(const QString& _qstrModuleName, const QString& _qstrFileName,
                    QString& _qstrPath);

// The skin's shared style text followed by the module file's text. A missing
// file gives an empty part.
QString GetModuleStyleSheet(const QString& _qstrModuleName, const QString& _qstrFileName);
