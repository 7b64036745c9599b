' ---- the test ----
' Sorting and the array members of Ds_MyVaribleFunction from a late-bound host.
Dim f, a, b, r, n, i, ok, tbl(2, 1), m, d, big, persianIn, persianOut

Set f = CreateObject("Vx_Main.Ds_MyVaribleFunction")

' An array's elements joined by "|" (Empty and Null written out).
Function J(list)
    Dim x
    J = ""
    For x = LBound(list) To UBound(list)
        If IsObject(list(x)) Then
            J = J & "|<object>"
        ElseIf IsNull(list(x)) Then
            J = J & "|<null>"
        ElseIf IsEmpty(list(x)) Then
            J = J & "|<empty>"
        Else
            J = J & "|" & list(x)
        End If
    Next
    J = Mid(J, 2)
End Function

Section "sorting"
a = Array(10, "b", 2, "A", 2.5, "a", Null, Empty, -3, "B", True)
CheckEqual "numbers before texts, Null and Empty first", J(f.GetSortArray(a)), "<null>|<empty>|-3|True|2|2.5|10|A|a|b|B"
CheckEqual "the array itself is not changed", J(a), "10|b|2|A|2.5|a|<null>|<empty>|-3|B|True"
CheckEqual "descending, equal texts still in their order", J(f.GetSortArray(a, 2)), "b|B|A|a|10|2.5|2|True|-3|<empty>|<null>"
CheckEqual "case counting", J(f.GetSortArray(Array("b", "B", "a", "A"), 1, True)), "a|A|b|B"
CheckEqual "texts are not numbers", J(f.GetSortArray(Array("10", "9", "100"))), "10|100|9"
f.SetSort a
CheckEqual "SetSort sorts the variable", J(a), "<null>|<empty>|-3|True|2|2.5|10|A|a|b|B"
f.SetSort a, 2
CheckEqual "and descending", J(a), "b|B|A|a|10|2.5|2|True|-3|<empty>|<null>"
b = Array(Nothing, "x", 1)
CheckEqual "objects go last", J(f.GetSortArray(b)), "1|x|<object>"
persianIn = Split(T("words.sortIn"), "|")
persianOut = Split(T("words.sortOut"), "|")
f.SetSort persianIn
ok = (UBound(persianIn) = UBound(persianOut))
For i = 0 To UBound(persianOut)
    If persianIn(i) <> persianOut(i) Then ok = False
Next
Check "Persian words in alphabetical order", ok
' A table: rows by a column.
tbl(0, 0) = "Reza": tbl(0, 1) = 30
tbl(1, 0) = "Sara": tbl(1, 1) = 25
tbl(2, 0) = "Ali": tbl(2, 1) = 40
f.SetSort tbl
CheckEqual "a table by its first column", tbl(0, 0) & tbl(0, 1) & "," & tbl(1, 0) & tbl(1, 1) & "," & tbl(2, 0) & tbl(2, 1), "Ali40,Reza30,Sara25"
f.SetSort tbl, 1, False, 1
CheckEqual "by its second column", tbl(0, 0) & "," & tbl(1, 0) & "," & tbl(2, 0), "Sara,Reza,Ali"
' Many numbers: each not below the one before it.
Randomize 7
ReDim big(4999)
For i = 0 To 4999
    big(i) = Int(Rnd * 1000)
Next
f.SetSort big
ok = True
For i = 1 To 4999
    If big(i) < big(i - 1) Then ok = False
Next
Check "5,000 numbers in order", ok

Section "sorting errors"
On Error Resume Next
r = f.GetSortArray("abc")
CheckError "not an array", Err.Number, 13
Err.Clear
r = f.GetSortArray(Null)
CheckError "Null", Err.Number, 13
Err.Clear
r = f.GetSortArray(Array(1, 2), 3)
CheckError "no such order", Err.Number, 5
Err.Clear
f.SetSort tbl, 1, False, 2
CheckError "no such column", Err.Number, 9
Err.Clear
On Error GoTo 0

Section "counting"
CheckEqual "the elements", f.CountArray(Array(1, 2, 3)), 3
CheckEqual "those equal as text", f.CountArray(Array("a", "B", "A", 1), "a"), 2
CheckEqual "a number as text", f.CountArray(Array("1", 1, 1.5), 1), 2
CheckEqual "Null equals Null", f.CountArray(Array(Null, "", Empty), Null), 1
CheckEqual "every element of a table", f.CountArray(tbl), 6
CheckEqual "not an array", f.CountArray("abc"), 0
CheckEqual "an empty array", f.CountArray(Array()), 0

Section "growing"
CheckEqual "an Empty variable becomes an array", f.GAdd(d, "x"), 0
CheckEqual "and grows", f.GAdd(d, "y"), 1
CheckEqual "its elements", J(d), "x|y"
CheckEqual "unique: found, not added", f.GAdd(d, "X", True), 0
CheckEqual "unique: not found, added", f.GAdd(d, "z", True), 2
f.GAdd d, CreateObject("Scripting.Dictionary")
Check "an object is stored as the object", IsObject(d(3))
b = Array(1, 4)
CheckEqual "pasting an array's elements", f.SetArrayPaste(b, Array(2, 3), 1), 3
CheckEqual "in place", J(b), "1|2|3|4"
CheckEqual "one value at the end by default", f.SetArrayPaste(b, 5), 4
CheckEqual "at the start", f.SetArrayPaste(b, 0, 0), 5
CheckEqual "all of it", J(b), "0|1|2|3|4|5"
On Error Resume Next
n = f.SetArrayPaste(b, 9, 7)
CheckError "past the end", Err.Number, 9
Err.Clear
n = f.SetArrayPaste(b, 9, -1)
CheckError "before the start", Err.Number, 9
Err.Clear
m = "text"
n = f.GAdd(m, 1)
CheckError "a text is no array", Err.Number, 13
Err.Clear
n = f.GAdd(tbl, 1)
CheckError "a table cannot grow", Err.Number, 5
Err.Clear
On Error GoTo 0
CheckEqual "nothing changed", J(b), "0|1|2|3|4|5"

Section "missing"
f.SetVaribleMissing m
CheckEqual "the variable is the missing-argument marker", VarType(m), 10
CheckEqual "passed on, it counts as left out", f.GoIsNull(m, "none"), "none"
CheckEqual "as it does for GetVar's separator", f.GetVar("a,b;c", 1, m), "b;c"
