#pragma once
// The audio mixer calls the volume class makes, as a replaceable service (see
// core/runtime/Seams.h): the real winmm functions unless a test puts others in place.
#include "core/runtime/Platform.h"
#include "core/runtime/Seams.h"

#include <mmsystem.h>

#include <functional>

namespace vx {

struct MixerService {
    std::function<UINT()> deviceCount = [] { return ::mixerGetNumDevs(); };
    std::function<MMRESULT(HMIXER*, UINT)> open = [](HMIXER* mixer, UINT device) {
        return ::mixerOpen(mixer, device, 0, 0, MIXER_OBJECTF_MIXER);
    };
    std::function<MMRESULT(HMIXER)> close = [](HMIXER mixer) { return ::mixerClose(mixer); };
    std::function<MMRESULT(HMIXEROBJ, MIXERLINEA*, DWORD)> getLineInfo = [](HMIXEROBJ mixer, MIXERLINEA* line,
                                                                            DWORD flags) {
        return ::mixerGetLineInfoA(mixer, line, flags);
    };
    std::function<MMRESULT(HMIXEROBJ, MIXERLINECONTROLSA*, DWORD)> getLineControls =
        [](HMIXEROBJ mixer, MIXERLINECONTROLSA* controls, DWORD flags) {
            return ::mixerGetLineControlsA(mixer, controls, flags);
        };
    std::function<MMRESULT(HMIXEROBJ, MIXERCONTROLDETAILS*, DWORD)> getDetails =
        [](HMIXEROBJ mixer, MIXERCONTROLDETAILS* details, DWORD flags) {
            return ::mixerGetControlDetailsA(mixer, details, flags);
        };
    std::function<MMRESULT(HMIXEROBJ, MIXERCONTROLDETAILS*, DWORD)> setDetails =
        [](HMIXEROBJ mixer, MIXERCONTROLDETAILS* details, DWORD flags) {
            return ::mixerSetControlDetails(mixer, details, flags);
        };
};

}  // namespace vx
