#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "CLS_NativeWindowSurface.h"
#include "CLS_OutputDiagnostics.h"
#include "CLS_VideoFrameTraits.h"
#include "IVideoOutput.h"

struct SwsContext;

namespace RK_Framework::VideoPlayer {

// Draws into a native window itself: scales and converts each picture on the
// CPU into an image of the window's current size, letterboxed, and puts that
// on the window. The last picture is kept so that a resized or uncovered
// window can be redrawn while playback is paused.
class CLS_NativeWindowVideoOutput final : public IVideoOutput
{
public:
    explicit CLS_NativeWindowVideoOutput(std::int64_t _i64WindowId);
    // For a window its toolkit may replace (a widget moved into another
    // top-level window): _fnWindow answers the current id, 0 once the
    // window's owner is gone. Asked before every drawing.
    explicit CLS_NativeWindowVideoOutput(std::function<std::int64_t()> _fnWindow);
    ~CLS_NativeWindowVideoOutput() override;
    CLS_NativeWindowVideoOutput(const CLS_NativeWindowVideoOutput&) = delete;
    CLS_NativeWindowVideoOutput& operator=(const CLS_NativeWindowVideoOutput&) = delete;

    bool Show(const AVFrame* _pFrame) override;
    void Clear() override;
    // Redraws only when the window changed size or was exposed since the last
    // drawing, so it is cheap to call often while paused.
    void Refresh() override;

private:
    // Follows the window's owner to its current window; false when gone.
    bool FindWindow();
    bool Draw(int _iWidth, int _iHeight);
    bool PrepareCanvas(int _iWidth, int _iHeight, AVPixelFormat _eFormat);
    void FillBlack();
    bool ScalePicture(const SVideoRect& _rect);

    // Show and Refresh come from the presenter thread, Clear from whoever stops it.
    std::mutex m_mutex;
    std::function<std::int64_t()> m_fnWindow;
    std::int64_t m_i64Window = 0;
    std::unique_ptr<CLS_NativeWindowSurface> m_pSurface;
    AVFrame* m_pLast = nullptr;
    bool m_blDrawn = false;

    // The surface's; pictures are scaled straight into it.
    std::uint8_t* m_pCanvas = nullptr;
    int m_iCanvasWidth = 0;
    int m_iCanvasHeight = 0;
    int m_iCanvasStride = 0;
    AVPixelFormat m_eCanvasFormat = AV_PIX_FMT_NONE;
    SVideoRect m_rectPicture;

    SwsContext* m_pSws = nullptr;
    // What m_pSws was last made for, and the matrix and range set on it.
    std::array<int, 6> m_aiSwsKey{};
    const int* m_piSwsCoefficients = nullptr;
    bool m_blSwsFullRange = false;
    std::uint8_t* m_apScratch[4] = {nullptr, nullptr, nullptr, nullptr};
    int m_aiScratchLinesize[4] = {0, 0, 0, 0};
    int m_iScratchWidth = 0;
    int m_iScratchHeight = 0;
    CLS_OutputDiagnostics m_diagnostics{"video output (native window)"};
};

}  // namespace RK_Framework::VideoPlayer
