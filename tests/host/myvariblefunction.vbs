' Ds_MyVaribleFunction from a late-bound host: fields and joins, comparisons, array
' bounds, the Null substitute and the key test.
Dim h, s, idx, sep, mode, r, a, b, d(), sized, other

Set h = CreateObject("Vx_Main.Ds_MyVaribleFunction")

Section "GetVar: fields of text"
CheckEqual "all defaults give field 0", h.GetVar("a,b,c"), "a"
CheckEqual "field 2", h.GetVar("a,b,c", 2), "c"
Check "field 3 does not exist: Empty", IsEmpty(h.GetVar("a,b,c", 3))
CheckEqual "LeftPathFull", h.GetVar("C:\x\y.txt", 0, "\", 3), "C:\x"
CheckEqual "RightPathFull", h.GetVar("C:\x\y.txt", 0, "\", 4), "x\y.txt"
CheckEqual "LastID", h.GetVar("C:\x\y.txt", 0, "\", 1), "y.txt"
CheckEqual "EnumIDPath", h.GetVar("a/b/c/d", 1, "/", 5), "b/c/d"
CheckEqual "EnumFirstToLast to the default 2", h.GetVar("a/b/c/d", 1, "/", 6), "b/c"
CheckEqual "EnumFirstToLast past the last field", h.GetVar("a/b/c/d", 1, "/", 6, 99), "b/c/d"
CheckEqual "a left-out separator is the default", h.GetVar("a,b;c", 1, , 2), "b;c"
Check "text without the separator has no path before it", IsEmpty(h.GetVar("word", 0, "\", 3))
CheckEqual "but is its own last field", h.GetVar("word", 0, "\", 1), "word"
Check "empty text has no fields", IsEmpty(h.GetVar("", 0, ",", 1))
' A variable may carry the mode, although the parameter is a typed reference.
s = "C:\dir\file.txt"
idx = 0
sep = "\"
mode = 3
CheckEqual "arguments in variables", h.GetVar(s, idx, sep, mode), "C:\dir"
CheckEqual "which are left as they were (text)", s, "C:\dir\file.txt"
CheckEqual "which are left as they were (mode)", mode, 3
CheckEqual "the mode variable keeps its type", VarType(mode), 2

Section "GetVar: arrays"
CheckEqual "a one-dimensional array with index -1", h.GetVar(Array("x", "y"), -1), "x,y"
CheckEqual "with another separator", h.GetVar(Array("x", 2, True), -1, " | "), "x | 2 | True"
Dim rows(2, 1)
rows(0, 0) = "a": rows(0, 1) = "1"
rows(1, 0) = "b": rows(1, 1) = "2"
rows(2, 0) = "c": rows(2, 1) = "3"
CheckEqual "column 0 of a table", h.GetVar(rows, 0, ";"), "a;b;c"
CheckEqual "column 1 of a table", h.GetVar(rows, 1, ";"), "1;2;3"
Check "a one-dimensional array read as a table", IsEmpty(h.GetVar(Array("x", "y")))
Check "an empty array", IsEmpty(h.GetVar(Array(), -1))
Check "an unsized array", IsEmpty(h.GetVar(d, -1))
CheckEqual "an element that is not text is skipped", h.GetVar(Array("a", Array(1), Null, "c"), -1), "a,,c"

Section "GetVar never raises"
On Error Resume Next
r = h.GetVar(Null)
CheckError "Null text", Err.Number, 0
Check "gives Empty", IsEmpty(r)
Err.Clear
r = h.GetVar("a,b", "x")
CheckError "an index that is not a number", Err.Number, 0
Check "gives Empty too", IsEmpty(r)
Err.Clear
r = h.GetVar(h)
CheckError "an object without a default value", Err.Number, 0
Err.Clear
On Error GoTo 0

Section "IsEqute: text"
CheckEqual "case is ignored", h.IsEqute("ABC", "abc"), True
CheckEqual "different text", h.IsEqute("abc", "abd"), False
CheckEqual "a number and its text", h.IsEqute(5, "5"), True
CheckEqual "Null equals nothing", h.IsEqute(Null, Null), False
CheckEqual "not a mode", h.IsEqute("a", "a", 99), False
CheckEqual "GoLeft", h.IsEqute("Hello", "he", 5), True
CheckEqual "GoLeft, not the start", h.IsEqute("Hello", "lo", 5), False
CheckEqual "GoRight", h.IsEqute("Hello", "LO", 6), True

Section "IsEqute: arrays"
CheckEqual "GoArray: same elements, other order", h.IsEqute(Array("a", "b"), Array("B", "A"), 2), True
CheckEqual "GoArray: not one to one", h.IsEqute(Array("a", "a"), Array("a", "b"), 2), True
CheckEqual "GoArray: sizes differ", h.IsEqute(Array("a", "b"), Array("a", "b", "a"), 2), False
CheckEqual "GoArrayJustCount: by position", h.IsEqute(Array("a", "b"), Array("A", "B"), 3), True
CheckEqual "GoArrayJustCount: order matters", h.IsEqute(Array("a", "b"), Array("b", "a"), 3), False
CheckEqual "GoArrayJustText: in the list gives False", h.IsEqute("x", Array("a", "x"), 4), False
CheckEqual "GoArrayJustText: not in the list gives True", h.IsEqute("x", Array("a", "b"), 4), True

Section "IsEqute: GoFind lower-cases the caller's variables"
a = "Hello World"
b = "WORLD"
CheckEqual "found", h.IsEqute(a, b, 7), True
CheckEqual "first variable", a, "hello world"
CheckEqual "second variable", b, "world"
a = 42
b = "Nope"
CheckEqual "not found", h.IsEqute(a, b, 7), False
CheckEqual "a number becomes its text", VarType(a), 8
CheckEqual "second variable, not found", b, "nope"
a = "abc"
b = ""
CheckEqual "an empty text is found", h.IsEqute(a, b, 7), True

Section "IsEqute: errors reach the host"
On Error Resume Next
r = h.IsEqute(Array(1), "1")
CheckError "comparing an array as text", Err.Number, 13
Err.Clear
r = h.IsEqute("a", Array("a"), 2)
CheckError "an array mode with a value", Err.Number, 13
Err.Clear
r = h.IsEqute(Array("a"), "a", 4)
CheckError "GoArrayJustText with a value for the list", Err.Number, 13
Err.Clear
r = h.IsEqute(d, Array("a"), 2)
CheckError "an unsized array has no bound", Err.Number, 9
Err.Clear
r = h.IsEqute(Null, "a", 5)
CheckError "Null in GoLeft", Err.Number, 94
Err.Clear
r = h.IsEqute("a", Null, 6)
CheckError "Null in GoRight", Err.Number, 94
Err.Clear
On Error GoTo 0

Section "CountUBound"
CheckEqual "an unsized array", h.CountUBound(d), -1
CheckEqual "an empty array", h.CountUBound(Array()), -1
CheckEqual "one element", h.CountUBound(Array(1)), 0
ReDim sized(4)
CheckEqual "five elements", h.CountUBound(sized), 4
CheckEqual "the first dimension of a table", h.CountUBound(rows), 2
CheckEqual "not an array", h.CountUBound("abc"), -1
CheckEqual "Null", h.CountUBound(Null), -1
CheckEqual "an Integer", VarType(h.CountUBound(Array(1))), 2

Section "GoIsNull"
CheckEqual "Null gives the substitute", h.GoIsNull(Null, "n/a"), "n/a"
CheckEqual "a value is kept", h.GoIsNull(5), 5
CheckEqual "Null without a substitute gives 0", h.GoIsNull(Null), 0
CheckEqual "an Integer 0", VarType(h.GoIsNull(Null)), 2
Check "Empty is not Null", IsEmpty(h.GoIsNull(Empty, "x"))
Set other = CreateObject("Vx_Main.Ds_ListCollection")
Set r = h.GoIsNull(other)
Check "an object passes through as itself", r Is other
Set r = h.GoIsNull(Null, other)
Check "so does an object substitute", r Is other

Section "IsKey"
CheckEqual "F24 is not down", h.IsKey(135), False
On Error Resume Next
r = h.IsKey(70000)
CheckError "a key code must be an Integer", Err.Number, 6
Err.Clear
On Error GoTo 0
