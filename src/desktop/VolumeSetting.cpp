#include "desktop/VolumeSetting.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

#include <algorithm>
#include <cstring>

namespace vx {

namespace {

// The mixer line behind each pair of slots, in the order the controls are looked up.
struct Line {
    LONG volumeSlot;
    LONG muteSlot;
    DWORD componentType;
};
constexpr Line kLines[] = {
    {SPEAKER, SPEAKER_MUTE, MIXERLINE_COMPONENTTYPE_DST_SPEAKERS},
    {LINEIN, LINEIN_MUTE, MIXERLINE_COMPONENTTYPE_SRC_LINE},
    {Auxiliary, AUXILIARY_MUTE, MIXERLINE_COMPONENTTYPE_SRC_AUXILIARY},
    {COMPACTDISC, COMPACTDISC_MUTE, MIXERLINE_COMPONENTTYPE_SRC_COMPACTDISC},
    {SYNTHESIZER, SYNTHESIZER_MUTE, MIXERLINE_COMPONENTTYPE_SRC_SYNTHESIZER},
    {WAVEOUT, WAVEOUT_MUTE, MIXERLINE_COMPONENTTYPE_SRC_WAVEOUT},
    {MICROPHONE, MICROPHONE_MUTE, MIXERLINE_COMPONENTTYPE_SRC_MICROPHONE},
};

// A mixer handle or device number as a caller passes it (a Long), for the mixer calls.
HMIXEROBJ mixerFrom(LONG handle) noexcept { return reinterpret_cast<HMIXEROBJ>(static_cast<LONG_PTR>(handle)); }

// The details record of one value of a control, for its first channel.
MIXERCONTROLDETAILS detailsOf(const Vx_MIXERCONTROL& control, LONG& value) noexcept {
    MIXERCONTROLDETAILS details{};
    details.cbStruct = sizeof details;
    details.dwControlID = static_cast<DWORD>(control.dwControlID);
    details.cChannels = 1;
    details.cbDetails = sizeof value;
    details.paDetails = &value;
    return details;
}

// A slot no look-up ever filled holds no control: its identifier 0 would name another
// control of the mixer.
bool holdsControl(const Vx_MIXERCONTROL& control) noexcept { return control.cbStruct != 0; }

// The system's control record, copied into the library's longer one: the bounds' and the
// metrics' spare words follow lMinimum and lMaximum in Reserved, and the last reserved
// word, which the system's record lacks, is 0.
Vx_MIXERCONTROL copyOf(const MIXERCONTROLA& from) noexcept {
    static_assert(sizeof(Vx_MIXERCONTROL::szShortName) == sizeof(MIXERCONTROLA::szShortName) &&
                      sizeof(Vx_MIXERCONTROL::szName) == sizeof(MIXERCONTROLA::szName),
                  "the control names have the system's lengths");
    Vx_MIXERCONTROL to{};
    to.cbStruct = static_cast<LONG>(from.cbStruct);
    to.dwControlID = static_cast<LONG>(from.dwControlID);
    to.dwControlType = static_cast<LONG>(from.dwControlType);
    to.fdwControl = static_cast<LONG>(from.fdwControl);
    to.cMultipleItems = static_cast<LONG>(from.cMultipleItems);
    std::memcpy(to.szShortName, from.szShortName, sizeof to.szShortName);
    std::memcpy(to.szName, from.szName, sizeof to.szName);
    to.lMinimum = from.Bounds.lMinimum;
    to.lMaximum = from.Bounds.lMaximum;
    for (int i = 0; i < 4; ++i) to.Reserved[i] = static_cast<LONG>(from.Bounds.dwReserved[2 + i]);
    for (int i = 0; i < 6; ++i) to.Reserved[4 + i] = static_cast<LONG>(from.Metrics.dwReserved[i]);
    return to;
}

}  // namespace

// ---- shared bodies ----

LONG VolumeSetting::controlValue(HMIXEROBJ mixer, const Vx_MIXERCONTROL& control) {
    LONG value = 0;  // stays 0 when the mixer refuses
    MIXERCONTROLDETAILS details = detailsOf(control, value);
    service<MixerService>().getDetails(mixer, &details, MIXER_GETCONTROLDETAILSF_VALUE);
    if (control.lMaximum < 101) return value;
    // Hundredths of the maximum; the minimum is taken off after scaling.
    return roundToInt32(static_cast<double>(value) * 100.0 / control.lMaximum - control.lMinimum);
}

bool VolumeSetting::setControlValue(HMIXEROBJ mixer, const Vx_MIXERCONTROL& control, LONG newValue) {
    LONG value = newValue;
    // A whole step a hundredth: 100 on a control of 0 to 65535 is 65500.
    if (control.lMaximum >= 101) value = (Checked<int32_t>(control.lMaximum) / 100 * newValue).value();
    value = std::max(std::min(value, control.lMaximum), control.lMinimum);
    MIXERCONTROLDETAILS details = detailsOf(control, value);
    return service<MixerService>().setDetails(mixer, &details, MIXER_SETCONTROLDETAILSF_VALUE) == MMSYSERR_NOERROR;
}

bool VolumeSetting::findControl(HMIXEROBJ mixer, LONG componentType, LONG controlType, Vx_MIXERCONTROL& control) {
    MixerService& mixers = service<MixerService>();
    // The records have the system's own sizes for this word size: the mixer refuses others.
    MIXERLINEA line{};
    line.cbStruct = sizeof line;
    line.dwComponentType = static_cast<DWORD>(componentType);
    if (mixers.getLineInfo(mixer, &line, MIXER_GETLINEINFOF_COMPONENTTYPE) != MMSYSERR_NOERROR) return false;
    MIXERCONTROLA found{};
    MIXERLINECONTROLSA request{};
    request.cbStruct = sizeof request;
    request.dwLineID = line.dwLineID;
    request.dwControlType = static_cast<DWORD>(controlType);
    request.cControls = 1;
    request.cbmxctrl = sizeof found;
    request.pamxctrl = &found;
    if (mixers.getLineControls(mixer, &request, MIXER_GETLINECONTROLSF_ONEBYTYPE) != MMSYSERR_NOERROR) return false;
    control = copyOf(found);
    return true;
}

// ---- the object's mixer ----

bool VolumeSetting::open(LONG device) {
    MixerService& mixers = service<MixerService>();
    const LONG count = static_cast<LONG>(std::min<UINT>(mixers.deviceCount(), 0x7FFFFFFF));
    if (device < 0 || device > count - 1) return false;
    Mixer opened;
    if (mixers.open(opened.put(), static_cast<UINT>(device)) != MMSYSERR_NOERROR) {
        opened.release();  // a refused open hands back no handle of its own
        return false;
    }
    mixer_ = std::move(opened);
    // A line the mixer lacks leaves its slots as they were.
    for (const Line& l : kLines)
        findControl(mixerObject(), static_cast<LONG>(l.componentType), MIXERCONTROL_CONTROLTYPE_VOLUME, controls_[l.volumeSlot]);
    for (const Line& l : kLines)
        findControl(mixerObject(), static_cast<LONG>(l.componentType), MIXERCONTROL_CONTROLTYPE_MUTE, controls_[l.muteSlot]);
    return true;
}

void VolumeSetting::openOnDemand() {
    if (!mixer_) open(0);
}

const Vx_MIXERCONTROL& VolumeSetting::slot(LONG index) const {
    if (index < 0 || index >= kSlots) raise(err::SubscriptOutOfRange);
    return controls_[index];
}

// ---- members ----

HRESULT VolumeSetting::SetVolume(VOL_CONTROL* Control, LONG NewVolume, LONG* result) {
    return deliver(result, [&] {
        openOnDemand();
        const Vx_MIXERCONTROL& control = slot(required(Control));
        return holdsControl(control) && setControlValue(mixerObject(), control, NewVolume) ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

HRESULT VolumeSetting::GetVolume(VOL_CONTROL Control, LONG* result) {
    return deliver(result, [&] {
        openOnDemand();
        const Vx_MIXERCONTROL& control = slot(Control);
        return holdsControl(control) ? controlValue(mixerObject(), control) : 0;
    });
}

HRESULT VolumeSetting::GetMute(MUTE_CONTROL Control, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        openOnDemand();
        const Vx_MIXERCONTROL& control = slot(Control);
        return holdsControl(control) && controlValue(mixerObject(), control) > 0;
    });
}

HRESULT VolumeSetting::CloseMixer(LONG* result) {
    return deliver(result, [&] {
        const MMRESULT closed = service<MixerService>().close(mixer_.release());
        return static_cast<LONG>(closed);
    });
}

HRESULT VolumeSetting::SetMute(MUTE_CONTROL Control, VARIANT_BOOL MuteState, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        openOnDemand();
        const Vx_MIXERCONTROL& control = slot(Control);
        return holdsControl(control) && setControlValue(mixerObject(), control, MuteState != VARIANT_FALSE ? 1 : 0);
    });
}

HRESULT VolumeSetting::OpenMixer(LONG MixerNumber, LONG* result) {
    return deliver(result, [&] { return open(MixerNumber) ? VARIANT_TRUE : VARIANT_FALSE; });
}

HRESULT VolumeSetting::GetControlValue(LONG hMixer, Vx_MIXERCONTROL* mxc, LONG* result) {
    return deliver(result, [&] {
        openOnDemand();
        return controlValue(mixerFrom(hMixer), required(mxc));
    });
}

HRESULT VolumeSetting::SetControlValue(LONG hMixer, Vx_MIXERCONTROL* mxc, LONG NewVolume, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        openOnDemand();
        return setControlValue(mixerFrom(hMixer), required(mxc), NewVolume);
    });
}

HRESULT VolumeSetting::GetMixerControl(LONG hMixer, LONG componentType, LONG ctrlType, Vx_MIXERCONTROL* mxc,
                                       LONG* result) {
    return deliver(result, [&] {
        openOnDemand();
        return findControl(mixerFrom(hMixer), componentType, ctrlType, required(mxc)) ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

}  // namespace vx
