' Ds_SysTime from a late-bound host, against the system's clock. The only times written
' are the ones just read (or ones the system refuses), so the clock stays where it was.
Dim t, t2, r, before, n, done

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
Check "gives Empty too", IsEmpty(r)
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
' A countdown of 0 seconds runs out once the rounded clock moves on: within about a second.
Set t2 = CreateObject("Vx_Main.Ds_SysTime")
CheckEqual "a new object starts its own countdown", t2.GetTimerRun(0), True
done = False
n = Timer
Do
    If t2.GetTimerRun(0) Then
        done = True
        Exit Do
    End If
Loop While Abs(Timer - n) < 3
Check "a countdown of 0 seconds runs out", done
CheckEqual "and the next call starts another", t2.GetTimerRun(0), True
Set t2 = CreateObject("Vx_Main.Ds_SysTime")
CheckEqual "a countdown whose end is beyond a Long starts", t2.GetTimerRun(2147483647), True
On Error Resume Next
r = t2.GetTimerRun()
CheckError "but cannot be checked", Err.Number, 6
Err.Clear
On Error GoTo 0
