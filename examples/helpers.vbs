' String and array helpers: Ds_MyVaribleFunction. Run: cscript //nologo helpers.vbs
Option Explicit

Dim tools, path, a, b

Set tools = CreateObject("Vx_Main.Ds_MyVaribleFunction")

' GetVar(text, index, separator, mode): fields of a text. Fields count from 0; the mode
' picks 1 the last field, 2 field index, 3 all before the last separator, 4 all after the
' first, 5 from index to the end, 6 from index to a last index.
path = "C:\Reports\2024\summary.txt"
WScript.Echo "Folder: " & tools.GetVar(path, 0, "\", 3)         ' C:\Reports\2024
WScript.Echo "File: " & tools.GetVar(path, 0, "\", 1)           ' summary.txt
WScript.Echo "Second field: " & tools.GetVar("red,green,blue", 1)
WScript.Echo "Fields 1 to 2: " & tools.GetVar("a/b/c/d", 1, "/", 6, 2)
' An array is joined instead (index -1: every element).
WScript.Echo "Joined: " & tools.GetVar(Array("x", "y", "z"), -1, " + ")
' What cannot be had is Empty, never an error.
WScript.Echo "Field 7 is Empty: " & IsEmpty(tools.GetVar("a,b", 7))

' IsEqute(a, b, mode): 1 equal as text ignoring case, 3 arrays equal element by element,
' 4 a value NOT among an array's elements, 5 starts with, 6 ends with, 7 contains.
WScript.Echo "ABC = abc: " & tools.IsEqute("ABC", "abc")
WScript.Echo "Arrays equal: " & tools.IsEqute(Array(1, 2), Array(1, 2), 3)
WScript.Echo "x not in (a, b): " & tools.IsEqute("x", Array("a", "b"), 4)
WScript.Echo "Starts with C:\: " & tools.IsEqute(path, "C:\", 5)
' Mode 7 lower-cases both variables in place: pass copies when that matters.
a = "Hello World"
b = "WORLD"
WScript.Echo "Contains: " & tools.IsEqute(a, b, 7) & ", and now a = """ & a & """"

' Array bounds that never fail, and a Null substitute.
WScript.Echo "UBound of Array(): " & tools.CountUBound(Array())
WScript.Echo "UBound of a text: " & tools.CountUBound("not an array")
WScript.Echo "Null replaced: " & tools.GoIsNull(Null, "n/a")

' Whether a key is held down (virtual-key code; &H10 is Shift).
WScript.Echo "Shift held: " & tools.IsKey(&H10)
WScript.Echo "Done."
