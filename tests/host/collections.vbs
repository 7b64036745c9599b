' Ds_ListCollection and Ds_DataCollection from a late-bound host, and the runtime's
' errors as a host sees them.
Dim list, rec, rec2, other, x, i, key, nested

Section "creating"
Set list = CreateObject("Vx_Main.Ds_ListCollection")
CheckEqual "a new list is empty", list.Count, 0
Check "each creation makes a new object", Not (list Is CreateObject("Vx_Main.Ds_ListCollection"))
On Error Resume Next
Set x = CreateObject("Vx_Main.Ds_DataCollection")
CheckError "a record cannot be created by a host", Err.Number, 429
Err.Clear
On Error GoTo 0

Section "Add"
Set rec = list.Add(1, "a")
CheckEqual "sKey", rec.sKey, "a"
CheckEqual "ValueA", rec.ValueA, 1
CheckEqual "an omitted value holds the missing marker", VarType(rec.ValueB), 10
Set rec2 = list.Add(2, "A", "other")
Check "a duplicate key returns the stored record", rec2 Is rec
CheckEqual "which is unchanged", rec.ValueA, 1
CheckEqual "its other values too", VarType(rec.ValueB), 10
CheckEqual "and is not added again", list.Count, 1
list.Add 10, ""
list.Add 11, ""
list.Add 12
CheckEqual "an empty key always appends", list.Count, 4
Set rec = list.Add("a", "order", "b", "c", "d", "e", "f", "g", "k", "h")
CheckEqual "ValueB", rec.ValueB, "b"
CheckEqual "ValueG", rec.ValueG, "g"
CheckEqual "ValueK is the eighth value", rec.ValueK, "k"
CheckEqual "ValueH is the ninth", rec.ValueH, "h"
CheckEqual "a record added without a key has sKey """"", list.Item(2).sKey, ""

Section "Item"
Set rec = list.Item(1)
Check "position 1 and key a are the same record", rec Is list.Item("a")
key = "A"
Check "keys compare without regard to case (a variable by reference)", list.Item(key) Is rec
CheckEqual "the caller's variable is unchanged", key, "A"
i = 1.5
Check "a fractional position rounds half to even", list.Item(i) Is list.Item(2)
rec.ValueA = "changed"
CheckEqual "records are shared, not copied", list.Item("a").ValueA, "changed"
On Error Resume Next
Set x = list.Item(0)
CheckError "position 0", Err.Number, 9
Err.Clear
Set x = list.Item(list.Count + 1)
CheckError "position Count + 1", Err.Number, 9
CheckEqual "with the runtime's text", Err.Description, "Subscript out of range"
Err.Clear
Set x = list.Item("no such key")
CheckError "an unknown key", Err.Number, 5
CheckEqual "Err.Description", Err.Description, "Invalid procedure call or argument"
CheckEqual "Err.Source", Err.Source, "Vx_Main"
Err.Clear
Set x = list.Item("1")
CheckError "a numeric text is a key, not a position", Err.Number, 5
Err.Clear
Set x = list.Item(Null)
CheckError "Null", Err.Number, 94
Err.Clear
Set x = list.Item(Array(1))
CheckError "an array", Err.Number, 13
Err.Clear
Set x = list.Item()
CheckError "no index at all", Err.Number, 450
Err.Clear
list.NoSuchMember
CheckError "a member the class lacks", Err.Number, 438
Err.Clear
On Error GoTo 0

Section "Remove"
list.Remove "ORDER"
CheckEqual "by key", list.Count, 4
list.Remove 2
CheckEqual "by position", list.Count, 3
CheckEqual "the rest keep their order", list.Item(2).ValueA, 11
On Error Resume Next
list.Remove "order"
CheckError "a removed key is unknown", Err.Number, 5
Err.Clear
list.Remove 4
CheckError "a position past the end", Err.Number, 9
Err.Clear
On Error GoTo 0
Set rec = list.Add(20, "order")
CheckEqual "a removed key may be used again", list.Item("order").ValueA, 20

Section "Clear"
Set rec = list.Item("a")
list.Clear
CheckEqual "Clear empties the list", list.Count, 0
CheckEqual "a record the host holds stays alive", rec.ValueA, "changed"
list.Clear
CheckEqual "clearing an empty list", list.Count, 0
list.Add 1, "a"
CheckEqual "keys are free after Clear", list.Count, 1

Section "nested lists"
Set rec = list.Item(1)
CheckEqual "Count of a fresh record", rec.Count, 0
Set nested = rec.AddItem
CheckEqual "AddItem of a fresh record is an empty list", nested.Count, 0
Check "the same list each time", rec.AddItem Is nested
rec.AddItem.Add "child", "c1"
rec.AddItem.Item("c1").AddItem.Add "grandchild"
CheckEqual "Count counts the nested list", rec.Count, 1
CheckEqual "records form a tree", rec.AddItem.Item(1).AddItem.Item(1).ValueA, "grandchild"
Set other = CreateObject("Vx_Main.Ds_ListCollection")
other.Add 1
other.Add 2
Set rec.AddItem = other
CheckEqual "a list may be attached", rec.Count, 2
Set rec.AddItem = Nothing
CheckEqual "after Nothing, a new empty list", rec.Count, 0

Section "values"
Set rec.ValueC = other
Check "Set stores the object", rec.ValueC Is other
rec.ValueD = Null
CheckEqual "Null is a value", rec.ValueD, Null
rec.ValueE = Array("x", "y")
CheckEqual "so is an array", UBound(rec.ValueE), 1
rec.sKey = "renamed"
CheckEqual "sKey may be changed", rec.sKey, "renamed"
On Error Resume Next
rec.ValueF = other
CheckError "an object without a default value is not a value", Err.Number, 438
Err.Clear
Set x = list.Add(other, "obj")
CheckError "nor in Add, which then looks the key up", Err.Number, 5
Err.Clear
Set x = list.Add(other, "a")
Check "and hands back the record stored under the key", x Is rec
Set x = list.Add(Null, Null)
CheckError "a Null key", Err.Number, 13
Err.Clear
list.Add
CheckError "Add without a value", Err.Number, 450
Err.Clear
On Error GoTo 0
CheckEqual "failed additions added nothing", list.Count, 1
