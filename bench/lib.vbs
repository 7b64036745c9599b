' The prelude of every benchmark script (bench/run.sh puts it in front): a measurement is
' reported as one line "BENCH label|measured|baseline|largest ratio", where the ratio is
' measured / baseline and both are seconds taken in the same run.
Option Explicit

Sub Report(label, measured, baseline, largest)
    WScript.Echo "BENCH " & label & "|" & FormatNumber(measured, 4, -1, 0, 0) & "|" & _
        FormatNumber(baseline, 4, -1, 0, 0) & "|" & largest
End Sub

' Seconds since an earlier reading of Timer, across midnight too.
Function Since(start)
    Since = Timer - start
    If Since < 0 Then Since = Since + 86400
End Function

' ---- the benchmark ----
