#pragma once

class QWidget;

// The render widget library, loaded by its bare file name on first use and
// kept for the life of the process. GUI thread only.
class CLS_GLWgtLibLoader
{
public:
    CLS_GLWgtLibLoader() = delete;

    // A new render widget, or null when the library or its function is missing.
    static QWidget* CreateGLWgt();
    // The library's answer, or -1 when the library or its function is missing.
    static int ReleaseGLWgt(QWidget* _pWidget);

private:
    static void LoadLibrary();
};
