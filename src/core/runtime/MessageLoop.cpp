#include "core/runtime/MessageLoop.h"

#include <windows.h>

namespace vx {

namespace {
thread_local unsigned long long yields = 0;
}

void yieldToHost() {
    ++yields;
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            // The host's own loop must still see it.
            PostQuitMessage(static_cast<int>(msg.wParam));
            break;
        }
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

unsigned long long yieldCount() { return yields; }

}  // namespace vx
