// Ds_VolumeSetting: against a stand-in mixer for what Wine's lacks (the six source lines,
// other ranges, the spare fields of a control record), and against the test prefix's own
// mixer for the members that take a record, which a script cannot call.
// tests/host/volume.vbs drives the real mixer from a script.
#include "core/runtime/Services.h"
#include "desktop/Mixer.h"

#include "TestSupport.h"
#include "Vx_Main.h"
#include "Vx_MainEnums.h"

#include <cstring>
#include <map>
#include <optional>
#include <utility>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME, kMute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr DWORD kSpeakers = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;

// A mixer with the controls a test gives it, by (component type, control type); a
// control's value is kept by its identifier.
struct FakeMixer {
    std::map<std::pair<DWORD, DWORD>, MIXERCONTROLA> controls;
    std::map<DWORD, LONG> values;
    std::vector<std::pair<DWORD, DWORD>> lookups;
    std::vector<HMIXEROBJ> named;  // the mixer each value call named
    UINT devices = 1;
    MMRESULT openResult = MMSYSERR_NOERROR, setResult = MMSYSERR_NOERROR;

    MIXERCONTROLA& add(DWORD component, DWORD type, DWORD id, LONG minimum, LONG maximum) {
        MIXERCONTROLA& c = controls[{component, type}] = MIXERCONTROLA{};
        c.cbStruct = sizeof c;
        c.dwControlID = id;
        c.dwControlType = type;
        c.Bounds.lMinimum = minimum;
        c.Bounds.lMaximum = maximum;
        return c;
    }

    MixerService table() {
        MixerService s = service<MixerService>();
        s.deviceCount = [this] { return devices; };
        s.open = [this](HMIXER* mixer, UINT) { return *mixer = reinterpret_cast<HMIXER>(0x71), openResult; };
        s.close = [](HMIXER) { return MMRESULT(MMSYSERR_NOERROR); };
        // The line of a component type is the component type itself.
        s.getLineInfo = [](HMIXEROBJ, MIXERLINEA* line, DWORD) { return line->dwLineID = line->dwComponentType, MMRESULT(0); };
        s.getLineControls = [this](HMIXEROBJ, MIXERLINECONTROLSA* request, DWORD) -> MMRESULT {
            lookups.emplace_back(request->dwLineID, request->dwControlType);
            auto c = controls.find({request->dwLineID, request->dwControlType});
            if (c == controls.end()) return MIXERR_INVALCONTROL;
            *request->pamxctrl = c->second;
            return MMSYSERR_NOERROR;
        };
        s.getDetails = [this](HMIXEROBJ mixer, MIXERCONTROLDETAILS* d, DWORD) -> MMRESULT {
            named.push_back(mixer);
            auto v = values.find(d->dwControlID);
            if (v == values.end()) return MIXERR_INVALCONTROL;
            *static_cast<LONG*>(d->paDetails) = v->second;
            return MMSYSERR_NOERROR;
        };
        s.setDetails = [this](HMIXEROBJ mixer, MIXERCONTROLDETAILS* d, DWORD) {
            named.push_back(mixer);
            if (setResult == MMSYSERR_NOERROR) values[d->dwControlID] = *static_cast<LONG*>(d->paDetails);
            return setResult;
        };
        return s;
    }
};

class UsingFakeMixer : public ::testing::Test {
protected:
    void SetUp() override { replaced_.emplace(mixer.table()); }
    void TearDown() override {
        volume_.reset();  // before the stand-in goes: its handle must never reach the real mixer
        replaced_.reset();
    }
    // A record of a control of the given range, as a caller makes it.
    static Vx_MIXERCONTROL record(LONG id, LONG minimum, LONG maximum) {
        Vx_MIXERCONTROL c{};
        c.cbStruct = 152;
        c.dwControlID = id;
        c.lMinimum = minimum;
        c.lMaximum = maximum;
        return c;
    }
    LONG value(const Vx_MIXERCONTROL& c, LONG raw) {
        mixer.values[static_cast<DWORD>(c.dwControlID)] = raw;
        LONG r = -12345;
        EXPECT_EQ(volume_->GetControlValue(0, const_cast<Vx_MIXERCONTROL*>(&c), &r), S_OK);
        return r;
    }
    LONG set(const Vx_MIXERCONTROL& c, LONG v) {
        VARIANT_BOOL ok = 0;
        volume_->SetControlValue(0, const_cast<Vx_MIXERCONTROL*>(&c), v, &ok);
        return ok == VARIANT_TRUE ? mixer.values[static_cast<DWORD>(c.dwControlID)] : -12345;
    }

    FakeMixer mixer;
    ComPtr<_Ds_VolumeSetting> volume_ = vxtest::createObject(CLSID_Ds_VolumeSetting).query<_Ds_VolumeSetting>();

private:
    std::optional<ReplaceService<MixerService>> replaced_;
};

}  // namespace

TEST_F(UsingFakeMixer, TheFirstCallLooksUpFourteenControlsInOrderIntoTheirSlots) {
    // The lines in slot order; each volume control is numbered 100 + its slot and holds
    // that number, each mute 107 + its slot and holds the slot's parity.
    const DWORD lines[] = {kSpeakers, 0x1002, 0x1003, 0x1004, 0x1005, 0x1008, 0x1009};
    for (LONG slot = 0; slot < 7; ++slot) {
        mixer.add(lines[slot], kVolume, 100 + slot, 0, 100);
        mixer.add(lines[slot], kMute, 107 + slot, 0, 1);
        mixer.values[100 + slot] = 100 + slot;
        mixer.values[107 + slot] = slot % 2;
    }
    auto v = vxtest::createObject(CLSID_Ds_VolumeSetting);
    for (LONG slot = 0; slot < 7; ++slot) {
        EXPECT_EQ(vxtest::longOf(call(v.get(), L"GetVolume", {Variant::fromLong(slot)}).value), 100 + slot);
        EXPECT_EQ(V_BOOL(call(v.get(), L"GetMute", {Variant::fromLong(slot + 7)}).value.get()),
                  slot % 2 ? VARIANT_TRUE : VARIANT_FALSE);
    }
    // Speakers, line, auxiliary, compact disc, synthesizer, wave output, microphone:
    // volumes, then mutes; once.
    std::vector<std::pair<DWORD, DWORD>> expected;
    for (DWORD type : {kVolume, kMute})
        for (DWORD line : {kSpeakers, 0x1002ul, 0x1009ul, 0x1005ul, 0x1004ul, 0x1008ul, 0x1003ul}) expected.emplace_back(line, type);
    EXPECT_EQ(mixer.lookups, expected);
}

TEST_F(UsingFakeMixer, AMissingControlIsNeverAskedAndARefusedMixerOpensNothing) {
    // Control 0 exists (the speakers' volume, as on Wine's mixer): the empty slots of the
    // lines and mutes missing, whose identifier is 0 too, must not reach it.
    mixer.add(kSpeakers, kVolume, 0, 0, 65535);
    mixer.values[0] = 65535;
    auto v = vxtest::createObject(CLSID_Ds_VolumeSetting);
    Variant line = Variant::fromLong(LINEIN);
    EXPECT_EQ(V_BOOL(call(v.get(), L"GetMute", {Variant::fromLong(SPEAKER_MUTE)}).value.get()), VARIANT_FALSE);
    EXPECT_EQ(vxtest::longOf(call(v.get(), L"SetVolume", {vxtest::byRef(line), Variant::fromLong(50)}).value), 0);
    EXPECT_EQ(V_BOOL(call(v.get(), L"SetMute", {Variant::fromLong(LINEIN_MUTE), Variant::fromBool(true)}).value.get()), VARIANT_FALSE);
    EXPECT_TRUE(mixer.named.empty());
    EXPECT_EQ(mixer.values[0], 65535);
    mixer.openResult = MMSYSERR_ALLOCATED;
    EXPECT_EQ(vxtest::longOf(call(v.get(), L"OpenMixer", {Variant::fromLong(0)}).value), 0);
    mixer.devices = 0;
    EXPECT_EQ(vxtest::longOf(call(v.get(), L"OpenMixer", {Variant::fromLong(0)}).value), 0);
}

TEST_F(UsingFakeMixer, ValuesAreHundredthsOfTheMaximumInWholeStepsClamped) {
    // Read: the minimum comes off after scaling; halves round to even; a maximum of 100 or
    // less reads as it is; a refused read is 0.
    EXPECT_EQ(value(record(9, 10, 1000), 500), 40);
    for (auto [raw, expected] : {std::pair{1, 0}, {3, 2}, {5, 2}, {7, 4}}) EXPECT_EQ(value(record(9, 0, 200), raw), expected);
    EXPECT_EQ(value(record(9, 0, 100), 77), 77);
    Vx_MIXERCONTROL unknown = record(55, 0, 65535);
    LONG r = -1;
    volume_->GetControlValue(0, &unknown, &r);
    EXPECT_EQ(r, 0);
    // Written: whole steps of a hundredth of the maximum, clamped to the range.
    const Vx_MIXERCONTROL wide = record(9, 0, 65535), narrow = record(9, 10, 100);
    EXPECT_EQ(set(wide, 100), 65500);
    EXPECT_EQ(set(wide, 150), 65535);
    EXPECT_EQ(set(wide, -5), 0);
    EXPECT_EQ(set(narrow, 150), 100);
    EXPECT_EQ(set(narrow, 3), 10);
    VARIANT_BOOL ok = VARIANT_TRUE;
    Vx_MIXERCONTROL c = wide;
    EXPECT_EQ(vxtest::errorNumberOf(volume_->SetControlValue(0, &c, 0x7FFFFFFF, &ok)), 6);
    mixer.setResult = MMSYSERR_INVALPARAM;
    volume_->SetControlValue(0, &c, 50, &ok);
    EXPECT_EQ(ok, VARIANT_FALSE);
    // The caller's handle (or device number) goes to the mixer as given.
    EXPECT_EQ(mixer.named.back(), reinterpret_cast<HMIXEROBJ>(0));
    volume_->GetControlValue(0x1234, &c, &r);
    EXPECT_EQ(mixer.named.back(), reinterpret_cast<HMIXEROBJ>(0x1234));
}

TEST_F(UsingFakeMixer, GetMixerControlCopiesTheSystemsRecordFieldByField) {
    MIXERCONTROLA& c = mixer.add(kSpeakers, kVolume, 0x11, -3, 999);
    c.fdwControl = 0x22;
    c.cMultipleItems = 0x33;
    std::strcpy(c.szShortName, "Vol");
    std::memset(c.szName, 'N', sizeof c.szName - 1);
    for (int i = 2; i < 6; ++i) c.Bounds.dwReserved[i] = 0x40 + i;
    for (int i = 0; i < 6; ++i) c.Metrics.dwReserved[i] = 0x50 + i;
    Vx_MIXERCONTROL got;
    std::memset(&got, 0xEE, sizeof got);
    LONG found = 0;
    ASSERT_EQ(volume_->GetMixerControl(0, kSpeakers, kVolume, &got, &found), S_OK);
    EXPECT_EQ(found, -1);
    EXPECT_EQ(got.cbStruct, static_cast<LONG>(sizeof(MIXERCONTROLA)));
    EXPECT_EQ(got.dwControlID, 0x11);
    EXPECT_EQ(got.dwControlType, static_cast<LONG>(kVolume));
    EXPECT_EQ(got.fdwControl, 0x22);
    EXPECT_EQ(got.cMultipleItems, 0x33);
    EXPECT_EQ(std::memcmp(got.szShortName, "Vol\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(std::memcmp(got.szName, c.szName, 64), 0);
    EXPECT_EQ(got.lMinimum, -3);
    EXPECT_EQ(got.lMaximum, 999);
    // The bounds' spare words, then the metrics', then a word the system's record lacks.
    const LONG reserved[11] = {0x42, 0x43, 0x44, 0x45, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0};
    EXPECT_EQ(std::memcmp(got.Reserved, reserved, sizeof reserved), 0);
    // Not found: False, and the caller's record is left alone.
    const Vx_MIXERCONTROL kept = got;
    volume_->GetMixerControl(0, 0x1002, kVolume, &got, &found);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(std::memcmp(&got, &kept, sizeof got), 0);
}

// ---- the test prefix's mixer: one silent device ----

namespace {

// A control's raw value on mixer device 0, read or written past the library.
LONG raw(LONG id, std::optional<LONG> write = std::nullopt) {
    LONG v = write.value_or(-1);
    MIXERCONTROLDETAILS d{};
    d.cbStruct = sizeof d;
    d.dwControlID = static_cast<DWORD>(id);
    d.cChannels = 1;
    d.cbDetails = sizeof v;
    d.paDetails = &v;
    if (write) mixerSetControlDetails(nullptr, &d, MIXER_SETCONTROLDETAILSF_VALUE);
    else mixerGetControlDetailsA(nullptr, &d, MIXER_GETCONTROLDETAILSF_VALUE);
    return v;
}

}  // namespace

TEST(VolumeSettingMixer, TheSpeakersRecordsAndRawValues) {
    ASSERT_GE(mixerGetNumDevs(), 1u) << "the test prefix shows no mixer: see tests/wine-env.sh";
    auto volume = vxtest::createObject(CLSID_Ds_VolumeSetting).query<_Ds_VolumeSetting>();
    Vx_MIXERCONTROL speakers{}, mute{};
    LONG found = 0, found2 = 0, r = 0;
    // The system takes the records the library hands it at this word size.
    volume->GetMixerControl(0, kSpeakers, kVolume, &speakers, &found);
    volume->GetMixerControl(0, kSpeakers, kMute, &mute, &found2);
    ASSERT_TRUE(found == -1 && found2 == -1);
    EXPECT_EQ(speakers.cbStruct, static_cast<LONG>(sizeof(MIXERCONTROLA)));
    EXPECT_EQ(speakers.lMaximum, 65535);
    const LONG savedVolume = raw(speakers.dwControlID), savedMute = raw(mute.dwControlID);
    LONG speaker = SPEAKER;
    volume->SetVolume(&speaker, 100, &r);
    EXPECT_EQ(raw(speakers.dwControlID), 65500);
    VARIANT_BOOL ok = VARIANT_FALSE;
    volume->SetMute(SPEAKER_MUTE, VARIANT_TRUE, &ok);
    EXPECT_EQ(raw(mute.dwControlID), 1);
    volume->SetControlValue(0, &mute, 7, &ok);  // clamped to the mute's 0 to 1
    EXPECT_EQ(raw(mute.dwControlID), 1);
    raw(speakers.dwControlID, savedVolume);
    raw(mute.dwControlID, savedMute);
    volume->CloseMixer(&r);
    EXPECT_EQ(r, 0);
}
