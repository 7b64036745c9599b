' Ds_MyVaribleFunction from a late-bound host.
Dim h, s, mode, r, a, b, d(), sized, other, rows(2, 1)
Set h = CreateObject("Vx_Main.Ds_MyVaribleFunction")

Section "GetVar"
CheckEqual "all defaults: field 0", h.GetVar("a,b,c"), "a"
CheckEqual "field 2", h.GetVar("a,b,c", 2), "c"
Check "no field 3", IsEmpty(h.GetVar("a,b,c", 3))
CheckEqual "LeftPathFull", h.GetVar("C:\x\y.txt", 0, "\", 3), "C:\x"
CheckEqual "RightPathFull", h.GetVar("C:\x\y.txt", 0, "\", 4), "x\y.txt"
CheckEqual "LastID", h.GetVar("C:\x\y.txt", 0, "\", 1), "y.txt"
CheckEqual "EnumIDPath", h.GetVar("a/b/c/d", 1, "/", 5), "b/c/d"
CheckEqual "EnumFirstToLast, to 2 by default", h.GetVar("a/b/c/d", 1, "/", 6), "b/c"
CheckEqual "a left-out separator is the default", h.GetVar("a,b;c", 1, , 2), "b;c"
Check "no path before the separator when there is none", IsEmpty(h.GetVar("word", 0, "\", 3))
Check "empty text has no fields", IsEmpty(h.GetVar("", 0, ",", 1))
s = "C:\dir\file.txt"
mode = 3
CheckEqual "arguments in variables, the mode too", h.GetVar(s, 0, "\", mode), "C:\dir"
Check "which keep their values and types", s = "C:\dir\file.txt" And mode = 3 And VarType(mode) = 2
CheckEqual "an array with index -1", h.GetVar(Array("x", 2, True), -1, "|"), "x|2|True"
rows(0, 0) = "a": rows(1, 0) = "b": rows(2, 0) = "c": rows(2, 1) = "3"
CheckEqual "a column of a table", h.GetVar(rows, 0, ";"), "a;b;c"
CheckEqual "another column", h.GetVar(rows, 1, ";"), ";;3"
Check "an array read as a table", IsEmpty(h.GetVar(Array("x", "y")))
Check "an unsized array", IsEmpty(h.GetVar(d, -1))
' Every step that fails is skipped; the others still build the result.
CheckEqual "indexes outside the fields", h.GetVar("a/b/c/d", -3, "/", 5), "a/b/c/d"
CheckEqual "a last index past the fields", h.GetVar("a/b/c/d", 1, "/", 6, 2000000000), "b/c/d"
Check "a last index before the first", IsEmpty(h.GetVar("a/b/c/d", 3, "/", 6, 1))
CheckEqual "one field, nothing to cut", h.GetVar("a,b", 0, "", 5), "a,b"
CheckEqual "elements that are no text; Null adds only its separator", h.GetVar(Array("a", Array(), Null, "c"), -1), "a,,c"
CheckEqual "a Null separator joins with nothing", h.GetVar(Array("a", "b"), -1, Null), "ab"
Check "an array separator fails every step", IsEmpty(h.GetVar(Array("a", "b"), -1, Array()))
On Error Resume Next
For Each a In Array(Null, Nothing, h)
    Check "nothing raises for " & VarType(a), IsEmpty(h.GetVar(a))
Next
Check "an index that is no number", IsEmpty(h.GetVar("a,b", "x"))
Check "an index beyond a Long", IsEmpty(h.GetVar("a,b", 1E20))
Check "a last index that is no number", IsEmpty(h.GetVar("a,b", 0, ",", 6, "x"))
Check "a Null separator", IsEmpty(h.GetVar("a,b", 0, Null))
CheckError "failures are never raised", Err.Number, 0
On Error GoTo 0

Section "IsEqute"
CheckEqual "text, ignoring case", h.IsEqute("ABC", "abc"), True
CheckEqual "a number and its text", h.IsEqute(5, "5"), True
CheckEqual "Null equals nothing", h.IsEqute(Null, Null), False
CheckEqual "not a mode", h.IsEqute("a", "a", 99), False
CheckEqual "GoLeft", h.IsEqute("Hello", "he", 5), True
CheckEqual "GoRight", h.IsEqute("Hello", "LO", 6), True
CheckEqual "GoRight of a number", h.IsEqute(2006, 6, 6), True
CheckEqual "GoArray, other order", h.IsEqute(Array("a", "b"), Array("B", "A"), 2), True
CheckEqual "GoArray, not one to one", h.IsEqute(Array("a", "a"), Array("a", "b"), 2), True
CheckEqual "GoArray, other sizes", h.IsEqute(Array("a", "b"), Array("a", "b", "a"), 2), False
CheckEqual "GoArrayJustCount, order matters", h.IsEqute(Array("a", "b"), Array("b", "a"), 3), False
CheckEqual "GoArrayJustText: in the list", h.IsEqute("x", Array("a", "x"), 4), False
CheckEqual "GoArrayJustText: not in the list", h.IsEqute("x", Array("a", "b"), 4), True
a = "Hello World"
b = "WORLD"
CheckEqual "GoFind", h.IsEqute(a, b, 7), True
Check "lower-cases both variables", a = "hello world" And b = "world"
a = 42
CheckEqual "GoFind, not found", h.IsEqute(a, b, 7), False
CheckEqual "a number becomes text", VarType(a), 8
a = Null
b = "C"
CheckEqual "GoFind of Null", h.IsEqute(a, b, 7), False
Check "which stays Null", IsNull(a)
a = ""
CheckEqual "nothing is found in empty text", h.IsEqute(a, a, 7), False
' Elements are read only when something is compared with them, Null ones too.
CheckEqual "an element never compared", h.IsEqute(Array("a"), Array("a", Array()), 2), False
CheckEqual "nothing to compare", h.IsEqute(Array(), Array(Array()), 2), False
CheckEqual "a Null element equals nothing", h.IsEqute(Array(1, Null), Array("1", Null), 2), False
CheckEqual "GoArrayJustText of Null", h.IsEqute(Null, Array(Null), 4), True
On Error Resume Next
r = h.IsEqute(Array(1), "1")
CheckError "an array compared as text", Err.Number, 13
Err.Clear
r = h.IsEqute("a", Array("a"), 2)
CheckError "a value in an array mode", Err.Number, 13
Err.Clear
r = h.IsEqute(Array("a"), Array(Array()), 2)
CheckError "an element compared as text", Err.Number, 13
Err.Clear
r = h.IsEqute(Array(Null), Array(Array()), 2)
CheckError "after a Null element", Err.Number, 13
Err.Clear
r = h.IsEqute(Array(), Array("x"), 4)
CheckError "an array as GoArrayJustText's value", Err.Number, 13
Err.Clear
r = h.IsEqute(d, Array("a"), 2)
CheckError "an unsized array", Err.Number, 9
Err.Clear
r = h.IsEqute(Null, "a", 5)
CheckError "Null in GoLeft", Err.Number, 94
Err.Clear
r = h.IsEqute("a", Null, 6)
CheckError "Null in GoRight", Err.Number, 94
Err.Clear
On Error GoTo 0

Section "CountUBound, GoIsNull, IsKey"
CheckEqual "an unsized array", h.CountUBound(d), -1
CheckEqual "an empty array", h.CountUBound(Array()), -1
CheckEqual "one element", h.CountUBound(Array(1)), 0
ReDim sized(4)
CheckEqual "five elements", h.CountUBound(sized), 4
CheckEqual "not an array", h.CountUBound("abc"), -1
CheckEqual "an Integer", VarType(h.CountUBound(rows)), 2
CheckEqual "Null gives the substitute", h.GoIsNull(Null, "n/a"), "n/a"
CheckEqual "a value is kept", h.GoIsNull(5), 5
CheckEqual "the default substitute is an Integer 0", VarType(h.GoIsNull(Null)), 2
Check "Empty is not Null", IsEmpty(h.GoIsNull(Empty, "x"))
CheckEqual "an omitted value gives the substitute", h.GoIsNull(, "x"), "x"
Set other = CreateObject("Vx_Main.Ds_ListCollection")
Set r = h.GoIsNull(other)
Check "an object passes through as itself", r Is other
CheckEqual "F24 is not down", h.IsKey(135), False
On Error Resume Next
r = h.IsKey(70000)
CheckError "a key code is an Integer", Err.Number, 6
On Error GoTo 0
