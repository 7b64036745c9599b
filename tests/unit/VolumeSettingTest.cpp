// Ds_VolumeSetting: against a stand-in mixer for the lines Wine lacks, the order of the
// look-ups, the records handed to the mixer, scaling, clamping and errors; and against
// the test prefix's own mixer (one silent device) for the members that take a record,
// which a script cannot call. tests/host/volume.vbs drives the real mixer from a script.
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

constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME;
constexpr DWORD kMute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr DWORD kSpeakers = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;

// A mixer with the lines and controls a test gives it. It refuses records of any size but
// the system's own, as the system does, and records what it was asked.
struct FakeMixer {
    UINT devices = 1;
    MMRESULT openResult = MMSYSERR_NOERROR, closeResult = MMSYSERR_NOERROR, setResult = MMSYSERR_NOERROR;
    std::map<DWORD, DWORD> lines;                              // component type -> line
    std::map<std::pair<DWORD, DWORD>, MIXERCONTROLA> controls;  // (line, control type) -> control
    std::map<DWORD, LONG> values;                              // control -> value
    std::vector<UINT> opened;
    std::vector<HMIXER> closed;
    std::vector<std::pair<DWORD, DWORD>> lookups;  // (component type, control type)
    std::vector<HMIXEROBJ> objects;                // what each details call named
    std::vector<DWORD> reads;                      // controls read
    std::vector<std::pair<DWORD, LONG>> writes;    // controls written, and the value
    int badRecords = 0;

    // A control of the given type and range on the line of a component type.
    MIXERCONTROLA& add(DWORD component, DWORD type, DWORD id, LONG minimum, LONG maximum) {
        lines.emplace(component, 0x100 + component);
        MIXERCONTROLA& c = controls[{lines[component], type}];
        c = MIXERCONTROLA{};
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
        s.open = [this](HMIXER* mixer, UINT device) {
            opened.push_back(device);
            *mixer = openResult == MMSYSERR_NOERROR ? reinterpret_cast<HMIXER>(static_cast<INT_PTR>(0x70 + opened.size())) : nullptr;
            return openResult;
        };
        s.close = [this](HMIXER mixer) {
            closed.push_back(mixer);
            return closeResult;
        };
        s.getLineInfo = [this](HMIXEROBJ, MIXERLINEA* line, DWORD flags) -> MMRESULT {
            if (line->cbStruct != sizeof *line || flags != MIXER_GETLINEINFOF_COMPONENTTYPE) return ++badRecords, MMSYSERR_INVALPARAM;
            auto l = lines.find(line->dwComponentType);
            if (l == lines.end()) return MIXERR_INVALLINE;
            line->dwLineID = l->second;
            return MMSYSERR_NOERROR;
        };
        s.getLineControls = [this](HMIXEROBJ, MIXERLINECONTROLSA* request, DWORD flags) -> MMRESULT {
            if (request->cbStruct != sizeof *request || request->cbmxctrl != sizeof(MIXERCONTROLA) ||
                request->cControls != 1 || flags != MIXER_GETLINECONTROLSF_ONEBYTYPE)
                return ++badRecords, MMSYSERR_INVALPARAM;
            for (const auto& [component, line] : lines)
                if (line == request->dwLineID) lookups.emplace_back(component, request->dwControlType);
            auto c = controls.find({request->dwLineID, request->dwControlType});
            if (c == controls.end()) return MIXERR_INVALCONTROL;
            *request->pamxctrl = c->second;
            return MMSYSERR_NOERROR;
        };
        s.getDetails = [this](HMIXEROBJ mixer, MIXERCONTROLDETAILS* d, DWORD flags) -> MMRESULT {
            if (!goodDetails(d, flags)) return MMSYSERR_INVALPARAM;
            objects.push_back(mixer);
            reads.push_back(d->dwControlID);
            auto v = values.find(d->dwControlID);
            if (v == values.end()) return MIXERR_INVALCONTROL;
            *static_cast<LONG*>(d->paDetails) = v->second;
            return MMSYSERR_NOERROR;
        };
        s.setDetails = [this](HMIXEROBJ mixer, MIXERCONTROLDETAILS* d, DWORD flags) -> MMRESULT {
            if (!goodDetails(d, flags)) return MMSYSERR_INVALPARAM;
            objects.push_back(mixer);
            const LONG v = *static_cast<LONG*>(d->paDetails);
            writes.emplace_back(d->dwControlID, v);
            if (setResult == MMSYSERR_NOERROR) values[d->dwControlID] = v;
            return setResult;
        };
        return s;
    }

    bool goodDetails(const MIXERCONTROLDETAILS* d, DWORD flags) {
        const bool good = d->cbStruct == sizeof *d && d->cChannels == 1 && d->cMultipleItems == 0 &&
                          d->cbDetails == sizeof(LONG) && d->paDetails && flags == 0;
        if (!good) ++badRecords;
        return good;
    }
};

// The seven lines in the order of their slots, speakers first.
constexpr DWORD kLineTypes[] = {kSpeakers,
                                MIXERLINE_COMPONENTTYPE_SRC_LINE,
                                MIXERLINE_COMPONENTTYPE_SRC_MICROPHONE,
                                MIXERLINE_COMPONENTTYPE_SRC_SYNTHESIZER,
                                MIXERLINE_COMPONENTTYPE_SRC_COMPACTDISC,
                                MIXERLINE_COMPONENTTYPE_SRC_WAVEOUT,
                                MIXERLINE_COMPONENTTYPE_SRC_AUXILIARY};

class UsingFakeMixer : public ::testing::Test {
protected:
    void SetUp() override { replaced_.emplace(mixer.table()); }
    void TearDown() override {
        // Objects go before the stand-in does: its handles must never reach the real mixer.
        volume_.reset();
        typed_.reset();
        replaced_.reset();
        EXPECT_EQ(mixer.badRecords, 0);
    }
    // Speakers of 0 to 65535 (control 1) with mute (control 2).
    void speakers(LONG volume, LONG mute = 0) {
        mixer.add(kSpeakers, kVolume, 1, 0, 65535);
        mixer.add(kSpeakers, kMute, 2, 0, 1);
        mixer.values[1] = volume;
        mixer.values[2] = mute;
    }
    long number(const wchar_t* member, std::vector<Variant> args) {
        auto r = call(volume_.get(), member, std::move(args));
        EXPECT_EQ(r.errorNumber(), 0) << member;
        return vxtest::longOf(r.value);
    }

    FakeMixer mixer;
    ComPtr<IDispatch> volume_ = vxtest::createObject(CLSID_Ds_VolumeSetting);
    ComPtr<_Ds_VolumeSetting> typed_ = volume_.query<_Ds_VolumeSetting>();

private:
    std::optional<ReplaceService<MixerService>> replaced_;
};

Variant num(long n) { return Variant::fromLong(n); }

}  // namespace

TEST_F(UsingFakeMixer, TheFirstCallOpensDeviceZeroAndLooksUpFourteenControlsInOrder) {
    // Every line, its volume control numbered 100 + its slot and its mute 100 + its mute slot.
    for (LONG slot = 0; slot < 7; ++slot) {
        mixer.add(kLineTypes[slot], kVolume, 100 + slot, 0, 100);
        mixer.add(kLineTypes[slot], kMute, 107 + slot, 0, 1);
        mixer.values[100 + slot] = 100 + slot;
        mixer.values[107 + slot] = slot % 2;
    }
    EXPECT_EQ(number(L"GetVolume", {num(SPEAKER)}), 100);
    ASSERT_EQ(mixer.opened, std::vector<UINT>{0});
    // Volumes of speakers, line, auxiliary, compact disc, synthesizer, wave output and
    // microphone, then their mutes in the same order.
    const DWORD order[] = {kSpeakers,
                           MIXERLINE_COMPONENTTYPE_SRC_LINE,
                           MIXERLINE_COMPONENTTYPE_SRC_AUXILIARY,
                           MIXERLINE_COMPONENTTYPE_SRC_COMPACTDISC,
                           MIXERLINE_COMPONENTTYPE_SRC_SYNTHESIZER,
                           MIXERLINE_COMPONENTTYPE_SRC_WAVEOUT,
                           MIXERLINE_COMPONENTTYPE_SRC_MICROPHONE};
    std::vector<std::pair<DWORD, DWORD>> expected;
    for (DWORD type : {kVolume, kMute})
        for (DWORD component : order) expected.emplace_back(component, type);
    EXPECT_EQ(mixer.lookups, expected);
    // Each slot holds its own line's control.
    for (LONG slot = 0; slot < 7; ++slot) {
        EXPECT_EQ(number(L"GetVolume", {num(slot)}), 100 + slot) << slot;
        auto r = call(volume_.get(), L"GetMute", {num(slot + 7)});
        EXPECT_EQ(V_BOOL(r.value.get()), slot % 2 ? VARIANT_TRUE : VARIANT_FALSE) << slot;
    }
    EXPECT_EQ(mixer.opened.size(), 1u);  // opened once
}

TEST_F(UsingFakeMixer, OpenMixerTakesOnlyTheDevicesThereAre) {
    speakers(0);
    EXPECT_EQ(number(L"OpenMixer", {num(1)}), 0);
    EXPECT_EQ(number(L"OpenMixer", {num(-1)}), 0);
    EXPECT_TRUE(mixer.opened.empty());
    EXPECT_EQ(number(L"OpenMixer", {num(0)}), -1);
    mixer.devices = 0;
    EXPECT_EQ(number(L"OpenMixer", {num(0)}), 0);
    mixer.devices = 3;
    mixer.openResult = MMSYSERR_ALLOCATED;
    EXPECT_EQ(number(L"OpenMixer", {num(2)}), 0);
    EXPECT_EQ(mixer.opened, (std::vector<UINT>{0, 2}));
    EXPECT_TRUE(mixer.closed.empty());  // the first stays open
}

TEST_F(UsingFakeMixer, CloseMixerClosesAndTheNextCallOpensAgainKeepingTheSlots) {
    speakers(32768);
    EXPECT_EQ(number(L"GetVolume", {num(SPEAKER)}), 50);
    const HMIXER first = reinterpret_cast<HMIXER>(static_cast<INT_PTR>(0x71));
    EXPECT_EQ(mixer.objects.back(), reinterpret_cast<HMIXEROBJ>(first));
    mixer.closeResult = 1234;
    EXPECT_EQ(number(L"CloseMixer", {}), 1234);
    ASSERT_EQ(mixer.closed, std::vector<HMIXER>{first});
    // Reopened on demand; a line gone missing meanwhile leaves its slot as it was.
    mixer.lines.clear();
    EXPECT_EQ(number(L"GetVolume", {num(SPEAKER)}), 50);
    EXPECT_EQ(mixer.opened.size(), 2u);
    EXPECT_EQ(mixer.reads.back(), 1u);
    // Closing a closed mixer hands the system no handle.
    number(L"CloseMixer", {});
    number(L"CloseMixer", {});
    EXPECT_EQ(mixer.closed.back(), nullptr);
}

TEST_F(UsingFakeMixer, VolumesAreHundredthsOfTheMaximumLessTheMinimum) {
    speakers(32768);
    EXPECT_EQ(number(L"GetVolume", {num(SPEAKER)}), 50);
    mixer.values[1] = 65535;
    EXPECT_EQ(number(L"GetVolume", {num(SPEAKER)}), 100);
    // The minimum is taken off after scaling, and halves round to even.
    Vx_MIXERCONTROL c{};
    c.cbStruct = 152;
    c.dwControlID = 9;
    c.lMinimum = 10;
    c.lMaximum = 1000;
    mixer.values[9] = 500;
    LONG r = 0;
    ASSERT_EQ(typed_->GetControlValue(0, &c, &r), S_OK);
    EXPECT_EQ(r, 40);
    c.lMinimum = 0;
    c.lMaximum = 200;
    for (auto [value, expected] : {std::pair{1, 0}, {3, 2}, {5, 2}, {7, 4}}) {
        mixer.values[9] = value;
        typed_->GetControlValue(0, &c, &r);
        EXPECT_EQ(r, expected) << value;
    }
    // A maximum of 100 or less: the value as it is.
    c.lMaximum = 100;
    mixer.values[9] = 77;
    typed_->GetControlValue(0, &c, &r);
    EXPECT_EQ(r, 77);
    // A value the mixer refuses to give is 0.
    c.dwControlID = 55;
    typed_->GetControlValue(0, &c, &r);
    EXPECT_EQ(r, 0);
}

TEST_F(UsingFakeMixer, SetVolumeStepsByWholeHundredthsAndClamps) {
    speakers(0);
    Variant speaker = num(SPEAKER);
    const auto set = [&](long v) { return number(L"SetVolume", {vxtest::byRef(speaker), num(v)}); };
    EXPECT_EQ(set(100), -1);
    EXPECT_EQ(mixer.values[1], 65500);  // 655 a step
    set(50);
    EXPECT_EQ(mixer.values[1], 32750);
    set(150);
    EXPECT_EQ(mixer.values[1], 65535);
    set(-5);
    EXPECT_EQ(mixer.values[1], 0);
    EXPECT_EQ(call(volume_.get(), L"SetVolume", {vxtest::byRef(speaker), num(0x7FFFFFFF)}).errorNumber(), 6);
    // A small range takes values as they are, clamped at both ends.
    Vx_MIXERCONTROL c{};
    c.cbStruct = 152;
    c.dwControlID = 9;
    c.lMinimum = 10;
    c.lMaximum = 100;
    VARIANT_BOOL ok = VARIANT_FALSE;
    typed_->SetControlValue(0, &c, 150, &ok);
    EXPECT_EQ(mixer.values[9], 100);
    typed_->SetControlValue(0, &c, 3, &ok);
    EXPECT_EQ(mixer.values[9], 10);
    EXPECT_EQ(ok, VARIANT_TRUE);
    // Refused by the mixer: False.
    mixer.setResult = MMSYSERR_INVALPARAM;
    EXPECT_EQ(set(10), 0);
    typed_->SetControlValue(0, &c, 50, &ok);
    EXPECT_EQ(ok, VARIANT_FALSE);
}

TEST_F(UsingFakeMixer, MuteIsOneOrZero) {
    speakers(1000);
    auto r = call(volume_.get(), L"SetMute", {num(SPEAKER_MUTE), Variant::fromBool(true)});
    EXPECT_EQ(V_BOOL(r.value.get()), VARIANT_TRUE);
    EXPECT_EQ(mixer.writes.back(), (std::pair<DWORD, LONG>{2, 1}));
    EXPECT_EQ(V_BOOL(call(volume_.get(), L"GetMute", {num(SPEAKER_MUTE)}).value.get()), VARIANT_TRUE);
    call(volume_.get(), L"SetMute", {num(SPEAKER_MUTE), Variant::fromBool(false)});
    EXPECT_EQ(mixer.writes.back(), (std::pair<DWORD, LONG>{2, 0}));
    EXPECT_EQ(V_BOOL(call(volume_.get(), L"GetMute", {num(SPEAKER_MUTE)}).value.get()), VARIANT_FALSE);
}

TEST_F(UsingFakeMixer, ALineTheMixerLacksIsLeftAlone) {
    // Control 0 exists (the speakers' volume, as on Wine's mixer): an empty slot, whose
    // identifier is 0, must not reach it.
    mixer.add(kSpeakers, kVolume, 0, 0, 65535);
    mixer.values[0] = 65535;
    EXPECT_EQ(V_BOOL(call(volume_.get(), L"GetMute", {num(LINEIN_MUTE)}).value.get()), VARIANT_FALSE);
    EXPECT_EQ(number(L"GetVolume", {num(MICROPHONE)}), 0);
    Variant line = num(LINEIN);
    EXPECT_EQ(number(L"SetVolume", {vxtest::byRef(line), num(50)}), 0);
    EXPECT_EQ(V_BOOL(call(volume_.get(), L"SetMute", {num(AUXILIARY_MUTE), Variant::fromBool(true)}).value.get()),
              VARIANT_FALSE);
    EXPECT_EQ(number(L"GetVolume", {num(20)}), 0);  // the slots past the fourteen are empty
    EXPECT_TRUE(mixer.reads.empty());
    EXPECT_TRUE(mixer.writes.empty());
    // There are 21 slots.
    Variant outside = num(21);
    EXPECT_EQ(call(volume_.get(), L"GetVolume", {num(21)}).errorNumber(), 9);
    EXPECT_EQ(call(volume_.get(), L"GetMute", {num(-1)}).errorNumber(), 9);
    EXPECT_EQ(call(volume_.get(), L"SetVolume", {vxtest::byRef(outside), num(5)}).errorNumber(), 9);
    EXPECT_EQ(call(volume_.get(), L"SetMute", {num(100), Variant::fromBool(true)}).errorNumber(), 9);
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
    ASSERT_EQ(typed_->GetMixerControl(0, kSpeakers, kVolume, &got, &found), S_OK);
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
    for (int i = 0; i < 4; ++i) EXPECT_EQ(got.Reserved[i], 0x42 + i);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(got.Reserved[4 + i], 0x50 + i);
    EXPECT_EQ(got.Reserved[10], 0);
    // Not found: False, and the caller's record is left alone.
    Vx_MIXERCONTROL kept = got;
    ASSERT_EQ(typed_->GetMixerControl(0, MIXERLINE_COMPONENTTYPE_SRC_LINE, kVolume, &got, &found), S_OK);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(std::memcmp(&got, &kept, sizeof got), 0);
    // The caller's handle (or device number) goes to the mixer as given.
    typed_->GetControlValue(0x1234, &got, &found);
    EXPECT_EQ(mixer.objects.back(), reinterpret_cast<HMIXEROBJ>(static_cast<INT_PTR>(0x1234)));
    EXPECT_EQ(typed_->GetMixerControl(0, kSpeakers, kVolume, nullptr, &found), E_POINTER);
}

// ---- the test prefix's mixer: one silent device ----

namespace {

// A control's raw value on mixer device 0, read and written past the library.
MIXERCONTROLDETAILS rawDetails(LONG controlId, LONG& v) {
    MIXERCONTROLDETAILS d{};
    d.cbStruct = sizeof d;
    d.dwControlID = static_cast<DWORD>(controlId);
    d.cChannels = 1;
    d.cbDetails = sizeof v;
    d.paDetails = &v;
    return d;
}
LONG rawValue(LONG controlId) {
    LONG v = -1;
    MIXERCONTROLDETAILS d = rawDetails(controlId, v);
    mixerGetControlDetailsA(reinterpret_cast<HMIXEROBJ>(0), &d, MIXER_GETCONTROLDETAILSF_VALUE);
    return v;
}
void setRawValue(LONG controlId, LONG v) {
    MIXERCONTROLDETAILS d = rawDetails(controlId, v);
    mixerSetControlDetails(reinterpret_cast<HMIXEROBJ>(0), &d, MIXER_SETCONTROLDETAILSF_VALUE);
}

}  // namespace

TEST(VolumeSettingMixer, TheSpeakersRecordsAndStepsOnTheRealMixer) {
    ASSERT_GE(mixerGetNumDevs(), 1u) << "the test prefix shows no mixer: see tests/wine-env.sh";
    auto volume = vxtest::createObject(CLSID_Ds_VolumeSetting).query<_Ds_VolumeSetting>();
    Vx_MIXERCONTROL speakers{}, mute{};
    LONG found = 0;
    // The system accepts the records the library hands it at this word size.
    ASSERT_EQ(volume->GetMixerControl(0, kSpeakers, kVolume, &speakers, &found), S_OK);
    ASSERT_EQ(found, -1);
    EXPECT_EQ(speakers.cbStruct, static_cast<LONG>(sizeof(MIXERCONTROLA)));
    EXPECT_EQ(speakers.dwControlType, static_cast<LONG>(kVolume));
    EXPECT_EQ(speakers.lMinimum, 0);
    EXPECT_EQ(speakers.lMaximum, 65535);
    EXPECT_EQ(speakers.Reserved[10], 0);
    volume->GetMixerControl(0, kSpeakers, kMute, &mute, &found);
    ASSERT_EQ(found, -1);
    const LONG savedVolume = rawValue(speakers.dwControlID), savedMute = rawValue(mute.dwControlID);

    LONG control = SPEAKER, r = 0;
    volume->SetVolume(&control, 100, &r);
    EXPECT_EQ(r, -1);
    EXPECT_EQ(rawValue(speakers.dwControlID), 65500);
    volume->GetControlValue(0, &speakers, &r);
    EXPECT_EQ(r, 100);  // 99.95
    volume->SetVolume(&control, 150, &r);
    EXPECT_EQ(rawValue(speakers.dwControlID), 65535);
    // A line Wine lacks changes nothing.
    control = LINEIN;
    volume->SetVolume(&control, 0, &r);
    EXPECT_EQ(r, 0);
    EXPECT_EQ(rawValue(speakers.dwControlID), 65535);
    VARIANT_BOOL ok = VARIANT_FALSE;
    volume->SetControlValue(0, &mute, 7, &ok);  // clamped to the mute's 0 to 1
    EXPECT_EQ(ok, VARIANT_TRUE);
    EXPECT_EQ(rawValue(mute.dwControlID), 1);

    setRawValue(speakers.dwControlID, savedVolume);
    setRawValue(mute.dwControlID, savedMute);
    volume->CloseMixer(&r);
    EXPECT_EQ(r, 0);
}
