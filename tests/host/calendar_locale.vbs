' Ds_Calendar from a late-bound host, under en-US, de-DE and fa-IR: four-digit-year texts
' read the same in every locale; formatted results follow the host's own short dates.
' (Every day of two centuries in both directions is swept in the unit tests.)
Dim cal, r, s, b, i, m, p

Set cal = CreateObject("Vx_Main.Ds_Calendar")

Section "Shamsi to Miladi"
Dim toMilady
toMilady = Array( _
    "1385/05/12", "2006/8/3", "1385/01/01", "2006/3/21", "1384/12/29", "2006/3/20", _
    "1403/01/01", "2024/3/20", "1399/12/30", "2021/3/20", "1400/01/01", "2021/3/21", _
    "1403/12/30", "2025/3/20", "1385/1/1", "2006/3/21", _
    "1385/02/31", "2006/5/21", "1385/06/31", "2006/9/22", "1385/02/31/9", "2006/5/21", _
    "0961/07/22", "1582/10/4", "0961/07/23", "1582/10/15", _
    "0001/01/01", "622/3/19", "9999/12/29", "10621/3/17")
For i = 0 To UBound(toMilady) Step 2
    CheckEqual "MiladyDate " & toMilady(i), cal.MiladyDate(toMilady(i)), toMilady(i + 1)
Next
CheckEqual "ConvertDateFormat GoMiladyDate", cal.ConvertDateFormat("1385/05/12", 2), "2006/8/3"

Section "Miladi to Shamsi"
Dim toShamsi
toShamsi = Array( _
    "2006/08/03", "1385/05/12", "2006/03/20", "1384/12/29", "2006/01/01", "1384/10/11", _
    "2000/01/01", "1378/10/11", "2009/01/01", "1387/10/12", "2004/02/29", "1382/12/10", _
    "2006/03/21", "1384/12/30", "2006/03/22", "1385/01/01", "2008/03/20", "1386/12/30", _
    "2021/04/01", "13100/01/12", "2022/01/01", "1300/10/11", "2024/03/20", "1302/12/30", _
    "1930/06/01", "1309/03/11", "2006-08-03 23:59", "1385/05/12")
For i = 0 To UBound(toShamsi) Step 2
    CheckEqual "ShamsiDate " & toShamsi(i), cal.ShamsiDate(toShamsi(i)), toShamsi(i + 1)
Next
CheckEqual "ConvertDateFormat GoHejryDate", cal.ConvertDateFormat("2006/08/03", 1), "1385/05/12"
CheckEqual "ConvertDateFormat 0", cal.ConvertDateFormat("2006/08/03", 0), ""
CheckEqual "ConvertDateFormat 3", cal.ConvertDateFormat("2006/08/03", 3), ""
CheckEqual "a date in the host's own format", cal.ShamsiDate(CStr(DateSerial(2006, 8, 3))), "1385/05/12"

Section "in words"
CheckEqual "CalendarShamsi", cal.CalendarShamsi("2006/08/03"), T("calendar.thursday13850512")
CheckEqual "CalendarShamsi composed", cal.CalendarShamsi("2006/08/03"), T("calendar.weekday5") & "12" & T("calendar.month5") & "1385 "
CheckEqual "a caller's Shamsi date is used as it is", cal.CalendarShamsi("2006/08/03", "1400/01/01"), _
    T("calendar.weekday5") & "1" & T("calendar.month1") & "1400 "
For i = 0 To 6
    CheckEqual "weekday " & (i + 1), cal.CalendarShamsi("2024/03/" & (17 + i), "1403/01/01"), _
        T("calendar.weekday" & (i + 1)) & "1" & T("calendar.month1") & "1403 "
Next
For m = 1 To 12
    CheckEqual "month " & m, cal.CalendarShamsi("2024/03/17", "1403/" & m & "/9"), _
        T("calendar.weekday1") & "9" & T("calendar.month" & m) & "1403 "
Next
s = Empty
r = cal.ShamsiDate("2006/08/03", "Monasebat", s)
CheckEqual "ShamsiDate fills StringCalendarShamsi", s, T("calendar.thursday13850512")
CheckEqual "and returns the date", r, "1385/05/12"
p = "1385/05/12"
r = cal.CalendarShamsi("2006/08/03", p)
CheckEqual "a DateShamsi variable is only read", p, "1385/05/12"

Section "short-date format"
CheckEqual "MiladyDate formatted", cal.MiladyDate("1385/05/12", True), CStr(DateSerial(2006, 8, 3))
CheckEqual "ShamsiDate formatted", cal.ShamsiDate("2006/08/03", "", s, True), CStr(DateSerial(1385, 5, 12))
CheckEqual "the words come from the formatted date", s, T("calendar.thursday13850512")
b = True
CheckEqual "IsFormatDateValue from a variable", cal.MiladyDate("1385/05/12", b), CStr(DateSerial(2006, 8, 3))
CheckEqual "the variable keeps its value", b, True
b = False
CheckEqual "False from a variable", cal.MiladyDate("1385/05/12", b), "2006/8/3"

Section "errors"
On Error Resume Next
r = cal.ShamsiDate("not a date")
CheckError "ShamsiDate of a text that is no date", Err.Number, 13
Err.Clear
r = cal.ConvertDateFormat("2006/02/30", 1)
CheckError "ConvertDateFormat passes the error on", Err.Number, 13
Err.Clear
r = cal.CalendarShamsi("2006/08/03", "1385/02/31")
CheckError "CalendarShamsi of a Shamsi date that is no Gregorian date", Err.Number, 13
Err.Clear
r = cal.CalendarShamsi("2006/08/03", Null)
CheckError "CalendarShamsi of a Null Shamsi date", Err.Number, 94
Err.Clear
r = cal.CalendarShamsi("someday")
CheckError "CalendarShamsi of a text that is no date", Err.Number, 13
Err.Clear
r = cal.MiladyDate("1385/x/01")
CheckError "MiladyDate with a part that is no number", Err.Number, 13
Err.Clear
r = cal.MiladyDate("1385/40000/01")
CheckError "MiladyDate with a part beyond 16 bits", Err.Number, 6
Err.Clear
r = cal.MiladyDate("32767/01/01")
CheckError "MiladyDate whose Gregorian year overflows", Err.Number, 6
Err.Clear
r = cal.MiladyDate("1385/02")
CheckError "MiladyDate with a missing part", Err.Number, 9
Err.Clear
r = cal.ShamsiDate("2006/05/21", "", s, True)
CheckError "a formatted Shamsi day 31 is no date", Err.Number, 13
Err.Clear
r = cal.MiladyDate("1385/05/12")
CheckError "a good call after errors", Err.Number, 0
CheckEqual "and its result", r, "2006/8/3"
On Error GoTo 0
