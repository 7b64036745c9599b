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
WScript.Echo "End of tour."
