' ---- the test ----
' Ds_VolumeSetting from a late-bound host against the test prefix's mixer: one silent
' device whose speakers have a volume of 0 to 65535 and a mute, and no line-in,
' microphone, synthesizer, compact-disc or auxiliary lines. (Volumes set here last as
' long as the script runs; they are put back anyway.)
Dim v, speaker, line, savedVolume, savedMute, x

Set v = CreateObject("Vx_Main.Ds_VolumeSetting")
speaker = 0

Section "devices"
CheckEqual "no sixth device", v.OpenMixer(5), 0
CheckEqual "nor one below 0", v.OpenMixer(-1), 0
CheckEqual "device 0 opens", v.OpenMixer(0), -1
savedVolume = v.GetVolume(0)
savedMute = v.GetMute(7)

Section "speakers"
CheckEqual "set", v.SetVolume(speaker, 50), -1
CheckEqual "and read back in hundredths", v.GetVolume(0), 50
v.SetVolume speaker, 100
CheckEqual "100: whole steps of 655 make 65500, still 100", v.GetVolume(0), 100
v.SetVolume speaker, 150
CheckEqual "clamped at the top", v.GetVolume(0), 100
v.SetVolume speaker, -20
CheckEqual "and at the bottom", v.GetVolume(0), 0
CheckEqual "the line as a number", v.SetVolume(0, 33), -1
CheckEqual "read back", v.GetVolume(0), 33
CheckEqual "muted", v.SetMute(7, True), True
CheckEqual "is muted", v.GetMute(7), True
v.SetMute 7, False
CheckEqual "and not", v.GetMute(7), False

Section "lines the mixer lacks"
v.SetVolume speaker, 40
For line = 1 To 4
    CheckEqual "volume of line " & line, v.GetVolume(line), 0
    CheckEqual "set on line " & line, v.SetVolume(line, 80), 0
    CheckEqual "mute of line " & line, v.GetMute(line + 7), False
Next
CheckEqual "no mute set on the auxiliary line", v.SetMute(13, True), False
CheckEqual "the speakers are left as they were", v.GetVolume(0), 40
CheckEqual "and not muted", v.GetMute(7), False

Section "slots"
CheckEqual "slot 20 is empty", v.GetVolume(20), 0
On Error Resume Next
x = v.GetVolume(21)
CheckError "there are 21 slots", Err.Number, 9
Err.Clear
x = v.GetMute(-1)
CheckError "from 0", Err.Number, 9
Err.Clear
x = v.SetVolume(speaker, 2147483647)
CheckError "a volume beyond a Long once scaled", Err.Number, 6
Err.Clear
On Error GoTo 0

Section "closing"
CheckEqual "closed", v.CloseMixer, 0
CheckEqual "opened again on demand", v.GetVolume(0), 40
v.SetVolume speaker, savedVolume
v.SetMute 7, savedMute
v.CloseMixer
