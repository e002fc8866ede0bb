#pragma once

#include "QuillTestSupport.h"

#include <QLibrary>
#include <QtTest>

// A service library from build/bin, loaded by path as the suite would load it.
// The library stays loaded for the rest of the process, like in the suite.
class ServiceLibrary
{
public:
    explicit ServiceLibrary(const char* _pBaseName)
        : m_library(QuillTest::LibraryPath(QString::fromLatin1(_pBaseName)))
    {}

    bool Load()
    {
        if (!m_library.load()) qWarning("%s", qPrintable(m_library.errorString()));
        return m_library.isLoaded();
    }

    template <typename Fn>
    Fn Get(const char* _pName)
    {
        return reinterpret_cast<Fn>(m_library.resolve(_pName));
    }

private:
    QLibrary m_library;
};
