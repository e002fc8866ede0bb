#include "CLS_Player_Rk.h"

namespace RK_Framework::VideoPlayer {

CLS_Player_Rk::~CLS_Player_Rk() = default;

int CLS_Player_Rk::NormalSpeed()
{
    return DoNormalSpeed();
}

}  // namespace RK_Framework::VideoPlayer
