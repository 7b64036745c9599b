' clsReg, the key and value objects and the registry lists from a late-bound host. The
' test works under a key of its own, removed first (what an earlier run left) and last.
Dim reg, hkcu, base, fullBase, ok, s, d, b, x, keys, key, values, value, lists, settingsWereThere, setting

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
Set x = CreateObject("Vx_Main.cRegValues")
CheckError "so does a list of values", Err.Number, 429
Err.Clear
On Error GoTo 0

Section "root names"
CheckEqual "GoLngHKey", reg.GoLngHKey("HKEY_LOCAL_MACHINE"), &H80000002
CheckEqual "names are case-sensitive", reg.GoLngHKey("hkey_users"), 0
CheckEqual "GoStrHKey", reg.GoStrHKey(&H80000005), "HKEY_CURRENT_CONFIG"
CheckEqual "PERFORMANCE_DATA has no name", reg.GoStrHKey(&H80000004), ""

Section "strings"
s = "caf" & Chr(233) & " " & Chr(252) & "ber Stra" & Chr(223) & "e"
Check "WriteString", reg.WriteString(hkcu, base, "s", s)
CheckEqual "reads back exactly", reg.ReadString(hkcu, base, "s"), s
Check "an empty string", reg.WriteString(hkcu, base, "empty", "")
CheckEqual "reads back empty", reg.ReadString(hkcu, base, "empty", "default"), ""
Check "254 characters", reg.WriteString(hkcu, base, "254", String(254, "a"))
CheckEqual "read back", reg.ReadString(hkcu, base, "254"), String(254, "a")
Check "255 characters", reg.WriteString(hkcu, base, "255", String(255, "b"))
CheckEqual "read as nothing", reg.ReadString(hkcu, base, "255"), ""
d = "default"
CheckEqual "a missing key gives the default", reg.ReadString(hkcu, base & "\none", "s", d), "default"
CheckEqual "a missing value does not", reg.ReadString(hkcu, base, "none", d), ""

Section "numbers"
Check "WriteDWord", reg.WriteDWord(hkcu, base, "min", -2147483648)
CheckEqual "the lowest", reg.ReadDWord(hkcu, base, "min"), -2147483648
Check "WriteDWord", reg.WriteDWord(hkcu, base, "max", 2147483647)
CheckEqual "the highest", reg.ReadDWord(hkcu, base, "max"), 2147483647
d = 7
CheckEqual "a missing value is -1", reg.ReadDWord(hkcu, base, "none", d), -1
CheckEqual "a missing key gives the default in a variable", reg.ReadDWord(hkcu, base & "\none", "min", d), 7
CheckEqual "the variable is left alone", d, 7
CheckEqual "the default's default", reg.ReadDWord(hkcu, base & "\none", "min"), 0

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
CheckEqual "a missing value is Empty", VarType(reg.ReadBinary(hkcu, base, "none")), 0
On Error Resume Next
ok = reg.WriteBinary(hkcu, base, "b", "", Array(1, 256))
CheckError "a byte past 255", Err.Number, 6
Err.Clear
On Error GoTo 0
CheckEqual "leaves the stored value alone", reg.ReadBinary(hkcu, base, "b", True), "000100FF"

Section "type codes"
Check "type 2", reg.GoRegisterWrite(fullBase & "\t2", "two", 2)
Check "type 12", reg.GoRegisterWrite(fullBase & "\t12", "%TEMP%", 12)
Check "type 17", reg.GoRegisterWrite(fullBase & "\t17", "multi", 17)
Check "type 45", reg.GoRegisterWrite(fullBase & "\t45", 258, 45)
Check "type 4", reg.GoRegisterWrite(fullBase & "\t4", "12", 4)
Check "type 3", reg.GoRegisterWrite(fullBase & "\t3", Array(7, 8), 3)
CheckEqual "type 5 writes nothing", VarType(reg.GoRegisterWrite(fullBase & "\t5", "x", 5)), 0
Set values = reg.ListValues(hkcu, base)
CheckEqual "2 stores REG_SZ", values("t2").Datatype, 1
CheckEqual "12 stores REG_EXPAND_SZ", values("t12").Datatype, 2
CheckEqual "17 stores REG_MULTI_SZ", values("t17").Datatype, 7
CheckEqual "45 stores REG_DWORD_BIG_ENDIAN", values("t45").Datatype, 5
CheckEqual "4 stores REG_DWORD", values("t4").Datatype, 4
CheckEqual "3 stores REG_BINARY", values("t3").Datatype, 3
On Error Resume Next
Set x = values("t5")
CheckError "and 5 nothing at all", Err.Number, 5
Err.Clear
On Error GoTo 0
CheckEqual "read as a number", reg.GoRegisterRead(fullBase & "\t4", 4), 12
CheckEqual "read as text", reg.GoRegisterRead(fullBase & "\t2"), "two"
CheckEqual "a big-endian DWORD reads back as written", reg.GoRegisterRead(fullBase & "\t45", 4), 258
CheckEqual "12 is no type to read", VarType(reg.GoRegisterRead(fullBase & "\t12", 12)), 0
CheckEqual "GoRegister reads HKEY_CURRENT_USER by default", reg.GoRegister(1, 1, , base, "t2"), "two"
On Error Resume Next
ok = reg.GoRegisterWrite(fullBase & "\t4", "not a number", 4)
CheckError "text as a DWORD", Err.Number, 13
Err.Clear
On Error GoTo 0
CheckEqual "leaves the stored value alone", reg.GoRegisterRead(fullBase & "\t4", 4), 12
CheckEqual "an unknown root reads nothing", reg.GoRegisterRead("hkey_current_user\" & base & "\t2"), ""

Section "settings"
settingsWereThere = reg.IsHasKey(&H80000002, "SOFTWARE\Hollowin")
setting = "Vx_Main host test"
reg.RegisterValue(setting) = "on " & Chr(233)
CheckEqual "RegisterValue", reg.RegisterValue(setting), "on " & Chr(233)
CheckEqual "lives under the settings key", _
    reg.ReadString(&H80000002, "SOFTWARE\Hollowin", setting), "on " & Chr(233)
Check "removed again", reg.ValueDelete("HKEY_LOCAL_MACHINE\SOFTWARE\Hollowin\" & setting)
If Not settingsWereThere Then reg.KeyDelete "HKEY_LOCAL_MACHINE\SOFTWARE\Hollowin"
CheckEqual "the settings key is as it was", reg.IsHasKey(&H80000002, "SOFTWARE\Hollowin"), settingsWereThere

Section "keys"
Check "CreateKey", reg.CreateKey(hkcu, base & "\k\a\a1")
Check "CreateKey", reg.CreateKey(hkcu, base & "\k\b")
Check "IsHasKey", reg.IsHasKey(hkcu, base & "\k\a\a1")
Check "IsHasKey of a missing key", Not reg.IsHasKey(hkcu, base & "\k\zz")
CheckEqual "CountKey", reg.CountKey(hkcu, base & "\k"), 2
CheckEqual "CountKey of a missing key", reg.CountKey(hkcu, base & "\zz"), 0
Set keys = reg.ListKeys(hkcu, base & "\k")
CheckEqual "ListKeys", keys.Count, 2
CheckEqual "Item is the default member", keys(1).KeyName, "a"
CheckEqual "by name, without regard to case", keys("A").SubKey, base & "\k\a"
CheckEqual "with its own subkey count", keys("a").CountKey, 1
CheckEqual "and its root", keys("a").HKey, hkcu
CheckEqual "a missing key lists nothing", reg.ListKeys(hkcu, base & "\zz").Count, 0
On Error Resume Next
Set x = keys("zz")
CheckError "an unknown name", Err.Number, 5
Err.Clear
Set x = keys(3)
CheckError "a position past the end", Err.Number, 9
Err.Clear
keys.Add hkcu, base & "\k\x", "B", 0
CheckError "a name already present", Err.Number, 457
Err.Clear
On Error GoTo 0
CheckEqual "leaves the list as it was", keys.Count, 2

Section "key objects"
Set key = keys("a")
CheckEqual "EnumKey lists the key's subkeys", key.EnumKey.Count, 1
CheckEqual "and leaves SubKey alone", key.SubKey, base & "\k\a"
CheckEqual "EnumKey with AddKey", key.EnumKey("a1").Count, 0
CheckEqual "keeps a backslash at the end of SubKey", key.SubKey, base & "\k\a\"
Set key = keys("b")
Set x = key.ParentKey
CheckEqual "ParentKey lists the keys beside it", x.Count, 2
CheckEqual "itself among them", x("a").SubKey, base & "\k\a"
Set key = reg.ListKeys(hkcu, base & "\k")("b")
Check "IsHasKey with no AddKey tests the key itself", key.IsHasKey("")
Check "IsHasKey of a missing subkey", Not key.IsHasKey("none")
key.Rename "renamed"
CheckEqual "Rename changes nothing", key.KeyName, "b"
Check "not in the registry either", reg.IsHasKey(hkcu, base & "\k\b")
key.Delete
Check "Delete", Not reg.IsHasKey(hkcu, base & "\k\b")
Check "the other keys stay", reg.IsHasKey(hkcu, base & "\k\a")

Section "values"
Set values = reg.ListValues(hkcu, base)
CheckEqual "a string", values("s").DataValue, s
CheckEqual "its type", values("s").Datatype, 1
CheckEqual "its path", values("s").SubKey, base & "\s"
CheckEqual "a number", values("min").DataValue, -2147483648
Set value = values("empty")
value.Rename "other"
CheckEqual "Rename changes nothing", value.KeyName, "empty"
Check "Delete", value.Delete
Check "deletes the value", Not reg.ListValues(hkcu, base).Count = values.Count
Check "a second Delete finds nothing", Not value.Delete

Section "subtree lists"
Call reg.WriteString(hkcu, base & "\k\a", "v", "1")
Set lists = reg.GoEnumKey(hkcu, base & "\k")
CheckEqual "one list per key", lists.Count, 3
CheckEqual "the key itself under """"", lists.Item("").Count, 1
CheckEqual "the others by relative path", lists.Item("a").Count, 1
CheckEqual "deeper", lists.Item("A\A1").Count, 0
Set lists = reg.GoEnumValue(hkcu, base & "\k")
CheckEqual "GoEnumValue", lists.Count, 3
CheckEqual "names", lists.Item(2), "a"
CheckEqual "values by path", lists.ItemValue("a")("v").DataValue, "1"
lists.Remove 1
CheckEqual "Remove works on the key lists", lists.Count, 2
CheckEqual "the names keep theirs", lists.Item(1), ""
Set x = reg.ListKeys(hkcu, base & "\k")
lists.Clear
Set lists = reg.GoEnumKey(hkcu, base & "\k")
lists.Add x, "added"
CheckEqual "Add takes a list in a variable", lists.Item("added").Count, x.Count
Check "the same list", lists.Item("added") Is x

Section "deleting"
Check "ValueDelete by full path", reg.ValueDelete(fullBase & "\max")
CheckEqual "gone", reg.ReadDWord(hkcu, base, "max"), -1
Check "ValueDelete with the root", reg.ValueDelete(base & "\min", hkcu)
Check "a missing value", Not reg.ValueDelete(fullBase & "\min")
reg.KeyDelete fullBase & "\k"
Check "KeyDelete takes the whole subtree", Not reg.IsHasKey(hkcu, base & "\k")
reg.KeyDelete fullBase
Check "and the test's key", Not reg.IsHasKey(hkcu, base)
