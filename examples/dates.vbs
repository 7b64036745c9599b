' Dates and the clock: Ds_Calendar (Shamsi and Miladi dates) and Ds_SysTime (the system
' clock in UTC, and a countdown the script polls). Run: cscript //nologo dates.vbs
Option Explicit

Dim cal, clock, words, started, polls

Set cal = CreateObject("Vx_Main.Ds_Calendar")

' Shamsi (Solar Hijri) to Miladi (Gregorian): exact, unpadded.
WScript.Echo "1385/05/12 is " & cal.MiladyDate("1385/05/12")            ' 2006/8/3
' The same in the user's short-date format (8/3/2006 for en-US).
WScript.Echo "In the short-date format: " & cal.MiladyDate("1385/05/12", True)

' Miladi to Shamsi: "13", two-digit year, padded month and day.
WScript.Echo "2006/08/03 is " & cal.ShamsiDate("2006/08/03")            ' 1385/05/12
' Either direction by a switch: 1 to Shamsi, 2 to Miladi.
WScript.Echo "ConvertDateFormat: " & cal.ConvertDateFormat("2006/08/03", 1)

' The weekday, day, month name and year in Persian words come back through the third
' argument. (A console without Persian letters shows question marks.)
Call cal.ShamsiDate("2006/08/03", "", words)
WScript.Echo "In words: " & words
WScript.Echo "That is " & Len(words) & " characters"

' ShamsiDate is a quick table that keeps the century at 13, so that from April 2021 on
' its years read 13100, 1300 ...; MiladyDate is exact. A text that is no date is error 13.
WScript.Echo "2021/04/01 is " & cal.ShamsiDate("2021/04/01")             ' 13100/01/12
On Error Resume Next
Call cal.ShamsiDate("not a date")
WScript.Echo "Not a date: Err.Number " & Err.Number
Err.Clear
On Error GoTo 0

' The clock: a countdown polled by the script. The first call starts it (True), later
' calls answer False until the seconds have passed, then True once.
Set clock = CreateObject("Vx_Main.Ds_SysTime")
WScript.Echo "Countdown started: " & clock.GetTimerRun(1)
polls = 0
started = Timer
Do While Not clock.GetTimerRun(1)
    polls = polls + 1                                  ' (on Windows, WScript.Sleep 50 here)
    If Abs(Timer - started) > 10 Then Exit Do          ' never wait for ever
Loop
WScript.Echo "Countdown ran out: " & (Abs(Timer - started) <= 10)
WScript.Echo "  after " & FormatNumber(Abs(Timer - started), 1) & " seconds"

' Keeping the time and setting it back (SetVarNewTime, SetTimeSys) need the right to
' change the clock: without it the system refuses silently. This example only reads.
clock.GetVarKeepTime
WScript.Echo "Done."
