' The registry: clsReg and its key and value objects (cRegKey, cRegKeys, cRegValue,
' cRegValues, cRegEnumKey, cRegEnumValue). Everything here happens under a key of its
' own, HKEY_CURRENT_USER\Software\Vx_Main registry example, removed at the end.
' Run: cscript //nologo registry.vbs
Option Explicit

Const HKCU = &H80000001          ' HKEY_CURRENT_USER (HKEY_LOCAL_MACHINE is &H80000002)
Const Base = "Software\Vx_Main registry example"
Dim reg, keys, values, k, v, tree, i, data

Set reg = CreateObject("Vx_Main.clsReg")

' Writing: strings, numbers, bytes. The key is created when needed.
reg.WriteString HKCU, Base, "Greeting", "Hello, registry"
reg.WriteDWord HKCU, Base, "Width", 640
reg.WriteBinary HKCU, Base, "Bytes", "", Array(0, 1, 254, 255)
reg.CreateKey HKCU, Base & "\Colours\Dark"
reg.CreateKey HKCU, Base & "\Fonts"

' Reading them back.
WScript.Echo "Greeting: " & reg.ReadString(HKCU, Base, "Greeting")
WScript.Echo "Width: " & reg.ReadDWord(HKCU, Base, "Width")
WScript.Echo "Bytes: " & reg.ReadBinary(HKCU, Base, "Bytes", True)   ' 0001FEFF
data = reg.ReadBinary(HKCU, Base, "Bytes")                             ' or a Byte array
WScript.Echo "As bytes: VarType " & VarType(data)                       ' 8209: Byte()

' Defaults: the default is used only when the key is missing; a missing value in an
' existing key reads as "" (strings) or -1 (numbers).
WScript.Echo "Missing key, default: " & reg.ReadDWord(HKCU, Base & "\None", "Height", 480)
WScript.Echo "Missing value: " & reg.ReadDWord(HKCU, Base, "Height", 480)

' One full path ("root\key path\value name") with GoRegisterWrite/Read; the type 4 is a
' DWORD, 1 a string, 3 bytes.
reg.GoRegisterWrite "HKEY_CURRENT_USER\" & Base & "\Count", 7, 4
WScript.Echo "Full path: " & reg.GoRegisterRead("HKEY_CURRENT_USER\" & Base & "\Count", 4)

' Keys: test, count, list.
WScript.Echo "Key exists: " & reg.IsHasKey(HKCU, Base & "\Colours")
WScript.Echo "Subkeys: " & reg.CountKey(HKCU, Base)
Set keys = reg.ListKeys(HKCU, Base)
For i = 1 To keys.Count                       ' lists are read by position (from 1)
    Set k = keys(i)
    WScript.Echo "  key " & k.KeyName & " (" & k.CountKey & " subkeys)"
Next

' Values as objects, by position or by name.
Set values = reg.ListValues(HKCU, Base)
For i = 1 To values.Count
    Set v = values(i)
    WScript.Echo "  value " & v.KeyName & ", type " & v.Datatype
Next
WScript.Echo "Width by name: " & values("Width").DataValue

' The whole subtree, parents before their subkeys, by path relative to Base.
Set tree = reg.GoEnumValue(HKCU, Base)
For i = 1 To tree.Count
    WScript.Echo "  subtree """ & tree.Item(i) & """: " & tree.ItemValue(i).Count & " values"
Next

' Deleting a value, a key through its object, and finally the whole key.
WScript.Echo "Value deleted: " & reg.ValueDelete("HKEY_CURRENT_USER\" & Base & "\Width")
keys("Fonts").Delete
WScript.Echo "Fonts after Delete: " & reg.IsHasKey(HKCU, Base & "\Fonts")
reg.KeyDelete "HKEY_CURRENT_USER\" & Base                 ' the key and all below it
WScript.Echo "Removed: " & (Not reg.IsHasKey(HKCU, Base))
WScript.Echo "Done."
