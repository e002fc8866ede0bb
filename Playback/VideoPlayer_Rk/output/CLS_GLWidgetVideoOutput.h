#pragma once

#include <cstdint>

#include "CLS_OutputDiagnostics.h"
#include "IVideoOutput.h"

struct SwsContext;
struct QGL_Frame;

namespace RK_Framework::VideoPlayer {

class CLS_QGLRenderLibrary;

// Hands pictures to a QGLRender widget, which converts and letterboxes them
// on the GPU. Layouts the widget reads are passed through untouched; anything
// else (10-bit, RGB, odd subsampling) is converted to 8-bit 4:2:0 here.
class CLS_GLWidgetVideoOutput final : public IVideoOutput
{
public:
    CLS_GLWidgetVideoOutput(const CLS_QGLRenderLibrary& _library, void* _pWidget);
    ~CLS_GLWidgetVideoOutput() override;
    CLS_GLWidgetVideoOutput(const CLS_GLWidgetVideoOutput&) = delete;
    CLS_GLWidgetVideoOutput& operator=(const CLS_GLWidgetVideoOutput&) = delete;

    bool Show(const AVFrame* _pFrame) override;
    void Clear() override;
    // The widget redraws itself on resize and expose.
    void Refresh() override {}

private:
    bool Convert(const AVFrame* _pFrame, QGL_Frame& _frameOut);

    const CLS_QGLRenderLibrary& m_library;
    void* m_pWidget;
    SwsContext* m_pSws = nullptr;
    std::uint8_t* m_apConverted[4] = {nullptr, nullptr, nullptr, nullptr};
    int m_aiConvertedLinesize[4] = {0, 0, 0, 0};
    int m_iConvertedWidth = 0;
    int m_iConvertedHeight = 0;
    CLS_OutputDiagnostics m_diagnostics{"video output (render widget)"};
};

}  // namespace RK_Framework::VideoPlayer
