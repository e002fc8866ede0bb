#include "PlatformThread.h"

#include <pthread.h>

namespace BriskPlatform {

void SetCurrentThreadName(const std::string& _strName)
{
    // Linux refuses a name of 16 bytes or more rather than cutting it.
    const std::string strName = _strName.substr(0, 15);
#if defined(__APPLE__)
    pthread_setname_np(strName.c_str());
#else
    pthread_setname_np(pthread_self(), strName.c_str());
#endif
}

}  // namespace BriskPlatform
