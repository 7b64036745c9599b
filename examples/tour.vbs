' A short tour of Vx_Main from VBScript. Run it with: ./run demo
' (or, on Windows: cscript //nologo tour.vbs, once regsvr32 has registered Vx_Main.dll).
Option Explicit

Sub Show(label, value)
    WScript.Echo "  " & label & ": " & value
End Sub

WScript.Echo "Vx_Main tour"
WScript.Echo ""

' ---- Keyed lists of records ----
WScript.Echo "Ds_ListCollection: an ordered list of records, by position or by key"
Dim people, person, child
Set people = CreateObject("Vx_Main.Ds_ListCollection")
people.Add "Sara", "s1", "Tehran", 31
people.Add "Reza", "r7", "Shiraz", 45
people.Add "Mina", "m2", "Tabriz", 28
Show "records", people.Count
Show "second record", people.Item(2).ValueA & " of " & people.Item(2).ValueB
Show "by key ""R7"" (keys ignore case)", people.Item("R7").ValueA

Set person = people.Add("Someone else", "S1")
Show "adding key ""S1"" again returns the stored record", person.ValueA

Set child = people.Item("m2").AddItem.Add("Ali", "a1", 3)
Show "nested list of ""m2""", people.Item("m2").Count & " record: " & child.ValueA & ", age " & child.ValueB

people.Remove "s1"
Show "after removing ""s1""", people.Count & " records, first is " & people.Item(1).ValueA

On Error Resume Next
Set person = people.Item(9)
Show "position 9", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
Set person = people.Item("nobody")
Show "unknown key", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
On Error GoTo 0

people.Clear
Show "after Clear", people.Count & " records"
WScript.Echo ""
' ---- Shamsi and Miladi dates ----
WScript.Echo "Ds_Calendar: Shamsi (Solar Hijri) and Miladi (Gregorian) dates"
Dim cal, inWords
Set cal = CreateObject("Vx_Main.Ds_Calendar")
Show "Shamsi 1385/05/12 is Miladi", cal.MiladyDate("1385/05/12")
Show "Shamsi 1385/02/31 (no Gregorian date, read by its parts)", cal.MiladyDate("1385/02/31")
Show "Shamsi 1403/01/01 in the host's short-date format", cal.MiladyDate("1403/01/01", True)
Show "Miladi 2006/08/03 is Shamsi", cal.ShamsiDate("2006/08/03")
Show "ConvertDateFormat(""2024/03/20"", GoHejryDate = 1)", cal.ConvertDateFormat("2024/03/20", 1)
Show "Miladi 2021/04/01 (the century stays 13)", cal.ShamsiDate("2021/04/01")
Call cal.ShamsiDate("2006/08/03", "", inWords)
Show "the same date in Persian words (" & Len(inWords) & " characters)", inWords
On Error Resume Next
Call cal.ShamsiDate("not a date")
Show "ShamsiDate(""not a date"")", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
On Error GoTo 0
WScript.Echo ""

' ---- Amounts in Persian words ----
WScript.Echo "Ds_AlphaMoney: an amount from 0 to 999,999,999,999 in Persian words"
Dim money
Set money = CreateObject("Vx_Main.Ds_AlphaMoney")
Show "2500", money.ConvertAlphaMoney(2500)
Show "2,500,000", money.ConvertAlphaMoney(2500000)
Show "1,000,000,000,000 (out of range)", money.ConvertAlphaMoney(1000000000000)
money.AlphaThousand = " thousand"
money.AlphaAnd = " and "
Show "2500 with AlphaThousand and AlphaAnd replaced", money.ConvertAlphaMoney(2500)
WScript.Echo "  (a console without Persian letters shows them as question marks)"
WScript.Echo ""
WScript.Echo "End of tour."
