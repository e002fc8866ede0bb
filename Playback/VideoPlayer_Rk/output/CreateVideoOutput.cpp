#include <cstdint>

#include "CLS_DiscardVideoOutput.h"
#include "CLS_GLWidgetVideoOutput.h"
#include "CLS_NativeWindowVideoOutput.h"
#include "CLS_QGLRenderLibrary.h"
#include "IVideoOutput.h"

namespace RK_Framework::VideoPlayer {

std::unique_ptr<IVideoOutput> CreateVideoOutput(std::int64_t playHandle)
{
    if (playHandle == 0) return std::make_unique<CLS_DiscardVideoOutput>();
    // The handle is only compared against QGLRender's registry here, never
    // dereferenced: most handles are window ids, not pointers.
    void* pHandle = reinterpret_cast<void*>(static_cast<std::intptr_t>(playHandle));
    if (const CLS_QGLRenderLibrary* pLibrary = CLS_QGLRenderLibrary::Find();
        pLibrary && pLibrary->IsRenderWidget(pHandle)) {
        if (pLibrary->NativeWindow(pHandle) != 0) {
            return std::make_unique<CLS_NativeWindowVideoOutput>(
                [pLibrary, pHandle] { return pLibrary->NativeWindow(pHandle); });
        }
        return std::make_unique<CLS_GLWidgetVideoOutput>(*pLibrary, pHandle);
    }
    return std::make_unique<CLS_NativeWindowVideoOutput>(playHandle);
}

}  // namespace RK_Framework::VideoPlayer
