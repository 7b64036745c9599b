' Collections: Ds_ListCollection, an ordered list of Ds_DataCollection records.
' Each record has a key (sKey), the values ValueA to ValueG, ValueK and ValueH, and a
' nested list of its own (AddItem). Run: cscript //nologo collections.vbs
Option Explicit

Dim people, rec, child, i

Set people = CreateObject("Vx_Main.Ds_ListCollection")

' Add(ValueA, key, ValueB, ValueC ...): the record is appended and returned.
people.Add "Sara", "s1", "Tehran", 31
people.Add "Reza", "r7", "Shiraz", 45
people.Add "Mina", "m2", "Tabriz", 28
WScript.Echo "Records: " & people.Count                         ' 3

' By position (from 1) or by key (keys ignore case).
WScript.Echo "Second: " & people.Item(2).ValueA & " of " & people.Item(2).ValueB
WScript.Echo "Key R7: " & people.Item("R7").ValueA               ' Reza

' Walking the list.
For i = 1 To people.Count
    Set rec = people.Item(i)
    WScript.Echo "  " & rec.sKey & ": " & rec.ValueA & ", " & rec.ValueC
Next

' Records are shared, not copied: a change shows through every reference.
people.Item("s1").ValueC = 32
WScript.Echo "Sara is now " & people.Item(1).ValueC              ' 32

' A key in use: Add returns the record already stored under it, unchanged.
Set rec = people.Add("Someone else", "S1")
WScript.Echo "Adding key S1 again gives: " & rec.ValueA          ' Sara

' Every record carries a nested list of its own.
Set child = people.Item("m2").AddItem.Add("Ali", "a1", 3)
WScript.Echo "Mina's list: " & people.Item("m2").Count & " record, " & child.ValueA

' Values left out hold the missing-argument marker (VarType 10).
WScript.Echo "Reza's ValueE left out: VarType " & VarType(people.Item("r7").ValueE)

' Removing by key or position.
people.Remove "s1"
WScript.Echo "After Remove: " & people.Count & " records, first " & people.Item(1).ValueA

' Errors: an unknown key is 5, a position out of range 9.
On Error Resume Next
Set rec = people.Item("nobody")
WScript.Echo "Unknown key: Err.Number " & Err.Number
Err.Clear
Set rec = people.Item(10)
WScript.Echo "Position 10: Err.Number " & Err.Number
Err.Clear
On Error GoTo 0

people.Clear
WScript.Echo "After Clear: " & people.Count & " records"
WScript.Echo "Done."
