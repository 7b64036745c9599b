' clsReg, the key and value objects and the registry lists from a late-bound host. The
' test works under a key of its own, removed first (what an earlier run left) and last.
Dim reg, hkcu, base, fullBase, ok, s, d, b, x, i, names, roots, codes, types, tb
Dim keys, key, values, value, lists, settingsWereThere, setting, unset

Set reg = CreateObject("Vx_Main.clsReg")
hkcu = &H80000001
base = "Software\Vx_Main registry host test"
fullBase = "HKEY_CURRENT_USER\" & base
reg.KeyDelete fullBase

Section "creating"
On Error Resume Next
Set x = CreateObject("Vx_Main.cRegKey")
CheckError "a key object comes only from a list", Err.Number, 429
Err.Clear
On Error GoTo 0

Section "root names"
' Exactly five names, compared case-sensitively, in both directions.
names = Array("HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", "HKEY_USERS", "HKEY_CURRENT_CONFIG")
roots = Array(&H80000000, &H80000001, &H80000002, &H80000003, &H80000005)
For i = 0 To 4
    CheckEqual "GoLngHKey " & names(i), reg.GoLngHKey(names(i)), roots(i)
    CheckEqual "GoStrHKey " & names(i), reg.GoStrHKey(roots(i)), names(i)
Next
For Each x In Array("hkey_users", "HKEY_Users", "HKCU", "HKEY_PERFORMANCE_DATA", "HKEY_USERS\", "")
    CheckEqual "no root named " & x, reg.GoLngHKey(x), 0
Next
For Each x In Array(&H80000004, &H80000006, 0)
    CheckEqual "no name for " & Hex(x), reg.GoStrHKey(x), ""
Next

Section "strings"
s = "caf" & Chr(233) & " " & Chr(252) & "ber Stra" & Chr(223) & "e " & Chr(128)
Check "WriteString", reg.WriteString(hkcu, base, "s", s)
CheckEqual "reads back exactly", reg.ReadString(hkcu, base, "s"), s
Check "an empty string", reg.WriteString(hkcu, base, "empty", "")
CheckEqual "reads back empty", reg.ReadString(hkcu, base, "empty", "default"), ""
Check "254 characters", reg.WriteString(hkcu, base, "254", String(254, "a"))
CheckEqual "read back", reg.ReadString(hkcu, base, "254"), String(254, "a")
Check "255 characters", reg.WriteString(hkcu, base, "255", String(255, "b"))
CheckEqual "read as nothing", reg.ReadString(hkcu, base, "255"), ""
Check "300 characters", reg.WriteString(hkcu, base, "300", String(300, "c"))
CheckEqual "read as nothing too", reg.ReadString(hkcu, base, "300"), ""
d = "default"
CheckEqual "a missing key gives the default", reg.ReadString(hkcu, base & "\none", "s", d), "default"
CheckEqual "a missing value does not", reg.ReadString(hkcu, base, "none", d), ""
CheckEqual "the default's default", reg.ReadString(hkcu, base & "\none", "s"), ""

Section "numbers"
Check "WriteDWord", reg.WriteDWord(hkcu, base, "min", -2147483648)
CheckEqual "the lowest", reg.ReadDWord(hkcu, base, "min"), -2147483648
CheckEqual "stored as its own four bytes", reg.ReadBinary(hkcu, base, "min", True), "00000080"
Check "WriteDWord", reg.WriteDWord(hkcu, base, "max", 2147483647)
CheckEqual "the highest", reg.ReadDWord(hkcu, base, "max"), 2147483647
d = 7
CheckEqual "a missing value is -1", reg.ReadDWord(hkcu, base, "none", d), -1
CheckEqual "a missing key gives the default in a variable", reg.ReadDWord(hkcu, base & "\none", "min", d), 7
CheckEqual "the variable is left alone", d, 7
CheckEqual "the default's default", reg.ReadDWord(hkcu, base & "\none", "min"), 0
CheckEqual "text does not fit a DWORD", reg.ReadDWord(hkcu, base, "s", d), -1

Section "binary"
Check "WriteBinary from an array", reg.WriteBinary(hkcu, base, "b", "", Array(0, 1, 0, 255))
CheckEqual "as hexadecimal text", reg.ReadBinary(hkcu, base, "b", True), "000100FF"
b = reg.ReadBinary(hkcu, base, "b")
CheckEqual "as an array of bytes", VarType(b), 8209
x = True
CheckEqual "the switch in a variable", reg.ReadBinary(hkcu, base, "b", x), "000100FF"
Check "the bytes write back", reg.WriteBinary(hkcu, base, "copy", "", b)
CheckEqual "unchanged", reg.ReadBinary(hkcu, base, "copy", True), "000100FF"
Check "from text", reg.WriteBinary(hkcu, base, "t", "A" & Chr(0) & Chr(233))
CheckEqual "the text's bytes", reg.ReadBinary(hkcu, base, "t", True), "4100E9"
Check "empty data", reg.WriteBinary(hkcu, base, "e", "")
CheckEqual "is an array", VarType(reg.ReadBinary(hkcu, base, "e")), 8209
CheckEqual "of no bytes", reg.ReadBinary(hkcu, base, "e", True), ""
CheckEqual "a missing value is Empty", VarType(reg.ReadBinary(hkcu, base, "none")), 0
CheckEqual "so is a missing key", VarType(reg.ReadBinary(hkcu, base & "\none", "b", True)), 0
On Error Resume Next
ok = reg.WriteBinary(hkcu, base, "b", "", Array(1, 256))
CheckError "a byte past 255", Err.Number, 6
Err.Clear
On Error GoTo 0
CheckEqual "leaves the stored value alone", reg.ReadBinary(hkcu, base, "b", True), "000100FF"

Section "type codes"
' 1, 2 and 7 store REG_SZ; other codes: the first digit picks the writer, the rest the type.
tb = base & "\types"
codes = Array(1, 2, 7, 12, 17, 4, 45, 0, 3, 31, 10)
types = Array(1, 1, 1, 2, 7, 4, 5, 3, 3, 1, 0)
For i = 0 To UBound(codes)
    Check "type " & codes(i) & " writes", reg.GoRegisterWrite(fullBase & "\types\t" & codes(i), "258", codes(i))
Next
For Each x In Array(5, 6, 8, 9, 21, 55, 99, -4)
    CheckEqual "type " & x & " writes nothing", VarType(reg.GoRegisterWrite(fullBase & "\types\t" & x, "258", x)), 0
Next
Set values = reg.ListValues(hkcu, tb)
CheckEqual "one value for each writing code", values.Count, UBound(codes) + 1
For i = 0 To UBound(codes)
    CheckEqual "type " & codes(i) & " stores", values("t" & codes(i)).Datatype, types(i)
Next
CheckEqual "45 keeps the number's own bytes", reg.ReadBinary(hkcu, tb, "t45", True), "02010000"
CheckEqual "3 stores the text's bytes", reg.ReadBinary(hkcu, tb, "t3", True), "323538"
CheckEqual "read as a number", reg.GoRegisterRead(fullBase & "\types\t4", 4), 258
CheckEqual "a big-endian DWORD reads back as written", reg.GoRegisterRead(fullBase & "\types\t45", 4), 258
CheckEqual "read as text", reg.GoRegisterRead(fullBase & "\types\t2"), "258"
CheckEqual "7 reads text too", reg.GoRegisterRead(fullBase & "\types\t12", 7), "258"
CheckEqual "3 reads bytes", VarType(reg.GoRegisterRead(fullBase & "\types\t3", 3)), 8209
CheckEqual "12 is no type to read", VarType(reg.GoRegisterRead(fullBase & "\types\t12", 12)), 0
CheckEqual "a missing number is -1", reg.GoRegisterRead(fullBase & "\types\none", 4), -1
CheckEqual "GoRegister reads HKEY_CURRENT_USER by default", reg.GoRegister(1, 1, , tb, "t2"), "258"
Check "and writes there", reg.GoRegister(2, , , tb, "direct", "d")
CheckEqual "a string by default", reg.ListValues(hkcu, tb)("direct").Datatype, 1
Check "any flag but 1 writes", reg.GoRegister(7, 4, hkcu, tb, "flag7", 3)
CheckEqual "what it wrote", reg.ReadDWord(hkcu, tb, "flag7"), 3
On Error Resume Next
ok = reg.GoRegisterWrite(fullBase & "\types\t4", "not a number", 4)
CheckError "text as a DWORD", Err.Number, 13
Err.Clear
On Error GoTo 0
CheckEqual "leaves the stored value alone", reg.GoRegisterRead(fullBase & "\types\t4", 4), 258

Section "full paths"
Check "a path ending in a backslash", reg.GoRegisterWrite(fullBase & "\types\", "default")
CheckEqual "names the key's default value", reg.ReadString(hkcu, tb, ""), "default"
CheckEqual "and reads it", reg.GoRegisterRead(fullBase & "\types\"), "default"
Check "an unknown root writes nothing", Not reg.GoRegisterWrite("hkey_current_user\" & base & "\lower\v", "x")
Check "not even the key", Not reg.IsHasKey(hkcu, base & "\lower")
CheckEqual "and reads nothing", reg.GoRegisterRead("hkey_current_user\" & base & "\types\t2"), ""
Check "a root alone is no place to write", Not reg.GoRegisterWrite("HKEY_CURRENT_USER", "x")
CheckEqual "a text without a backslash reads nothing", reg.GoRegisterRead("no backslash"), ""
CheckEqual "or Empty for bytes", VarType(reg.GoRegisterRead("no backslash", 3)), 0
x = "by ref"
Check "the value in a variable", reg.GoRegisterWrite(fullBase & "\types\r", x)
CheckEqual "is left as it was", x, "by ref"

Section "settings"
settingsWereThere = reg.IsHasKey(&H80000002, "SOFTWARE\Hollowin")
setting = "Vx_Main host test"
reg.RegisterValue(setting) = "on " & Chr(233)
CheckEqual "RegisterValue", reg.RegisterValue(setting), "on " & Chr(233)
CheckEqual "lives under the settings key", _
    reg.ReadString(&H80000002, "SOFTWARE\Hollowin", setting), "on " & Chr(233)
CheckEqual "a missing setting", reg.RegisterValue(setting & " missing"), ""
Check "removed again", reg.ValueDelete("HKEY_LOCAL_MACHINE\SOFTWARE\Hollowin\" & setting)
If Not settingsWereThere Then reg.KeyDelete "HKEY_LOCAL_MACHINE\SOFTWARE\Hollowin"
CheckEqual "the settings key is as it was", reg.IsHasKey(&H80000002, "SOFTWARE\Hollowin"), settingsWereThere

Section "keys"
Check "CreateKey", reg.CreateKey(hkcu, base & "\k\a\a1")
Check "CreateKey", reg.CreateKey(hkcu, base & "\k\b")
Check "of a key already there", reg.CreateKey(hkcu, base & "\k\b")
Check "with a name outside ASCII", reg.CreateKey(hkcu, base & "\k\C" & Chr(233))
Check "not without a root", Not reg.CreateKey(0, base & "\k\z")
Check "IsHasKey", reg.IsHasKey(hkcu, base & "\k\a\a1")
Check "IsHasKey of a missing key", Not reg.IsHasKey(hkcu, base & "\k\zz")
CheckEqual "CountKey", reg.CountKey(hkcu, base & "\k"), 3
CheckEqual "CountKey of a missing key", reg.CountKey(hkcu, base & "\zz"), 0
Set keys = reg.ListKeys(hkcu, base & "\k")
CheckEqual "ListKeys", keys.Count, 3
CheckEqual "Item is the default member", keys(1).HKey, hkcu
CheckEqual "by name, without regard to case", keys("A").SubKey, base & "\k\a"
CheckEqual "its own name", keys("A").KeyName, "a"
CheckEqual "with its own subkey count", keys("a").CountKey, 1
CheckEqual "the name outside ASCII", keys("c" & Chr(233)).KeyName, "C" & Chr(233)
CheckEqual "a missing key lists nothing", reg.ListKeys(hkcu, base & "\zz").Count, 0
On Error Resume Next
' No Set here: Wine's VBScript goes on with a failed call's statement under Resume Next,
' and a Set of the empty result would replace the call's error with its own.
x = keys("zz")
CheckError "an unknown name", Err.Number, 5
Err.Clear
x = keys(4)
CheckError "a position past the end", Err.Number, 9
Err.Clear
keys.Add hkcu, base & "\k\x", "B", 0
CheckError "a name already present", Err.Number, 457
Err.Clear
On Error GoTo 0
CheckEqual "leaves the list as it was", keys.Count, 3
Set key = keys("C" & Chr(233))
keys.Remove "C" & Chr(233)
CheckEqual "Remove", keys.Count, 2
Set x = reg.ListKeys(hkcu, base & "\k")
x.Clear
CheckEqual "Clear", x.Count, 0
CheckEqual "an item outlives its list", key.KeyName, "C" & Chr(233)

Section "key objects"
Set key = keys("a")
CheckEqual "EnumKey lists the key's subkeys", key.EnumKey.Count, 1
CheckEqual "and leaves SubKey alone", key.SubKey, base & "\k\a"
CheckEqual "EnumKey with AddKey", key.EnumKey("a1").Count, 0
CheckEqual "keeps a backslash at the end of SubKey", key.SubKey, base & "\k\a\"
CheckEqual "the parent of such a path is the key itself", key.ParentKey.Count, 1
CheckEqual "SubValueEnum with AddKey", key.SubValueEnum("a1").Count, 0
CheckEqual "adds one more", key.SubKey, base & "\k\a\\"
Set key = keys("b")
Set x = key.ParentKey
CheckEqual "ParentKey lists the keys beside it", x.Count, 3
CheckEqual "itself among them", x("b").SubKey, base & "\k\b"
Set x = reg.ListKeys(hkcu, "")("Software").ParentKey
CheckEqual "below the root: the root's keys", x("software").KeyName, "Software"
Check "IsHasKey of a subkey", reg.ListKeys(hkcu, base & "\k")("a").IsHasKey("A1")
Check "IsHasKey with no AddKey tests the key itself", key.IsHasKey("")
Check "IsHasKey of a missing subkey", Not key.IsHasKey("none")
key.Rename "renamed"
CheckEqual "Rename changes nothing", key.KeyName, "b"
Check "not in the registry either", reg.IsHasKey(hkcu, base & "\k\b")
Check "no key of the new name", Not reg.IsHasKey(hkcu, base & "\k\renamed")
key.Delete
Check "Delete", Not reg.IsHasKey(hkcu, base & "\k\b")
Check "the other keys stay", reg.IsHasKey(hkcu, base & "\k\a")
key.Delete
Check "a second Delete does no harm", reg.IsHasKey(hkcu, base & "\k")

Section "values"
Set values = reg.ListValues(hkcu, base)
CheckEqual "a string", values("s").DataValue, s
CheckEqual "its type", values("S").Datatype, 1
CheckEqual "its path", values("s").SubKey, base & "\s"
CheckEqual "its root", values("s").HKey, hkcu
CheckEqual "a number", values("min").DataValue, -2147483648
CheckEqual "its type", values("min").Datatype, 4
CheckEqual "bytes", VarType(values("b").DataValue), 8209
CheckEqual "their type", values("b").Datatype, 3
Call reg.WriteString(hkcu, base, "", "the default")
CheckEqual "the default value is named """"", reg.ListValues(hkcu, base)("").DataValue, "the default"
CheckEqual "a missing key lists nothing", reg.ListValues(hkcu, base & "\zz").Count, 0
Set value = values("empty")
value.Rename "other"
CheckEqual "Rename changes nothing", value.KeyName, "empty"
value.DataValue = "changed"
CheckEqual "fields only store", reg.ReadString(hkcu, base, "empty", d), ""
Check "Delete", value.Delete
CheckEqual "deletes the value", VarType(reg.ReadBinary(hkcu, base, "empty")), 0
Check "a second Delete finds nothing", Not value.Delete
Set value = values("254")
value.HKey = 0
value.SubKey = fullBase & "\254"
Check "without a root, SubKey is a full path", value.Delete
CheckEqual "and the value is gone", reg.ReadString(hkcu, base, "254", d), ""

Section "subtree lists"
Call reg.WriteString(hkcu, base & "\k\a", "v", "1")
Set lists = reg.GoEnumKey(hkcu, base & "\k")
CheckEqual "one list per key", lists.Count, 4
CheckEqual "the key itself under """"", lists.Item("").Count, 2
CheckEqual "and first", lists.Item(1).Count, 2
CheckEqual "the others by relative path", lists.Item("a").Count, 1
CheckEqual "deeper", lists.Item("A\A1").Count, 0
CheckEqual "with full paths inside", lists.Item("a").Item(1).SubKey, base & "\k\a\a1"
CheckEqual "a missing key lists nothing", reg.GoEnumKey(hkcu, base & "\zz").Count, 0
Set x = reg.ListKeys(hkcu, base & "\k")
lists.Add x, "added"
Check "Add takes a list in a variable and keeps it", lists.Item("added") Is x
Check "the variable still holds it", Not x Is Nothing
lists.Add unset, "nothing"
Check "a variable never set stands for Nothing", lists.Item("nothing") Is Nothing
Check "and stays as it was", IsEmpty(unset)
On Error Resume Next
lists.Add values, "other"
Check "a list of values is refused", Err.Number <> 0
Err.Clear
On Error GoTo 0

' Names, key lists and value lists are separate lists: Remove and Count use the key lists.
Set lists = reg.GoEnumValue(hkcu, base & "\k")
CheckEqual "GoEnumValue", lists.Count, 4
CheckEqual "names, the key itself first", lists.Item(1), ""
CheckEqual "values by path", lists.ItemValue("a")("v").DataValue, "1"
CheckEqual "keys by path", lists.ItemKey("a").Count, 1
CheckEqual "a missing key lists nothing", reg.GoEnumValue(hkcu, base & "\zz").Count, 0
Set x = lists.ItemKey(2)
lists.Remove 1
CheckEqual "Remove works on the key lists", lists.Count, 3
Check "which move up", lists.ItemKey(1) Is x
CheckEqual "the names keep theirs", lists.Item(1), ""
Check "so do the value lists", Not lists.ItemValue("") Is Nothing
On Error Resume Next
Set x = lists.ItemKey("")
CheckError "the removed key list is gone", Err.Number, 5
Err.Clear
lists.Add reg.ListKeys(hkcu, base), reg.ListValues(hkcu, base), "A"
CheckError "a name among the key lists", Err.Number, 457
Err.Clear
On Error GoTo 0
CheckEqual "leaves the count", lists.Count, 3
CheckEqual "but the name went in", lists.Item(5), "A"
lists.Clear
CheckEqual "Clear", lists.Count, 0

Section "deleting"
Check "ValueDelete by full path", reg.ValueDelete(fullBase & "\max")
CheckEqual "gone", reg.ReadDWord(hkcu, base, "max"), -1
Check "ValueDelete with the root", reg.ValueDelete(base & "\min", hkcu)
Check "a missing value", Not reg.ValueDelete(fullBase & "\min")
Check "an unknown root", Not reg.ValueDelete("hkey_current_user\" & base & "\s")
reg.KeyDelete fullBase & "\k"
Check "KeyDelete takes the whole subtree", Not reg.IsHasKey(hkcu, base & "\k")
CheckEqual "and nothing beside it", reg.ReadString(hkcu, base, "s"), s
reg.KeyDelete base & "\types\", hkcu
Check "with the root and a backslash at the end", Not reg.IsHasKey(hkcu, tb)
reg.KeyDelete fullBase
Check "and the test's key", Not reg.IsHasKey(hkcu, base)
