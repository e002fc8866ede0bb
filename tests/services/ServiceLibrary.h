#pragma once

#include "QuillTestSupport.h"

#include <QLibrary>
#include <QtTest>

// A service library from build/bin, loaded by path as the suite would load it.
// The library stays loaded for the rest of the process, like in the suite.
class ServiceLibrary : private QLibrary
{
public:
    explicit ServiceLibrary(const char* _pBaseName)
        : QLibrary(QuillTest::LibraryPath(QString::fromLatin1(_pBaseName)))
    {}

    bool Load()
    {
        if (!load()) qWarning("%s", qPrintable(errorString()));
        return isLoaded();
    }

    template <typename Fn>
    Fn Get(const char* _pName)
    {
        return reinterpret_cast<Fn>(resolve(_pName));
    }
};
