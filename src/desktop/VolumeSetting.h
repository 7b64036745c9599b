#pragma once
// Ds_VolumeSetting: volume and mute of the speakers and of six source lines through the
// audio mixer (desktop/Mixer.h). The first call that needs the mixer opens device 0 and
// looks up fourteen controls into slots; later calls reuse them until CloseMixer.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Handles.h"
#include "desktop/Mixer.h"

namespace vx {

class VolumeSetting : public DispatchObject<VolumeSetting, _Ds_VolumeSetting> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_VolumeSetting; }

    HRESULT STDMETHODCALLTYPE SetVolume(VOL_CONTROL* Control, LONG NewVolume, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetVolume(VOL_CONTROL Control, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetMute(MUTE_CONTROL Control, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE CloseMixer(LONG* result) override;
    HRESULT STDMETHODCALLTYPE SetMute(MUTE_CONTROL Control, VARIANT_BOOL MuteState, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE OpenMixer(LONG MixerNumber, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetControlValue(LONG hMixer, Vx_MIXERCONTROL* mxc, LONG* result) override;
    HRESULT STDMETHODCALLTYPE SetControlValue(LONG hMixer, Vx_MIXERCONTROL* mxc, LONG NewVolume,
                                              VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetMixerControl(LONG hMixer, LONG componentType, LONG ctrlType, Vx_MIXERCONTROL* mxc,
                                              LONG* result) override;

    // A control's value: scaled to 0 to 100 when its maximum is above 100.
    static LONG controlValue(HMIXEROBJ mixer, const Vx_MIXERCONTROL& control);
    // Sets a control to a value in hundredths of its maximum (or a raw value for a
    // maximum of 100 or less), clamped to its range; whether the mixer took it.
    static bool setControlValue(HMIXEROBJ mixer, const Vx_MIXERCONTROL& control, LONG newValue);
    // The control of a type on the line of a component type, copied into control field by
    // field; whether it was found (control is left alone when not).
    static bool findControl(HMIXEROBJ mixer, LONG componentType, LONG controlType, Vx_MIXERCONTROL& control);

private:
    // The mixer handle, closed through the mixer service.
    struct ClosedByService {
        using Handle = HMIXER;
        static Handle invalid() noexcept { return nullptr; }
        static void close(Handle h) noexcept { service<MixerService>().close(h); }
    };
    using Mixer = UniqueHandle<ClosedByService>;

    static constexpr int kSlots = 21;

    bool open(LONG device);
    void openOnDemand();
    const Vx_MIXERCONTROL& slot(LONG index) const;
    HMIXEROBJ mixerObject() const noexcept { return reinterpret_cast<HMIXEROBJ>(mixer_.get()); }

    Vx_MIXERCONTROL controls_[kSlots] = {};
    Mixer mixer_;
};

}  // namespace vx
