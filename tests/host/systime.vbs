' Ds_SysTime from a late-bound host, against the system's clock. The only times written
' are the ones just read (or ones the system refuses), so the clock stays where it was.
' The countdown at any time of day is checked against a stand-in clock in the unit tests.
Dim t, r, before

Set t = CreateObject("Vx_Main.Ds_SysTime")

Section "keeping and writing back the time"
On Error Resume Next
before = Now
r = t.SetVarNewTime
CheckError "without a kept time (all zeros, refused) is silent", Err.Number, 0
Check "and gives Empty", IsEmpty(r)
r = t.GetVarKeepTime
CheckError "GetVarKeepTime", Err.Number, 0
Check "gives Empty", IsEmpty(r)
r = t.SetVarNewTime
CheckError "SetVarNewTime writes back the kept time", Err.Number, 0
Err.Clear

Section "SetTimeSys"
r = t.SetTimeSys()
CheckError "every field omitted: the present time written back", Err.Number, 0
Check "gives Empty", IsEmpty(r)
r = t.SetTimeSys(Null, Null, Null)
CheckError "Null fields keep their present values", Err.Number, 0
r = t.SetTimeSys("soon")
CheckError "a field that is not a number", Err.Number, 13
Err.Clear
r = t.SetTimeSys(, , 70000)
CheckError "a field beyond an Integer", Err.Number, 6
Err.Clear
Check "the clock went on as before", Abs(CDbl(Now) - CDbl(before)) * 86400 < 5
On Error GoTo 0

Section "GetTimerRun"
CheckEqual "the first call starts the countdown and answers True", t.GetTimerRun(100), True
CheckEqual "then False until it has run out", t.GetTimerRun(100), False
CheckEqual "still False", t.GetTimerRun(), False
Set t = CreateObject("Vx_Main.Ds_SysTime")
CheckEqual "a countdown whose end is beyond a Long starts", t.GetTimerRun(2147483647), True
On Error Resume Next
r = t.GetTimerRun()
CheckError "but cannot be checked", Err.Number, 6
Err.Clear
On Error GoTo 0
